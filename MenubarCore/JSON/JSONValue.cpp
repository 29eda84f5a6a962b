#include "MenubarCore/JSON/JSONValue.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/JSONWriter.h"
#include "MenubarCore/Text/CodePoints.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>

namespace menubar {

namespace {

/// Whole numbers below this are written as integers, others below it in decimal.
constexpr double exponentFormFrom = 1e15;

/// Lays out the digits of a shortest representation, of which the first stands for 10^exponent.
std::string decimalText(std::string_view digits, int exponent) {
    std::string text;
    if (exponent < 0) {
        text.append("0.").append(static_cast<std::size_t>(-exponent - 1), '0').append(digits);
        return text;
    }
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
        return text.append(digits).append(whole - digits.size(), '0');
    }
    return text.append(digits.substr(0, whole)).append(".").append(digits.substr(whole));
}

std::string exponentText(std::string_view digits, int exponent) {
    std::string text(digits.substr(0, 1));
    if (digits.size() > 1) {
        text.append(".").append(digits.substr(1));
    }
    text += exponent < 0 ? "e-" : "e+";
    const std::string magnitude = std::to_string(std::abs(exponent));
    return text.append(magnitude.size() < 2 ? "0" : "").append(magnitude);
}

/// The shortest text that reads back as `number`, which is finite and not zero.
std::string shortestText(double number) {
    std::array<char, 32> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number), std::chars_format::scientific)
            .ptr;
    const std::string_view written(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t mark = written.find('e');
    std::string digits(written.substr(0, mark));
    if (digits.size() > 1) {
        digits.erase(1, 1);
    }
    int exponent = 0;
    const std::string_view exponentDigits = written.substr(mark + 2);
    std::from_chars(exponentDigits.data(), exponentDigits.data() + exponentDigits.size(), exponent);
    if (written[mark + 1] == '-') {
        exponent = -exponent;
    }
    const bool inDecimal = exponent >= -4 && std::abs(number) < exponentFormFrom;
    return (number < 0 ? "-" : "") + (inDecimal ? decimalText(digits, exponent) : exponentText(digits, exponent));
}

template <typename Visit>
void forEachChild(JSONValue::Storage& storage, Visit visit) {
    if (auto* array = std::get_if<JSONValue::Array>(&storage)) {
        for (JSONValue& element : *array) {
            visit(element);
        }
    } else if (auto* object = std::get_if<JSONValue::Object>(&storage)) {
        for (auto& [key, value] : *object) {
            visit(value);
        }
    }
}

} // namespace

std::string_view describe(EncodingError error) {
    switch (error) {
    case EncodingError::nonFiniteNumber: return "JSON has no form for a number that is not finite";
    }
    return {};
}

// The next three keep what is still to be done in a list instead of calling themselves.

void JSONValue::assignCopy(const JSONValue& other) {
    if (!other.isContainer()) {
        m_storage = other.m_storage;
        return;
    }
    std::vector<std::pair<const JSONValue*, JSONValue*>> pending{{&other, this}};
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        if (const Array* array = from->arrayValue()) {
            Array& copies = to->m_storage.emplace<Array>(array->size());
            for (std::size_t i = 0; i < copies.size(); ++i) {
                pending.emplace_back(&(*array)[i], &copies[i]);
            }
        } else if (const Object* object = from->objectValue()) {
            Object& copies = to->m_storage.emplace<Object>();
            for (const auto& [key, value] : *object) {
                pending.emplace_back(&value, &copies.emplace_hint(copies.end(), key, nullptr)->second);
            }
        } else {
            to->m_storage = from->m_storage;
        }
    }
}

void JSONValue::dismantle() {
    std::vector<JSONValue> pending;
    const auto takeFilledContainers = [&pending](JSONValue& child) {
        const auto* array = child.arrayValue();
        const auto* object = child.objectValue();
        if ((array != nullptr && !array->empty()) || (object != nullptr && !object->empty())) {
            JSONValue taken;
            taken.m_storage.swap(child.m_storage);
            pending.push_back(std::move(taken));
        }
    };
    forEachChild(m_storage, takeFilledContainers);
    while (!pending.empty()) {
        JSONValue value = std::move(pending.back());
        pending.pop_back();
        forEachChild(value.m_storage, takeFilledContainers);
    }
}

bool operator==(const JSONValue& left, const JSONValue& right) {
    if (!left.isContainer() || !right.isContainer()) {
        return left.m_storage == right.m_storage;
    }
    std::vector<std::pair<const JSONValue*, const JSONValue*>> pending{{&left, &right}};
    while (!pending.empty()) {
        const auto [a, b] = pending.back();
        pending.pop_back();
        if (a->kind() != b->kind()) {
            return false;
        }
        if (const JSONValue::Array* array = a->arrayValue()) {
            const JSONValue::Array& other = *b->arrayValue();
            if (array->size() != other.size()) {
                return false;
            }
            for (std::size_t i = 0; i < other.size(); ++i) {
                pending.emplace_back(&(*array)[i], &other[i]);
            }
        } else if (const JSONValue::Object* object = a->objectValue()) {
            const JSONValue::Object& other = *b->objectValue();
            if (object->size() != other.size()) {
                return false;
            }
            for (auto x = object->begin(), y = other.begin(); x != object->end(); ++x, ++y) {
                if (x->first != y->first) {
                    return false;
                }
                pending.emplace_back(&x->second, &y->second);
            }
        } else if (a->m_storage != b->m_storage) {
            return false;
        }
    }
    return true;
}

std::optional<bool> JSONValue::boolValue() const {
    const auto* value = std::get_if<bool>(&m_storage);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<double> JSONValue::numberValue() const {
    const auto* value = std::get_if<double>(&m_storage);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::expected<JSONValue, DecodingError> JSONValue::decode(std::string_view document) {
    return JSONReader::decode<JSONValue>(document);
}

std::expected<std::string, EncodingError> JSONValue::encode(JSONLayout layout) const {
    return JSONWriter::write(*this, layout);
}

std::string JSONValue::compactText() const {
    switch (kind()) {
    case Case::bool_: return *boolValue() ? "true" : "false";
    case Case::number: return format(*numberValue());
    case Case::string: return wellFormed(*stringValue());
    case Case::null: return "null";
    case Case::array:
    case Case::object: return encode(JSONLayout::compact).value_or("");
    }
    return {};
}

std::string JSONValue::format(double number) {
    if (std::isnan(number)) {
        return "nan";
    }
    if (std::isinf(number)) {
        return number < 0 ? "-inf" : "inf";
    }
    if (std::abs(number) < exponentFormFrom && number == std::round(number)) {
        return std::to_string(static_cast<std::int64_t>(number));
    }
    return shortestText(number);
}

} // namespace menubar
