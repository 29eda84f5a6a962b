#pragma once

#include "MenubarApp/AppKit/Callback.h"
#include "MenubarApp/AppKit/Controls/ControlAdapter.h"
#include "MenubarApp/AppKit/Controls/EventSink.h"
#include "MenubarApp/AppKit/ObjCPointer.h"
#include "MenubarApp/View/ViewHost.h"

#include <memory>
#include <unordered_map>

#import <AppKit/AppKit.h>

namespace menubar {

/// An empty view in which y grows downwards, for a window's content.
[[nodiscard]] ObjCPointer<NSView> makeFlippedContentView();

/// The controls of one window: an adapter for each, by its id. Main thread.
///
/// While it carries out a call it reports nothing, but for what `commitEditing` and `focus` are there to report.
class AppKitViewHost final : public ViewHost {
public:
    /// `contentView` is flipped.
    explicit AppKitViewHost(NSView* contentView);
    /// The controls that are left go too, silently. The window is still there: it has to let go of what has its focus.
    ~AppKitViewHost() override;

    void setEvents(std::weak_ptr<ViewEvents> events) override;
    void create(ControlId id, ControlId parent, const View& control) override;
    void update(ControlId id, const View& now, const View& before) override;
    void place(ControlId id, const Rect& frame) override;
    void setContentSize(ControlId scrollView, Size size) override;
    void arrange(ControlId parent, std::span<const ControlId> order) override;
    void setTabOrder(std::span<const ControlId> order) override;
    void destroy(ControlId id) override;
    void commitEditing() override;
    void focus(ControlId id) override;
    void scrollBy(ControlId scrollView, double length) override;
    void scrollToVisible(ControlId scrollView, const Rect& area) override;
    [[nodiscard]] Measured measure(ControlId id, const View& control, double width) override;

    // For tests

    /// The native control; nil when there is none of that id.
    [[nodiscard]] NSView* nativeView(ControlId id) const;
    /// The part of it that takes keys.
    [[nodiscard]] NSView* keyView(ControlId id) const;

private:
    [[nodiscard]] ControlAdapter* adapter(ControlId id) const;
    /// The view that holds what lies inside a control, or in the window.
    [[nodiscard]] NSView* contentOf(ControlId id) const;
    void reportSize() const;

    ObjCPointer<NSView> m_contentView;
    std::shared_ptr<EventSink> m_sink = std::make_shared<EventSink>();
    std::unordered_map<ControlId, std::unique_ptr<ControlAdapter>> m_adapters;
    Observation m_resizing;
};

} // namespace menubar
