#include "MenubarCtl/Completion.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar::ctl;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

using Words = std::vector<std::string>;

const CompletionSources sources{
    .sessions = [] { return std::vector<Candidate>{{"api", "api · 42%"}, {"web", "web"}, {"x\ny", ""}, {"", ""}}; },
    .settings =
        [] {
            return std::vector<SettingCandidate>{{{"dry-run", "Only say what would be done."}, {"on", "off"}},
                                                 {{"warn-context", ""}, {}}};
        }};

std::vector<std::string> after(const Words& words) {
    std::vector<std::string> texts;
    for (const Candidate& candidate : completionsOf(words, sources).candidates) {
        texts.push_back(candidate.text);
    }
    return texts;
}

} // namespace

TEST(Completion, offersTheCommandsAndThenTheirSecondWords) {
    EXPECT_THAT(after({}), testing::IsSupersetOf({"status", "menu", "settings", "help"}));
    EXPECT_THAT(after({""}), Not(Contains("complete")));
    EXPECT_THAT(after({"st"}), ElementsAre("status"));
    EXPECT_THAT(after({"daemon", "st"}), ElementsAre("status", "start", "stop"));
    EXPECT_THAT(after({"nonsense", ""}), IsEmpty());
}

TEST(Completion, offersTheOptionsOfTheCommandAndThoseOfAll) {
    EXPECT_THAT(after({"menu", "--"}), testing::IsSupersetOf({"--json", "--watch", "--status-file", "--color"}));
    EXPECT_THAT(after({"menu", "--"}), Not(Contains("--check")));
    EXPECT_THAT(after({"--status-file", "x", "status", "--ch"}), ElementsAre("--check"));
    EXPECT_THAT(after({"--"}), Not(Contains("--json")));
    EXPECT_THAT(after({"focus", "--", "--"}), IsEmpty());
}

TEST(Completion, offersTheValuesOfOptions) {
    EXPECT_THAT(after({"menu", "--color", "a"}), ElementsAre("auto", "always"));
    EXPECT_TRUE(completionsOf(Words{"menu", "--status-file", ""}, sources).areFiles);
    EXPECT_THAT(after({"menu", "--now", ""}), IsEmpty());
}

TEST(Completion, offersWhatEachCommandTakes) {
    EXPECT_THAT(after({"focus", ""}), ElementsAre("api", "web"));
    EXPECT_THAT(after({"focus", "api", ""}), IsEmpty());
    EXPECT_THAT(after({"bar", "w"}), ElementsAre("waybar"));
    EXPECT_THAT(after({"completions", ""}), ElementsAre("bash", "zsh", "fish"));
    EXPECT_THAT(after({"settings", "get", "d"}), ElementsAre("dry-run"));
    EXPECT_THAT(after({"settings", "get", "dry-run", ""}), IsEmpty());
    EXPECT_THAT(after({"settings", "set", "dry-run", ""}), ElementsAre("on", "off"));
    EXPECT_THAT(after({"help", "settings", ""}), ElementsAre("list", "get", "set", "reset"));
    EXPECT_THAT(after({"help", "se"}), ElementsAre("sessions", "settings"));
    EXPECT_THAT(after({"status", ""}), IsEmpty());
}

TEST(Completion, asksForNamesOnlyWhereTheyAreWanted) {
    const CompletionSources none{.sessions =
                                     [] {
                                         ADD_FAILURE();
                                         return std::vector<Candidate>();
                                     },
                                 .settings =
                                     [] {
                                         ADD_FAILURE();
                                         return std::vector<SettingCandidate>();
                                     }};
    for (const Words& words : {Words{""}, {"focus", "--"}, {"focus", "x", ""}, {"settings", ""}, {"bar", ""}}) {
        (void)completionsOf(words, none);
    }
}

TEST(Completion, writesALineForEachCandidate) {
    EXPECT_EQ(completionLines({.candidates = {{"a b", "x"}, {"c", ""}}}), "a b\tx\nc\t\n");
    EXPECT_EQ(completionLines({.candidates = {}, .areFiles = true}), ":files\n");
}
