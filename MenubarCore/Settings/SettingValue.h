#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Text/CaseOf.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// What a setting's control holds. A value type; which case fits is decided by the setting's control.
class SettingValue {
public:
    using List = std::vector<std::string>;
    /// The payload, one alternative for each case.
    using Storage = std::variant<bool, double, std::string, List>;

    /// The empty text.
    SettingValue() : m_storage(std::string()) {}

    SettingValue(bool value) : m_storage(value) {}

    SettingValue(double value) : m_storage(value) {}

    SettingValue(int value) : m_storage(static_cast<double>(value)) {}

    SettingValue(std::string value) : m_storage(std::move(value)) {}

    SettingValue(std::string_view value) : m_storage(std::string(value)) {}

    SettingValue(const char* value) : m_storage(std::string(value)) {}

    SettingValue(List value) : m_storage(std::move(value)) {}

    /// What a value of the config file means to the setting; nothing when it does not fit the control. Numbers written
    /// as text are understood. The rules of the schema are not looked at: see SettingsForm::validate.
    [[nodiscard]] static std::optional<SettingValue> from(const JSONValue& json, const SettingSpec& spec);

    /// What the config file gets. The text of a control that is not known is JSON where it can be read as such.
    [[nodiscard]] JSONValue json(const SettingSpec& spec) const;

    /// The elements of an array that holds nothing but strings.
    [[nodiscard]] static std::optional<List> strings(const JSONValue& json);

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    /// The payload when the case matches, nothing otherwise. The pointers live as long as this value, unchanged.
    // NOLINTNEXTLINE(readability-identifier-naming): a keyword
    [[nodiscard]] std::optional<bool> bool_() const { return copyOf<bool>(m_storage); }

    [[nodiscard]] std::optional<double> number() const { return copyOf<double>(m_storage); }

    [[nodiscard]] const std::string* text() const& { return std::get_if<std::string>(&m_storage); }

    [[nodiscard]] const List* list() const& { return std::get_if<List>(&m_storage); }

    const std::string* text() && = delete;
    const List* list() && = delete;

    /// A text or a list without content.
    [[nodiscard]] bool isEmpty() const;

    /// By case and payload; numbers compare as doubles.
    bool operator==(const SettingValue&) const = default;

private:
    Storage m_storage;
};

} // namespace menubar
