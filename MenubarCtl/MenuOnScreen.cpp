#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemCommands.h"
#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/Settings/SettingsWindow.h"
#include "MenubarApp/StatusMenu/StatusMenuController.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCtl/Commands.h"
#include "MenubarCtl/KeyReader.h"
#include "MenubarCtl/MenuScreen.h"
#include "MenubarCtl/OpenPlan.h"
#include "MenubarCtl/Screen.h"
#include "MenubarCtl/TerminalLoop.h"
#include "MenubarCtl/ThisSystem.h"

#include <chrono>
#include <cstdlib>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace menubar::ctl {

namespace {

/// The app's menu on the terminal: the controller that the menu bar has, with the terminal for a desktop.
class InteractiveMenu final : StatusItem, UserDefaults, Workspace, SettingsWindow {
public:
    InteractiveMenu(const Context& context, TerminalLoop& loop)
        : m_context(context), m_loop(loop), m_styling(context.outputStyle().styling),
          m_commandContext(reporting(context.commands())), m_commands(loop, m_commandContext),
          m_controller(StatusMenuController::create(context.paths().statusFile, context.environment(),
                                                    context.commands().home,
                                                    {.mainLoop = loop,
                                                     .statusItem = *this,
                                                     .workspace = *this,
                                                     .defaults = *this,
                                                     .fileManager = m_files,
                                                     .clock = context.clock(),
                                                     .commands = m_commands,
                                                     .settings = *this,
                                                     .log = m_commandContext.log})) {}

    /// Until a key or a signal ends it. The error is the system's number for a failed write.
    std::expected<void, int> run() {
        m_menuScreen.resize(terminalSize(STDOUT_FILENO));
        keep(m_screen.enter());
        m_controller->start();
        m_controller->menuWillOpen(); // and stays open: it is made anew at every poll
        m_loop.run({.typed = [this](std::string_view bytes) { type(bytes); },
                    .resized = [this] { fit(); },
                    .willSuspend = [this] { m_screen.leave(); },
                    .didResume =
                        [this] {
                            keep(m_screen.enter());
                            fit();
                        }},
                   [this] { return m_screen.readsKeys(); });
        m_controller->applicationWillTerminate();
        m_screen.leave();
        return m_written;
    }

private:
    // What the controller asks of a desktop

    void apply(const StatusItemPresentation& presentation) override { m_menuScreen.setPresentation(presentation); }

    void setMenu(const Menu&) override {
        m_menuScreen.setMenu(m_controller->menu());
        draw();
    }

    /// A terminal has no item that could be hidden.
    [[nodiscard]] VisibilityProbe readVisibility() override { return {}; }

    [[nodiscard]] std::optional<bool> boolValue(std::string_view key) const override {
        return storedBool(key, m_context.environment(), m_files);
    }

    void setBool(std::string_view key, bool value) override {
        if (const auto stored = storeBool(key, value, m_context.environment(), m_files); !stored) {
            say(stored.error());
        }
    }

    void open(const std::string& path) override {
        struct stat info{};
        const bool exists = ::stat(path.c_str(), &info) == 0;
        const bool isFolder = exists && S_ISDIR(info.st_mode);
        // What is no file would keep a pager waiting.
        const OpenPlan plan =
            exists && (isFolder || S_ISREG(info.st_mode))
                ? openPlan(path, isFolder, m_context.environment(), PosixFileManager::isExecutableFile)
                : OpenPlan{};
        if (plan.words.empty()) {
            say(path);
        } else if (plan.takesTerminal) {
            read(plan.words);
        } else {
            CommandRunner::run(m_loop, plan.words[0], {plan.words.begin() + 1, plan.words.end()}, {}, {},
                               m_commandContext.log);
        }
    }

    void reveal(const std::string& path) override { open(path); }

    [[nodiscard]] bool isOptionKeyDown() const override { return false; }

    /// Nobody tells a terminal's program; its timer runs on after a sleep.
    Subscription onWake(std::function<void()>) override { return {}; }

    void terminate() override {}

    // There is no settings window here.

    void show() override {}

    void update(const StatusFile*, const DaemonState&) override {}

    /// What goes wrong with a program is said where the person looks.
    CommandContext reporting(CommandContext commands) {
        commands.log = [this, before = std::move(commands.log)](std::string_view line) {
            before(line);
            if (!line.starts_with("ok: ")) {
                m_loop.post([this, text = std::string(line)] { say(text); });
            }
        };
        return commands;
    }

    void say(const std::string& text) {
        m_menuScreen.setMessage(text);
        draw();
    }

    void draw() { keep(m_screen.draw(m_menuScreen.lines(m_styling))); }

    void fit() {
        m_menuScreen.resize(terminalSize(STDOUT_FILENO));
        draw();
    }

    /// The first failure ends it.
    void keep(const std::expected<void, int>& outcome) {
        if (!outcome && m_written) {
            m_written = outcome;
            m_loop.stop();
        }
    }

    void type(std::string_view bytes) {
        for (const Key key : m_keys.read(bytes)) {
            if (key == Key::quit) {
                m_loop.stop();
                return;
            }
            if (key != Key::choose) {
                m_menuScreen.move(key);
            } else if (const MenuItem* item = m_menuScreen.choose()) {
                const MenuItem chosen = *item; // what is done may make the menu anew
                m_controller->perform(chosen.action, chosen.tag, chosen.path);
            }
        }
        draw();
    }

    void read(const std::vector<std::string>& words) {
        m_screen.leave();
        const auto ended = m_loop.runInForeground(words);
        keep(m_screen.enter());
        m_menuScreen.resize(terminalSize(STDOUT_FILENO));
        if (!ended) {
            say("cannot run " + words[0] + ": " + std::generic_category().message(ended.error()));
        }
    }

    const Context& m_context;
    TerminalLoop& m_loop;
    Styling m_styling;
    Screen m_screen{STDOUT_FILENO, STDIN_FILENO};
    std::expected<void, int> m_written;
    MenuScreen m_menuScreen;
    KeyReader m_keys;
    PosixFileManager m_files;
    CommandContext m_commandContext;
    SystemCommands m_commands;
    std::shared_ptr<StatusMenuController> m_controller;
};

} // namespace

ExitStatus runMenuOnScreen(const Context& context) {
    auto loop = TerminalLoop::create();
    if (!loop) {
        return fail("cannot create a pipe");
    }
    auto menu = std::make_unique<InteractiveMenu>(context, *loop);
    const ExitStatus status = finishWriting(menu->run());
    constexpr std::chrono::milliseconds patience{250};
    if (!loop->settle(patience)) {
        // A program that was started has not ended: its thread goes with the process.
        std::_Exit(static_cast<int>(status));
    }
    return status;
}

} // namespace menubar::ctl
