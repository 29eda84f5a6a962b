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
    case MenuAction::showSettings: return "show";
    case MenuAction::terminate: return "terminate:";
    case MenuAction::undo: return "undo:";
    case MenuAction::redo: return "redo:";
    case MenuAction::cut: return "cut:";
    case MenuAction::copy: return "copy:";
    case MenuAction::paste: return "paste:";
    case MenuAction::selectAll: return "selectAll:";
    case MenuAction::performClose: return "performClose:";
    case MenuAction::performMiniaturize: return "performMiniaturize:";
    }
    return "";
}

namespace {

/// Texts in a dump are quoted, with line feeds visible, so that one item stays on one line.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '\n') {
            result += "\\n";
        } else if (c == '"' || c == '\\') {
            result += {'\\', c};
        } else {
            result += c;
        }
    }
    return result + '"';
}

void append(std::string& out, const Menu& menu, int depth) {
    for (const MenuItem& item : menu) {
        out.append(static_cast<std::size_t>(depth + item.indentation) * 2, ' ');
        if (item.kind == MenuItem::Kind::separator) {
            out += "---\n";
            continue;
        }
        out += item.enabled ? "" : "(";
        out += quoted(item.title);
        out += item.enabled ? "" : ")";
        out += item.checked ? " checked" : "";
        if (item.tag != 0) {
            out += " tag=" + std::to_string(item.tag);
        }
        if (!item.keyEquivalent.empty()) {
            out += item.keyModifiers == KeyModifiers::command ? " key=cmd-" : " key=shift-cmd-";
            out += item.keyEquivalent;
        }
        if (item.action != MenuAction::none) {
            out += " -> ";
            out += rawText(item.action);
        }
        if (item.path) {
            out += " path=" + quoted(*item.path);
        }
        if (item.tooltip) {
            out += " tooltip=" + quoted(*item.tooltip);
        }
        out += '\n';
        append(out, item.submenu, depth + 1);
    }
}

} // namespace

std::string dump(const Menu& menu) {
    std::string out;
    append(out, menu, 0);
    return out;
}

} // namespace menubar
