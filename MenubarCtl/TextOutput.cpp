#include "MenubarCtl/TextOutput.h"

#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace menubar::ctl {

namespace {

using Tone = StatusItemPresentation::Tone;

/// "◉ 72%", without the title in compact mode.
std::string itemText(const StatusItemPresentation& presentation, const TextStyle& style) {
    std::string text(signOf(presentation.symbolName));
    if (!presentation.title.empty()) {
        text += " " + presentation.title;
    }
    const bool isMuted = presentation.tone == Tone::muted;
    return drawn(fitted(text, style), {.weight = isMuted ? "2" : "1", .colour = colourOf(presentation.tone)},
                 style.styling);
}

std::string separatorLine(const TextStyle& style) {
    const std::size_t margin = style.columns > 4 ? 2 : 0;
    const std::vector<std::string_view> dashes(style.columns - (2 * margin), "─");
    return std::string(margin, ' ') + drawn(joined(dashes, ""), {.weight = "2"}, style.styling);
}

/// "⌘Q"
std::string keyHint(const MenuItem& item) {
    if (item.keyEquivalent.empty()) {
        return "";
    }
    return (item.keyModifiers == KeyModifiers::shiftCommand ? "⇧⌘" : "⌘") + uppercased(item.keyEquivalent);
}

/// `title` cut to the style's columns. The mark of a simulated action stays whole: without it the line would claim that
/// something was done.
std::string fittedTitle(std::string_view title, const TextStyle& style) {
    constexpr std::string_view mark = " (dry-run)";
    if (style.cuts && title.ends_with(mark) && style.columns > 2 * mark.size()) {
        const TextStyle rest{.columns = style.columns - mark.size(), .styling = style.styling};
        return fitted(title.substr(0, title.size() - mark.size()), rest) + std::string(mark);
    }
    return fitted(title, style);
}

/// A title with its leading "[level]" in the tone's colour.
std::string titleText(const std::string& title, Tone tone, std::string_view weight, Styling styling) {
    const std::size_t bracket = title.starts_with('[') ? title.find(']') : std::string::npos;
    const std::size_t end = tone == Tone::muted || bracket == std::string::npos ? 0 : bracket + 1;
    return drawn(std::string_view(title).substr(0, end), {.weight = weight, .colour = colourOf(tone)}, styling) +
           drawn(std::string_view(title).substr(end), {.weight = weight}, styling);
}

} // namespace

std::string menuItemLine(const MenuItem& item, const StatusMenu& menu, const TextStyle& style) {
    if (item.kind == MenuItem::Kind::separator) {
        return separatorLine(style);
    }
    const SessionStatus* session = menu.sessionByTag(item.tag);
    const Tone tone = session == nullptr ? Tone::muted : toneOf(session->level);
    const std::string margin =
        (item.checked ? "✓ " : "  ") + std::string(2 * static_cast<std::size_t>(std::max(item.indentation, 0)), ' ');
    const std::string hint = keyHint(item);
    const std::size_t taken = displayColumns(margin) + (hint.empty() ? 0 : displayColumns(hint) + 2);
    if (taken >= style.columns) {
        return fitted(margin + item.title, style);
    }
    TextStyle room = style;
    room.columns -= taken;
    const std::string title = fittedTitle(item.title, room);
    std::string line = margin + titleText(title, tone, item.enabled ? "" : "2", style.styling);
    if (!hint.empty()) {
        line += padding(title, room.columns) + " " + drawn(hint, {.weight = "2"}, style.styling) + " ";
    }
    return line;
}

std::vector<std::string> headLines(const StatusItemPresentation& presentation, const TextStyle& style) {
    const std::size_t margin = style.columns > 4 ? 2 : 0;
    TextStyle room = style;
    room.columns -= margin;
    return {std::string(margin, ' ') + itemText(presentation, room), separatorLine(style)};
}

std::string statusText(const StatusPoll& poll, const std::string& statusFile, const TimeZone& timeZone,
                       Styling styling) {
    const StatusFile* file = poll.snapshot.file();
    const OstrelConfig* config = file != nullptr && file->config ? &*file->config : nullptr;
    const std::size_t sessions = file == nullptr ? 0 : file->sessions.size();
    std::string text = displayText(poll.state.title(timeZone)) + "\n";
    text += displayText(poll.state.detail(config)) + "\n";
    for (const ConfigNotice& notice : ConfigNotices::notices(file, poll.state)) {
        text += "Notice:      " + displayText(notice.menuLine()) + "\n";
    }
    text += "Item:        " + itemText(poll.presentation, {.columns = 80, .styling = styling}) + "\n";
    text += "Tooltip:     " + displayText(poll.presentation.tooltip) + "\n";
    text += "Sessions:    " + std::to_string(sessions) + "\n";
    text += "Icon only:   " + std::string(poll.compact.compact ? "on" : "off") + " (" +
            (poll.compact.isLockedByEnvironment() ? "set by " : "") + std::string(originOf(poll.compact.source)) +
            ")\n";
    text += "Status file: " + displayText(statusFile) + "\n";
    return text;
}

std::vector<std::string> menuLines(const StatusItemPresentation& presentation, const StatusMenu& menu,
                                   const TextStyle& style) {
    std::vector<std::string> lines = headLines(presentation, style);
    lines.reserve(menu.items.size() + lines.size());
    for (const MenuItem& item : menu.items) {
        lines.push_back(menuItemLine(item, menu, style));
    }
    return lines;
}

} // namespace menubar::ctl
