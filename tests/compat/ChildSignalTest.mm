#include "MenubarApp/Commands/CommandRunner.h"

#import <Foundation/Foundation.h>

#include "tests/appkit/Driver.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(ChildSignal, theToolkitLeavesChildrenOfOthersToThem) {
    NSTask* task = [NSTask launchedTaskWithLaunchPath:@"/bin/true" arguments:@[]];
    std::atomic<bool> done = false;
    CommandResult result;
    // The output stays open after the child's end, so that there is time to take the child away.
    std::thread runner([&] {
        result = CommandRunner::runSync("/bin/sh", {"-c", "sleep 1 & exit 7"}, {}, [](std::string_view) {});
        done = true;
    });
    EXPECT_TRUE(driver::pumpUntil([&] { return done.load(); }));
    runner.join();
    EXPECT_EQ(result.status, 7) << result.stderr_;
    EXPECT_TRUE(driver::pumpUntil([&] { return ![task isRunning]; }));
    EXPECT_EQ([task terminationStatus], 0);
}

} // namespace
} // namespace menubar
