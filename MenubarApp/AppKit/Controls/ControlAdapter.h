#pragma once

#include "MenubarApp/AppKit/Controls/EventSink.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/ViewHost.h"
#include "MenubarCore/System/Interface.h"

#include <memory>
#include <type_traits>

#import <AppKit/AppKit.h>

namespace menubar {

/// One native control: what it shows is set through this object, and what a person does to it goes to the EventSink.
/// The native view may outlive the adapter; after `disconnect` it reports nothing. Main thread.
class ControlAdapter : public Interface {
public:
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
    /// Takes over the caller's reference.
    explicit AdapterFor(NativeView* owned) : m_view(ObjCPointer<NativeView>::adopt(owned)) {}

    [[nodiscard]] NSView* view() const final { return m_view.get(); }

    void show(const View::Content& now, const View::Content* before) final {
        const Change<Content> change{std::get<Content>(now), before == nullptr ? nullptr : &std::get<Content>(*before)};
        apply(change);
        if constexpr (takesKeys<Content> && std::is_convertible_v<NativeView*, NSControl*>) {
            if (change.in(&Content::enabled)) {
                [native() setEnabled:change.now.enabled];
            }
        }
    }

protected:
    /// Sets what is the kind's own; nothing for those that all look alike.
    virtual void apply(const Change<Content>& /*change*/) {}

    [[nodiscard]] NativeView* native() const { return m_view.get(); }

private:
    ObjCPointer<NativeView> m_view;
};

using AdapterPointer = std::unique_ptr<ControlAdapter>;

/// One for each kind of control; it shows nothing yet.
[[nodiscard]] AdapterPointer makeAdapter(const ScrollView& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Box& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Text& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Symbol& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Divider& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Spinner& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Button& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Toggle& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Checkbox& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const TextField& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const TextEditor& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Stepper& kind, const Reporter& reporter);
[[nodiscard]] AdapterPointer makeAdapter(const Picker& kind, const Reporter& reporter);

} // namespace menubar
