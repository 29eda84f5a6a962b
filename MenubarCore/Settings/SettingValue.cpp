#include "MenubarCore/Settings/SettingValue.h"

#include "MenubarCore/Text/Digits.h"

#include <algorithm>

namespace menubar {

namespace {

/// Takes one of `characters` off the front of `text`; 0 when there is none of them.
char take(std::string_view characters, std::string_view& text) {
    if (text.empty() || !characters.contains(text.front())) {
        return 0;
    }
    const char taken = text.front();
    text.remove_prefix(1);
    return taken;
}

/// `text`, a decimal number as people write it ("+5", ".5", "5.", "1e3"), in the narrower form of JSON, whose reader
/// rounds exactly and knows no locale. Nothing when it is no such number.
std::optional<std::string> jsonNumber(std::string_view text) {
    std::string json = take("+-", text) == '-' ? "-" : "";
    std::string_view whole = takeDigits(text);
    const bool hasPoint = take(".", text) != 0;
    const std::string_view fraction = hasPoint ? takeDigits(text) : std::string_view();
    if (whole.empty() && fraction.empty()) {
        return std::nullopt;
    }
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
    json.append(whole.empty() ? "0" : whole);
    if (!fraction.empty()) {
        json.append(".").append(fraction);
    }
    if (take("eE", text) != 0) {
        json += take("+-", text) == '-' ? "e-" : "e";
        const std::string_view exponent = takeDigits(text);
        if (exponent.empty()) {
            return std::nullopt;
        }
        json.append(exponent);
    }
    return text.empty() ? std::optional(json) : std::nullopt;
}

std::optional<double> numberFrom(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    text = text.substr(0, text.find_last_not_of(blanks) + 1);
    const std::optional<std::string> json = jsonNumber(text);
    if (!json) {
        return std::nullopt;
    }
    const auto value = JSONValue::decode(*json);
    return value ? value->numberValue() : std::nullopt;
}

template <typename T>
std::optional<SettingValue> wrapped(const std::optional<T>& payload) {
    return payload ? std::optional<SettingValue>(*payload) : std::nullopt;
}

std::optional<SettingValue> number(const JSONValue& json) {
    const std::string* text = json.stringValue();
    return wrapped(text == nullptr ? json.numberValue() : numberFrom(*text));
}

std::optional<SettingValue> text(const JSONValue& json) {
    const std::string* text = json.stringValue();
    return text == nullptr ? std::nullopt : std::optional<SettingValue>(*text);
}

} // namespace

std::optional<SettingValue> SettingValue::from(const JSONValue& json, const SettingSpec& spec) {
    using Kind = SettingControl::Kind;
    switch (spec.control.kind()) {
    case Kind::toggle: return wrapped(json.boolValue());
    case Kind::number:
    case Kind::percent: return menubar::number(json);
    case Kind::duration:
    case Kind::text:
    case Kind::path: return menubar::text(json);
    case Kind::enumeration: return spec.multiple ? wrapped(strings(json)) : menubar::text(json);
    case Kind::list: return wrapped(strings(json));
    case Kind::unknown: return json.compactText();
    }
    return std::nullopt;
}

JSONValue SettingValue::json(const SettingSpec& spec) const {
    struct ToJSON {
        const SettingSpec& spec;

        JSONValue operator()(bool value) const { return value; }

        JSONValue operator()(double value) const { return value; }

        JSONValue operator()(const List& value) const { return JSONValue::Array(value.begin(), value.end()); }

        JSONValue operator()(const std::string& value) const {
            auto decoded = spec.control.isKnown() ? JSONValue(value) : JSONValue::decode(value);
            return decoded ? *std::move(decoded) : JSONValue(value);
        }
    };

    return std::visit(ToJSON{spec}, m_storage);
}

std::optional<SettingValue::List> SettingValue::strings(const JSONValue& json) {
    const JSONValue::Array* array = json.arrayValue();
    if (array == nullptr) {
        return std::nullopt;
    }
    List result;
    result.reserve(array->size());
    for (const JSONValue& element : *array) {
        const std::string* text = element.stringValue();
        if (text == nullptr) {
            return std::nullopt;
        }
        result.push_back(*text);
    }
    return result;
}

bool SettingValue::isEmpty() const {
    return (text() != nullptr && text()->empty()) || (list() != nullptr && list()->empty());
}

} // namespace menubar
