#include "MenubarCore/Menu/MenuItem.h"

namespace menubar {

std::string_view rawText(MenuAction action) {
    switch (action) {
    case MenuAction::none: return "";
    case MenuAction::focusSession: return "focusSession";
    case MenuAction::openHandoff: return "openHandoff";
    case MenuAction::refreshClicked: return "refreshClicked";
    case MenuAction::openSettings: return "openSettings";
    case MenuAction::toggleCompact: return "toggleCompact";
    case MenuAction::startDaemon: return "startDaemon";
    case MenuAction::stopDaemon: return "stopDaemon";
    case MenuAction::openLogs: return "openLogs";
    case MenuAction::openStatusFile: return "openStatusFile";
    case MenuAction::quit: return "quit";
    }
    return "";
}

} // namespace menubar
