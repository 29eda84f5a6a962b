#include "MenubarApp/Commands/log.h"

#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace menubar;

namespace {

/// Everything that `body` writes to standard error.
template <typename Body>
std::string standardErrorOf(Body body) {
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(Log, writesOneLineWithTheProgramsName) {
    EXPECT_EQ(standardErrorOf([] { log("watching /home/ann/status.json"); }),
              "ostrel-menubar: watching /home/ann/status.json\n");
    EXPECT_EQ(standardErrorOf([] { log(""); }), "ostrel-menubar: \n");
}

TEST(Log, aMessageCannotLookLikeTwoLines) {
    EXPECT_EQ(standardErrorOf([] { log("one\nostrel-menubar: two\r\n"); }),
              "ostrel-menubar: one\\nostrel-menubar: two\\r\\n\n");
}

TEST(Log, isAlwaysUtf8) {
    EXPECT_EQ(standardErrorOf([] { log("a\xFF\xC3"); }), "ostrel-menubar: a\uFFFD\uFFFD\n");
    EXPECT_EQ(standardErrorOf([] { log("M\u00FCnchen\t\x1B[1m"); }), "ostrel-menubar: M\u00FCnchen\t\x1B[1m\n");
}

TEST(Log, linesOfManyThreadsStayWhole) {
    const std::string written = standardErrorOf([] {
        std::vector<std::thread> threads;
        threads.reserve(8);
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([i] {
                for (int n = 0; n < 200; ++n) {
                    log(std::string(100, static_cast<char>('a' + i)));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
    std::size_t lines = 0;
    for (std::size_t begin = 0; begin < written.size(); ++lines) {
        const std::size_t end = written.find('\n', begin);
        const std::string line = written.substr(begin, end - begin);
        ASSERT_EQ(line, "ostrel-menubar: " + std::string(100, line.back()));
        begin = end + 1;
    }
    EXPECT_EQ(lines, 1600U);
}
