#include "MenubarCore/JSON/JSONValue.h"

#include "tests/e2e/ScratchHome.h"

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using menubar::JSONValue;
using menubar::e2e::ChildProcess;
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

void expectUnreadable(const ScratchHome& home, const std::string& reason) {
    const auto state = stateOf(home.atFixedTime({"status", "--json"}));
    EXPECT_EQ(state.at("kind"), JSONValue("unreadable"));
    ASSERT_NE(state.at("detail").stringValue(), nullptr);
    EXPECT_THAT(*state.at("detail").stringValue(), HasSubstr(reason));

    const auto menu = home.atFixedTime({"menu"});
    EXPECT_EQ(menu.status, 0);
    EXPECT_THAT(menu.output, HasSubstr("  Status file unreadable\n  "));

    // The next look recovers.
    std::filesystem::remove_all(home.statusFile());
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z"})");
    EXPECT_EQ(stateOf(home.atFixedTime({"status", "--json"})).at("kind"), JSONValue("running"));
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

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

} // namespace

TEST(BadStatusFile, isADirectory) {
    const ScratchHome home;
    std::filesystem::create_directories(home.statusFile());
    expectUnreadable(home, "it is a directory");
}

TEST(BadStatusFile, isAFifoThatNobodyWrites) {
    const ScratchHome home;
    std::filesystem::create_directories(home / ".local/state/ostrel");
    ASSERT_EQ(::mkfifo(home.statusFile().c_str(), 0600), 0);
    expectUnreadable(home, "it is a pipe"); // and is not waited for
}

TEST(BadStatusFile, isADevice) {
    const ScratchHome home;
    const auto state = stateOf(home.atFixedTime({"status", "--json", "--status-file", "/dev/zero"}));
    EXPECT_EQ(state.at("kind"), JSONValue("unreadable"));
}

TEST(BadStatusFile, mayNotBeReadByThisUser) {
    constexpr uid_t nobody = 65534;
    const ScratchHome home;
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z"})");
    std::filesystem::permissions(home.statusFile(), std::filesystem::perms::none);
    auto options = home.menubarctl({"status", "--json"});
    if (::geteuid() == 0) {
        // The superuser may read everything, so somebody else has to try; from a place that anybody may look into.
        options.program = home / "ostrel-menubarctl";
        std::filesystem::copy_file(MENUBARCTL_PROGRAM, options.program);
        std::filesystem::permissions(home.path(),
                                     std::filesystem::perms::others_read | std::filesystem::perms::others_exec,
                                     std::filesystem::perm_options::add);
        options.user = nobody;
    }
    const auto result = ScratchHome::run(options);
    if (result.status == 126) {
        GTEST_SKIP() << "cannot become another user here";
    }
    const auto state = stateOf(result);
    EXPECT_EQ(state.at("kind"), JSONValue("unreadable"));
    EXPECT_EQ(state.at("detail"),
              JSONValue("The file \"" + home.statusFile() + "\" could not be read: Permission denied."));
    if (::geteuid() != 0) {
        expectUnreadable(home, "Permission denied");
    }
}

TEST(BadStatusFile, isHuge) {
    const ScratchHome home;
    home.writeStatus("{");
    std::filesystem::resize_file(home.statusFile(), std::uintmax_t{200} << 20);
    expectUnreadable(home, "it is larger than 64 MB");
}

TEST(BadStatusFile, aDanglingLinkIsMissing) {
    const ScratchHome home;
    std::filesystem::create_directories(home / ".local/state/ostrel");
    std::filesystem::create_symlink(home / "nowhere", home.statusFile());
    EXPECT_EQ(stateOf(home.atFixedTime({"status", "--json"})).at("kind"), JSONValue("missing"));
}

TEST(BadStatusFile, aNameThatIsNotUtf8StillGivesADocument) {
    const ScratchHome home;
    const std::string path = home / "s\xFF.json";
    std::error_code refused; // by file systems that take UTF-8 alone
    std::filesystem::create_directories(path, refused);
    const auto state = stateOf(home.atFixedTime({"status", "--json", "--status-file", path}));
    if (refused) {
        EXPECT_EQ(state.at("kind"), JSONValue("missing"));
    } else {
        EXPECT_EQ(state.at("kind"), JSONValue("unreadable"));
        EXPECT_THAT(*state.at("detail").stringValue(), HasSubstr("s\uFFFD.json"));
    }
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

TEST(HostileTexts, aTitleOfTenThousandCharactersIsOneLineOfTheTerminal) {
    const ScratchHome home;
    const std::string name(10'000, 'n');
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z","sessions":[{"level":"ok","dirName":")" + name + "\"}]}");
    EXPECT_EQ(titleOf(home.atFixedTime({"menu", "--json"}).output, 3), name + " · unknown · -- · unknown");
    auto onTerminal = home.menubarctl({"menu", "--now", "2025-03-04T10:15:33Z"});
    onTerminal.output = ChildProcess::Output::terminal;
    EXPECT_THAT(ScratchHome::run(onTerminal).output, HasSubstr("\n  \x1b[2m" + std::string(77, 'n') + "…\x1b[0m\r\n"));
}

TEST(HostileTexts, tenThousandSessionsAreAllListed) {
    const ScratchHome home;
    std::string sessions;
    for (int i = 0; i < 10'000; ++i) {
        sessions += std::string(i == 0 ? "" : ",") + R"({"dirName":"s)" + std::to_string(i) +
                    R"(","provider":"acme","contextPct":)" + std::to_string(i % 100) +
                    R"(,"level":"ok","workspaceId":"w"})";
    }
    home.writeStatus(R"({"at":"2025-03-04T10:15:33Z","sessions":[)" + sessions + "]}");
    const auto json = home.atFixedTime({"menu", "--json"});
    EXPECT_EQ(countOf(json.output, "\"focusSession\""), 10'000U);
    EXPECT_THAT(json.output, HasSubstr("\"tag\":10000,"));
    EXPECT_EQ(countOf(home.atFixedTime({"menu"}).output, " · acme · "), 10'000U);
}
