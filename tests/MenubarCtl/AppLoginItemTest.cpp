#include "MenubarCtl/AppLoginItem.h"

#include "tests/support/RecordingLoginItem.h"

#include <gtest/gtest.h>

using namespace menubar;
using menubar::ctl::AppLoginItem;
using menubar::recording::RecordingLoginItem;

TEST(AppLoginItem, asksTheAppAndBelievesItsAnswer) {
    RecordingLoginItem real;
    const auto item =
        AppLoginItem::create([&real](LoginRequest::Kind kind) { return LoginRequest::answer(kind, &real); });
    ASSERT_TRUE(item);
    EXPECT_EQ((*item)->state(), LoginItemState::off);
    EXPECT_EQ((*item)->turnOn(), LoginItemState::on);
    EXPECT_EQ((*item)->state(), LoginItemState::on);
    real.error = LoginItemError{"not now"};
    EXPECT_EQ((*item)->turnOff().error().message, "not now");
    EXPECT_EQ((*item)->state(), LoginItemState::on);
}

TEST(AppLoginItem, isNoneWhenTheAppCannotBeAsked) {
    const LoginItemError error{"cannot run it"};
    const auto item = AppLoginItem::create([&error](LoginRequest::Kind) { return std::unexpected(error); });
    EXPECT_EQ(item.error(), error);
}
