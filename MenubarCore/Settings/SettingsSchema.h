#pragma once

#include "MenubarCore/JSON/JSONValue.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// How a setting is edited. A text that is none of the known kinds stays with the value and round-trips.
class SettingControl {
public:
    enum class Kind { unknown, toggle, number, percent, duration, text, list, enumeration, path };

    /// Unknown, carrying the empty text.
    SettingControl() = default;

    /// A known kind. `Kind::unknown` here carries the empty text.
    SettingControl(Kind kind) : m_kind(kind) {}

    /// The kind of a schema's text ("toggle", "number", "percent", "duration", "text", "list", "enum", "path",
    /// exactly); unknown, carrying the text, for every other one.
    [[nodiscard]] static SettingControl fromRawValue(std::string_view text);

    [[nodiscard]] Kind kind() const { return m_kind; }

    [[nodiscard]] bool isKnown() const { return m_kind != Kind::unknown; }

    /// The schema's text; for an unknown kind the text it carries.
    [[nodiscard]] std::string_view rawValue() const&;

    bool operator==(const SettingControl&) const = default;

private:
    Kind m_kind = Kind::unknown;
    std::string m_unknownText;
};

/// One setting as the daemon's schema describes it.
struct SettingSpec {
    std::string name; ///< the config key
    std::string group;
    SettingControl control;
    std::string help;
    bool restart = true;       ///< a change takes effect only when the daemon restarts
    std::optional<double> min; ///< inclusive
    std::optional<double> max; ///< inclusive
    bool integer = false;
    std::vector<std::string> values; ///< allowed values of an enumeration
    bool multiple = false;
    bool multiline = false;
    std::optional<std::string> requiredPrefix;
    std::optional<std::string> itemPattern; ///< regular expression for each element of a list
    std::optional<std::string> pattern;     ///< regular expression for the text of a duration
    std::optional<std::string> type;        ///< the property's JSON Schema type
    std::optional<JSONValue> defaultValue;

    bool operator==(const SettingSpec&) const = default;
};

} // namespace menubar
