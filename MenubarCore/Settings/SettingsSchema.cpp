#include "MenubarCore/Settings/SettingsSchema.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/Settings/SettingsSchemaFields.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/Graphemes.h"

#include <algorithm>
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

namespace {

using SchemaDocument::Items;
using SchemaDocument::Meta;
using SchemaDocument::Property;

template <typename T>
std::optional<T> firstOf(const std::optional<T>& hint, const std::optional<T>& rule) {
    return hint ? hint : rule;
}

/// The setting's own hints come before the rules of the property of its name.
SettingSpec merged(Meta meta, const Property& property) {
    const Items items = property.items.value_or(Items{});
    const auto values = firstOf(firstOf(meta.values, property.enumValues), items.enumValues);
    return {
        .name = std::move(meta.name),
        .group = std::move(meta.group).value_or(""),
        .control = SettingControl::fromRawValue(meta.control.value_or("")),
        .help = std::move(meta.help).value_or(""),
        .restart = meta.restart.value_or(true),
        .min = firstOf(meta.min, property.minimum),
        .max = firstOf(meta.max, property.maximum),
        .integer = meta.integer.value_or(property.type == "integer"),
        .values = values.value_or(std::vector<std::string>{}),
        .multiple = meta.multiple.value_or(false),
        .multiline = meta.multiline.value_or(false),
        .requiredPrefix = std::move(meta.requiredPrefix),
        .itemPattern = firstOf(meta.itemPattern, items.pattern),
        .pattern = property.pattern,
        .type = property.type,
        .defaultValue = property.defaultValue,
    };
}

} // namespace

std::expected<SettingsSchema, DecodingError> SettingsSchema::decode(std::string_view document) {
    auto decoded = JSONReader::decode<SchemaDocument::Document>(document);
    if (!decoded) {
        return std::unexpected(std::move(decoded.error()));
    }
    const Property absent;
    SettingsSchema schema{.version = decoded->version.value_or(1), .groups = {}};
    for (SchemaDocument::GroupEntry& entry : decoded->groups) {
        SettingsGroup group{.id = entry.id, .title = entry.title.value_or(entry.id), .settings = {}};
        for (Meta& meta : entry.settings) {
            const auto property = decoded->properties.find(meta.name);
            group.settings.push_back(
                merged(std::move(meta), property == decoded->properties.end() ? absent : property->second));
        }
        schema.groups.push_back(std::move(group));
    }
    return schema;
}

std::string SettingSpec::label() const {
    std::string words;
    std::string_view rest = name;
    while (!rest.empty()) {
        const std::string_view piece = rest.substr(0, rest.find('-'));
        rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
        if (!piece.empty()) {
            words.append(words.empty() ? "" : " ").append(piece);
        }
    }
    if (words.empty()) {
        return name;
    }
    const std::size_t first = graphemePrefix(words, 1).size();
    return uppercased(std::string_view(words).substr(0, first)) + words.substr(first);
}

std::vector<SettingSpec> SettingsSchema::settings() const {
    std::vector<SettingSpec> all;
    for (const SettingsGroup& group : groups) {
        all.insert(all.end(), group.settings.begin(), group.settings.end());
    }
    return all;
}

const SettingSpec* SettingsSchema::setting(std::string_view name) const& {
    for (const SettingsGroup& group : groups) {
        const auto found = std::ranges::find(group.settings, name, &SettingSpec::name);
        if (found != group.settings.end()) {
            return &*found;
        }
    }
    return nullptr;
}

} // namespace menubar
