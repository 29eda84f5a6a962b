// What is pressed: buttons, switches and checkboxes.
#include "MenubarApp/AppKit/Controls/ActionTarget.h"
#include "MenubarApp/AppKit/Controls/KeyControls.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

namespace menubar {

namespace {

void reportState(const Reporter& to, bool isOn) {
    to.sink->send([&](ViewEvents& events) { events.toggled(to.id, isOn); });
}

auto toState(bool isOn) {
    return isOn ? NSControlStateValueOn : NSControlStateValueOff;
}

class ButtonAdapter final : public ActionAdapter<Button, NSButton> {
public:
    explicit ButtonAdapter(const Reporter& reporter)
        : ActionAdapter([[MenubarButton alloc] initWithFrame:NSZeroRect], reporter, [](const Reporter& to, NSButton*) {
              to.sink->send([&](ViewEvents& events) { events.pressed(to.id); });
          }) {
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
        if (change.in(&Button::enabled)) {
            [button setEnabled:now.enabled];
        }
    }

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

class ToggleAdapter final : public ActionAdapter<Toggle, NSSwitch> {
public:
    explicit ToggleAdapter(const Reporter& reporter)
        : ActionAdapter(
              [[MenubarSwitch alloc] initWithFrame:NSZeroRect], reporter,
              [](const Reporter& to, NSSwitch* sender) { reportState(to, [sender state] == NSControlStateValueOn); }) {}

protected:
    void apply(const Change<Toggle>& change) override {
        if (change.in(&Toggle::isOn)) {
            [native() setState:static_cast<NSControlStateValue>(toState(change.now.isOn))];
        }
        if (change.in(&Toggle::enabled)) {
            [native() setEnabled:change.now.enabled];
        }
    }
};

class CheckboxAdapter final : public ActionAdapter<Checkbox, NSButton> {
public:
    explicit CheckboxAdapter(const Reporter& reporter)
        : ActionAdapter(
              [[MenubarButton alloc] initWithFrame:NSZeroRect], reporter,
              [](const Reporter& to, NSButton* sender) { reportState(to, [sender state] == NSControlStateValueOn); }) {
        [native() setButtonType:NSButtonTypeSwitch];
        NativeLook::dressCheckbox(native());
    }

protected:
    void apply(const Change<Checkbox>& change) override {
        if (change.in(&Checkbox::title)) {
            [native() setTitle:toNSString(change.now.title)];
        }
        if (change.in(&Checkbox::isOn)) {
            [native() setState:toState(change.now.isOn)];
        }
        if (change.in(&Checkbox::enabled)) {
            [native() setEnabled:change.now.enabled];
        }
    }
};

} // namespace

AdapterPointer makeButtonAdapter(const Reporter& reporter) {
    return std::make_unique<ButtonAdapter>(reporter);
}

AdapterPointer makeToggleAdapter(const Reporter& reporter) {
    return std::make_unique<ToggleAdapter>(reporter);
}

AdapterPointer makeCheckboxAdapter(const Reporter& reporter) {
    return std::make_unique<CheckboxAdapter>(reporter);
}

} // namespace menubar
