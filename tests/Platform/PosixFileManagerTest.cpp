#include "MenubarApp/Platform/PosixFileManager.h"

#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace menubar;
using testing::HasSubstr;
using testing_support::TemporaryDirectory;

namespace {

std::string failure(const std::string& path) {
    const auto contents = PosixFileManager().contents(path);
    return contents ? "it was read" : contents.error().message;
}

/// The exit status of `body` in a child process that has given up root's rights; 99 when it could not.
template <typename Body>
int asNobody(Body body) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
            ::_exit(99);
        }
        ::_exit(body());
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

} // namespace

TEST(PosixFileManager, aFileIsReadWhole) {
    const TemporaryDirectory directory;
    const PosixFileManager files;
    EXPECT_EQ(files.contents(directory.write("empty", "")).value(), "");
    const std::string bytes = std::string("a\0b\n", 4) + std::string(300000, 'x');
    EXPECT_EQ(files.contents(directory.write("large", bytes)).value(), bytes);
}

TEST(PosixFileManager, whatIsAtAPathExistsWhateverItIs) {
    const TemporaryDirectory directory;
    const PosixFileManager files;
    EXPECT_TRUE(files.exists(directory.write("file", "")));
    EXPECT_TRUE(files.exists(directory.path()));
    ASSERT_EQ(::symlink((directory / "file").c_str(), (directory / "link").c_str()), 0);
    EXPECT_TRUE(files.exists(directory / "link"));
    EXPECT_FALSE(files.exists(directory / "other"));
    EXPECT_FALSE(files.exists(directory / "file/below"));
    EXPECT_FALSE(files.exists(""));
}

TEST(PosixFileManager, aDanglingLinkIsNothing) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::symlink("nowhere", (directory / "link").c_str()), 0);
    EXPECT_FALSE(PosixFileManager().exists(directory / "link"));
}

TEST(PosixFileManager, aNameThatNoFileCanHaveIsNothing) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("file", "text");
    const PosixFileManager files;
    EXPECT_FALSE(files.exists(file + std::string("\0tail", 5)));
    EXPECT_THAT(failure(file + std::string("\0tail", 5)), HasSubstr("No such file or directory"));
    EXPECT_FALSE(files.exists(directory / std::string(10000, 'n')));
    EXPECT_FALSE(files.exists(directory / "n\xFF")) << "which some file systems refuse";
}

TEST(PosixFileManager, theReasonNamesTheFileAndTheSystemsError) {
    const TemporaryDirectory directory;
    EXPECT_EQ(failure(directory / "none"),
              "The file \"" + directory / "none" + "\" could not be read: No such file or directory.");
}

TEST(PosixFileManager, aDirectoryIsRefused) {
    const TemporaryDirectory directory;
    EXPECT_THAT(failure(directory.path()), HasSubstr("could not be read: it is a directory."));
}

TEST(PosixFileManager, aPipeThatNobodyWritesIsRefusedWithoutWaiting) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0600), 0);
    EXPECT_TRUE(PosixFileManager().exists(directory / "pipe"));
    EXPECT_THAT(failure(directory / "pipe"), HasSubstr("it is a pipe, not a regular file"));
}

TEST(PosixFileManager, aDeviceIsRefused) {
    EXPECT_THAT(failure("/dev/zero"), HasSubstr("it is a device, not a regular file"));
    EXPECT_THAT(failure("/dev/tty"), HasSubstr("it is a device, not a regular file"));
}

TEST(PosixFileManager, aFileAtTheSizeLimitIsReadAndALargerOneRefused) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("large", "");
    ASSERT_EQ(::truncate(file.c_str(), static_cast<off_t>(PosixFileManager::maximumFileSize)), 0);
    EXPECT_EQ(PosixFileManager().contents(file).value().size(), PosixFileManager::maximumFileSize);
    ASSERT_EQ(::truncate(file.c_str(), static_cast<off_t>(PosixFileManager::maximumFileSize) + 1), 0);
    EXPECT_THAT(failure(file), HasSubstr("it is larger than 64 MB"));
}

TEST(PosixFileManager, aFileWithoutPermissionIsThereButUnreadable) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);
    const std::string file = directory.write("secret", "text");
    ASSERT_EQ(::chmod(file.c_str(), 0), 0);
    const int status = asNobody([&] {
        return PosixFileManager().exists(file) && failure(file).find("Permission denied") != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST(PosixFileManager, whatIsBehindAClosedFolderMayBeThereButCannotBeLookedAt) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);
    ASSERT_EQ(::mkdir((directory / "closed").c_str(), 0755), 0);
    const std::string file = directory.write("closed/HANDOFF.md", "text");
    EXPECT_TRUE(PosixFileManager().canLookAt(file));
    ASSERT_EQ(::chmod((directory / "closed").c_str(), 0), 0);
    EXPECT_EQ(asNobody([&] { return PosixFileManager().exists(file) && !PosixFileManager().canLookAt(file) ? 0 : 1; }),
              0);
    ASSERT_EQ(::chmod((directory / "closed").c_str(), 0755), 0);
}

TEST(PosixFileManager, aLoopOfLinksMayBeThereButCannotBeLookedAt) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::symlink("loop", (directory / "loop").c_str()), 0);
    EXPECT_TRUE(PosixFileManager().exists(directory / "loop"));
    EXPECT_FALSE(PosixFileManager().canLookAt(directory / "loop"));
    EXPECT_FALSE(PosixFileManager().canLookAt(directory / "none"));
    EXPECT_FALSE(PosixFileManager().canLookAt(directory.write("file", "") + std::string("\0tail", 5)));
}

TEST(PosixFileManager, onlyARegularFileThatMayBeExecutedIsExecutable) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("tool", "#!/bin/sh\n");
    ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
    EXPECT_FALSE(PosixFileManager::isExecutableFile(file));
    ASSERT_EQ(::chmod(file.c_str(), 0755), 0);
    EXPECT_TRUE(PosixFileManager::isExecutableFile(file));
    ASSERT_EQ(::symlink("tool", (directory / "link").c_str()), 0);
    EXPECT_TRUE(PosixFileManager::isExecutableFile(directory / "link"));
    EXPECT_FALSE(PosixFileManager::isExecutableFile(directory.path()));
    EXPECT_FALSE(PosixFileManager::isExecutableFile(directory / "missing"));
    EXPECT_FALSE(PosixFileManager::isExecutableFile(file + "/below"));
    EXPECT_FALSE(PosixFileManager::isExecutableFile(file + std::string("\0", 1) + "x"));
    EXPECT_FALSE(PosixFileManager::isExecutableFile(""));
}
