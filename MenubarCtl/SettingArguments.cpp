#include "MenubarCtl/SettingArguments.h"

#include "MenubarCore/Menu/CompactSetting.h"
#include "MenubarCore/Text/Case.h"

#include <optional>
#include <string>
#include <string_view>

namespace menubar::ctl {

namespace {

using Kind = SettingControl::Kind;

std::optional<SettingValue> toggleValue(const std::string& text) {
    const auto value = trimmed(text) == text ? CompactSetting::parse(text) : std::nullopt; // the same words
    return value ? std::optional<SettingValue>(*value) : std::nullopt;
}

/// A number is what it would be as a text in the config file; a percentage may carry its sign, as lists show it.
std::optional<SettingValue> numberValue(std::string_view text, const SettingSpec& spec) {
    if (spec.control.kind() == Kind::percent) {
        text = text.substr(0, text.find_last_not_of(" \t") + 1);
        text.remove_suffix(text.ends_with('%') ? 1 : 0);
    }
    return SettingValue::from(JSONValue(text), spec);
}

} // namespace

bool takesItems(const SettingSpec& spec) {
    return spec.control.kind() == Kind::list || (spec.control.kind() == Kind::enumeration && spec.multiple);
}

std::expected<void, ArgumentError> applyArguments(SettingsForm& form, const SettingField& field,
                                                  std::span<const std::string> values) {
    const SettingSpec spec = field.spec; // the edit changes the field
    if (takesItems(spec)) {
        form.set(spec.name, SettingValue::List(values.begin(), values.end()));
        return {};
    }
    if (values.size() != 1) {
        return std::unexpected(ArgumentError::wrongNumber);
    }
    const Kind kind = spec.control.kind();
    if (kind != Kind::toggle && kind != Kind::number && kind != Kind::percent) {
        form.setEditableText(spec.name, values.front());
        return {};
    }
    const auto value = kind == Kind::toggle ? toggleValue(values.front()) : numberValue(values.front(), spec);
    if (!value) {
        return std::unexpected(ArgumentError::notReadable);
    }
    form.set(spec.name, *value);
    return {};
}

} // namespace menubar::ctl
