#pragma once

#include "tests/e2e/ChildProcess.h"
#include "tests/e2e/Eventually.h"
#include "tests/e2e/ScratchHome.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::e2e {

/// The built app on the display, on stand-ins for outside programs, and a person's mouse and keyboard.
class Desktop {
public:
    struct Window {
        std::string id;
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    Desktop();

    /// Starts the app and waits until its item is on the screen; fails the test otherwise. The redirections are the
    /// shell's; standard output is what `output` says, standard error a pipe that is read.
    void start(const std::string& redirections = "", ChildProcess::Output output = ChildProcess::Output::pipe);

    /// Sends SIGTERM and gives what the app wrote to standard error.
    [[nodiscard]] std::string stop();

    /// Waits until the app has ended by itself; fails the test unless its status is 0.
    void waitForEnd();

    /// Asks the app to end, and does not wait for it.
    void requestEnd() const;

    /// Whether the app writes this to standard error while a test has patience.
    [[nodiscard]] bool says(const std::string& text);

    /// What the app wrote to standard error; once it has ended.
    [[nodiscard]] const std::string& errors() const { return m_app->errors(); }

    // What is on the screen.

    [[nodiscard]] std::optional<Window> strip() const;
    [[nodiscard]] std::optional<Window> menu() const;
    [[nodiscard]] static std::optional<Window> settingsWindow();

    [[nodiscard]] static bool isWhite(int x, int y);

    // A person's hands.

    void click(int x, int y) const;
    void press(const std::string& key) const;
    void type(const std::string& text) const;
    void move(const Window& window, int x, int y) const;
    /// Clicks the item and waits for its menu.
    void openMenu() const;
    /// Opens the menu and takes the enabled item that this many presses of the key lead to.
    void choose(const std::string& key, int presses) const;
    /// Opens the menu and clicks down its rows until one closes it: the first that is enabled.
    void clickTheFirstEnabledRow() const;

    // What the stand-ins were asked.

    /// "TOOL ARGUMENT..." for each call, arguments in angle brackets.
    [[nodiscard]] std::vector<std::string> calls() const;
    [[nodiscard]] bool waitForCalls(std::size_t count) const;

    ScratchHome home;

private:
    [[nodiscard]] static std::optional<std::vector<Window>> tryToList(const std::string& name);
    [[nodiscard]] static std::vector<Window> windows(const std::string& name = ".*");

    std::unique_ptr<ChildProcess> m_app;
};

} // namespace menubar::e2e
