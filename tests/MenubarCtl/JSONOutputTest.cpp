#include "MenubarCtl/JSONOutput.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using namespace std::chrono_literals;

namespace {

std::string textOf(const JSONValue& document) {
    return documentText(document).value_or("cannot be written");
}

StatusPoll pollOf(StatusSnapshot snapshot, DaemonState state) {
    StatusPoll poll;
    poll.snapshot = std::move(snapshot);
    poll.state = std::move(state);
    poll.presentation = {.symbolName = "eye", .title = "72%", .tone = StatusItemPresentation::Tone::ok, .tooltip = "t"};
    return poll;
}

std::string stateOf(DaemonState state) {
    const JSONValue document = statusDocument(pollOf(StatusSnapshot::missing(), std::move(state)), TimeZone());
    return textOf(document.objectValue()->at("state"));
}

} // namespace

TEST(StatusDocument, holdsEveryKeySortedAndEndsInOneLineFeed) {
    StatusFile file;
    file.config.emplace();
    file.config->warnContextPct = 70;
    file.configError.emplace();
    file.configError->message = "line 3: \"x\"";
    file.configFile.emplace();
    file.configFile->changedSinceLoad = true;
    StatusPoll poll = pollOf(StatusSnapshot::loaded(file), DaemonState::Running{.pollAge = 1.5});
    poll.compact = {.compact = true, .source = CompactSetting::Source::environment};
    EXPECT_EQ(textOf(statusDocument(poll, TimeZone())),
              R"json({"compact":{"compact":true,"source":"environment"},)json"
              R"json("notices":[{"kind":"configError","line":"Config file ignored: line 3: \"x\""},)json"
              R"json({"kind":"restartNeeded","line":"Restart daemon to apply settings"}],)json"
              R"json("presentation":{"symbolName":"eye","title":"72%","tone":"ok","tooltip":"t"},)json"
              R"json("state":{"detail":"warn 70% · critical -- · messaging off","kind":"running","pollAge":1.5,)json"
              R"json("title":"Daemon running (last poll 1s ago)"}})json"
              "\n");
}

TEST(StatusDocument, namesEveryStateAndThePollAgeWhereThereIsOne) {
    EXPECT_EQ(stateOf(DaemonState::Running{.pollAge = -2}),
              R"json({"detail":"No config in status file","kind":"running","pollAge":-2,)json"
              R"json("title":"Daemon running (last poll 0s ago)"})json"
              "\n");
    EXPECT_EQ(stateOf(DaemonState::Stale{.pollAge = 80.25}),
              R"json({"detail":"No config in status file","kind":"stale","pollAge":80.25,)json"
              R"json("title":"Daemon not responding (last poll 1m ago)"})json"
              "\n");
    EXPECT_EQ(stateOf(DaemonState::Stale{}),
              R"json({"detail":"No config in status file","kind":"stale","pollAge":null,)json"
              R"json("title":"Daemon not responding (no poll time in status file)"})json"
              "\n");
    EXPECT_EQ(stateOf(DaemonState::Stopped{.at = Date(9h + 5min)}),
              R"json({"detail":"No config in status file","kind":"stopped","pollAge":null,)json"
              R"json("title":"Daemon stopped at 09:05"})json"
              "\n");
    EXPECT_EQ(
        stateOf(DaemonState::Unreadable{.reason = "missing key message"}),
        R"json({"detail":"missing key message","kind":"unreadable","pollAge":null,"title":"Status file unreadable"})json"
        "\n");
    EXPECT_EQ(stateOf(DaemonState::Missing{}),
              R"json({"detail":"Start it with: ostrel watch (or ostrel install)","kind":"missing","pollAge":null,)json"
              R"json("title":"Daemon not running"})json"
              "\n");
}

TEST(StatusDocument, aFileNameThatIsNotUtf8IsRepaired) {
    EXPECT_EQ(stateOf(DaemonState::Unreadable{.reason = "cannot read \xFF.json"}),
              "{\"detail\":\"cannot read \uFFFD.json\",\"kind\":\"unreadable\",\"pollAge\":null,\"title\":\"Status "
              "file unreadable\"}\n");
}

TEST(MenuDocument, anItemHasAllTenKeysAndASeparatorOne) {
    MenuItem session;
    session.title = "api";
    session.tooltip = "45,210 tokens\n/repo";
    session.action = MenuAction::focusSession;
    session.enabled = true;
    session.tag = 1;
    MenuItem separator;
    separator.kind = MenuItem::Kind::separator;
    MenuItem event;
    event.title = "14:03 [ok] api: x";
    event.indentation = 1;
    MenuItem toggle;
    toggle.title = "Icon only";
    toggle.action = MenuAction::toggleCompact;
    toggle.checked = true;
    EXPECT_EQ(
        textOf(menuDocument({session, separator, event, toggle})),
        R"json({"items":[{"action":"focusSession","checked":false,"enabled":true,"indentation":0,"key":"",)json"
        R"json("kind":"item","path":null,"tag":1,"title":"api","tooltip":"45,210 tokens\n\/repo"},)json"
        R"json({"kind":"separator"},)json"
        R"json({"action":null,"checked":false,"enabled":false,"indentation":1,"key":"","kind":"item","path":null,)json"
        R"json("tag":0,"title":"14:03 [ok] api: x","tooltip":null},)json"
        R"json({"action":"toggleCompact","checked":true,"enabled":false,"indentation":0,"key":"","kind":"item",)json"
        R"json("path":null,"tag":0,"title":"Icon only","tooltip":null}]})json"
        "\n");
}

TEST(MenuDocument, aHandoffKeepsItsPathAndQuitItsKey) {
    MenuItem handoff;
    handoff.title = "Open handoff · api (missing)";
    handoff.path = "/r/a.md";
    MenuItem quit;
    quit.title = "Quit";
    quit.enabled = true;
    quit.action = MenuAction::quit;
    quit.keyEquivalent = "q";
    EXPECT_EQ(
        textOf(menuDocument({handoff, quit})),
        R"json({"items":[{"action":null,"checked":false,"enabled":false,"indentation":0,"key":"","kind":"item",)json"
        R"json("path":"\/r\/a.md","tag":0,"title":"Open handoff · api (missing)","tooltip":null},)json"
        R"json({"action":"quit","checked":false,"enabled":true,"indentation":0,"key":"q","kind":"item",)json"
        R"json("path":null,"tag":0,"title":"Quit","tooltip":null}]})json"
        "\n");
}

TEST(MenuDocument, anEmptyMenuIsAnEmptyList) {
    EXPECT_EQ(textOf(menuDocument({})), "{\"items\":[]}\n");
}

TEST(TerminalSafe, escapesWhatATerminalWouldObeyAndNothingElse) {
    EXPECT_EQ(terminalSafe("{\"a\":\"日本 · é\"}\n"), "{\"a\":\"日本 · é\"}\n");
    EXPECT_EQ(terminalSafe("\"\u009B31m\u202Eab\x7F\""), R"json("\u009b31m\u202eab\u007f")json");
}

TEST(TerminalSafe, readsBackAsTheSameText) {
    const JSONValue value(std::string("\u009B\u202E\u2066\u2028\x7F\x1B\u0085 plain"));
    const std::string safe = terminalSafe(textOf(value));
    EXPECT_EQ(safe.find('\x1B'), std::string::npos);
    EXPECT_EQ(safe.find("\u202E"), std::string::npos);
    EXPECT_EQ(JSONValue::decode(safe), value);
}
