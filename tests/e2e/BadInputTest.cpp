#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/ScratchHome.h"

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using menubar::JSONValue;
using menubar::e2e::ScratchHome;
using testing::HasSubstr;
using testing::Not;

namespace {

/// What `status --json` says of the state.
JSONValue::Object stateOf(const ScratchHome::Result& result) {
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const auto document = JSONValue::decode(result.output);
    if (!document || document->objectValue() == nullptr) {
        ADD_FAILURE() << "no JSON: " << result.output;
        return {{"kind", ""}, {"detail", ""}};
    }
    return *document->objectValue()->at("state").objectValue();
}

/// The value of an item's title, by its place in the menu.
std::string titleOf(const std::string& menuJSON, std::size_t index) {
    const auto document = JSONValue::decode(menuJSON);
    if (!document) {
        return "no JSON";
    }
    const auto& items = *document->objectValue()->at("items").arrayValue();
    return index < items.size() ? *items[index].objectValue()->at("title").stringValue() : "no such item";
}

} // namespace

TEST(BadStatusFile, aFifoThatNobodyWritesIsNotWaitedForAndTheNextLookRecovers) {
    const ScratchHome home;
    std::filesystem::create_directories(home / ".local/state/ostrel");
    ASSERT_EQ(::mkfifo(home.statusFile().c_str(), 0600), 0);
    const auto state = stateOf(home.atFixedTime({"status", "--json"}));
    EXPECT_EQ(state.at("kind"), JSONValue("unreadable"));
    EXPECT_THAT(state.at("detail").compactText(), HasSubstr("it is a pipe"));
    const auto menu = home.atFixedTime({"menu"});
    EXPECT_EQ(menu.status, 0);
    EXPECT_THAT(menu.output, HasSubstr("  Status file unreadable\n  "));

    std::filesystem::remove(home.statusFile());
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z"})");
    EXPECT_EQ(stateOf(home.atFixedTime({"status", "--json"})).at("kind"), JSONValue("running"));
}

TEST(StatusFile, thatIsReplacedAllTheTimeIsAlwaysReadable) {
    const ScratchHome home;
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z"})");
    std::atomic<bool> isOver = false;
    std::atomic<int> replacements = 0;
    std::thread writer([&home, &isOver, &replacements] {
        const std::string padding(20'000, 'x');
        while (!isOver) {
            const std::string next = home.write(
                ".local/state/ostrel/next", R"({"at":"2025-03-04T10:15:33Z","sessions":[{"cwd":")" + padding + "\"}]}");
            std::filesystem::rename(next, home.statusFile());
            ++replacements;
        }
    });
    for (int looks = 0; looks < 20 || replacements < 100; ++looks) {
        const auto state = stateOf(home.atFixedTime({"status", "--json"}));
        EXPECT_EQ(state.at("kind"), JSONValue("running")) << state.at("detail").compactText();
    }
    isOver = true;
    writer.join();
}

TEST(HostileTexts, stayValuesInJSONAndNeverReachTheTerminal) {
    const ScratchHome home;
    home.writeStatus(
        R"({"at":"2025-03-04T10:15:33Z","sessions":[{"dirName":"a\u001b[2J\u0007\n\u202Eb\u2066\u009b31m",)"
        R"("level":"ok","sessionId":"\u001b]0;x\u0007"}],)"
        R"("providerFailures":[{"provider":"\u001b[31m","reason":"r"}],)"
        R"("configError":{"message":"\r\u202e"}})");
    const auto json = home.atFixedTime({"menu", "--json"});
    EXPECT_EQ(titleOf(json.output, 0), "Config file ignored: \r\u202E");
    EXPECT_EQ(titleOf(json.output, 5), "a\x1b[2J\x07\n\u202Eb\u2066\u009B31m · unknown · -- · unknown");

    for (const char* command : {"menu", "status"}) {
        const auto text = home.atFixedTime({command});
        EXPECT_EQ(text.status, 0);
        for (const char* unsafe : {"\x1b", "\x07", "\r", "\u202E", "\u2066", "\u009B"}) {
            EXPECT_THAT(text.output, Not(HasSubstr(unsafe))) << command;
        }
    }
    EXPECT_THAT(home.atFixedTime({"menu"}).output,
                HasSubstr("  a\uFFFD[2J\uFFFD\uFFFD\uFFFDb\uFFFD\uFFFD31m · unknown · -- · unknown\n"));
}
