#include "MenubarApp/Platform/LoginRequest.h"

#include "tests/support/RecordingLoginItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using menubar::recording::RecordingLoginItem;
using testing::ElementsAre;
using Kind = LoginRequest::Kind;
using Reply = LoginRequest::Reply;

TEST(LoginRequest, isMadeByItsVariableAlone) {
    EXPECT_EQ(LoginRequest::from({{"OSTREL_MENUBAR_LOGIN", "on"}}), Kind::on);
    EXPECT_EQ(LoginRequest::from({{"OSTREL_MENUBAR_LOGIN", "off"}}), Kind::off);
    EXPECT_EQ(LoginRequest::from({{"OSTREL_MENUBAR_LOGIN", "status"}}), Kind::status);
    EXPECT_EQ(LoginRequest::from({{"OSTREL_MENUBAR_LOGIN", "1"}}), std::nullopt);
    EXPECT_EQ(LoginRequest::from({}), std::nullopt);
}

TEST(LoginRequest, everyStateIsReadAsItWasAnswered) {
    for (const LoginItemState state : {LoginItemState::off, LoginItemState::on, LoginItemState::awaitsApproval}) {
        RecordingLoginItem item;
        item.current = state;
        EXPECT_EQ(LoginRequest::read(LoginRequest::answer(Kind::status, &item)), state);
        EXPECT_TRUE(item.calls.empty());
    }
}

TEST(LoginRequest, onAndOffAreDone) {
    RecordingLoginItem item;
    EXPECT_EQ(LoginRequest::answer(Kind::on, &item), (Reply{.exitStatus = 0, .output = "on\n", .errors = ""}));
    EXPECT_EQ(LoginRequest::answer(Kind::off, &item), (Reply{.exitStatus = 0, .output = "off\n", .errors = ""}));
    EXPECT_THAT(item.calls, ElementsAre("on", "off"));
}

TEST(LoginRequest, aFailureIsReadWithItsReason) {
    RecordingLoginItem item;
    item.error = LoginItemError{"Operation not permitted"};
    EXPECT_EQ(LoginRequest::read(LoginRequest::answer(Kind::on, &item)).error(), *item.error);
    EXPECT_EQ(LoginRequest::read(LoginRequest::answer(Kind::on, nullptr)).error().message,
              "only macOS can start the app at login");
}

TEST(LoginRequest, anAppThatSaysNothingDidNotAnswer) {
    for (const Reply& reply : {Reply{}, Reply{.exitStatus = 9, .output = "on\n", .errors = ""}}) {
        EXPECT_EQ(LoginRequest::read(reply).error().message,
                  "the app did not answer (status " + std::to_string(reply.exitStatus) + ")");
    }
}
