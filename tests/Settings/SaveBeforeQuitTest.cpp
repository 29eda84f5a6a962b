#include "MenubarApp/Settings/SaveBeforeQuit.h"

#include "tests/support/SettingsHarness.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Scene : recording::SettingsHarness {
    std::vector<std::string> events;

    Scene() {
        load();
        set("text", "new");
    }

    void startSaving() {
        model->save([this](const SaveOutcome& outcome) { events.push_back(describe(outcome)); });
    }

    std::function<void()> quit(const std::string& name = "quit") {
        return [this, name] { events.push_back(name); };
    }
};

TEST(SaveBeforeQuit, letsTheAppEndAtOnceWhenNothingIsBeingSaved) {
    Scene scene;
    SaveBeforeQuit guard(scene.mainLoop, scene.model);
    EXPECT_TRUE(guard.mayQuit(scene.quit()));
    scene.set("text", "newer");
    scene.mainLoop.drain();
    EXPECT_THAT(scene.events, IsEmpty());
}

TEST(SaveBeforeQuit, waitsUntilTheSaveIsOverAndHasBeenToldAbout) {
    Scene scene;
    SaveBeforeQuit guard(scene.mainLoop, scene.model);
    scene.startSaving();
    EXPECT_FALSE(guard.mayQuit(scene.quit()));
    EXPECT_THAT(scene.events, IsEmpty());
    scene.mainLoop.drain();
    EXPECT_THAT(scene.events, ElementsAre("saved", "quit"));
    EXPECT_EQ(scene.config(), "{\n  \"text\" : \"new\"\n}\n");
    EXPECT_TRUE(guard.mayQuit(scene.quit()));
}

TEST(SaveBeforeQuit, anEditMeanwhileIsNotTheEndOfTheSave) {
    Scene scene;
    SaveBeforeQuit guard(scene.mainLoop, scene.model);
    scene.startSaving();
    EXPECT_FALSE(guard.mayQuit(scene.quit()));
    scene.set("number", 7);
    scene.model->load();
    EXPECT_FALSE(guard.mayQuit(scene.quit("again")));
    scene.mainLoop.drain();
    EXPECT_THAT(scene.events, ElementsAre("saved", "again"));
}

TEST(SaveBeforeQuit, aRefusedSaveHoldsNothingBackEither) {
    Scene scene;
    scene.validation.status = 1;
    scene.validation.stdout_ = R"({"ok":false,"errors":[{"options":["text"],"message":"no"}]})";
    SaveBeforeQuit guard(scene.mainLoop, scene.model);
    scene.startSaving();
    EXPECT_FALSE(guard.mayQuit(scene.quit()));
    scene.mainLoop.drain();
    EXPECT_EQ(scene.events.back(), "quit");
    EXPECT_EQ(scene.config(), "");
}

TEST(SaveBeforeQuit, endsTheAppOnceWhenPatienceIsOver) {
    Scene scene;
    SaveBeforeQuit guard(scene.mainLoop, scene.model);
    scene.startSaving();
    EXPECT_FALSE(guard.mayQuit(scene.quit()));
    guard.giveUp();
    EXPECT_THAT(scene.events, IsEmpty());
    guard.giveUp();
    scene.mainLoop.drain();
    EXPECT_THAT(scene.events, ElementsAre("quit", "saved"));
}

} // namespace
} // namespace menubar
