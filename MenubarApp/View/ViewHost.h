#pragma once

#include "MenubarApp/View/View.h"
#include "MenubarCore/System/Interface.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace menubar {

/// Says how large controls want to be.
class Measurer : public Interface {
public:
    /// The size of `control`, which `id` shows. For a Text: wrapped at `width` (which may be infinite: then only its
    /// own line feeds break it) and cut at its line limit. For all others their natural size, whatever `width` (of a
    /// TextField only height and baseline count, of a TextEditor only the baseline). Never asked of a ScrollView, a Box
    /// or a Divider.
    [[nodiscard]] virtual Measured measure(ControlId id, const View& control, double width) = 0;
};

/// What happens in a window, told by its host. Main thread. Events for a control that is gone are ignored, and so is
/// every event that a call of the host brings about by itself (a text set from outside, a control that loses the focus
/// because it is destroyed). The window may be closed, and its host with it, before a call returns.
class ViewEvents : public Interface {
public:
    /// The room for the whole view, at first and after each change.
    virtual void resized(Size size) = 0;

    /// A Button, by pointer, key or shortcut.
    virtual void pressed(ControlId id) = 0;

    /// A Toggle or a Checkbox, with its new state.
    virtual void toggled(ControlId id, bool isOn) = 0;

    virtual void stepped(ControlId id, StepDirection direction) = 0;

    /// A Picker, with the index of the option.
    virtual void picked(ControlId id, std::size_t option) = 0;

    /// A TextField or TextEditor has the insertion point; until `editingEnded` its text is the person's.
    virtual void editingBegan(ControlId id) = 0;

    /// The whole text after one change. Text that an input method is still composing is no change yet.
    virtual void textChanged(ControlId id, const std::string& text) = 0;

    virtual void editingEnded(ControlId id) = 0;
};

/// The native controls of one window. It does as it is told and decides nothing. Of the views that it is given only
/// content, tooltip and accessibility are its concern. Main thread.
class ViewHost : public Measurer {
public:
    /// Events go to `events`, for as long as it lives.
    virtual void setEvents(std::weak_ptr<ViewEvents> events) = 0;

    /// Makes a control inside `parent` (a ScrollView, a Box or the window), after all that are there. It has no frame
    /// yet.
    virtual void create(ControlId id, ControlId parent, const View& control) = 0;

    /// `now` replaces `before`; both have the same alternative as content. Only what differs is touched. A differing
    /// text of a TextField or TextEditor replaces what it shows, also while it is being edited.
    virtual void update(ControlId id, const View& now, const View& before) = 0;

    /// `frame` lies in the coordinates of the parent's content.
    virtual void place(ControlId id, const Rect& frame) = 0;

    /// The size of what a ScrollView scrolls. It never scrolls sideways.
    virtual void setContentSize(ControlId scrollView, Size size) = 0;

    /// The order of all controls directly inside `parent`, back to front and for assistive technology.
    virtual void arrange(ControlId parent, std::span<const ControlId> order) = 0;

    /// The order in which Tab visits all controls that take keys, in the whole window; after the last comes the first.
    virtual void setTabOrder(std::span<const ControlId> order) = 0;

    /// Removes a control. What it held was destroyed before.
    virtual void destroy(ControlId id) = 0;

    /// Ends what an input method is composing and reports text that was not reported yet (`textChanged`), before it
    /// returns. The insertion point stays where it is.
    virtual void commitEditing() = 0;

    /// Puts the insertion point into a TextField or TextEditor. What that ends and begins is reported, as when a person
    /// does it, before this returns.
    virtual void focus(ControlId id) = 0;

    /// Scrolls by so much, downwards when it is positive, as far as there is content.
    virtual void scrollBy(ControlId scrollView, double length) = 0;

    /// Scrolls as little as needed to show `area` of the content of `scrollView`.
    virtual void scrollToVisible(ControlId scrollView, const Rect& area) = 0;
};

} // namespace menubar
