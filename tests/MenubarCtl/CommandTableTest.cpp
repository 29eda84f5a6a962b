#include "MenubarCtl/CommandTable.h"

#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCtl/Help.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::vector<std::string> topics() {
    std::vector<std::string> result{""};
    for (const CommandSpec& spec : commandTable()) {
        if (!spec.summary.empty()) {
            result.emplace_back(spec.words);
        }
    }
    for (const CommandGroup& group : commandGroups()) {
        result.emplace_back(group.word);
    }
    return result;
}

} // namespace

TEST(CommandTable, namesEachCommandAndOptionOnce) {
    std::set<std::string_view> words;
    for (const CommandSpec& spec : commandTable()) {
        EXPECT_TRUE(words.insert(spec.words).second) << spec.words;
        EXPECT_EQ(&specOf(spec.command), &spec);
    }
    for (const OptionSpec& option : optionTable()) {
        EXPECT_TRUE(words.insert(option.name).second) << option.name;
        EXPECT_EQ(optionNamed(option.name), &option);
        EXPECT_EQ(&specOf(option.option), &option);
    }
    EXPECT_EQ(optionNamed("-h"), &specOf(Option::help));
    EXPECT_EQ(optionNamed(""), nullptr);
}

TEST(CommandTable, writesTheSynopsisOfACommand) {
    EXPECT_EQ(synopsis(specOf(Command::menu)), "ostrel-menubarctl menu [--json | --watch] [OPTIONS]");
    EXPECT_EQ(synopsis(specOf(Command::sessions)), "ostrel-menubarctl sessions [--json] [--watch] [OPTIONS]");
    EXPECT_EQ(synopsis(specOf(Command::focus)), "ostrel-menubarctl focus NAME | --waiting [OPTIONS]");
    EXPECT_EQ(synopsis(specOf(Command::settingsSet)), "ostrel-menubarctl settings set NAME VALUE... [OPTIONS]");
    EXPECT_EQ(synopsis(specOf(Command::bar)), "ostrel-menubarctl bar FORMAT [--watch] [OPTIONS]");
}

TEST(CommandTable, groupsCommandsByTheirFirstWord) {
    EXPECT_THAT(secondWords("daemon"), ElementsAre("status", "start", "stop", "restart"));
    EXPECT_THAT(secondWords("menu"), testing::IsEmpty());
    EXPECT_THAT(firstWords(), testing::Contains("settings").Times(1));
    EXPECT_THAT(firstWords(), testing::Not(testing::Contains("complete")));
}

TEST(NearestWord, isASlipOrTwoAway) {
    constexpr std::array<std::string_view, 5> known{"status", "start", "sessions", "bar", "--status-file"};
    EXPECT_EQ(nearestWord("statsu", known), "status");
    EXPECT_EQ(nearestWord("satrt", known), "start");
    EXPECT_EQ(nearestWord("session", known), "sessions");
    EXPECT_EQ(nearestWord("ba", known), "bar");
    EXPECT_EQ(nearestWord("--statusfile", known), "--status-file");
    EXPECT_EQ(nearestWord("status", known), std::nullopt);
    EXPECT_EQ(nearestWord("menu", known), std::nullopt);
    EXPECT_EQ(nearestWord("stutas", known), std::nullopt); // two slips are too many for a short word
    EXPECT_EQ(nearestWord("", known), std::nullopt);
    EXPECT_EQ(nearestWord("x", known), std::nullopt);
    EXPECT_EQ(nearestWord(std::string(100'000, 's'), known), std::nullopt);
}

TEST(Help, fitsIntoEightyColumns) {
    for (const std::string& topic : topics()) {
        const std::string text = helpText(topic);
        for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
            EXPECT_LE(displayColumns(text.substr(start, end - start)), 80U) << text.substr(start, end - start);
        }
        EXPECT_TRUE(text.ends_with('\n')) << topic;
    }
}

TEST(Help, ofTheWholeNamesEveryCommandAndWhatEachTakes) {
    const std::string text = helpText("");
    EXPECT_THAT(text, StartsWith("usage: ostrel-menubarctl COMMAND [OPTIONS]\n"));
    for (const std::string_view word : firstWords()) {
        EXPECT_THAT(text, HasSubstr("\n  " + std::string(word)));
        for (const std::string_view second : secondWords(word)) {
            EXPECT_THAT(text, testing::ContainsRegex(std::string(word) + " [a-z|]*" + std::string(second)));
        }
    }
}

TEST(Help, ofACommandHasItsSynopsisAndItsOptions) {
    for (const CommandSpec& spec : commandTable()) {
        if (spec.summary.empty()) {
            continue;
        }
        const std::string text = helpText(spec.words);
        EXPECT_THAT(text, StartsWith("usage: " + synopsis(spec) + "\n"));
        for (const OptionSpec& option : optionTable()) {
            const bool isShown = text.find(std::string(option.name) + " ") != std::string::npos ||
                                 text.find(std::string(option.name) + "\n") != std::string::npos;
            EXPECT_TRUE(isShown || !(isCommon(option.option) || spec.options.contains(option.option))) << option.name;
        }
    }
}

TEST(Help, ofAGroupListsItsCommands) {
    const std::string text = helpText("login");
    EXPECT_THAT(text, StartsWith("usage: ostrel-menubarctl login status [OPTIONS]\n"));
    EXPECT_THAT(text, HasSubstr("\n       ostrel-menubarctl login off [OPTIONS]\n"));
    EXPECT_THAT(text, HasSubstr("\n  login on            start the app at login\n"));
}
