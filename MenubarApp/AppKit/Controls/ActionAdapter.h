#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/AppKit/Controls/ControlAdapter.h"

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

    /// Takes over the caller's reference.
    ActionAdapter(NativeView* owned, Reporter reporter)
        : AdapterFor<Content, NativeView>(owned), m_reporter(std::move(reporter)),
          m_target(makeCallback([this] { report(m_reporter); })) {
        [this->native() setTarget:m_target.get()];
        [this->native() setAction:@selector(call:)];
    }

protected:
    /// Tells what a person has done. This object may be gone when that returns.
    virtual void report(const Reporter& to) = 0;

private:
    const Reporter m_reporter;
    ObjCPointer<MenubarCallback> m_target;
};

} // namespace menubar
