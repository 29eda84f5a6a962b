#include "MenubarCtl/TextOutput.h"

#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace menubar::ctl {

namespace {

using Tone = StatusItemPresentation::Tone;

/// A way of drawing some characters, as the parameters of the terminal's "select graphic rendition".
struct Look {
    std::string_view weight{}; ///< "1" bold, "2" dim, or empty
    std::string_view colour{}; ///< or empty
};

std::string_view colourOf(Tone tone) {
    switch (tone) {
    case Tone::ok: return "32";
    case Tone::warn: return "33";
    case Tone::critical: return "31";
    case Tone::muted: return "";
    }
    return "";
}

/// The tone of a session's own level; `muted` where it needs no colour.
Tone toneOf(SessionLevel level) {
    switch (level) {
    case SessionLevel::warn: return Tone::warn;
    case SessionLevel::critical: return Tone::critical;
    case SessionLevel::ok:
    case SessionLevel::unknown: return Tone::muted;
    }
    return Tone::muted;
}

std::string_view symbolOf(std::string_view symbolName) {
    return symbolName == "eye" ? "◉" : symbolName == "eye.slash" ? "⊘" : "▲";
}

std::string drawn(std::string_view text, Look look, Styling styling) {
    const std::string_view colour = styling == Styling::colours ? look.colour : "";
    if (text.empty() || styling == Styling::plain || (look.weight.empty() && colour.empty())) {
        return std::string(text);
    }
    std::string result = "\x1b[";
    result += look.weight;
    result += look.weight.empty() || colour.empty() ? "" : ";";
    result += colour;
    result += "m";
    result += text;
    return result + "\x1b[0m";
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (; count > 0; --count) {
        result += text;
    }
    return result;
}

/// "◉ 72%", without the title in compact mode.
std::string itemText(const StatusItemPresentation& presentation, const TextStyle& style) {
    std::string text(symbolOf(presentation.symbolName));
    if (!presentation.title.empty()) {
        text += " " + displayTitle(presentation.title);
    }
    const bool isMuted = presentation.tone == Tone::muted;
    return drawn(fittedToColumns(text, style.columns),
                 {.weight = isMuted ? "2" : "1", .colour = colourOf(presentation.tone)}, style.styling);
}

std::string separatorLine(const TextStyle& style) {
    const std::size_t margin = style.columns > 4 ? 2 : 0;
    return std::string(margin, ' ') +
           drawn(repeated("─", style.columns - (2 * margin)), {.weight = "2"}, style.styling);
}

/// "⌘Q"
std::string keyHint(const MenuItem& item) {
    if (item.keyEquivalent.empty()) {
        return "";
    }
    std::string hint = item.keyModifiers == KeyModifiers::shiftCommand ? "⇧⌘" : "⌘";
    for (const char c : item.keyEquivalent) {
        hint += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return hint;
}

/// `title` cut to the columns. The mark of a simulated action stays whole: without it the line would claim that
/// something was done.
std::string fittedTitle(std::string_view title, std::size_t columns) {
    constexpr std::string_view mark = " (dry-run)";
    if (title.ends_with(mark) && columns > 2 * mark.size()) {
        return fittedToColumns(title.substr(0, title.size() - mark.size()), columns - mark.size()) + std::string(mark);
    }
    return fittedToColumns(title, columns);
}

/// A title with its leading "[level]" in the tone's colour.
std::string titleText(const std::string& title, Tone tone, std::string_view weight, Styling styling) {
    const std::size_t bracket = title.starts_with('[') ? title.find(']') : std::string::npos;
    const std::size_t end = tone == Tone::muted || bracket == std::string::npos ? 0 : bracket + 1;
    return drawn(std::string_view(title).substr(0, end), {.weight = weight, .colour = colourOf(tone)}, styling) +
           drawn(std::string_view(title).substr(end), {.weight = weight}, styling);
}

std::string itemLine(const MenuItem& item, Tone tone, const TextStyle& style) {
    const std::string margin =
        (item.checked ? "✓ " : "  ") + std::string(2 * static_cast<std::size_t>(std::max(item.indentation, 0)), ' ');
    const std::string hint = keyHint(item);
    const std::size_t taken = displayColumns(margin) + (hint.empty() ? 0 : displayColumns(hint) + 2);
    if (taken >= style.columns) {
        return fittedToColumns(margin + displayTitle(item.title), style.columns);
    }
    const std::string title = fittedTitle(displayTitle(item.title), style.columns - taken);
    std::string line = margin + titleText(title, tone, item.enabled ? "" : "2", style.styling);
    if (!hint.empty()) {
        line.append(style.columns - taken - displayColumns(title) + 1, ' ');
        line += drawn(hint, {.weight = "2"}, style.styling) + " ";
    }
    return line;
}

std::string_view label(CompactSetting::Source source) {
    switch (source) {
    case CompactSetting::Source::environment: return "set by OSTREL_MENUBAR_COMPACT";
    case CompactSetting::Source::defaults: return "stored";
    case CompactSetting::Source::builtIn: return "built in";
    }
    return "";
}

} // namespace

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
            std::string(label(poll.compact.source)) + ")\n";
    text += "Status file: " + displayText(statusFile) + "\n";
    return text;
}

std::vector<std::string> menuLines(const StatusItemPresentation& presentation, const StatusMenu& menu,
                                   const TextStyle& style) {
    std::vector<std::string> lines;
    lines.reserve(menu.items.size() + 2);
    const std::size_t margin = style.columns > 4 ? 2 : 0;
    lines.push_back(std::string(margin, ' ') +
                    itemText(presentation, {.columns = style.columns - margin, .styling = style.styling}));
    lines.push_back(separatorLine(style));
    for (const MenuItem& item : menu.items) {
        if (item.kind == MenuItem::Kind::separator) {
            lines.push_back(separatorLine(style));
            continue;
        }
        const SessionStatus* session = menu.sessionByTag(item.tag);
        lines.push_back(itemLine(item, session == nullptr ? Tone::muted : toneOf(session->level), style));
    }
    return lines;
}

std::vector<std::string> clippedToRows(std::vector<std::string> lines, const TerminalSize& size, Styling styling) {
    if (lines.size() <= size.rows) {
        return lines;
    }
    const std::size_t left = lines.size() - (size.rows - 1);
    lines.resize(size.rows - 1);
    const std::string note = fittedToColumns("  … " + std::to_string(left) + " more lines", size.columns);
    lines.push_back(drawn(note, {.weight = "2"}, styling));
    return lines;
}

} // namespace menubar::ctl
