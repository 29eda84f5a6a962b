#include "MenubarApp/Platform/ProcessEnvironment.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace menubar;

namespace {

/// What a failed write of one byte is: the system's error number; 0 when it was written.
int writeError(int descriptor) {
    return ::write(descriptor, "x", 1) == 1 ? 0 : errno;
}

/// Whether the next file that is opened stays clear of the standard descriptors.
bool nextFileIsClear() {
    const int file = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return file > STDERR_FILENO && ::close(file) == 0;
}

/// Whether those of the bits' numbers, closed before, can neither be taken by a file nor be written.
bool securesWithout(int closed) {
    const auto wasClosed = [closed](int descriptor) { return ((closed >> descriptor) & 1) != 0; };
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (wasClosed(descriptor)) {
            ::close(descriptor);
        }
    }
    secureStandardDescriptors();
    bool isRight = nextFileIsClear();
    for (int descriptor = STDOUT_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        isRight = isRight && (!wasClosed(descriptor) || writeError(descriptor) == EBADF);
    }
    return isRight;
}

/// Whether what is written to standard output still arrives.
bool leavesAnOpenOneAlone() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0 || ::dup2(ends[1], STDOUT_FILENO) != STDOUT_FILENO) {
        return false;
    }
    secureStandardDescriptors();
    char byte = 0;
    return writeError(STDOUT_FILENO) == 0 && ::read(ends[0], &byte, 1) == 1 && byte == 'x';
}

bool survivesAReaderThatHasGone() {
    std::signal(SIGPIPE, SIG_DFL);
    secureStandardDescriptors();
    std::array<int, 2> ends{};
    return ::pipe(ends.data()) == 0 && ::close(ends[0]) == 0 && writeError(ends[1]) == EPIPE;
}

} // namespace

// What concerns the whole process is tried in a process of its own.

TEST(StandardDescriptors, closedOnesCanNeitherBeTakenByAFileNorBeWritten) {
    for (const int closed : {0b001, 0b010, 0b100, 0b011, 0b101, 0b110, 0b111}) {
        EXPECT_EXIT(::_exit(securesWithout(closed) ? 0 : 1), testing::ExitedWithCode(0), "") << closed;
    }
}

TEST(StandardDescriptors, openOnesStayWhatTheyAre) {
    EXPECT_EXIT(::_exit(leavesAnOpenOneAlone() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(StandardDescriptors, aReaderThatHasGoneIsAFailedWrite) {
    EXPECT_EXIT(::_exit(survivesAReaderThatHasGone() ? 0 : 1), testing::ExitedWithCode(0), "");
}
