#pragma once

#include "MenubarCore/Menu/MenuItem.h"

#include "tests/support/Literal.h"

#include <string>

namespace menubar {

inline void append(std::string& out, const Menu& menu, int depth) {
    for (const MenuItem& item : menu) {
        out.append(static_cast<std::size_t>(depth + item.indentation) * 2, ' ');
        if (item.kind == MenuItem::Kind::separator) {
            out += "---\n";
            continue;
        }
        out += item.enabled ? "" : "(";
        out += literal(item.title);
        out += item.enabled ? "" : ")";
        out += item.checked ? " checked" : "";
        if (item.tag != 0) {
            out += " tag=" + std::to_string(item.tag);
        }
        if (!item.keyEquivalent.empty()) {
            out += item.keyModifiers == KeyModifiers::command ? " key=cmd-" : " key=shift-cmd-";
            out += item.keyEquivalent;
        }
        if (const std::string_view asked = item.selector.empty() ? rawText(item.action) : item.selector;
            !asked.empty()) {
            out += " -> ";
            out += asked;
        }
        if (item.path) {
            out += " path=" + literal(*item.path);
        }
        if (item.tooltip) {
            out += " tooltip=" + literal(*item.tooltip);
        }
        out += '\n';
        append(out, item.submenu, depth + 1);
    }
}

/// A stable text of the whole menu, one line an item: marks for disabled, checked, tag, indentation, key, action or
/// selector, path and tooltip.
[[nodiscard]] inline std::string dump(const Menu& menu) {
    std::string out;
    append(out, menu, 0);
    return out;
}

} // namespace menubar
