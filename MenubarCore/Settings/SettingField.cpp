#include "MenubarCore/Settings/SettingField.h"

#include "MenubarCore/Settings/SettingValidation.h"
#include "MenubarCore/Text/Regex.h"

#include <string_view>
#include <utility>

namespace menubar {

namespace {

using Kind = SettingControl::Kind;

/// Completes "The file holds 1, which is not a ".
std::string_view kindText(const SettingSpec& spec) {
    switch (spec.control.kind()) {
    case Kind::toggle: return "boolean";
    case Kind::number:
    case Kind::percent: return "number";
    case Kind::duration: return "duration string";
    case Kind::text:
    case Kind::path: return "string";
    case Kind::list: return "list of strings";
    case Kind::enumeration: return spec.multiple ? "list of values" : "value";
    case Kind::unknown: return "value";
    }
    return {};
}

} // namespace

SettingField SettingField::load(SettingSpec spec, const JSONValue* fileValue) {
    PatternChecker patterns;
    return load(std::move(spec), fileValue, patterns);
}

SettingField SettingField::load(SettingSpec spec, const JSONValue* fileValue, PatternChecker& patterns) {
    SettingField field;
    field.spec = std::move(spec);
    auto converted = fileValue == nullptr ? std::nullopt : SettingValue::from(*fileValue, field.spec);
    if (fileValue != nullptr) {
        field.isSet = true;
        field.source = ValueSource::file;
        if (converted) {
            field.error = validationError(field.spec, *converted, patterns);
        } else {
            field.unreadableFileValue = *fileValue;
            field.error =
                "The file holds " + fileValue->compactText() + ", which is not a " + std::string(kindText(field.spec));
        }
    }
    field.value = converted ? *std::move(converted) : defaultValue(field.spec);
    field.loadedValue = field.value;
    field.loadedIsSet = field.isSet;
    return field;
}

SettingValue SettingField::defaultValue(const SettingSpec& spec) {
    if (spec.defaultValue) {
        if (auto value = SettingValue::from(*spec.defaultValue, spec)) {
            return *std::move(value);
        }
    }
    switch (spec.control.kind()) {
    case Kind::toggle: return false;
    case Kind::number:
    case Kind::percent: return spec.min.value_or(0);
    case Kind::list: return SettingValue::List{};
    case Kind::enumeration:
        if (spec.multiple) {
            return SettingValue::List{};
        }
        return spec.values.empty() ? SettingValue() : spec.values.front();
    case Kind::duration:
    case Kind::text:
    case Kind::path:
    case Kind::unknown: return {};
    }
    return {};
}

bool SettingField::isDirty() const {
    return isSet != loadedIsSet || (isSet && value != loadedValue);
}

std::optional<std::string> SettingField::defaultText() const {
    return spec.defaultValue ? std::optional(spec.defaultValue->compactText()) : std::nullopt;
}

std::string SettingField::editableText() const {
    const std::string* text = value.text();
    if (text == nullptr) {
        return {};
    }
    std::string_view editable = *text;
    if (spec.requiredPrefix && editable.starts_with(*spec.requiredPrefix)) {
        editable.remove_prefix(spec.requiredPrefix->size());
        if (editable.starts_with(' ')) {
            editable.remove_prefix(1);
        }
    }
    return std::string(editable);
}

std::optional<JSONValue> SettingField::serializedValue() const {
    if (unreadableFileValue) {
        return unreadableFileValue;
    }
    return isSet ? std::optional(value.json(spec)) : std::nullopt;
}

} // namespace menubar
