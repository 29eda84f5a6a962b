#include "MenubarApp/Platform/SignalPipe.h"

#include <array>
#include <chrono>
#include <csignal>

#include <gtest/gtest.h>

using namespace menubar;
using Steady = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr std::array signals{SIGUSR1, SIGUSR2};

} // namespace

TEST(SignalPipe, tellsWhichSignalsCameAndInWhichOrder) {
    const auto pipe = SignalPipe::create(signals);
    ASSERT_TRUE(pipe);
    EXPECT_EQ(pipe->next(), std::nullopt);
    std::raise(SIGUSR2);
    std::raise(SIGUSR1);
    EXPECT_EQ(pipe->next(), SIGUSR2);
    EXPECT_EQ(pipe->next(), SIGUSR1);
    EXPECT_EQ(pipe->next(), std::nullopt);
}

TEST(SignalPipe, aSignalEndsTheWait) {
    const auto pipe = SignalPipe::create(signals);
    ASSERT_TRUE(pipe);
    std::raise(SIGUSR1);
    EXPECT_TRUE(pipe->waitUntil(Steady::now() + 24h));
}

TEST(SignalPipe, aSignalIsSeenAfterTheDeadlineToo) {
    const auto pipe = SignalPipe::create(signals);
    ASSERT_TRUE(pipe);
    EXPECT_FALSE(pipe->waitUntil(Steady::now() - 1s));
    std::raise(SIGUSR1);
    EXPECT_TRUE(pipe->waitUntil(Steady::now() - 1s));
}

TEST(SignalPipe, withoutASignalItWaitsForTheDeadline) {
    const auto pipe = SignalPipe::create(signals);
    ASSERT_TRUE(pipe);
    const auto deadline = Steady::now() + 5ms;
    EXPECT_FALSE(pipe->waitUntil(deadline));
    EXPECT_GE(Steady::now(), deadline);
}

TEST(SignalPipe, whatASignalDidBeforeIsRestored) {
    struct sigaction before{};
    ::sigaction(SIGUSR1, nullptr, &before);
    ASSERT_TRUE(SignalPipe::create(signals));
    struct sigaction after{};
    ::sigaction(SIGUSR1, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}
