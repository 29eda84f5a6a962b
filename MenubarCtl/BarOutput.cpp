#include "MenubarCtl/BarOutput.h"

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Menu/Selection.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCtl/Look.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace menubar::ctl {

namespace {

using Tone = StatusItemPresentation::Tone;

std::string_view hexColour(Tone tone) {
    switch (tone) {
    case Tone::ok: return "#34c759";
    case Tone::warn: return "#ff9500";
    case Tone::critical: return "#ff3b30";
    case Tone::muted: return "#8e8e93";
    }
    return "";
}

/// The percentage of the worst session, in every mode of the item; absent where the item would show "--".
std::optional<double> worstPercent(const BarInput& input) {
    const DaemonState::Case kind = input.poll.state.kind();
    const StatusFile* file = input.poll.snapshot.file();
    if (file == nullptr || (kind != DaemonState::Case::running && kind != DaemonState::Case::stale)) {
        return std::nullopt;
    }
    const SessionStatus* worst = Selection::worst(file->sessions);
    return worst == nullptr ? std::nullopt : worst->contextPct;
}

/// "93% 2 waiting"; empty where there is no figure.
std::string figures(const BarInput& input) {
    const auto percent = worstPercent(input);
    if (!percent) {
        return "";
    }
    const auto waiting =
        std::ranges::count(input.menu.sessions, SessionLifecycle::needsInput, &SessionStatus::lifecycle);
    return Formatting::percent(percent) + (waiting == 0 ? "" : " " + std::to_string(waiting) + " waiting");
}

/// The line, without anything that is particular to a format.
std::string plainText(const BarInput& input) {
    const std::string shown = figures(input);
    return std::string(signOf(input.poll.presentation.symbolName)) + (shown.empty() ? "" : " " + shown);
}

std::string plainLine(const BarInput& input) {
    return plainText(input) + "\n";
}

using Replacements = std::initializer_list<std::pair<char, std::string_view>>;

/// The text with something else in the place of these characters.
std::string replaced(std::string_view text, Replacements replacements) {
    std::string result;
    for (const char c : text) {
        const auto* const found = std::ranges::find(replacements, c, &Replacements::value_type::first);
        result += found == replacements.end() ? std::string_view(&c, 1) : found->second;
    }
    return result;
}

/// tmux expands what the command prints once more: a "#" would begin a format of its own.
std::string tmuxLine(const BarInput& input) {
    return "#[fg=" + std::string(hexColour(input.poll.presentation.tone)) + "]" +
           replaced(plainText(input), {{'#', "##"}}) + "#[default]\n";
}

std::string polybarLine(const BarInput& input) {
    return "%{F" + std::string(hexColour(input.poll.presentation.tone)) + "}" + plainText(input) + "%{F-}\n";
}

std::string pangoEscaped(std::string_view text) {
    return replaced(displayText(text), {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}});
}

/// What the item says under the pointer, then the sessions.
std::string pangoTooltip(const BarInput& input) {
    constexpr std::size_t mostSessions = 20; // a tooltip cannot be scrolled
    std::vector<std::string> lines{pangoEscaped(input.poll.presentation.tooltip)};
    for (const MenuItem& item : input.menu.items) {
        if (input.menu.sessionByTag(item.tag) != nullptr && lines.size() <= mostSessions) {
            lines.push_back(pangoEscaped(displayTitle(item.title)));
        }
    }
    if (input.menu.sessions.size() > mostSessions) {
        lines.push_back("… and " + std::to_string(input.menu.sessions.size() - mostSessions) + " more");
    }
    return joined(lines, "\r");
}

std::string waybarLine(const BarInput& input) {
    const std::string_view tone = rawText(input.poll.presentation.tone);
    JSONValue::Object object{
        {"alt", tone}, {"class", tone}, {"text", pangoEscaped(plainText(input))}, {"tooltip", pangoTooltip(input)}};
    if (const auto percent = worstPercent(input)) {
        object["percentage"] = std::round(*percent);
    }
    return JSONValue(std::move(object)).compactText() + "\n";
}

/// A row's text: "|" would end it, a hyphen at its beginning make a submenu or a separator of it.
std::string swiftbarText(std::string_view title) {
    std::string result = replaced(displayTitle(title), {{'|', "¦"}});
    if (const std::size_t first = result.find_first_not_of(' '); first < result.size() && result[first] == '-') {
        result.replace(first, 1, "‐");
    }
    return result;
}

/// A parameter's value, in double quotes; what would end it, or the row, is written another way.
std::string swiftbarValue(std::string_view text) {
    return "\"" + replaced(displayText(text, LineFeeds::keep), {{'"', "'"}, {'|', "¦"}, {'\n', " · "}}) + "\"";
}

/// Whether the text can stand as a parameter's value as it is: one that has to be rewritten would name something else.
bool isUsableAsValue(std::string_view text) {
    return !text.empty() && text.front() != '-' && swiftbarValue(text) == "\"" + std::string(text) + "\"";
}

/// Whether it is an ASCII letter, a digit, or one of `others`.
bool isPlain(char c, std::string_view others) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x80 && std::isalnum(byte) != 0) || others.contains(c);
}

/// A value that needs no quotes stands without them.
std::string swiftbarWord(std::string_view text) {
    const bool needsNone = std::ranges::all_of(text, [](char c) { return isPlain(c, "-_.:"); });
    return needsNone ? std::string(text) : swiftbarValue(text);
}

std::string fileAddress(std::string_view path) {
    std::string address = "file://";
    for (const char c : path) {
        std::array<char, 4> escape{c};
        if (!isPlain(c, "/-._~")) {
            std::snprintf(escape.data(), escape.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        }
        address += escape.data();
    }
    return address;
}

/// What choosing the row does: " " and parameters, empty for nothing. Absent for an item that is left out.
std::optional<std::string> swiftbarAction(const MenuItem& item, const BarInput& input) {
    if (item.action == MenuAction::openSettings || item.action == MenuAction::toggleCompact ||
        item.action == MenuAction::quit) {
        return std::nullopt; // a command line has none
    }
    if (item.action == MenuAction::refreshClicked) {
        return " refresh=true";
    }
    if (item.action == MenuAction::openHandoff && item.path) {
        return " href=" + fileAddress(*item.path);
    }
    const SessionStatus* session = input.menu.sessionByTag(item.tag);
    if (item.action != MenuAction::focusSession || session == nullptr) {
        return "";
    }
    const std::string id = session->sessionId.value_or(session->shortId.value_or(""));
    if (!isUsableAsValue(id) || !isUsableAsValue(input.program)) {
        return "";
    }
    return " bash=" + swiftbarValue(input.program) + " param1=focus param2=" + swiftbarWord(id) +
           " terminal=false refresh=true";
}

/// A colon stays a colon.
constexpr std::string_view literally = " symbolize=false emojize=false";

std::string swiftbarMenu(const BarInput& input) {
    std::string text = figures(input);
    text += (text.empty() ? "| sfimage=" : " | sfimage=") + input.poll.presentation.symbolName +
            " sfcolor=" + std::string(hexColour(input.poll.presentation.tone)) + "\n";
    bool separates = true;
    for (const MenuItem& item : input.menu.items) {
        if (item.kind == MenuItem::Kind::separator) {
            separates = true;
            continue;
        }
        const auto action = swiftbarAction(item, input);
        if (!action) {
            continue;
        }
        text += separates ? "---\n" : "";
        separates = false;
        text += swiftbarText(item.title) + " |" + *action + std::string(literally);
        text += item.tooltip ? " tooltip=" + swiftbarValue(*item.tooltip) : "";
        text += "\n";
    }
    return text;
}

struct FormatRow {
    BarFormat format;
    std::string (*text)(const BarInput&);
    std::string_view updateEnd{};
};

constexpr std::array formats{
    FormatRow{.format = BarFormat::plain, .text = plainLine},
    FormatRow{.format = BarFormat::tmux, .text = tmuxLine},
    FormatRow{.format = BarFormat::waybar, .text = waybarLine},
    FormatRow{.format = BarFormat::polybar, .text = polybarLine},
    FormatRow{.format = BarFormat::swiftbar, .text = swiftbarMenu, .updateEnd = "~~~\n"},
};

const FormatRow& rowOf(BarFormat format) {
    return *std::ranges::find(formats, format, &FormatRow::format);
}

} // namespace

std::string barText(BarFormat format, const BarInput& input) {
    return rowOf(format).text(input);
}

std::string_view updateEnd(BarFormat format) {
    return rowOf(format).updateEnd;
}

} // namespace menubar::ctl
