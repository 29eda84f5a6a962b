#include "MenubarApp/Commands/Cmux.h"

#include "tests/support/StandIns.h"

#include <array>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct CmuxTest : testing::Test {
    void focus(std::optional<std::string> surface) {
        Cmux::focus(standIns.mainLoop, standIns.context, "w 1", std::move(surface), [this] { ++completions; });
    }

    StandIns standIns;
    int completions = 0;
};

const char* const selectWorkspace = "quiet cmux <select-workspace> <--workspace> <w 1>";

} // namespace

TEST_F(CmuxTest, focusSelectsTheWorkspaceThenThePanel) {
    focus("s\"1\"");
    standIns.mainLoop.drain();
    EXPECT_THAT(standIns.calls(),
                ElementsAre(selectWorkspace, "quiet cmux <focus-panel> <--panel> <s\"1\"> <--workspace> <w 1>"));
    EXPECT_EQ(completions, 1);
}

TEST_F(CmuxTest, focusWithoutASurfaceOnlySelectsTheWorkspace) {
    focus(std::nullopt);
    focus("");
    standIns.mainLoop.drain();
    EXPECT_THAT(standIns.calls(), ElementsAre(selectWorkspace, selectWorkspace));
    EXPECT_EQ(completions, 2);
}

TEST_F(CmuxTest, focusLeavesThePanelAloneWhenTheWorkspaceFailed) {
    const ScopedVariable fail("OSTREL_DEMO_FAIL", "select-workspace");
    focus("s1");
    standIns.mainLoop.drain();
    EXPECT_THAT(standIns.calls(), ElementsAre(selectWorkspace));
    EXPECT_THAT(standIns.lines, ElementsAre("exit 1: " + standInFolder +
                                            "/cmux select-workspace --workspace w 1 -- cmux: told to fail"));
    EXPECT_EQ(completions, 1);
}

TEST_F(CmuxTest, focusCompletesThoughThePanelFailed) {
    const ScopedVariable fail("OSTREL_DEMO_FAIL", "focus-panel");
    focus("s1");
    standIns.mainLoop.drain();
    EXPECT_EQ(standIns.calls().size(), 2U);
    EXPECT_EQ(completions, 1);
}

TEST_F(CmuxTest, focusCompletesThroughTheMainLoopNeverBefore) {
    focus("s1");
    EXPECT_EQ(completions, 0);
    EXPECT_THAT(standIns.calls(), IsEmpty());
}

TEST_F(CmuxTest, focusWithoutCmuxSaysSoAndCompletesAtOnce) {
    standIns.context.environment.clear();
    focus("s1");
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(standIns.lines, ElementsAre("cmux not found in [] or PATH"));
    standIns.mainLoop.drain();
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(standIns.calls(), IsEmpty());
}

TEST_F(CmuxTest, focusNeedsNoCompletion) {
    Cmux::focus(standIns.mainLoop, standIns.context, "w 1", std::nullopt, nullptr);
    standIns.context.environment.clear();
    Cmux::focus(standIns.mainLoop, standIns.context, "w 1", std::nullopt, nullptr);
    standIns.mainLoop.drain();
    EXPECT_THAT(standIns.calls(), ElementsAre(selectWorkspace));
}

TEST_F(CmuxTest, focusSyncGivesTheResultOfTheLastCommand) {
    const std::string cmux = Cmux::path(standIns.context).value_or("");
    EXPECT_EQ(Cmux::focusSync(standIns.context, cmux, "w", "s").status, 0);
    const ScopedVariable fail("OSTREL_DEMO_FAIL", "focus-panel");
    EXPECT_EQ(Cmux::focusSync(standIns.context, cmux, "w", "s"),
              (CommandResult{.status = 1, .stdout_ = "", .stderr_ = "cmux: told to fail"}));
    EXPECT_THAT(Cmux::focusSync(standIns.context, "/no/such", "w", "s").stderr_,
                StartsWith("failed to launch /no/such: "));
}

TEST_F(CmuxTest, notFoundNamesTheCandidates) {
    EXPECT_EQ(Cmux::notFound(SystemTools{}),
              "cmux not found in [\"/opt/homebrew/bin/cmux\", \"/usr/local/bin/cmux\"] or PATH");
}

TEST_F(CmuxTest, isFoundAtACandidateBeforePath) {
    EXPECT_EQ(Cmux::path(standIns.context), standInFolder + "/cmux");
    const std::string other = standIns.home.write("cmux", "#!/bin/sh\n");
    ASSERT_EQ(::chmod(other.c_str(), 0755), 0);
    const std::array<std::string_view, 2> candidates{"/no/such/cmux", other};
    standIns.context.tools.cmux = candidates;
    EXPECT_EQ(Cmux::path(standIns.context), other);
}

TEST_F(CmuxTest, onlyAnExecutableFileIsCmux) {
    const std::string plain = standIns.home.write("cmux", "#!/bin/sh\n");
    ASSERT_EQ(::chmod(plain.c_str(), 0644), 0);
    std::filesystem::create_directories(standIns.home / "directory/cmux");
    standIns.context.environment["PATH"] = standIns.home.path() + ":" + (standIns.home / "directory");
    EXPECT_EQ(Cmux::path(standIns.context), std::nullopt);
}
