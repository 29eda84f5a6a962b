#include "MenubarCore/Daemon/LaunchAgentCommand.h"

#include "tests/support/PropertyLists.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using Origin = LaunchAgentCommand::Origin;
using ParseError = LaunchAgentCommand::ParseError;
using Words = std::vector<std::string>;

namespace {

const std::string plistPath = "/home/ann/Library/LaunchAgents/dev.ostrel.daemon.plist";

/// A machine with these executables, and a property list when it is not empty.
struct Machine {
    Environment environment = {};
    std::set<std::string> executables = {};
    std::string plist = {};
    Words asks = {}; // every path whose existence was asked for, in order
    Words reads = {};

    std::optional<LaunchAgentCommand> resolve() {
        return LaunchAgentCommand::resolve(
            environment, "/home/ann", plistPath,
            [this](const std::string& path) {
                reads.push_back(path);
                return plist.empty() ? std::nullopt : std::optional(plist);
            },
            [this](const std::string& path) {
                asks.push_back(path);
                return executables.contains(path);
            });
    }
};

LaunchAgentCommand command(std::string executable, Words leadingArguments, Origin origin) {
    return {.executable = std::move(executable), .leadingArguments = std::move(leadingArguments), .origin = origin};
}

std::string failure(const std::string& plist) {
    const auto parsed = LaunchAgentCommand::parse(plist);
    return parsed ? "it was parsed" : description(parsed.error());
}

} // namespace

TEST(LaunchAgentCommandResolve, theVariableOverridesEverything) {
    Machine machine{.environment = {{"OSTREL_CLI", "/x/ostrel"}, {"PATH", "/a"}},
                    .executables = {"/x/ostrel", "/y/ostrel", "/opt/homebrew/bin/ostrel", "/a/ostrel"},
                    .plist = launchAgentPlist({"/y/ostrel", "--flag", "watch"})};
    EXPECT_THAT(machine.resolve(), Optional(command("/x/ostrel", {}, Origin::environment)));
    EXPECT_THAT(machine.reads, IsEmpty());
}

TEST(LaunchAgentCommandResolve, aTildeInTheVariableIsTheHomeDirectory) {
    Machine machine{.environment = {{"OSTREL_CLI", "~/bin/ostrel"}}, .executables = {"/home/ann/bin/ostrel"}};
    EXPECT_THAT(machine.resolve(), Optional(command("/home/ann/bin/ostrel", {}, Origin::environment)));
    Machine other{.environment = {{"OSTREL_CLI", "~bob/ostrel"}}, .executables = {"~bob/ostrel"}};
    EXPECT_THAT(other.resolve(), Optional(command("~bob/ostrel", {}, Origin::environment)));
}

TEST(LaunchAgentCommandResolve, aVariableThatCannotBeUsedFallsThroughToTheLaunchAgent) {
    for (const Environment& environment :
         {Environment{}, Environment{{"OSTREL_CLI", ""}}, Environment{{"OSTREL_CLI", "/no/such"}},
          Environment{{"OSTREL_CLI", "~/no/such"}}}) {
        Machine machine{.environment = environment,
                        .executables = {"/y/ostrel", "/opt/homebrew/bin/ostrel"},
                        .plist = launchAgentPlist({"/y/ostrel", "--state-dir", "/s", "watch"})};
        EXPECT_THAT(machine.resolve(), Optional(command("/y/ostrel", {"--state-dir", "/s"}, Origin::launchAgent)));
        EXPECT_THAT(machine.reads, ElementsAre(plistPath));
    }
}

TEST(LaunchAgentCommandResolve, anEmptyVariableIsNotLookedUp) {
    Machine machine{.environment = {{"OSTREL_CLI", ""}}};
    EXPECT_EQ(machine.resolve(), std::nullopt);
    EXPECT_THAT(machine.asks, ElementsAre("/opt/homebrew/bin/ostrel", "/usr/local/bin/ostrel"));
}

TEST(LaunchAgentCommandResolve, aLaunchAgentThatCannotBeUsedFallsThroughToTheCandidates) {
    for (const std::string& plist :
         {std::string(), std::string("no property list"), xmlPropertyList("<array/>"), xmlPropertyList("<dict/>"),
          launchAgentPlist({"/not/there", "--flag", "watch"}), launchAgentPlist({"~/bin/ostrel", "watch"})}) {
        Machine machine{
            .environment = {}, .executables = {"/usr/local/bin/ostrel", "/home/ann/bin/ostrel"}, .plist = plist};
        EXPECT_THAT(machine.resolve(), Optional(command("/usr/local/bin/ostrel", {}, Origin::path))) << plist;
    }
}

TEST(LaunchAgentCommandResolve, anExecutableNamedWatchIsSubjectToExistence) {
    Machine machine{.environment = {}, .executables = {"watch"}, .plist = launchAgentPlist({"watch", "--x"})};
    EXPECT_THAT(machine.resolve(), Optional(command("watch", {}, Origin::launchAgent)));
    machine.executables = {"/usr/local/bin/ostrel"};
    EXPECT_THAT(machine.resolve(), Optional(command("/usr/local/bin/ostrel", {}, Origin::path)));
}

TEST(LaunchAgentCommandResolve, fixedPlacesWinOverPath) {
    Machine machine{.environment = {{"PATH", "/a"}}, .executables = {"/opt/homebrew/bin/ostrel", "/a/ostrel"}};
    EXPECT_THAT(machine.resolve(), Optional(command("/opt/homebrew/bin/ostrel", {}, Origin::path)));
}

TEST(LaunchAgentCommandResolve, directoriesOfPathComeLastAndAsTheyAre) {
    Machine machine{.environment = {{"PATH", "/a::/b/"}}, .executables = {"/b//ostrel"}};
    EXPECT_THAT(machine.resolve(), Optional(command("/b//ostrel", {}, Origin::path)));
    EXPECT_THAT(machine.asks,
                ElementsAre("/opt/homebrew/bin/ostrel", "/usr/local/bin/ostrel", "/a/ostrel", "/b//ostrel"));
}

TEST(LaunchAgentCommandResolve, nothingAnywhereIsNoCommand) {
    Machine machine{.environment = {{"PATH", "/a:/b"}}};
    EXPECT_EQ(machine.resolve(), std::nullopt);
    Machine withoutPath;
    EXPECT_EQ(withoutPath.resolve(), std::nullopt);
}

struct Parsed {
    const char* name;
    Words words;
    std::string executable;
    Words leadingArguments;
};

class LaunchAgentCommandParse : public testing::TestWithParam<Parsed> {};

TEST_P(LaunchAgentCommandParse, keepsWhatPrecedesWatch) {
    EXPECT_EQ(LaunchAgentCommand::parse(launchAgentPlist(GetParam().words)),
              command(GetParam().executable, GetParam().leadingArguments, Origin::launchAgent));
}

INSTANTIATE_TEST_SUITE_P(
    Each, LaunchAgentCommandParse,
    testing::Values(Parsed{"flagsBeforeWatch",
                           {"/x/ostrel", "--state-dir", "/s", "watch", "--interval", "5"},
                           "/x/ostrel",
                           {"--state-dir", "/s"}},
                    Parsed{"noWatch", {"/x/ostrel", "--flag"}, "/x/ostrel", {}},
                    Parsed{"alone", {"/x/ostrel"}, "/x/ostrel", {}},
                    Parsed{"watchRightAfter", {"/x/ostrel", "watch", "--flag"}, "/x/ostrel", {}},
                    Parsed{"watchFirst", {"watch", "--flag", "watch"}, "watch", {}},
                    Parsed{"theFirstWatchCounts", {"/x", "-a", "watch", "-b", "watch"}, "/x", {"-a"}},
                    Parsed{"caseMatters", {"/x", "Watch", "-a", "watch"}, "/x", {"Watch", "-a"}},
                    Parsed{"onlyWholeWords", {"/x", "watcher", "--watch", "watch"}, "/x", {"watcher", "--watch"}},
                    Parsed{"emptyFlagsStay", {"/x", "", "watch"}, "/x", {""}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(LaunchAgentCommandParseFailure, aListThatIsNoDictionaryIsNotAPlist) {
    for (const char* value : {"<array/>", "<string>x</string>", "<integer>1</integer>", "<true/>"}) {
        EXPECT_EQ(failure(xmlPropertyList(value)), "the launch agent plist could not be read") << value;
    }
    EXPECT_EQ(LaunchAgentCommand::parse(xmlPropertyList("<array/>")).error(),
              LaunchAgentCommand::ParseFailure(ParseError::notAPlist));
}

TEST(LaunchAgentCommandParseFailure, programArgumentsMustBeStringsAndNameAnExecutable) {
    const auto withArguments = [](std::string_view value) {
        return xmlPropertyList("<dict><key>ProgramArguments</key>" + std::string(value) + "</dict>");
    };
    for (const std::string& plist :
         {xmlPropertyList("<dict/>"), xmlPropertyList("<dict><key>Program</key><string>/x</string></dict>"),
          withArguments("<string>/x</string>"), withArguments("<array/>"), withArguments("<dict/>"),
          withArguments("<array><string/></array>"),
          withArguments("<array><string></string><string>a</string></array>"),
          withArguments("<array><string>/x</string><integer>5</integer></array>")}) {
        EXPECT_EQ(failure(plist), "the launch agent plist has no ProgramArguments") << plist;
    }
    EXPECT_EQ(LaunchAgentCommand::parse(xmlPropertyList("<dict/>")).error(),
              LaunchAgentCommand::ParseFailure(ParseError::missingProgramArguments));
}

TEST(LaunchAgentCommandParseFailure, bytesThatAreNoPropertyListGiveTheReadersOwnError) {
    const auto parsed = LaunchAgentCommand::parse("hello");
    ASSERT_FALSE(parsed);
    EXPECT_TRUE(std::holds_alternative<PropertyListError>(parsed.error()));
    EXPECT_EQ(description(parsed.error()), "the bytes are neither an XML nor a binary property list");
}

TEST(LaunchAgentCommand, readsABinaryPropertyList) {
    EXPECT_EQ(LaunchAgentCommand::parse(binaryPropertyList({binary::dictionary({1, 2}), "\x5F\x10\x10ProgramArguments",
                                                            binary::array({3, 4, 5}), binary::string("/x/ostrel"),
                                                            binary::string("--flag"), binary::string("watch")})),
              command("/x/ostrel", {"--flag"}, Origin::launchAgent));
}

TEST(LaunchAgentCommand, putsItsLeadingArgumentsBeforeASubcommand) {
    const auto found = command("/x/ostrel", {"--state-dir", "/s s"}, Origin::launchAgent);
    EXPECT_THAT(found.arguments({"config", "schema"}), ElementsAre("--state-dir", "/s s", "config", "schema"));
    EXPECT_EQ(found.describe({"config", "schema"}), "/x/ostrel --state-dir /s s config schema");
    EXPECT_THAT(found.arguments({}), ElementsAre("--state-dir", "/s s"));
    EXPECT_EQ(found.describe({}), "/x/ostrel --state-dir /s s");
}

TEST(LaunchAgentCommand, describesAPlainCommand) {
    const auto found = command("/x/ostrel", {}, Origin::path);
    EXPECT_EQ(found.describe({"config", "validate", "/tmp/a b", "--json"}),
              "/x/ostrel config validate /tmp/a b --json");
}
