#include "MenubarCtl/SettingArguments.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace menubar::ctl {

namespace {

using Kind = SettingControl::Kind;

std::optional<SettingValue> toggleValue(std::string_view text) {
    constexpr std::array<std::string_view, 4> on{"on", "true", "yes", "1"};
    constexpr std::array<std::string_view, 4> off{"off", "false", "no", "0"};
    if (std::ranges::find(on, text) != on.end()) {
        return true;
    }
    return std::ranges::find(off, text) != off.end() ? std::optional<SettingValue>(false) : std::nullopt;
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
    // A number is what it would be as a text in the config file.
    const auto value =
        kind == Kind::toggle ? toggleValue(values.front()) : SettingValue::from(JSONValue(values.front()), spec);
    if (!value) {
        return std::unexpected(ArgumentError::notReadable);
    }
    form.set(spec.name, *value);
    return {};
}

} // namespace menubar::ctl
