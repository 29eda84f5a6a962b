#pragma once

#include "MenubarApp/View/Window.h"

#include "tests/support/RecordingViewHost.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace menubar::recording {

/// What a test may still look at when the window is gone, and what a person does with it.
struct WindowRecord {
    WindowOptions options;
    std::weak_ptr<WindowEvents> events;
    RecordingViewHost host;
    std::vector<std::string> log;
    std::optional<Alert> alert; ///< the sheet that is up
    std::function<void(std::size_t)> answer;
    std::optional<OpenPanel> panel; ///< the panel that is up
    std::function<void(std::optional<std::string>)> chosen;
    bool isOnScreen = true; ///< until it closes
    bool exists = true;     ///< until the object is destroyed

    /// The close button.
    void close() {
        if (std::exchange(isOnScreen, false)) {
            if (const auto strong = events.lock()) {
                strong->windowWillClose();
            }
            alert.reset();
            panel.reset();
        }
    }

    /// Presses the sheet's button of this index.
    void answerAlert(std::size_t button) {
        alert.reset();
        std::exchange(answer, nullptr)(button);
    }

    void choose(std::optional<std::string> path) {
        panel.reset();
        std::exchange(chosen, nullptr)(std::move(path));
    }
};

class FakeWindow final : public Window {
public:
    explicit FakeWindow(std::shared_ptr<WindowRecord> record) : m_record(std::move(record)) {}

    ~FakeWindow() override { m_record->exists = false; }

    [[nodiscard]] ViewHost& content() override { return m_record->host; }

    void bringForward() override { m_record->log.emplace_back("bring forward"); }

    void performClose() override {
        m_record->log.emplace_back("perform close");
        m_record->close();
    }

    void showAlert(const Alert& alert, std::function<void(std::size_t)> answer) override {
        m_record->alert = alert;
        m_record->answer = std::move(answer);
    }

    void chooseFile(const OpenPanel& panel, std::function<void(std::optional<std::string>)> chosen) override {
        m_record->panel = panel;
        m_record->chosen = std::move(chosen);
    }

private:
    std::shared_ptr<WindowRecord> m_record;
};

class FakeWindows final : public WindowFactory {
public:
    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowOptions& options,
                                                     std::weak_ptr<WindowEvents> events) override {
        auto record = std::make_shared<WindowRecord>();
        record->options = options;
        record->events = std::move(events);
        record->host.size = options.contentSize;
        windows.push_back(record);
        return std::make_unique<FakeWindow>(record);
    }

    std::vector<std::shared_ptr<WindowRecord>> windows; ///< all there ever were
};

} // namespace menubar::recording
