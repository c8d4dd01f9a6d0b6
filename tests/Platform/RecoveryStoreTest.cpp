// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/Platform/RecoveryStore.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <functional>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Foundation::Instant;
using Platform::Recovery;
using Platform::RecoverySlot;
using Platform::RecoveryStore;

constexpr Instant noon{1'700'000'000s};

class RecoveryStoreTest : public testing::Test {
protected:
    /// Does it in a program of its own, which is killed then.
    static void inAProgramThatIsKilled(const std::function<void()>& work) {
        std::array<int, 2> done{};
        ASSERT_EQ(::pipe(done.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            work();
            (void)!::write(done[1], "!", 1);
            ::pause();
        }
        char answer = 0;
        ASSERT_EQ(::read(done[0], &answer, 1), 1);
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(done[0]);
        ::close(done[1]);
    }
    void crash(const std::string& document, const std::optional<fs::path>& original, Instant when) {
        inAProgramThatIsKilled([&] {
            static std::optional<RecoverySlot> slot; // outlives the work
            slot = m_store.newSlot();
            slot->write(document, original, when);
        });
    }
    std::size_t files() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator{m_folder / "state/recovery"}, fs::directory_iterator{}));
    }

    TemporaryFolder m_folder;
    RecoveryStore m_store{m_folder / "state/recovery"};
};

TEST_F(RecoveryStoreTest, AtFirstThereIsNothing) {
    EXPECT_TRUE(m_store.list().empty());
    EXPECT_FALSE(fs::exists(m_folder / "state"));
}

TEST_F(RecoveryStoreTest, AKilledProgramsCopyIsOfferedWithItsOriginalAndTime) {
    crash("the document", m_folder / "Trip\nof May.roamly", noon);
    const std::vector<Recovery> found = m_store.list();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].original, m_folder / "Trip\nof May.roamly");
    EXPECT_EQ(found[0].written, noon);
    EXPECT_EQ(Foundation::readFile(found[0].copy), "the document");
}

TEST_F(RecoveryStoreTest, AProjectThatWasNeverSavedHasNoOriginal) {
    crash("the document", std::nullopt, noon);
    ASSERT_EQ(m_store.list().size(), 1U);
    EXPECT_EQ(m_store.list()[0].original, std::nullopt);
}

TEST_F(RecoveryStoreTest, TheNewestIsOfferedFirst) {
    crash("first", std::nullopt, noon);
    crash("last", std::nullopt, noon + 2h);
    crash("second", std::nullopt, noon + 1h);
    std::vector<std::string> order;
    for (const Recovery& recovery : m_store.list())
        order.push_back(Foundation::readFile(recovery.copy));
    EXPECT_EQ(order, (std::vector<std::string>{"last", "second", "first"}));
}

TEST_F(RecoveryStoreTest, ARunningProgramsCopyIsNotOffered) {
    RecoverySlot slot = m_store.newSlot();
    slot.write("mine", std::nullopt, noon);
    EXPECT_TRUE(m_store.list().empty()) << "by this program";
    int found = -1;
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(static_cast<int>(m_store.list().size()));
    ::waitpid(child, &found, 0);
    EXPECT_EQ(WEXITSTATUS(found), 0) << "by another";
}

TEST_F(RecoveryStoreTest, WritingAgainReplacesTheCopy) {
    {
        RecoverySlot slot = m_store.newSlot();
        slot.write("before", std::nullopt, noon);
        slot.write("after", m_folder / "Trip.roamly", noon + 1h);
    }
    ASSERT_EQ(m_store.list().size(), 1U);
    EXPECT_EQ(Foundation::readFile(m_store.list()[0].copy), "after");
    EXPECT_EQ(m_store.list()[0].original, m_folder / "Trip.roamly");
}

TEST_F(RecoveryStoreTest, AfterSavingNothingIsLeft) {
    {
        RecoverySlot slot = m_store.newSlot();
        slot.write("mine", std::nullopt, noon);
        slot.remove();
    }
    EXPECT_TRUE(m_store.list().empty());
    EXPECT_EQ(files(), 0U);
}

TEST_F(RecoveryStoreTest, AnAdoptedCopyStaysSafeUntilItsNewWindowSaves) {
    crash("lost", m_folder / "Trip.roamly", noon);
    const Recovery recovery = m_store.list().at(0);
    {
        const std::optional<RecoverySlot> slot = m_store.adopt(recovery.id);
        ASSERT_TRUE(slot);
        EXPECT_EQ(slot->id(), recovery.id);
        EXPECT_TRUE(m_store.list().empty());
        EXPECT_FALSE(m_store.adopt(recovery.id)) << "by two windows";
    }
    EXPECT_EQ(m_store.list().size(), 1U) << "the window crashed as well";
    m_store.adopt(recovery.id)->remove();
    EXPECT_TRUE(m_store.list().empty());
    EXPECT_FALSE(m_store.adopt(recovery.id));
    EXPECT_EQ(files(), 0U);
}

TEST_F(RecoveryStoreTest, WhatWasKilledBeforeItsFirstCopyIsTidiedAway) {
    inAProgramThatIsKilled([&] {
        static std::optional<RecoverySlot> slot;
        slot = m_store.newSlot();
    });
    EXPECT_EQ(files(), 1U);
    const RecoverySlot running = m_store.newSlot();
    EXPECT_TRUE(m_store.list().empty());
    EXPECT_EQ(files(), 1U) << "the running one's lock stays";
}

TEST_F(RecoveryStoreTest, StrangeFilesAreLeftAlone) {
    crash("lost", std::nullopt, noon);
    std::ofstream{m_folder / "state/recovery/notes.roamly"} << "no copy of ours";
    std::ofstream{m_folder / "state/recovery" / (Foundation::Uuid::random().text() + ".roamly")}
        << "no details";
    EXPECT_EQ(m_store.list().size(), 1U);
    EXPECT_EQ(files(), 5U);
}

TEST_F(RecoveryStoreTest, OthersOfTheMachineDoNotSeeTheCopies) {
    const RecoverySlot slot = m_store.newSlot();
    EXPECT_EQ(fs::status(m_folder / "state/recovery").permissions(), fs::perms::owner_all);
}

TEST_F(RecoveryStoreTest, AFolderThatCannotBeMadeIsAnError) {
    std::ofstream{m_folder / "file"} << "in the way";
    EXPECT_THROW((void)RecoveryStore{m_folder / "file/recovery"}.newSlot(), std::system_error);
    EXPECT_TRUE(RecoveryStore{m_folder / "file/recovery"}.list().empty());
}

} // namespace
