#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/JSONValue.h"

#include <cstdint>
#include <expected>
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
    std::string name{}; ///< the config key
    std::string group{};
    SettingControl control{};
    std::string help{};
    bool restart = true;         ///< a change takes effect only when the daemon restarts
    std::optional<double> min{}; ///< inclusive
    std::optional<double> max{}; ///< inclusive
    bool integer = false;
    std::vector<std::string> values{}; ///< allowed values of an enumeration
    bool multiple = false;
    bool multiline = false;
    std::optional<std::string> requiredPrefix{};
    std::optional<std::string> itemPattern{}; ///< regular expression for each element of a list
    std::optional<std::string> pattern{};     ///< regular expression for the text of a duration
    std::optional<std::string> type{};        ///< the property's JSON Schema type
    std::optional<JSONValue> defaultValue{};

    /// What one press of a stepper adds.
    static constexpr double step = 1.0;

    /// The name for people: its dashes as blanks, its first character in upper case ("cache-warn-after" is
    /// "Cache warn after"). A name of dashes only stays as it is.
    [[nodiscard]] std::string label() const;

    bool operator==(const SettingSpec&) const = default;
};

/// Settings that are shown together.
struct SettingsGroup {
    std::string id{};
    std::string title{}; ///< the id where the schema gives no title
    std::vector<SettingSpec> settings{};

    bool operator==(const SettingsGroup&) const = default;
};

/// What the daemon's `config schema` prints: a JSON Schema object that describes the config file's keys, and two keys
/// of its own for the version and for the order and presentation of the settings. The wire format is in
/// SettingsSchema.cpp. A value type.
struct SettingsSchema {
    std::int64_t version = 1;
    std::vector<SettingsGroup> groups{}; ///< in display order

    /// All or nothing: a key of the wrong type anywhere fails the whole document. A control that is not known does not.
    [[nodiscard]] static std::expected<SettingsSchema, DecodingError> decode(std::string_view document);

    /// Every setting, group by group. One that is listed twice is there twice.
    [[nodiscard]] std::vector<SettingSpec> settings() const;

    /// The first of that name in the order of `settings`; null when there is none. Points into this schema.
    [[nodiscard]] const SettingSpec* setting(std::string_view name) const&;
    const SettingSpec* setting(std::string_view name) && = delete;

    bool operator==(const SettingsSchema&) const = default;
};

} // namespace menubar
