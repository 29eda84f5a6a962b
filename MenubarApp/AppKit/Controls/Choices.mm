// Steppers and pop-up menus.
#include "MenubarApp/AppKit/Controls/ActionAdapter.h"
#include "MenubarApp/AppKit/Controls/KeyControls.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

#include <utility>

namespace menubar {

namespace {

/// The native stepper counts for itself, and the direction in which it has gone is reported. Its count is left alone:
/// an arrow that is held down goes on from where it began, whatever an action makes of it. A bound is there to stop an
/// arrow that leads nowhere.
class StepperAdapter final : public ActionAdapter<Stepper, NSStepper> {
public:
    explicit StepperAdapter(const Reporter& reporter)
        : ActionAdapter([[MenubarStepper alloc] initWithFrame:NSZeroRect], reporter) {
        [native() setIncrement:1.0];
        [native() setValueWraps:NO];
        [native() setAutorepeat:YES];
    }

protected:
    void apply(const Change<Stepper>& change) override {
        const Stepper& now = change.now;
        if (change.in(&Stepper::value, &Stepper::min, &Stepper::max)) {
            m_mayGoDown = !now.min || now.value > *now.min;
            m_mayGoUp = !now.max || now.value < *now.max;
            const double count = [native() doubleValue];
            [native() setMinValue:m_mayGoDown ? -farAway : count];
            [native() setMaxValue:m_mayGoUp ? farAway : count];
            [native() setNeedsDisplay:YES];
            NativeLook::describeValue(native(), now.value);
        }
    }

    void report(const Reporter& to) override {
        const double steps = [native() doubleValue] - std::exchange(m_count, [native() doubleValue]);
        if (steps > 0.0 && m_mayGoUp) {
            to.tell(&ViewEvents::stepped, StepDirection::up);
        } else if (steps < 0.0 && m_mayGoDown) {
            to.tell(&ViewEvents::stepped, StepDirection::down);
        }
    }

private:
    static constexpr double farAway = 1e9; // steps

    double m_count = 0.0; ///< when it was last looked at
    bool m_mayGoUp = true;
    bool m_mayGoDown = true;
};

class PickerAdapter final : public ActionAdapter<Picker, NSPopUpButton> {
public:
    using ActionAdapter::ActionAdapter;

protected:
    void apply(const Change<Picker>& change) override {
        if (change.in(&Picker::options)) {
            showOptions(change.now);
        }
        if (change.in(&Picker::options, &Picker::selection)) {
            const auto& selection = change.now.selection;
            [native() selectItemAtIndex:selection ? static_cast<NSInteger>(*selection) : -1];
        }
    }

    void report(const Reporter& to) override {
        const NSInteger index = [native() indexOfSelectedItem];
        if (index >= 0) {
            to.tell(&ViewEvents::picked, static_cast<std::size_t>(index));
        }
    }

private:
    /// Items, not titles: the button would drop a title that it has already.
    void showOptions(const Picker& now) {
        NSMenu* menu = [[[NSMenu alloc] initWithTitle:@""] autorelease];
        [menu setAutoenablesItems:NO];
        for (const std::string& option : now.options) {
            NSMenuItem* item = [[[NSMenuItem alloc] initWithTitle:toNSString(option) action:nullptr
                                                    keyEquivalent:@""] autorelease];
            [menu addItem:item];
        }
        [native() setMenu:menu];
    }
};

} // namespace

AdapterPointer makeAdapter(const Stepper&, const Reporter& reporter) {
    return std::make_unique<StepperAdapter>(reporter);
}

AdapterPointer makeAdapter(const Picker&, const Reporter& reporter) {
    // Dressed before it gets its target, which goes with the cell.
    NSPopUpButton* picker = [[MenubarPicker alloc] initWithFrame:NSZeroRect pullsDown:NO];
    NativeLook::dressPicker(picker);
    [picker setAutoenablesItems:NO];
    return std::make_unique<PickerAdapter>(picker, reporter);
}

} // namespace menubar
