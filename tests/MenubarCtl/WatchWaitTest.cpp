#include "MenubarCtl/WatchWait.h"

#include <array>
#include <chrono>
#include <span>

#include <gtest/gtest.h>
#include <unistd.h>

using namespace menubar::ctl;
using namespace std::chrono_literals;

namespace {

constexpr auto patience = 30s;

class Pipe {
public:
    Pipe() { EXPECT_EQ(::pipe(m_ends.data()), 0); }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    ~Pipe() {
        closeReadEnd();
        ::close(m_ends[1]);
    }

    [[nodiscard]] int readEnd() const { return m_ends[0]; }

    [[nodiscard]] int writeEnd() const { return m_ends[1]; }

    void write() const { EXPECT_EQ(::write(m_ends[1], "x", 1), 1); }

    void closeReadEnd() {
        if (m_ends[0] >= 0) {
            ::close(m_ends[0]);
            m_ends[0] = -1;
        }
    }

private:
    std::array<int, 2> m_ends{};
};

class WatchWaitTest : public testing::Test {
protected:
    [[nodiscard]] WatchWait::Descriptors descriptors() const {
        return {.signals = m_signals.readEnd(),
                .posted = m_posted.readEnd(),
                .keys = m_keys.readEnd(),
                .output = m_output.writeEnd()};
    }

    /// As a system does that cannot poll the keys, which then are an immediate answer.
    WatchWait::Poll withoutKeys() {
        return [this](pollfd* polled, nfds_t count, int limit) {
            for (pollfd& entry : std::span(polled, count)) {
                if (entry.fd == m_keys.readEnd()) {
                    entry.revents = POLLNVAL;
                    ++m_refusals;
                    return 1;
                }
            }
            return ::poll(polled, count, limit);
        };
    }

    Pipe m_signals;
    Pipe m_posted;
    Pipe m_keys;
    Pipe m_output;
    int m_refusals = 0;
};

} // namespace

TEST_F(WatchWaitTest, tellsWhatWokeIt) {
    WatchWait wait;
    m_keys.write();
    auto outcome = wait.wait(descriptors(), patience);
    EXPECT_TRUE(outcome.hasKey);
    EXPECT_FALSE(outcome.isSignalled || outcome.isPosted);
    m_signals.write();
    outcome = wait.wait(descriptors(), patience);
    EXPECT_TRUE(outcome.hasKey && outcome.isSignalled);
    m_posted.write();
    outcome = wait.wait(descriptors(), patience);
    EXPECT_TRUE(outcome.hasKey && outcome.isSignalled && outcome.isPosted);
    EXPECT_FALSE(outcome.isReaderGone);
}

TEST_F(WatchWaitTest, hearsOfAReaderThatHasGone) {
    WatchWait wait;
    m_output.closeReadEnd();
    EXPECT_TRUE(wait.wait(descriptors(), patience).isReaderGone);
}

TEST_F(WatchWaitTest, endsAtItsLimit) {
    WatchWait wait;
    const auto outcome = wait.wait(descriptors(), 1ms);
    EXPECT_FALSE(outcome.hasKey || outcome.isSignalled || outcome.isReaderGone);
}

TEST_F(WatchWaitTest, keysThatCannotBePolledAreHeardAndAreNoEndlessAnswer) {
    WatchWait wait(withoutKeys());
    EXPECT_FALSE(wait.wait(descriptors(), patience).hasKey);
    EXPECT_EQ(m_refusals, 1);
    m_keys.write();
    EXPECT_TRUE(wait.wait(descriptors(), patience).hasKey);
    m_signals.write();
    EXPECT_TRUE(wait.wait(descriptors(), patience).isSignalled);
    m_posted.write();
    EXPECT_TRUE(wait.wait(descriptors(), patience).isPosted);
    EXPECT_EQ(m_refusals, 1);
}

TEST_F(WatchWaitTest, withoutKeysItWaitsForTheRest) {
    WatchWait wait(withoutKeys());
    auto rest = descriptors();
    rest.keys = -1;
    m_signals.write();
    EXPECT_TRUE(wait.wait(rest, patience).isSignalled);
}
