#import "MenubarApp/AppKit/AppKitViewHost.h"

#import "MenubarApp/AppKit/Controls/Containers.h"

#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace menubar {

namespace {

using Order = std::unordered_map<NSView*, std::size_t>;

/// By the ranks in `context`. The two AppKits type the views differently.
template <class View>
NSComparisonResult compare(View first, View second, void* context) {
    const auto& order = *static_cast<const Order*>(context);
    const auto rank = [&order](NSView* view) {
        const auto found = order.find(view);
        return found == order.end() ? order.size() : found->second;
    };
    const std::size_t a = rank(first);
    const std::size_t b = rank(second);
    return a < b ? NSOrderedAscending : a > b ? NSOrderedDescending : NSOrderedSame;
}

NSRect toNSRect(const Rect& rect) {
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

/// Sets what differs from `before`; everything when there is none.
void show(ControlAdapter& adapter, const View& now, const View* before) {
    adapter.show(now.content, before == nullptr ? nullptr : &before->content);
    if (now.tooltip != (before == nullptr ? std::string() : before->tooltip)) {
        [adapter.view() setToolTip:now.tooltip.empty() ? nil : toNSString(now.tooltip)];
    }
    if (now.accessibility != (before == nullptr ? Accessibility() : before->accessibility)) {
        NativeLook::describe(adapter.keyView(), now.accessibility);
    }
}

/// The view of the window that keys go to: where the window's field editor does their work, the field that it edits.
NSView* focusedView(NSWindow* window) {
    id responder = [window firstResponder];
    if ([responder isKindOfClass:[NSTextView class]] && [responder isFieldEditor]) {
        responder = [responder delegate];
    }
    return [responder isKindOfClass:[NSView class]] ? responder : nil;
}

/// Whether keys go to the view or to something in it.
bool hasFocus(NSView* view) {
    return [focusedView([view window]) isDescendantOf:view];
}

} // namespace

Measured ControlAdapter::measure(const View::Content&, double) const {
    return Look::naturalSize(view());
}

ObjCPointer<NSView> makeFlippedContentView() {
    return ObjCPointer<NSView>::adopt([[MenubarFlippedView alloc] initWithFrame:NSZeroRect]);
}

AppKitViewHost::AppKitViewHost(NSView* contentView)
    : m_contentView(ObjCPointer<NSView>::retain(contentView)),
      m_resizing([NSNotificationCenter defaultCenter], NSViewFrameDidChangeNotification, contentView,
                 [this] { reportSize(); }) {
    [contentView setPostsFrameChangedNotifications:YES];
}

AppKitViewHost::~AppKitViewHost() {
    const EventSink::Silence silence(m_sink);
    if (hasFocus(m_contentView.get())) {
        [[m_contentView.get() window] makeFirstResponder:nil];
    }
    [[m_contentView.get() window] setInitialFirstResponder:nil];
    for (const auto& [id, adapter] : m_adapters) {
        adapter->disconnect();
    }
    NSArray* views = [NSArray arrayWithArray:[m_contentView.get() subviews]];
    [views makeObjectsPerformSelector:@selector(removeFromSuperview)];
}

void AppKitViewHost::setEvents(std::weak_ptr<ViewEvents> events) {
    m_sink->setEvents(std::move(events));
    reportSize();
}

void AppKitViewHost::reportSize() const {
    const NSSize size = [m_contentView.get() bounds].size;
    const auto sink = m_sink;
    sink->send([size](ViewEvents& events) { events.resized({.width = size.width, .height = size.height}); });
}

ControlAdapter* AppKitViewHost::adapter(ControlId id) const {
    const auto found = m_adapters.find(id);
    return found == m_adapters.end() ? nullptr : found->second.get();
}

NSView* AppKitViewHost::contentOf(ControlId id) const {
    ControlAdapter* holder = adapter(id);
    return holder == nullptr ? m_contentView.get() : holder->contentView();
}

NSView* AppKitViewHost::nativeView(ControlId id) const {
    ControlAdapter* found = adapter(id);
    return found == nullptr ? nullptr : found->view();
}

NSView* AppKitViewHost::keyView(ControlId id) const {
    ControlAdapter* found = adapter(id);
    return found == nullptr ? nullptr : found->keyView();
}

void AppKitViewHost::create(ControlId id, ControlId parent, const View& control) {
    const EventSink::Silence silence(m_sink);
    const Reporter reporter{.id = id, .sink = m_sink};
    AdapterPointer made = std::visit(
        [&]<class Content>(const Content& content) -> AdapterPointer {
            if constexpr (isNative<Content>) {
                return makeAdapter(content, reporter);
            } else {
                return nullptr; // never asked for
            }
        },
        control.content);
    show(*made, control, nullptr);
    [contentOf(parent) addSubview:made->view()];
    m_adapters[id] = std::move(made);
}

void AppKitViewHost::update(ControlId id, const View& now, const View& before) {
    const EventSink::Silence silence(m_sink);
    if (ControlAdapter* shown = adapter(id)) {
        show(*shown, now, &before);
    }
}

void AppKitViewHost::place(ControlId id, const Rect& frame) {
    const EventSink::Silence silence(m_sink);
    NSView* view = nativeView(id);
    [[view superview] setNeedsDisplayInRect:[view frame]]; // GNUstep leaves what it showed there
    [view setFrame:[view frameForAlignmentRect:toNSRect(frame)]];
    [view setNeedsDisplay:YES];
}

void AppKitViewHost::setContentSize(ControlId scrollView, Size size) {
    const EventSink::Silence silence(m_sink);
    [contentOf(scrollView) setFrameSize:NSMakeSize(size.width, size.height)];
}

void AppKitViewHost::arrange(ControlId parent, std::span<const ControlId> order) {
    const EventSink::Silence silence(m_sink);
    Order ranks;
    for (const ControlId id : order) {
        ranks.emplace(nativeView(id), ranks.size());
    }
    // Sorted in their place: a view that is taken out and put back loses the focus.
    [contentOf(parent) sortSubviewsUsingFunction:compare context:&ranks];
}

void AppKitViewHost::setTabOrder(std::span<const ControlId> order) {
    const EventSink::Silence silence(m_sink);
    std::vector<NSView*> views;
    for (const ControlId id : order) {
        if (NSView* view = keyView(id)) {
            views.push_back(view);
        }
    }
    for (std::size_t i = 0; i < views.size(); ++i) {
        [views[i] setNextKeyView:views[(i + 1) % views.size()]];
    }
    [[m_contentView.get() window] setInitialFirstResponder:views.empty() ? nil : views.front()];
}

void AppKitViewHost::destroy(ControlId id) {
    const EventSink::Silence silence(m_sink);
    const auto found = m_adapters.find(id);
    if (found == m_adapters.end()) {
        return;
    }
    const AdapterPointer gone = std::move(found->second);
    m_adapters.erase(found);
    gone->disconnect();
    // Its own action may be on the stack.
    NSView* view = [[gone->view() retain] autorelease];
    if (hasFocus(view)) {
        [[view window] makeFirstResponder:nullptr];
    }
    [view removeFromSuperview];
}

void AppKitViewHost::commitEditing() {
    NSView* focused = focusedView([m_contentView.get() window]);
    const auto found =
        std::ranges::find_if(m_adapters, [focused](const auto& entry) { return entry.second->keyView() == focused; });
    if (focused != nil && found != m_adapters.end()) {
        found->second->commitEditing(); // may be the end of this object
    }
}

void AppKitViewHost::focus(ControlId id) {
    [[m_contentView.get() window] makeFirstResponder:keyView(id)]; // may be the end of this object
}

void AppKitViewHost::scrollBy(ControlId scrollView, double length) {
    NSView* content = contentOf(scrollView);
    [content scrollPoint:NSMakePoint(0, NSMinY([[content superview] bounds]) + length)];
}

void AppKitViewHost::scrollToVisible(ControlId scrollView, const Rect& area) {
    constexpr CGFloat margin = 8.0; // so that it does not stick to the edge
    [contentOf(scrollView) scrollRectToVisible:NSInsetRect(toNSRect(area), 0.0, -margin)];
}

Measured AppKitViewHost::measure(ControlId id, const View& control, double width) {
    const ControlAdapter* shown = adapter(id);
    return shown == nullptr ? Measured{} : shown->measure(control.content, width);
}

} // namespace menubar
