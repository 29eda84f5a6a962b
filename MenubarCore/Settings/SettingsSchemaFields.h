#pragma once

#include "MenubarCore/JSON/Record.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// The document that `config schema` prints, record by record. SettingsSchema is built from it.
namespace SchemaDocument {

/// The rules of a list's elements.
struct Items {
    std::optional<std::string> pattern;
    std::optional<std::vector<std::string>> enumValues;
};

/// One config key as JSON Schema describes it.
struct Property {
    std::optional<std::string> type;
    std::optional<JSONValue> defaultValue;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<std::string> pattern;
    std::optional<std::vector<std::string>> enumValues;
    std::optional<Items> items;
};

/// How one setting is to be shown. What is absent here may still be said by the property of its name.
struct Meta {
    std::string name;
    std::optional<std::string> group;
    std::optional<std::string> control;
    std::optional<std::string> help;
    std::optional<bool> restart;
    std::optional<double> min;
    std::optional<double> max;
    std::optional<bool> integer;
    std::optional<std::vector<std::string>> values;
    std::optional<bool> multiple;
    std::optional<bool> multiline;
    std::optional<std::string> requiredPrefix;
    std::optional<std::string> itemPattern;
};

struct GroupEntry {
    std::string id;
    std::optional<std::string> title;
    std::vector<Meta> settings;
};

struct Document {
    std::map<std::string, Property, std::less<>> properties;
    std::optional<std::int64_t> version;
    std::vector<GroupEntry> groups;
};

} // namespace SchemaDocument

template <>
inline constexpr auto recordRows<SchemaDocument::Items> = std::array{
    field::optional<&SchemaDocument::Items::pattern>("pattern"),
    field::optional<&SchemaDocument::Items::enumValues>("enum"),
};

template <>
inline constexpr auto recordRows<SchemaDocument::Property> = std::array{
    field::optional<&SchemaDocument::Property::type>("type"),
    field::optional<&SchemaDocument::Property::defaultValue>("default"),
    field::optional<&SchemaDocument::Property::minimum>("minimum"),
    field::optional<&SchemaDocument::Property::maximum>("maximum"),
    field::optional<&SchemaDocument::Property::pattern>("pattern"),
    field::optional<&SchemaDocument::Property::enumValues>("enum"),
    field::optional<&SchemaDocument::Property::items>("items"),
};

template <>
inline constexpr auto recordRows<SchemaDocument::Meta> = std::array{
    field::required<&SchemaDocument::Meta::name>("name"),
    field::optional<&SchemaDocument::Meta::group>("group"),
    field::optional<&SchemaDocument::Meta::control>("control"),
    field::optional<&SchemaDocument::Meta::help>("help"),
    field::optional<&SchemaDocument::Meta::restart>("restart"),
    field::optional<&SchemaDocument::Meta::min>("min"),
    field::optional<&SchemaDocument::Meta::max>("max"),
    field::optional<&SchemaDocument::Meta::integer>("integer"),
    field::optional<&SchemaDocument::Meta::values>("values"),
    field::optional<&SchemaDocument::Meta::multiple>("multiple"),
    field::optional<&SchemaDocument::Meta::multiline>("multiline"),
    field::optional<&SchemaDocument::Meta::requiredPrefix>("requiredPrefix"),
    field::optional<&SchemaDocument::Meta::itemPattern>("itemPattern"),
};

template <>
inline constexpr auto recordRows<SchemaDocument::GroupEntry> = std::array{
    field::required<&SchemaDocument::GroupEntry::id>("id"),
    field::optional<&SchemaDocument::GroupEntry::title>("title"),
    field::withDefault<&SchemaDocument::GroupEntry::settings>("settings"),
};

template <>
inline constexpr auto recordRows<SchemaDocument::Document> = std::array{
    field::withDefault<&SchemaDocument::Document::properties>("properties"),
    field::optional<&SchemaDocument::Document::version>("x-settings-version"),
    field::withDefault<&SchemaDocument::Document::groups>("x-groups"),
};

} // namespace menubar
