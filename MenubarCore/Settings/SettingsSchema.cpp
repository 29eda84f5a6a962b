#include "MenubarCore/Settings/SettingsSchema.h"

#include <array>
#include <utility>

namespace menubar {

namespace {

using Kind = SettingControl::Kind;

constexpr auto kindTexts = std::to_array<std::pair<Kind, std::string_view>>({
    {Kind::toggle, "toggle"},
    {Kind::number, "number"},
    {Kind::percent, "percent"},
    {Kind::duration, "duration"},
    {Kind::text, "text"},
    {Kind::list, "list"},
    {Kind::enumeration, "enum"},
    {Kind::path, "path"},
});

} // namespace

SettingControl SettingControl::fromRawValue(std::string_view text) {
    for (const auto& [kind, kindText] : kindTexts) {
        if (kindText == text) {
            return kind;
        }
    }
    SettingControl control;
    control.m_unknownText = text;
    return control;
}

std::string_view SettingControl::rawValue() const& {
    for (const auto& [kind, kindText] : kindTexts) {
        if (kind == m_kind) {
            return kindText;
        }
    }
    return m_unknownText;
}

} // namespace menubar
