// What is pressed: buttons, switches and checkboxes.
#include "MenubarApp/AppKit/Controls/ActionAdapter.h"
#include "MenubarApp/AppKit/Controls/KeyControls.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

namespace menubar {

namespace {

class ButtonAdapter final : public ActionAdapter<Button, NSButton> {
public:
    explicit ButtonAdapter(const Reporter& reporter)
        : ActionAdapter([[MenubarButton alloc] initWithFrame:NSZeroRect], reporter) {
        [native() setButtonType:NSButtonTypeMomentaryPushIn];
    }

protected:
    void apply(const Change<Button>& change) override {
        NSButton* button = native();
        const Button& now = change.now;
        if (change.in(&Button::style)) {
            NativeLook::dressButton(button, now.style);
        }
        if (change.in(&Button::title)) {
            [button setTitle:toNSString(now.title)];
        }
        if (change.in(&Button::title, &Button::symbol, &Button::style)) {
            showSymbol(now);
        }
        if (change.in(&Button::shortcut)) {
            showShortcut(now.shortcut);
        }
    }

    void report(const Reporter& to) override { to.tell(&ViewEvents::pressed); }

private:
    void showSymbol(const Button& now) {
        NSButton* button = native();
        if (now.symbol.empty()) {
            [button setImage:nil];
            [button setImagePosition:NSNoImage];
        } else {
            [button setImage:NativeLook::symbol(now.symbol, {}, [button font])];
            [button setImagePosition:now.title.empty() ? NSImageOnly : NSImageLeading];
        }
    }

    void showShortcut(KeyShortcut shortcut) {
        NSString* key = @"";
        switch (shortcut) {
        case KeyShortcut::none: break;
        case KeyShortcut::defaultAction: key = @"\r"; break;
        case KeyShortcut::cancelAction: key = @"\033"; break;
        case KeyShortcut::commandS: key = @"s"; break;
        }
        [native() setKeyEquivalent:key];
        [native() setKeyEquivalentModifierMask:shortcut == KeyShortcut::commandS ? NSEventModifierFlagCommand : 0];
    }
};

/// What is on or off: a switch or a checkbox.
template <class Content, class NativeView>
class StateAdapter final : public ActionAdapter<Content, NativeView> {
public:
    using ActionAdapter<Content, NativeView>::ActionAdapter;

protected:
    void apply(const Change<Content>& change) override {
        if constexpr (requires { change.now.title; }) {
            if (change.in(&Content::title)) {
                [this->native() setTitle:toNSString(change.now.title)];
            }
        }
        if (change.in(&Content::isOn)) {
            [this->native() setState:change.now.isOn ? NSControlStateValueOn : NSControlStateValueOff];
        }
    }

    void report(const Reporter& to) override {
        to.tell(&ViewEvents::toggled, [this->native() state] == NSControlStateValueOn);
    }
};

} // namespace

AdapterPointer makeAdapter(const Button&, const Reporter& reporter) {
    return std::make_unique<ButtonAdapter>(reporter);
}

AdapterPointer makeAdapter(const Toggle&, const Reporter& reporter) {
    return std::make_unique<StateAdapter<Toggle, NSSwitch>>([[MenubarSwitch alloc] initWithFrame:NSZeroRect], reporter);
}

AdapterPointer makeAdapter(const Checkbox&, const Reporter& reporter) {
    NSButton* checkbox = [[MenubarButton alloc] initWithFrame:NSZeroRect];
    [checkbox setButtonType:NSButtonTypeSwitch];
    NativeLook::dressCheckbox(checkbox);
    return std::make_unique<StateAdapter<Checkbox, NSButton>>(checkbox, reporter);
}

} // namespace menubar
