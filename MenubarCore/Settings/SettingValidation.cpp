#include "MenubarCore/Settings/SettingValidation.h"

#include "MenubarCore/Text/Join.h"
#include "MenubarCore/Text/Regex.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_set>

namespace menubar {

namespace {

using Kind = SettingControl::Kind;
using Message = std::optional<std::string>;

Message checkNumber(const SettingSpec& spec, double value) {
    if (spec.integer && value != std::trunc(value)) {
        return "Must be a whole number";
    }
    // Negated, so that a NaN is out of bounds.
    const bool isBelow = spec.min && !(value >= *spec.min);
    const bool isAbove = spec.max && !(value <= *spec.max);
    if (!isBelow && !isAbove) {
        return std::nullopt;
    }
    if (spec.min && spec.max) {
        return "Must be between " + JSONValue::format(*spec.min) + " and " + JSONValue::format(*spec.max);
    }
    return isBelow ? "Must be at least " + JSONValue::format(*spec.min)
                   : "Must be at most " + JSONValue::format(*spec.max);
}

Message checkDuration(const SettingSpec& spec, const std::string& text, PatternChecker& patterns) {
    if (spec.pattern && !patterns.accepts(*spec.pattern, text)) {
        return "Use a duration such as 30s, 10m, or 1h";
    }
    return std::nullopt;
}

Message checkText(const SettingSpec& spec, const std::string& text) {
    if (spec.requiredPrefix && !text.starts_with(*spec.requiredPrefix)) {
        return "Must start with " + *spec.requiredPrefix;
    }
    return std::nullopt;
}

Message checkItems(const SettingSpec& spec, const SettingValue::List& items, PatternChecker& patterns) {
    std::size_t number = 0;
    for (const std::string& item : items) {
        ++number;
        if (item.empty()) {
            return "Item " + std::to_string(number) + " is empty";
        }
        if (spec.itemPattern && !patterns.accepts(*spec.itemPattern, item)) {
            return "Item " + std::to_string(number) + " must match " + *spec.itemPattern;
        }
    }
    return std::nullopt;
}

std::string unknownValue(const SettingSpec& spec, const std::string& value) {
    return "Unknown value " + value + " (allowed: " + joined(spec.values, ", ") + ")";
}

Message checkChoice(const SettingSpec& spec, const std::string& text) {
    const bool isAllowed = std::ranges::find(spec.values, text) != spec.values.end();
    return isAllowed ? std::nullopt : Message(unknownValue(spec, text));
}

Message checkChoices(const SettingSpec& spec, const SettingValue::List& items) {
    if (std::unordered_set<std::string_view>(items.begin(), items.end()).size() != items.size()) {
        return "Each value may appear once";
    }
    const std::unordered_set<std::string_view> allowed(spec.values.begin(), spec.values.end());
    for (const std::string& item : items) {
        if (!allowed.contains(item)) {
            return unknownValue(spec, item);
        }
    }
    return std::nullopt;
}

} // namespace

std::string wrongKindError(const SettingSpec& spec) {
    switch (spec.control.kind()) {
    case Kind::toggle: return "Must be on or off";
    case Kind::number:
    case Kind::percent: return "Must be a number";
    case Kind::duration: return "Must be a duration";
    case Kind::text: return "Must be text";
    case Kind::list: return "Must be a list";
    case Kind::enumeration:
        return (spec.multiple ? "Must be a list of: " : "Must be one of: ") + joined(spec.values, ", ");
    case Kind::path: return "Must be a path";
    case Kind::unknown: return "";
    }
    return {};
}

std::optional<std::string> validationError(const SettingSpec& spec, const SettingValue& value,
                                           PatternChecker& patterns) {
    const std::optional<double> number = value.number();
    const std::string* const text = value.text();
    const SettingValue::List* const list = value.list();
    switch (spec.control.kind()) {
    case Kind::toggle: return value.bool_() ? std::nullopt : Message(wrongKindError(spec));
    case Kind::number:
    case Kind::percent: return number ? checkNumber(spec, *number) : wrongKindError(spec);
    case Kind::duration: return text != nullptr ? checkDuration(spec, *text, patterns) : wrongKindError(spec);
    case Kind::text: return text != nullptr ? checkText(spec, *text) : wrongKindError(spec);
    case Kind::list: return list != nullptr ? checkItems(spec, *list, patterns) : wrongKindError(spec);
    case Kind::enumeration:
        if (spec.multiple) {
            return list != nullptr ? checkChoices(spec, *list) : wrongKindError(spec);
        }
        return text != nullptr ? checkChoice(spec, *text) : wrongKindError(spec);
    case Kind::path: return text != nullptr ? std::nullopt : Message(wrongKindError(spec));
    case Kind::unknown: return std::nullopt;
    }
    return std::nullopt;
}

} // namespace menubar
