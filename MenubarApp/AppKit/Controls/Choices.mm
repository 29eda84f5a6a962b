// Steppers and pop-up menus.
#include "MenubarApp/AppKit/Controls/ActionAdapter.h"
#include "MenubarApp/AppKit/Controls/KeyControls.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

namespace menubar {

namespace {

/// The native stepper counts for itself, and the direction in which it has gone is reported. Its count is left alone:
/// an arrow that is held down goes on from where it began, whatever an action makes of it. A bound is there to stop an
/// arrow that leads nowhere.
class StepperAdapter final : public ActionAdapter<Stepper, NSStepper> {
public:
    explicit StepperAdapter(const Reporter& reporter) : StepperAdapter(reporter, std::make_shared<State>()) {}

protected:
    void apply(const Change<Stepper>& change) override {
        const Stepper& now = change.now;
        if (change.in(&Stepper::value, &Stepper::min, &Stepper::max)) {
            m_state->mayGoDown = !now.min || now.value > *now.min;
            m_state->mayGoUp = !now.max || now.value < *now.max;
            const double count = [native() doubleValue];
            [native() setMinValue:m_state->mayGoDown ? -farAway : count];
            [native() setMaxValue:m_state->mayGoUp ? farAway : count];
            [native() setNeedsDisplay:YES];
            NativeLook::describeValue(native(), now.value);
        }
    }

private:
    static constexpr double farAway = 1e9; // steps

    struct State {
        double count = 0.0; ///< when it was last looked at
        bool mayGoUp = true;
        bool mayGoDown = true;
    };

    StepperAdapter(const Reporter& reporter, const std::shared_ptr<State>& state)
        : ActionAdapter([[MenubarStepper alloc] initWithFrame:NSZeroRect], reporter,
                        [state](const Reporter& to, NSStepper* sender) { report(to, sender, *state); }),
          m_state(state) {
        [native() setIncrement:1.0];
        [native() setValueWraps:NO];
        [native() setAutorepeat:YES];
    }

    static void report(const Reporter& to, NSStepper* sender, State& state) {
        const double steps = [sender doubleValue] - state.count;
        state.count = [sender doubleValue];
        if (steps > 0.0 && state.mayGoUp) {
            to.tell(&ViewEvents::stepped, StepDirection::up);
        } else if (steps < 0.0 && state.mayGoDown) {
            to.tell(&ViewEvents::stepped, StepDirection::down);
        }
    }

    const std::shared_ptr<State> m_state;
};

class PickerAdapter final : public ActionAdapter<Picker, NSPopUpButton> {
public:
    explicit PickerAdapter(const Reporter& reporter) : ActionAdapter(newPicker(), reporter, report) {}

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

private:
    /// Dressed before it gets its target, which goes with the cell.
    [[nodiscard]] static NSPopUpButton* newPicker() NS_RETURNS_RETAINED {
        NSPopUpButton* picker = [[MenubarPicker alloc] initWithFrame:NSZeroRect pullsDown:NO];
        NativeLook::dressPicker(picker);
        [picker setAutoenablesItems:NO];
        return picker;
    }

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

    static void report(const Reporter& to, NSPopUpButton* sender) {
        const NSInteger index = [sender indexOfSelectedItem];
        if (index >= 0) {
            to.tell(&ViewEvents::picked, static_cast<std::size_t>(index));
        }
    }
};

} // namespace

AdapterPointer makeAdapter(const Stepper&, const Reporter& reporter) {
    return std::make_unique<StepperAdapter>(reporter);
}

AdapterPointer makeAdapter(const Picker&, const Reporter& reporter) {
    return std::make_unique<PickerAdapter>(reporter);
}

} // namespace menubar
