#pragma once

#include "MenubarApp/View/ViewHost.h"
#include "MenubarApp/View/ViewPresenter.h"

#include "tests/support/ViewDump.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace menubar::recording {

/// Measures in type where every byte is as wide as every other (body 7, headline 8, caption 6, monospaced 8 points;
/// lines 16, 18, 13 and 16 high) and lines break anywhere.
class TypewriterMeasurer final : public Measurer {
public:
    [[nodiscard]] Measured measure(ControlId id, const View& control, double width) override;

    int measurements = 0;
};

/// A window played: holds the controls as a toolkit would, checks that each call makes sense, records the calls, and
/// lets a test press and type as a person does.
class RecordingViewHost final : public ViewHost {
public:
    // The port

    void setEvents(std::weak_ptr<ViewEvents> events) override;
    void create(ControlId id, ControlId parent, const View& control) override;
    void update(ControlId id, const View& now, const View& before) override;
    void place(ControlId id, const Rect& frame) override;
    void setContentSize(ControlId scrollView, Size size) override;
    void arrange(ControlId parent, std::span<const ControlId> order) override;
    void setTabOrder(std::span<const ControlId> order) override;
    void destroy(ControlId id) override;
    void commitEditing() override;
    void focus(ControlId id) override;
    void scrollBy(ControlId scrollView, double length) override;
    void scrollToVisible(ControlId scrollView, const Rect& area) override;
    [[nodiscard]] Measured measure(ControlId id, const View& control, double width) override;

    // What a person sees

    /// All controls with their frames, as a tree.
    [[nodiscard]] std::string dump() const;
    /// The same without frames.
    [[nodiscard]] std::string outline() const;

    /// The first control, in reading order, whose dumped line begins so; `windowContent` when there is none.
    [[nodiscard]] ControlId find(std::string_view beginning) const;
    /// The first control with this accessibility label whose dumped line begins so.
    [[nodiscard]] ControlId find(std::string_view beginning, std::string_view label) const;
    [[nodiscard]] const View& control(ControlId id) const;
    [[nodiscard]] Rect frame(ControlId id) const;

    /// What a text field or editor shows.
    [[nodiscard]] std::string text(ControlId id) const;

    // What a person does

    void resize(Size size);
    /// False when there is no such enabled button.
    bool press(std::string_view title);
    void press(ControlId id);
    void toggle(ControlId id, bool isOn);
    void step(ControlId id, StepDirection direction);
    void pick(ControlId id, std::size_t option);
    /// `focus` does what a person's click into a control does.
    void blur();
    /// Replaces the text of a control, one event for the whole change.
    void type(ControlId id, const std::string& typed);
    /// An input method composes: the text is shown and not reported until `commitEditing`.
    void compose(ControlId id, const std::string& typed);

    Size size{.width = 680.0, .height = 760.0};
    std::optional<ControlId> focused;
    std::vector<ControlId> tabOrder;
    std::vector<std::string> log; ///< all calls but `measure`
    TypewriterMeasurer typewriter;
    std::vector<std::string> faults; ///< calls that make no sense

    /// The calls since the last time this was asked.
    [[nodiscard]] std::vector<std::string> takeLog();

private:
    struct Native {
        ControlId parent = windowContent;
        View control;
        Rect frame;
        Size contentSize;
        std::vector<ControlId> children;
    };

    [[nodiscard]] bool check(bool isTrue, std::string_view fault);
    [[nodiscard]] std::vector<ControlId>& childrenOf(ControlId id);
    [[nodiscard]] const std::vector<ControlId>& childrenOf(ControlId id) const;
    [[nodiscard]] std::string* shownText(ControlId id);
    void append(std::string& out, ControlId id, std::size_t depth, bool withFrames) const;
    [[nodiscard]] ControlId findIn(ControlId parent, const std::function<bool(const View&)>& matches) const;
    void send(const std::function<void(ViewEvents&)>& event) const;

    std::weak_ptr<ViewEvents> m_events;
    std::map<ControlId, Native> m_controls;
    std::vector<ControlId> m_content; ///< directly in the window
    std::optional<std::string> m_composed;
};

/// A turn of the main loop for a presenter: keeps what was put off until `run`.
struct LaterQueue {
    std::vector<std::function<void()>> actions;

    [[nodiscard]] ViewPresenter::Later later() {
        return [this](std::function<void()> action) { actions.push_back(std::move(action)); };
    }

    void run() {
        for (const auto& action : std::exchange(actions, {})) {
            action();
        }
    }
};

} // namespace menubar::recording
