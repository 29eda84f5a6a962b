#pragma once

#include "MenubarCore/Settings/SettingValue.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Text/EnumTexts.h"

#include <optional>
#include <string>

namespace menubar {

class PatternChecker;

/// Where a field's value was taken from.
enum class ValueSource { file, default_ };
template <>
inline constexpr auto enumTexts<ValueSource> = std::to_array<std::string_view>({"file", "default"});

/// One setting of the form: what it holds, whether that will be written, what is wrong with it, and what was last
/// loaded or saved. SettingsForm keeps the members consistent. A value type.
struct SettingField {
    SettingSpec spec;
    SettingValue value;                           ///< the default while the key is not set
    bool isSet = false;                           ///< whether the key will be written to the file
    ValueSource source = ValueSource::default_;   ///< at the last load or save
    std::optional<std::string> error;             ///< for people
    std::optional<JSONValue> unreadableFileValue; ///< does not fit the control; written back until edited or reset
    bool isLockedByFlag = false;                  ///< a command-line flag of the daemon overrides the file
    SettingValue loadedValue;                     ///< with `loadedIsSet`, what "edited" is measured against
    bool loadedIsSet = false;

    /// The field of a setting whose key holds `fileValue`; null when the file has no such key. A value that breaks a
    /// rule is kept, with an error.
    [[nodiscard]] static SettingField load(SettingSpec spec, const JSONValue* fileValue);
    [[nodiscard]] static SettingField load(SettingSpec spec, const JSONValue* fileValue, PatternChecker& patterns);

    /// The schema's default where it fits the control, else the least that the control can hold.
    [[nodiscard]] static SettingValue defaultValue(const SettingSpec& spec);

    [[nodiscard]] const std::string& name() const& { return spec.name; }

    const std::string& name() && = delete;

    /// Whether a save would change what the file says about this setting. Two unset states never differ.
    [[nodiscard]] bool isDirty() const;

    /// The schema's default as one line; nothing when it gives none.
    [[nodiscard]] std::optional<std::string> defaultText() const;

    /// What a text box shows: a text without its required prefix and one blank after it. Empty for other values.
    [[nodiscard]] std::string editableText() const;

    /// What the file gets; nothing when the key is left out.
    [[nodiscard]] std::optional<JSONValue> serializedValue() const;

    bool operator==(const SettingField&) const = default;
};

} // namespace menubar
