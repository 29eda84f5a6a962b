#import <Foundation/Foundation.h>

#include "tests/appkit/Driver.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

/// Raises in a timer, where GNUstep swallows it.
@interface Raiser : NSObject
- (void)raise:(NSTimer*)timer;
@end

@implementation Raiser

- (void)raise:(NSTimer*)timer {
    [NSException raise:@"TestException" format:@"raised in a timer"];
}

@end

namespace menubar {
namespace {

struct Counter {
    explicit Counter(int& count) : m_count(count) {}

    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    ~Counter() { ++m_count; }

private:
    int& m_count;
};

TEST(Exceptions, aCppExceptionIsCaughtInAnObjectiveCppSource) {
    std::string what;
    try {
        throw std::runtime_error("thrown here");
    } catch (const std::exception& exception) {
        what = exception.what();
    }
    EXPECT_EQ(what, "thrown here");
}

TEST(Exceptions, aCppExceptionPassesObjectiveCFramesAndRunsDestructors) {
    int destroyed = 0;
    bool caught = false;
    try {
        int* count = &destroyed; // a block captures a variable by copy
        NSArray* numbers = @[ @1, @2 ];
        [numbers enumerateObjectsUsingBlock:^(id, NSUInteger, BOOL*) {
            const Counter counter(*count);
            throw 42;
        }];
    } catch (int) {
        caught = true;
    }
    EXPECT_TRUE(caught);
    EXPECT_EQ(destroyed, 1);
}

TEST(Exceptions, anObjectiveCExceptionIsCaughtAndRunsDestructors) {
    int destroyed = 0;
    NSString* reason = nil;
    @try {
        const Counter counter(destroyed);
        [NSException raise:@"TestException" format:@"raised here"];
    } @catch (NSException* exception) {
        reason = [exception reason];
    }
    EXPECT_TRUE([reason isEqualToString:@"raised here"]);
    EXPECT_EQ(destroyed, 1);
}

// Every other test relies on this: what a timer or a notification throws is swallowed, and the log tells.
TEST(Exceptions, oneThatIsSwallowedIsNoticed) {
    @autoreleasepool {
        Raiser* raiser = [[[Raiser alloc] init] autorelease];
        [NSTimer scheduledTimerWithTimeInterval:0.01 target:raiser selector:@selector(raise:) userInfo:nil repeats:NO];
        driver::pump(driver::milliseconds(100));
    }
    const std::vector<std::string> lines = driver::takeLoggedLines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines.front().find("raised in a timer"), std::string::npos) << lines.front();
}

} // namespace
} // namespace menubar
