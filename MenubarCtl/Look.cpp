#include "MenubarCtl/Look.h"

#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"

#include <algorithm>

namespace menubar::ctl {

using Tone = StatusItemPresentation::Tone;

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

std::string_view colourOf(Tone tone) {
    switch (tone) {
    case Tone::ok: return "32";
    case Tone::warn: return "33";
    case Tone::critical: return "31";
    case Tone::muted: return "";
    }
    return "";
}

Tone toneOf(SessionLevel level) {
    switch (level) {
    case SessionLevel::warn: return Tone::warn;
    case SessionLevel::critical: return Tone::critical;
    case SessionLevel::ok:
    case SessionLevel::unknown: return Tone::muted;
    }
    return Tone::muted;
}

std::string_view signOf(std::string_view symbolName) {
    return symbolName == "eye" ? "◉" : symbolName == "eye.slash" ? "⊘" : "▲";
}

std::string_view signOf(SessionLevel level) {
    switch (level) {
    case SessionLevel::ok: return "◉";
    case SessionLevel::warn:
    case SessionLevel::critical: return "▲";
    case SessionLevel::unknown: return "⊘";
    }
    return "⊘";
}

std::string_view originOf(CompactSetting::Source source) {
    switch (source) {
    case CompactSetting::Source::environment: return CompactSetting::environmentKey;
    case CompactSetting::Source::defaults: return "stored";
    case CompactSetting::Source::builtIn: return "built in";
    }
    return "";
}

std::string padding(std::string_view text, std::size_t columns) {
    return std::string(columns - std::min(columns, displayColumns(text)), ' ');
}

std::string textOf(const std::vector<std::string>& lines) {
    return joined(lines, "\n") + (lines.empty() ? "" : "\n");
}

std::string fitted(std::string_view text, const TextStyle& style) {
    return style.cuts ? fittedToColumns(displayTitle(text), style.columns) : displayText(text);
}

} // namespace menubar::ctl
