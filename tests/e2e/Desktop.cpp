#include "tests/e2e/Desktop.h"

#include "MenubarApp/Commands/CommandRunner.h"

#include "tests/support/RecordedCalls.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <map>
#include <sstream>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace menubar::e2e {

namespace {

using namespace std::chrono_literals;

constexpr int stripHeight = 26;

CommandResult run(const std::string& program, std::vector<std::string> arguments) {
    return CommandRunner::runSync(program, std::move(arguments), {}, [](std::string_view) {});
}

/// Nothing when it failed for more than that there is no such window.
std::optional<std::string> xdotool(std::vector<std::string> arguments) {
    const auto result = run("/usr/bin/xdotool", std::move(arguments));
    return result.stderr_.empty() ? std::optional(result.stdout_) : std::nullopt;
}

} // namespace

Desktop::Desktop() {
    home.environment["PATH"] = std::string(DEMO_TOOLS) + ":/usr/bin:/bin";
    home.environment["OSTREL_DEMO_RECORD"] = home / "record";
    home.environment["OSTREL_DEMO_LAUNCHD"] = home / "launchd";
    home.environment["OSTREL_DEMO_POLL_MS"] = "100";
    if (const char* display = std::getenv("DISPLAY")) {
        home.environment["DISPLAY"] = display;
    }
}

void Desktop::start(const std::string& redirections, ChildProcess::Output output) {
    m_app = std::make_unique<ChildProcess>(
        ChildProcess::Options{.program = "/bin/sh",
                              .arguments = {"-c", "exec \"$0\" " + redirections, DEMO_MENUBAR_PROGRAM},
                              .environment = home.environment,
                              .output = output});
    ASSERT_TRUE(eventually([&] { return strip().has_value(); }));
}

std::string Desktop::stop() {
    m_app->send(SIGTERM);
    waitForEnd();
    return m_app->errors();
}

bool Desktop::says(const std::string& text) {
    return m_app->readErrorsUntil([&](const std::string& all) { return all.find(text) != std::string::npos; });
}

void Desktop::waitForEnd() {
    EXPECT_EQ(m_app->wait(), 0) << m_app->errors();
}

void Desktop::requestEnd() const {
    m_app->send(SIGTERM);
}

bool Desktop::isWhite(int x, int y) {
    const std::string place = "1x1+" + std::to_string(x) + "+" + std::to_string(y);
    const auto picture = run("/usr/bin/import", {"-window", "root", "-crop", place, "-depth", "8", "txt:-"});
    return picture.stdout_.find("#FFFFFF") != std::string::npos;
}

/// Nothing when one of them went while it was looked at.
std::optional<std::vector<Desktop::Window>> Desktop::tryToList(const std::string& name) {
    const auto ids = xdotool({"search", "--onlyvisible", "--name", name});
    if (!ids) {
        return std::nullopt;
    }
    std::vector<Window> result;
    std::istringstream each(*ids);
    for (std::string id; each >> id;) {
        const auto geometry = xdotool({"getwindowgeometry", "--shell", id});
        if (!geometry) {
            return std::nullopt;
        }
        std::map<std::string, int> values;
        std::istringstream lines(*geometry);
        for (std::string line; lines >> line;) {
            const auto equals = std::min(line.find('='), line.size() - 1);
            values[line.substr(0, equals)] = std::atoi(line.c_str() + equals + 1);
        }
        result.push_back(
            {.id = id, .x = values["X"], .y = values["Y"], .width = values["WIDTH"], .height = values["HEIGHT"]});
    }
    return result;
}

/// Those that show anything; the app names none of them but the settings window.
std::vector<Desktop::Window> Desktop::windows(const std::string& name) {
    std::optional<std::vector<Window>> result;
    EXPECT_TRUE(eventually([&] {
        result = tryToList(name);
        return result.has_value();
    }));
    return result.value_or(std::vector<Window>());
}

std::optional<Desktop::Window> Desktop::strip() const {
    const auto all = windows();
    const auto found = std::ranges::find(all, stripHeight, &Window::height);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::optional<Desktop::Window> Desktop::menu() const {
    const auto all = windows();
    const auto settings = settingsWindow();
    const auto found = std::ranges::find_if(all, [&](const Window& window) {
        return window.y >= stripHeight - 1 && window.height > stripHeight && !(settings && window.id == settings->id);
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::optional<Desktop::Window> Desktop::settingsWindow() {
    const auto found = windows("ostrel Settings");
    return found.empty() ? std::nullopt : std::optional(found.front());
}

void Desktop::click(int x, int y) const {
    (void)xdotool({"mousemove", std::to_string(x), std::to_string(y)});
    std::this_thread::sleep_for(50ms); // GNUstep places a press where the last move that it has seen went
    (void)xdotool({"mousedown", "1"});
    (void)xdotool({"mouseup", "1"});
}

void Desktop::press(const std::string& key) const {
    (void)xdotool({"key", key});
}

void Desktop::type(const std::string& text) const {
    (void)xdotool({"type", text});
}

void Desktop::move(const Window& window, int x, int y) const {
    (void)xdotool({"windowmove", window.id, std::to_string(x), std::to_string(y)});
}

void Desktop::openMenu() const {
    const auto item = strip();
    ASSERT_TRUE(item);
    click(item->x + item->width / 2, item->y + item->height / 2);
    ASSERT_TRUE(eventually([&] { return menu().has_value(); }));
}

void Desktop::choose(const std::string& key, int presses) const {
    openMenu();
    for (int i = 0; i < presses; ++i) {
        press(key);
    }
    press("Return");
    EXPECT_TRUE(eventually([&] { return !menu(); }));
}

void Desktop::clickTheFirstEnabledRow() const {
    openMenu();
    const auto open = menu();
    ASSERT_TRUE(open);
    constexpr int step = 16; // less than a row
    for (int y = open->y + step; y < open->y + open->height && menu(); y += step) {
        click(open->x + open->width / 2, y);
        std::this_thread::sleep_for(50ms);
    }
    EXPECT_FALSE(menu());
}

std::vector<std::string> Desktop::calls() const {
    std::vector<std::string> result = testing_support::recordedCalls(home / "record");
    for (std::string& call : result) {
        call.erase(0, call.starts_with("quiet ") ? 6 : 0);
    }
    return result;
}

bool Desktop::waitForCalls(std::size_t count) const {
    return eventually([&] { return calls().size() >= count; });
}

} // namespace menubar::e2e
