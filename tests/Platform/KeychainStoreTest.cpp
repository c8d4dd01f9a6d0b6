// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/KeychainStore.h>
#include <Support/PrivateKeyring.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Platform;

const KeychainStore::LegacyKey noLegacyKey{[] { return std::optional<std::string>{}; }, [] {}};

/// The properties of each item in the keyring, a line each, as a keyring program would read them.
std::vector<std::string> shownItems() {
    std::vector<std::string> items;
    FILE* pipe =
        ::popen("call='gdbus call --session --dest org.freedesktop.secrets --object-path'; "
                "collection=/org/freedesktop/secrets/collection/login; "
                "for item in $($call $collection --method org.freedesktop.DBus.Properties.Get "
                "org.freedesktop.Secret.Collection Items | grep -o \"$collection/[0-9]*\"); do "
                "$call $item --method org.freedesktop.DBus.Properties.GetAll org.freedesktop.Secret.Item; "
                "done",
                "r");
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr)
        items.emplace_back(buffer.data());
    ::pclose(pipe);
    return items;
}

class KeychainStoreTest : public testing::Test {
protected:
    // A process talks to one bus for good, so that all tests share it.
    static void SetUpTestSuite() {
        ASSERT_TRUE(PrivateKeyring::isPossible()) << "dbus-daemon and gnome-keyring-daemon are needed";
        s_keyring = std::make_unique<PrivateKeyring>(PrivateKeyring::Daemon::Running);
    }
    static void TearDownTestSuite() { s_keyring.reset(); }
    void SetUp() override { KeychainStore::remove(); }

private:
    static inline std::unique_ptr<PrivateKeyring> s_keyring;
};

TEST_F(KeychainStoreTest, HasNoKeyAtFirstLaunch) {
    EXPECT_TRUE(KeychainStore::isAvailable());
    EXPECT_EQ(KeychainStore::load(noLegacyKey), std::nullopt);
}

TEST_F(KeychainStoreTest, GivesBackWhatWasSaved) {
    EXPECT_TRUE(KeychainStore::save("sk-ключ"));
    EXPECT_EQ(KeychainStore::load(noLegacyKey), "sk-ключ");
}

TEST_F(KeychainStoreTest, SavingTwiceUpdatesTheOneItem) {
    KeychainStore::save("first");
    KeychainStore::save("second");
    EXPECT_EQ(KeychainStore::read(), "second");
    EXPECT_EQ(shownItems().size(), 1U);
}

TEST_F(KeychainStoreTest, LabelsTheItemSoThatAPersonFindsIt) {
    KeychainStore::save("key");
    const std::vector<std::string> items = shownItems();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_THAT(items[0], testing::HasSubstr("Roamly: OpenRouter API key"));
    EXPECT_THAT(items[0], testing::HasSubstr("'service': 'app.roamly.Roamly'"));
    EXPECT_THAT(items[0], testing::HasSubstr("'account': 'openrouter'"));
}

TEST_F(KeychainStoreTest, AnEmptyKeyRemovesTheItem) {
    KeychainStore::save("key");
    EXPECT_TRUE(KeychainStore::save(""));
    EXPECT_EQ(KeychainStore::read(), std::nullopt);
    EXPECT_TRUE(KeychainStore::remove());
}

TEST_F(KeychainStoreTest, MovesAKeyThatAnOlderVersionLeftInTheSettings) {
    std::optional<std::string> old = "old key";
    const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
    EXPECT_EQ(KeychainStore::load(legacy), "old key");
    EXPECT_FALSE(old);
    EXPECT_EQ(KeychainStore::read(), "old key");
}

TEST_F(KeychainStoreTest, PrefersTheStoredKeyToAnOldOne) {
    KeychainStore::save("new");
    std::optional<std::string> old = "old";
    const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
    EXPECT_EQ(KeychainStore::load(legacy), "new");
    EXPECT_EQ(old, "old");
}

/// The exit status tells which expectation of a session without a Secret Service failed.
[[noreturn]] void failSilentlyAndLoseNothing() {
    int status = 0;
    {
        const PrivateKeyring keyring{PrivateKeyring::Daemon::Absent};
        std::optional<std::string> old = "old";
        const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
        if (KeychainStore::isAvailable())
            status = 1;
        else if (KeychainStore::save("key"))
            status = 2;
        else if (KeychainStore::read())
            status = 3;
        else if (KeychainStore::load(legacy) != "old")
            status = 4;
        else if (old != "old")
            status = 5;
    }
    // Without the clean-up of a process that shares nothing with this one any more.
    ::_exit(status);
}

TEST(KeychainStoreDeathTest, FailsSilentlyWithoutASecretServiceAndLosesNothing) {
    ASSERT_TRUE(PrivateKeyring::isPossible()) << "dbus-daemon and gnome-keyring-daemon are needed";
    // In a process of its own: this one may be on a bus already.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(failSilentlyAndLoseNothing(), testing::ExitedWithCode(0), "");
}

} // namespace
