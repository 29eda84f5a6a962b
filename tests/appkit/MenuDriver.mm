#import "tests/appkit/MenuDriver.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <utility>

namespace menubar::driver {

void RecordingEvents::menuNeedsUpdate() {
    if (onNeedsUpdate) {
        onNeedsUpdate();
    }
}

void RecordingEvents::menuWillOpen() {
    log.emplace_back("willOpen");
    if (onWillOpen) {
        onWillOpen();
    }
}

void RecordingEvents::menuDidClose() {
    log.emplace_back("didClose");
}

void RecordingEvents::perform(MenuAction action, int tag, const std::optional<std::string>& path) {
    std::string line(rawText(action));
    if (tag != 0) {
        line += " tag=" + std::to_string(tag);
    }
    if (path) {
        line += " path=" + *path;
    }
    log.push_back(std::move(line));
}

NSMenuItem* itemTitled(NSMenu* menu, const std::string& title) {
    return static_cast<NSMenuItem*>([menu itemWithTitle:toNSString(title)]);
}

MenuItem label(const std::string& title) {
    MenuItem item;
    item.title = title;
    return item;
}

MenuItem command(const std::string& title, MenuAction action, int tag) {
    MenuItem item;
    item.title = title;
    item.action = action;
    item.enabled = true;
    item.tag = tag;
    return item;
}

MenuItem separator() {
    MenuItem item;
    item.kind = MenuItem::Kind::separator;
    return item;
}

} // namespace menubar::driver
