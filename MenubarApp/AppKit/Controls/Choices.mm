// Steppers and pop-up menus.
#include "MenubarApp/AppKit/Controls/ActionTarget.h"
#include "MenubarApp/AppKit/Controls/KeyControls.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

namespace menubar {

namespace {

/// The native stepper counts from 0 and is put back after each step; its bounds are there to stop an arrow that leads
/// nowhere.
class StepperAdapter final : public ActionAdapter<Stepper, NSStepper> {
  public:
    explicit StepperAdapter(const Reporter& reporter)
        : ActionAdapter([[MenubarStepper alloc] initWithFrame:NSZeroRect], reporter, report) {
        [native() setIncrement:1.0];
        [native() setValueWraps:NO];
        [native() setAutorepeat:YES];
    }

  protected:
    void apply(const Change<Stepper>& change) override {
        const Stepper& now = change.now;
        if (change.in(&Stepper::value, &Stepper::min, &Stepper::max)) {
            [native() setMinValue:now.min && now.value <= *now.min ? 0.0 : -1.0];
            [native() setMaxValue:now.max && now.value >= *now.max ? 0.0 : 1.0];
            [native() setDoubleValue:0.0];
            [native() setNeedsDisplay:YES];
            NativeLook::describeValue(native(), now.value);
        }
        if (change.in(&Stepper::enabled)) {
            [native() setEnabled:now.enabled];
        }
    }

  private:
    static void report(const Reporter& to, NSStepper* sender) {
        const double steps = [sender doubleValue];
        [sender setDoubleValue:0.0];
        if (steps != 0.0) {
            const StepDirection direction = steps > 0.0 ? StepDirection::up : StepDirection::down;
            to.sink->send([&](ViewEvents& events) { events.stepped(to.id, direction); });
        }
    }
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
        if (change.in(&Picker::enabled)) {
            [native() setEnabled:change.now.enabled];
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
            const auto option = static_cast<std::size_t>(index);
            to.sink->send([&](ViewEvents& events) { events.picked(to.id, option); });
        }
    }
};

} // namespace

AdapterPointer makeStepperAdapter(const Reporter& reporter) {
    return std::make_unique<StepperAdapter>(reporter);
}

AdapterPointer makePickerAdapter(const Reporter& reporter) {
    return std::make_unique<PickerAdapter>(reporter);
}

} // namespace menubar
