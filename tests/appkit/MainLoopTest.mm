#include "MenubarApp/AppKit/AppKitMainLoop.h"

#include "tests/appkit/Driver.h"
#include "tests/appkit/MenuDriver.h"

#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <numeric>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

using driver::milliseconds;
using driver::pump;
using driver::pumpUntil;

TEST(AppKitMainLoop, runsWhatIsPostedLaterInTheOrderOfEachThreadOnTheMainThread) {
    constexpr int each = 200;
    AppKitMainLoop loop;
    const auto mainThread = std::this_thread::get_id();
    std::vector<std::vector<int>> ran(4);
    int onMain = 0;
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < ran.size(); ++number) {
        threads.emplace_back([&, number] {
            for (int i = 0; i < each; ++i) {
                loop.post([&, number, i] {
                    ran[number].push_back(i);
                    onMain += std::this_thread::get_id() == mainThread ? 1 : 0;
                });
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(onMain, 0) << "not before the loop turns";
    ASSERT_TRUE(pumpUntil([&] { return onMain == 4 * each; }));
    std::vector<int> expected(each);
    std::iota(expected.begin(), expected.end(), 0);
    for (const auto& numbers : ran) {
        EXPECT_EQ(numbers, expected);
    }
}

TEST(AppKitMainLoop, anActionMayPostTheNext) {
    AppKitMainLoop loop;
    int runs = 0;
    std::function<void()> again = [&] {
        if (++runs < 50) {
            loop.post(again);
        }
    };
    loop.post(again);
    EXPECT_TRUE(pumpUntil([&] { return runs == 50; }));
}

TEST(AppKitMainLoop, whatHasNotRunWhenItIsDestroyedNeverRuns) {
    bool ran = false;
    {
        AppKitMainLoop loop;
        loop.post([&] { ran = true; });
    }
    pump(milliseconds(50));
    EXPECT_FALSE(ran);
}

TEST(AppKitMainLoop, anActionThatTurnsTheLoopItselfHoldsNothingBack) {
    AppKitMainLoop loop;
    std::vector<int> ran;
    loop.post([&] {
        EXPECT_TRUE(pumpUntil([&] { return !ran.empty(); }));
        ran.push_back(1);
    });
    loop.post([&] { ran.push_back(2); });
    ASSERT_TRUE(pumpUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran, (std::vector<int>{2, 1}));
}

TEST(AppKitMainLoop, servesWhatIsPostedWhileAMenuIsTracked) {
    AppKitMainLoop loop;
    AppKitStatusItem item;
    item.setMenu({driver::label("one")});
    bool openWhenItRan = false;
    loop.post([&] { openWhenItRan = driver::isMenuOpen(); });
    EXPECT_TRUE(driver::openMenu(item, {driver::wait(), driver::wait()}));
    EXPECT_TRUE(openWhenItRan);
}

TEST(AppKitMainLoop, runsBackgroundActionsSideBySideAndOffTheMainThread) {
    AppKitMainLoop loop;
    std::atomic<int> started = 0;
    std::promise<void> go;
    std::atomic<int> offMain = 0;
    int done = 0;
    const auto mainThread = std::this_thread::get_id();
    constexpr int count = 8;
    const std::shared_future<void> released = go.get_future().share();
    for (int i = 0; i < count; ++i) {
        loop.runInBackground([&, released] {
            ++started;
            released.wait(); // at rest: a pool has no more threads at work than there are cores
            offMain += std::this_thread::get_id() != mainThread ? 1 : 0;
            loop.post([&] { ++done; });
        });
    }
    // None ends before all have begun: the pool is not narrower than that.
    EXPECT_TRUE(pumpUntil([&] { return started == count; }));
    go.set_value();
    EXPECT_TRUE(pumpUntil([&] { return done == count; }));
    EXPECT_EQ(offMain, count);
}

TEST(AppKitMainLoop, destroyingItWaitsForBackgroundActions) {
    std::atomic<bool> finished = false;
    {
        AppKitMainLoop loop;
        loop.runInBackground([&] {
            std::this_thread::sleep_for(milliseconds(50));
            finished = true;
        });
    }
    EXPECT_TRUE(finished);
}

TEST(RepeatingTimer, firesFirstAfterOneIntervalAndThenAgain) {
    AppKitMainLoop loop;
    std::vector<std::chrono::steady_clock::time_point> fired;
    const auto begin = std::chrono::steady_clock::now();
    const auto timer =
        loop.repeat(milliseconds(40), milliseconds(4), [&] { fired.push_back(std::chrono::steady_clock::now()); });
    ASSERT_TRUE(pumpUntil([&] { return fired.size() == 3; }));
    EXPECT_GE(fired[0] - begin, milliseconds(39));
    EXPECT_GE(fired[2] - begin, milliseconds(119));
}

TEST(RepeatingTimer, stopsWhenItIsDestroyed) {
    AppKitMainLoop loop;
    int fired = 0;
    auto timer = loop.repeat(milliseconds(10), milliseconds(1), [&] { ++fired; });
    ASSERT_TRUE(pumpUntil([&] { return fired > 0; }));
    timer.reset();
    const int before = fired;
    pump(milliseconds(60));
    EXPECT_EQ(fired, before);
}

TEST(RepeatingTimer, mayBeDestroyedByItsOwnAction) {
    AppKitMainLoop loop;
    int fired = 0;
    const auto witness = std::make_shared<int>(7);
    std::unique_ptr<RepeatingTimer> timer;
    timer = loop.repeat(milliseconds(10), milliseconds(1), [&fired, &timer, witness] {
        timer.reset();
        fired += *witness; // what the action captured is still there
    });
    ASSERT_TRUE(pumpUntil([&] { return fired != 0; }));
    pump(milliseconds(50));
    EXPECT_EQ(fired, 7);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST(RepeatingTimer, restsWhileAMenuIsTracked) {
    AppKitMainLoop loop;
    AppKitStatusItem item;
    item.setMenu({driver::label("one")});
    int fired = 0;
    const auto timer = loop.repeat(milliseconds(10), milliseconds(1), [&] { ++fired; });
    EXPECT_TRUE(driver::openMenu(item, {driver::wait(), driver::wait(), driver::wait(), driver::wait()}));
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(pumpUntil([&] { return fired > 0; }));
}

} // namespace
} // namespace menubar
