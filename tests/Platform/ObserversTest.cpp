#include "MenubarApp/Platform/Observers.h"

#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

using namespace menubar;

TEST(Observers, areCalledInTheOrderOfSubscribing) {
    Observers observers;
    std::string calls;
    const Subscription first = observers.add([&] { calls += "1"; });
    const Subscription second = observers.add([&] { calls += "2"; });
    observers.notify();
    observers.notify();
    EXPECT_EQ(calls, "1212");
}

TEST(Observers, endWithTheirSubscription) {
    Observers observers;
    int calls = 0;
    std::optional<Subscription> subscription(observers.add([&] { ++calls; }));
    observers.notify();
    subscription.reset();
    observers.notify();
    EXPECT_EQ(calls, 1);
}

TEST(Observers, followTheirSubscriptionWhenItIsMoved) {
    Observers observers;
    int first = 0;
    int second = 0;
    Subscription one = observers.add([&] { ++first; });
    Subscription other = std::move(one);
    observers.notify();
    EXPECT_EQ(first, 1);
    other = observers.add([&] { ++second; });
    observers.notify();
    EXPECT_EQ(first, 1) << "what was assigned over is unsubscribed";
    EXPECT_EQ(second, 1);
    other = Subscription();
    observers.notify();
    EXPECT_EQ(second, 1);
}

TEST(Observers, mayUnsubscribeThemselvesAndOthersWhileTheyAreCalled) {
    Observers observers;
    std::string calls;
    std::optional<Subscription> first;
    std::optional<Subscription> second;
    first.emplace(observers.add([&] {
        calls += "1";
        second.reset();
        first.reset();
    }));
    second.emplace(observers.add([&] { calls += "2"; }));
    const Subscription third = observers.add([&] { calls += "3"; });
    observers.notify();
    EXPECT_EQ(calls, "13");
}

TEST(Observers, thatSubscribeWhileOthersAreCalledAreCalledFromTheNextTimeOn) {
    Observers observers;
    int late = 0;
    std::optional<Subscription> added;
    const Subscription first = observers.add([&] {
        if (!added) {
            added.emplace(observers.add([&] { ++late; }));
        }
    });
    observers.notify();
    EXPECT_EQ(late, 0);
    observers.notify();
    EXPECT_EQ(late, 1);
}

TEST(Observers, mayDestroyWhatTheyObserve) {
    auto observers = std::make_optional<Observers>();
    int calls = 0;
    const Subscription first = observers->add([&] {
        ++calls;
        observers.reset();
    });
    const Subscription second = observers->add([&] { ++calls; });
    observers->notify();
    EXPECT_EQ(calls, 2);
}
