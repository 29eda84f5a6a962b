#pragma once

#include "MenubarApp/Commands/DaemonCommands.h"
#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/StatusItem.h"
#include "MenubarApp/Platform/UserDefaults.h"
#include "MenubarApp/Platform/Workspace.h"
#include "MenubarApp/Settings/SettingsWindow.h"
#include "MenubarCore/System/FileManager.h"

#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The desktop, played: each port records what was asked of it and answers what the test told it to.
namespace menubar::recording {

class FakeMainLoop final : public MainLoop {
public:
    void post(Action action) override { m_posted.push_back(std::move(action)); }

    void runInBackground(Action action) override { m_posted.push_back(std::move(action)); }

    std::unique_ptr<RepeatingTimer> repeat(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
                                           Action action) override {
        intervals.push_back(interval);
        tolerances.push_back(tolerance);
        auto timer = std::make_unique<Timer>(*this, std::move(action));
        m_timers.insert(timer.get());
        return timer;
    }

    /// Every running timer fires once, then all that was posted runs.
    void tick() {
        const auto timers = m_timers;
        for (Timer* timer : timers) {
            timer->fire();
        }
        drain();
    }

    void drain() {
        while (!m_posted.empty()) {
            Action action = std::move(m_posted.front());
            m_posted.pop_front();
            action();
        }
    }

    [[nodiscard]] std::size_t runningTimers() const { return m_timers.size(); }

    std::vector<std::chrono::milliseconds> intervals;
    std::vector<std::chrono::milliseconds> tolerances;

private:
    class Timer final : public RepeatingTimer {
    public:
        Timer(FakeMainLoop& loop, Action action) : m_loop(loop), m_action(std::move(action)) {}

        ~Timer() override { m_loop.m_timers.erase(this); }

        void fire() const { m_action(); }

    private:
        FakeMainLoop& m_loop;
        Action m_action;
    };

    std::deque<Action> m_posted;
    std::set<Timer*> m_timers;
};

/// What a person would see, and how often it was drawn.
class FakeStatusItem final : public StatusItem {
public:
    void apply(const StatusItemPresentation& presentation) override {
        shown = presentation;
        ++repaints;
    }

    void setMenu(const Menu& newMenu) override {
        menu = newMenu;
        ++menuDraws;
    }

    VisibilityProbe readVisibility() override {
        ++probes;
        return visibility;
    }

    StatusItemPresentation shown;
    Menu menu;
    VisibilityProbe visibility{.occlusionVisible = true, .onscreen = true, .x = 1200.0, .width = 60.0};
    int repaints = 0;
    int menuDraws = 0;
    int probes = 0;
};

class FakeWorkspace final : public Workspace {
public:
    void open(const std::string& path) override { log.push_back("open " + path); }

    void reveal(const std::string& path) override { log.push_back("reveal " + path); }

    [[nodiscard]] bool isOptionKeyDown() const override { return optionKey; }

    void terminate() override { log.emplace_back("terminate"); }

    Subscription onWake(std::function<void()> action) override { return m_wakeObservers.add(std::move(action)); }

    void wake() const { m_wakeObservers.notify(); }

    bool optionKey = false;
    std::vector<std::string> log;

private:
    Observers m_wakeObservers;
};

class FakeDefaults final : public UserDefaults {
public:
    [[nodiscard]] std::optional<bool> boolValue(std::string_view key) const override {
        const auto found = values.find(std::string(key));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void setBool(std::string_view key, bool value) override { values[std::string(key)] = value; }

    std::map<std::string, bool> values;
};

/// Files in memory. A path that is in `files` exists and holds those bytes.
class FakeFileManager final : public FileManager {
public:
    [[nodiscard]] bool exists(const std::string& path) const override { return files.contains(path); }

    [[nodiscard]] bool canLookAt(const std::string& path) const override {
        return files.contains(path) && !hidden.contains(path);
    }

    [[nodiscard]] std::expected<std::string, FileError> contents(const std::string& path) const override {
        ++reads;
        const auto found = files.find(path);
        if (found == files.end()) {
            return std::unexpected(FileError{"no such file"});
        }
        return found->second;
    }

    std::map<std::string, std::string> files;
    std::set<std::string> hidden; ///< of these, what is behind a closed folder
    mutable int reads = 0;
};

class FakeClock final : public Clock {
public:
    [[nodiscard]] Date now() const override { return time; }

    [[nodiscard]] TimeZone timeZone() const override { return zone; }

    Date time;
    TimeZone zone;
};

/// Completions are kept until the test runs them.
class FakeCommands final : public DaemonCommands {
public:
    void focus(const std::string& workspaceId, const std::optional<std::string>& surfaceId,
               Completion completion) override {
        record("focus " + workspaceId + " " + surfaceId.value_or("-"), std::move(completion));
    }

    void notify(const std::string& title, const std::string& body, Completion completion) override {
        record("notify " + title + " | " + body, std::move(completion));
    }

    void startDaemon(Completion completion) override { record("start", std::move(completion)); }

    void stopDaemon(Completion completion) override { record("stop", std::move(completion)); }

    void complete() {
        for (const Completion& completion : std::exchange(m_completions, {})) {
            completion();
        }
    }

    std::vector<std::string> log;

private:
    void record(std::string line, Completion completion) {
        log.push_back(std::move(line));
        m_completions.push_back(std::move(completion));
    }

    std::vector<Completion> m_completions;
};

class FakeSettingsWindow final : public SettingsWindow {
public:
    void show() override { ++shows; }

    void update(const StatusFile* status, const DaemonState& state) override {
        ++updates;
        lastStatus = status == nullptr ? std::nullopt : std::optional(*status);
        lastState = state;
    }

    int shows = 0;
    int updates = 0;
    std::optional<StatusFile> lastStatus;
    DaemonState lastState;
};

} // namespace menubar::recording
