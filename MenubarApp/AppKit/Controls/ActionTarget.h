#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Controls/ControlAdapter.h"

#include <functional>

/// The target of a control's action. Main thread.
@interface MenubarActionTarget : NSObject {
    menubar::Reporter _reporter;
    std::function<void(const menubar::Reporter&, id)> _report;
}

/// `report` gets the control that was used.
- (instancetype)initWithReporter:(const menubar::Reporter&)reporter
                          report:(std::function<void(const menubar::Reporter&, id)>)report;

- (void)act:(id)sender;

@end

namespace menubar {

/// An adapter whose control sends an action.
template <class Content, class NativeView>
class ActionAdapter : public AdapterFor<Content, NativeView> {
public:
    void disconnect() override {
        [this->native() setTarget:nil];
        [this->native() setAction:nullptr];
    }

    ~ActionAdapter() override { [this->native() setTarget:nil]; }

protected:
    ActionAdapter(NativeView* owned, const Reporter& reporter, std::function<void(const Reporter&, NativeView*)> report)
        : AdapterFor<Content, NativeView>(owned),
          m_target(ObjCPointer<MenubarActionTarget>::adopt([[MenubarActionTarget alloc]
              initWithReporter:reporter
                        report:[report = std::move(report), view = this->native()](const Reporter& to, id) {
                            // Not the sender: GNUstep names none before the control has been drawn.
                            report(to, view);
                        }])) {
        [this->native() setTarget:m_target.get()];
        [this->native() setAction:@selector(act:)];
    }

private:
    ObjCPointer<MenubarActionTarget> m_target;
};

} // namespace menubar
