// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace Foundation {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

void put(const fs::path& path, std::string_view contents) {
    std::ofstream{path, std::ios::binary} << contents;
}

mode_t modeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

std::vector<std::string> entriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator{folder})
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

using Names = std::vector<std::string>;

/// The error number that the operation throws with, 0 when it does not throw.
int errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

int writeError(const fs::path& path, std::string_view contents = "new") {
    return errorOf([&] { writeFileAtomically(path, contents); });
}

int checkError(const fs::path& path) {
    return errorOf([&] { checkFileCanBeReplaced(path); });
}

int readError(const fs::path& path) {
    return errorOf([&] { static_cast<void>(readFile(path)); });
}

/// What the operation returns in a process of its own, whose limits and user it may change.
int inChildProcess(const std::function<int()>& operation) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(operation());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// As `inChildProcess`, without root's right to ignore permissions.
int asOrdinaryUser(const std::function<int()>& operation) {
    return inChildProcess([&] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            return 255;
        return operation();
    });
}

class AtomicFileTest : public testing::Test {
protected:
    TemporaryFolder m_folder;
    const fs::path m_file = m_folder / "file.json";
};

TEST_F(AtomicFileTest, WritesANewFile) {
    writeFileAtomically(m_file, "contents");
    EXPECT_EQ(contentsOf(m_file), "contents");
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, ReplacesAFileByALongerAndByAShorterOneAndByNothing) {
    for (const std::size_t length : {10U, 5'000'000U, 3U, 0U}) {
        const std::string contents(length, 'x');
        writeFileAtomically(m_file, contents);
        EXPECT_EQ(contentsOf(m_file), contents);
    }
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, WritesEveryByteAsItIs) {
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes += static_cast<char>(value);
    writeFileAtomically(m_file, bytes);
    EXPECT_EQ(contentsOf(m_file), bytes);
    EXPECT_EQ(readFile(m_file), bytes);
}

TEST_F(AtomicFileTest, GivesANewFileTheModeOfTheProcess) {
    const mode_t before = ::umask(027);
    writeFileAtomically(m_file, "new");
    ::umask(before);
    EXPECT_EQ(modeOf(m_file), 0640U);
}

TEST_F(AtomicFileTest, KeepsTheModeOfAnExistingFile) {
    for (const mode_t mode : {0600U, 0644U, 0664U, 0755U, 0777U}) {
        put(m_file, "old");
        fs::permissions(m_file, static_cast<fs::perms>(mode));
        writeFileAtomically(m_file, "new");
        EXPECT_EQ(modeOf(m_file), mode);
        EXPECT_EQ(contentsOf(m_file), "new");
    }
}

TEST_F(AtomicFileTest, KeepsTheOwnerWhereItMay) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give files away";
    put(m_file, "old");
    ASSERT_EQ(::chown(m_file.c_str(), 65534, 65534), 0);
    writeFileAtomically(m_file, "new");
    struct stat status {};
    ASSERT_EQ(::stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534U);
    EXPECT_EQ(status.st_gid, 65534U);
}

TEST_F(AtomicFileTest, WritesThroughASymbolicLinkThatStaysALink) {
    fs::create_directory(m_folder / "elsewhere");
    const fs::path target = m_folder.path() / "elsewhere" / "target.json";
    put(target, "old");
    fs::create_symlink("elsewhere/target.json", m_folder / "second");
    fs::create_symlink(m_folder / "second", m_file);
    writeFileAtomically(m_file, "new");
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_TRUE(fs::is_symlink(m_folder / "second"));
    EXPECT_FALSE(fs::is_symlink(target));
    EXPECT_EQ(contentsOf(target), "new");
    EXPECT_EQ(entriesOf(m_folder.path()), (Names{"elsewhere", "file.json", "second"}));
    EXPECT_EQ(entriesOf(m_folder / "elsewhere"), Names{"target.json"});
}

TEST_F(AtomicFileTest, CreatesTheTargetOfADanglingLink) {
    fs::create_symlink("target.json", m_file);
    writeFileAtomically(m_file, "new");
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(contentsOf(m_folder / "target.json"), "new");
}

TEST_F(AtomicFileTest, RefusesALinkIntoAFolderThatDoesNotExist) {
    fs::create_symlink("nowhere/target.json", m_file);
    EXPECT_EQ(writeError(m_file), ENOENT);
    EXPECT_TRUE(fs::is_symlink(m_file));
}

TEST_F(AtomicFileTest, RefusesLinksThatLeadInACircleAndKeepsThem) {
    fs::create_symlink("other", m_file);
    fs::create_symlink("file.json", m_folder / "other");
    EXPECT_EQ(writeError(m_file), ELOOP);
    EXPECT_EQ(readError(m_file), ELOOP);
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(entriesOf(m_folder.path()), (Names{"file.json", "other"}));
}

TEST_F(AtomicFileTest, RefusesAFolderAsItsTarget) {
    EXPECT_EQ(writeError(m_folder.path()), EISDIR);
    fs::create_directory_symlink(m_folder.path(), m_file);
    EXPECT_EQ(writeError(m_file), EISDIR);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, RefusesWhatIsNeitherFileNorFolder) {
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_EQ(writeError(m_file), EINVAL);
    EXPECT_EQ(readError(m_file), EINVAL);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, RefusesPathsThatLeadNowhere) {
    EXPECT_EQ(writeError(m_folder.path() / "missing" / "file.json"), ENOENT);
    EXPECT_EQ(writeError((m_folder / "missing").string() + "/"), ENOENT);
    EXPECT_EQ(writeError(""), ENOENT);
    put(m_file, "old");
    EXPECT_EQ(writeError(m_file / "below"), ENOTDIR);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, WritesAFileWhoseNameIsAsLongAsNamesCanBe) {
    const std::string name(255, 'n');
    writeFileAtomically(m_folder / name, "new");
    EXPECT_EQ(contentsOf(m_folder / name), "new");
    EXPECT_EQ(entriesOf(m_folder.path()), Names{name});
}

TEST_F(AtomicFileTest, WritesIntoTheWorkingFolderByABareName) {
    const fs::path before = fs::current_path();
    fs::current_path(m_folder.path());
    writeFileAtomically("bare.json", "new");
    fs::current_path(before);
    EXPECT_EQ(contentsOf(m_folder / "bare.json"), "new");
}

TEST_F(AtomicFileTest, RefusesAReadOnlyFileToAnOrdinaryUser) {
    put(m_file, "old");
    fs::permissions(m_file, fs::perms{0444});
    fs::permissions(m_folder.path(), fs::perms{0777});
    EXPECT_EQ(asOrdinaryUser([&] { return writeError(m_file); }), EACCES);
    EXPECT_EQ(contentsOf(m_file), "old");
    EXPECT_EQ(modeOf(m_file), 0444U);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, RefusesAReadOnlyFolderToAnOrdinaryUser) {
    put(m_file, "old");
    fs::permissions(m_file, fs::perms{0666});
    fs::permissions(m_folder.path(), fs::perms{0555});
    EXPECT_EQ(asOrdinaryUser([&] { return writeError(m_file); }), EACCES);
    EXPECT_EQ(asOrdinaryUser([&] { return writeError(m_folder / "another"); }), EACCES);
    EXPECT_EQ(contentsOf(m_file), "old");
    fs::permissions(m_folder.path(), fs::perms{0700});
}

TEST_F(AtomicFileTest, KeepsTheOldFileAndLeavesNothingBehindWhenTheSpaceRunsOut) {
    put(m_file, "old");
    const auto writeWithinOneMegabyte = [&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = 1'000'000, .rlim_max = 1'000'000};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? writeError(m_file, std::string(3'000'000, 'x')) : 255;
    };
    EXPECT_EQ(inChildProcess(writeWithinOneMegabyte), EFBIG);
    EXPECT_EQ(contentsOf(m_file), "old");
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, NamesThePathInItsErrors) {
    const fs::path missing = m_folder.path() / "missing" / "file.json";
    try {
        writeFileAtomically(missing, "new");
        ADD_FAILURE() << "was written";
    } catch (const std::system_error& error) {
        EXPECT_NE(std::string{error.what()}.find(missing.string()), std::string::npos) << error.what();
        EXPECT_NE(std::string{error.what()}.find("No such file or directory"), std::string::npos)
            << error.what();
    }
}

TEST_F(AtomicFileTest, IsSeenByReadersAsTheOldFileOrTheNewOne) {
    const std::string a(300'000, 'a');
    const std::string b(200'000, 'b');
    writeFileAtomically(m_file, a);
    std::atomic<bool> isDone = false;
    std::thread writer{[&] {
        for (int i = 0; i < 40; ++i)
            writeFileAtomically(m_file, i % 2 == 0 ? b : a);
        isDone = true;
    }};
    int torn = 0;
    do {
        const std::string seen = readFile(m_file);
        torn += seen != a && seen != b;
    } while (!isDone);
    writer.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, LetsSeveralThreadsWriteOneFile) {
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b', 'c'}) {
        writers.emplace_back([&, letter] {
            for (int i = 0; i < 20; ++i)
                writeFileAtomically(m_file, std::string(10'000, letter));
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    const std::string contents = contentsOf(m_file);
    EXPECT_EQ(contents, std::string(10'000, contents[0]));
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

// Asking beforehand

TEST_F(AtomicFileTest, AsksWithoutATraceWhetherAFileCanBeWritten) {
    EXPECT_EQ(checkError(m_file), 0);
    EXPECT_EQ(entriesOf(m_folder.path()), Names{});
    put(m_file, "old");
    EXPECT_EQ(checkError(m_file), 0);
    EXPECT_EQ(contentsOf(m_file), "old");
    EXPECT_EQ(entriesOf(m_folder.path()), Names{"file.json"});
}

TEST_F(AtomicFileTest, AnswersBeforehandWhatWritingWouldMeet) {
    fs::create_symlink("nowhere/target.json", m_folder / "dangling");
    for (const fs::path& path : {m_folder.path(), m_folder / "missing/file.json", m_folder / "missing/",
                                 m_folder / "dangling", fs::path{"/dev/null"}, fs::path{}}) {
        EXPECT_NE(checkError(path), 0) << path;
        EXPECT_EQ(checkError(path), writeError(path)) << path;
    }
    put(m_file, "old");
    fs::permissions(m_file, fs::perms{0444});
    fs::permissions(m_folder.path(), fs::perms{0777});
    EXPECT_EQ(asOrdinaryUser([&] { return checkError(m_file); }), EACCES);
    fs::permissions(m_file, fs::perms{0666});
    EXPECT_EQ(asOrdinaryUser([&] { return checkError(m_file); }), 0);
    fs::permissions(m_folder.path(), fs::perms{0555});
    EXPECT_EQ(asOrdinaryUser([&] { return checkError(m_file); }), EACCES);
    fs::permissions(m_folder.path(), fs::perms{0700});
    EXPECT_EQ(contentsOf(m_file), "old");
}

// Reading

TEST_F(AtomicFileTest, ReadsFilesOfAnySize) {
    for (const std::size_t length : {0U, 1U, 65'535U, 65'536U, 65'537U, 1'000'000U}) {
        const std::string contents(length, 'x');
        put(m_file, contents);
        EXPECT_EQ(readFile(m_file), contents);
    }
}

TEST_F(AtomicFileTest, ReadsFilesWhoseSizeTheSystemDoesNotTell) {
    EXPECT_NE(readFile("/proc/self/status").find("Pid:"), std::string::npos);
}

TEST_F(AtomicFileTest, RefusesToReadWhatIsNotThereOrNoFile) {
    EXPECT_EQ(readError(m_file), ENOENT);
    EXPECT_EQ(readError(m_folder.path()), EISDIR);
    EXPECT_EQ(readError("/dev/zero"), EINVAL);
    EXPECT_EQ(readError(""), ENOENT);
}

TEST_F(AtomicFileTest, RefusesToReadAFileThatNoMemoryShouldHold) {
    put(m_file, "");
    std::error_code error;
    fs::resize_file(m_file, largestReadableFile + 1, error);
    if (error)
        GTEST_SKIP() << "the file system holds no file of that size: " << error.message();
    EXPECT_EQ(readError(m_file), EFBIG);
}

TEST_F(AtomicFileTest, RefusesToReadAFileWithoutPermission) {
    put(m_file, "secret");
    fs::permissions(m_file, fs::perms{0});
    fs::permissions(m_folder.path(), fs::perms{0755});
    EXPECT_EQ(asOrdinaryUser([&] { return readError(m_file); }), EACCES);
}

} // namespace
} // namespace Foundation
