#pragma once

#include "MenubarApp/AppKit/Controls/EventSink.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/ViewHost.h"

#include <memory>
#include <utility>

#import <AppKit/AppKit.h>

namespace menubar {

/// One native control: what it shows is set through this object, and what a person does to it goes to the EventSink.
/// The native view may outlive the adapter; after `disconnect` it reports nothing. Main thread.
class ControlAdapter {
public:
    ControlAdapter() = default;
    ControlAdapter(const ControlAdapter&) = delete;
    ControlAdapter& operator=(const ControlAdapter&) = delete;
    virtual ~ControlAdapter() = default;

    /// What is placed in its parent.
    [[nodiscard]] virtual NSView* view() const = 0;

    /// What takes keys, and what a screen reader reads.
    [[nodiscard]] virtual NSView* keyView() const { return view(); }

    /// What holds the controls inside it.
    [[nodiscard]] virtual NSView* contentView() const { return view(); }

    /// Sets the properties in which `now` differs from `before`; all of them when there is no `before`.
    virtual void show(const View::Content& now, const View::Content* before) = 0;

    /// See Measurer.
    [[nodiscard]] virtual Measured measure(const View::Content& shown, double width) const;

    /// Reports text that was not reported yet, what an input method composes included.
    virtual void commitEditing() {}

    virtual void disconnect() {}
};

/// What differs between two contents of one kind; everything, at first.
template <class Content>
struct Change {
    const Content& now;
    const Content* before;

    template <class... Member>
    [[nodiscard]] bool in(Member Content::*... members) const {
        return before == nullptr || ((now.*members != before->*members) || ...);
    }
};

/// An adapter for controls of kind `Content`, shown by a `NativeView`.
template <class Content, class NativeView>
class AdapterFor : public ControlAdapter {
public:
    [[nodiscard]] NSView* view() const final { return m_view.get(); }

    void show(const View::Content& now, const View::Content* before) final {
        const Change<Content> change{std::get<Content>(now), before == nullptr ? nullptr : &std::get<Content>(*before)};
        apply(change);
    }

protected:
    /// Takes over the caller's reference.
    explicit AdapterFor(NativeView* owned) : m_view(ObjCPointer<NativeView>::adopt(owned)) {}

    virtual void apply(const Change<Content>& change) = 0;

    [[nodiscard]] NativeView* native() const { return m_view.get(); }

private:
    ObjCPointer<NativeView> m_view;
};

/// Who a control reports to, and as whom.
struct Reporter {
    ControlId id = windowContent;
    std::shared_ptr<EventSink> sink;
};

using AdapterPointer = std::unique_ptr<ControlAdapter>;

/// One for each kind of control; it shows nothing yet.
[[nodiscard]] AdapterPointer makeScrollViewAdapter();
[[nodiscard]] AdapterPointer makeBoxAdapter();
[[nodiscard]] AdapterPointer makeTextAdapter();
[[nodiscard]] AdapterPointer makeSymbolAdapter();
[[nodiscard]] AdapterPointer makeDividerAdapter();
[[nodiscard]] AdapterPointer makeSpinnerAdapter();
[[nodiscard]] AdapterPointer makeButtonAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makeToggleAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makeCheckboxAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makeTextFieldAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makeTextEditorAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makeStepperAdapter(const Reporter& reporter);
[[nodiscard]] AdapterPointer makePickerAdapter(const Reporter& reporter);

} // namespace menubar
