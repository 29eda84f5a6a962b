#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/AppKit/Controls/ControlAdapter.h"

#include <functional>
#include <utility>

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
    ActionAdapter(NativeView* owned, Reporter reporter, std::function<void(const Reporter&, NativeView*)> report)
        : AdapterFor<Content, NativeView>(owned),
          m_target(makeCallback([reporter = std::move(reporter), report = std::move(report), view = this->native()] {
              report(reporter, view); // not the sender: GNUstep names none before the control has been drawn
          })) {
        [this->native() setTarget:m_target.get()];
        [this->native() setAction:@selector(call:)];
    }

private:
    ObjCPointer<MenubarCallback> m_target;
};

} // namespace menubar
