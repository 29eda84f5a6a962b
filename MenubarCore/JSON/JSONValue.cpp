#include "MenubarCore/JSON/JSONValue.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/Text/CodePoints.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <utility>

namespace menubar {

std::string_view describe(EncodingError error) {
    switch (error) {
    case EncodingError::nonFiniteNumber: return "JSON has no form for a number that is not finite";
    }
    return {};
}

JSONValue::Object::Object(std::vector<Member> members) {
    if (std::ranges::is_sorted(members, std::less_equal(), &Member::first)) {
        m_members = std::move(members);
        return;
    }
    for (auto& [key, value] : members) {
        (*this)[key] = std::move(value);
    }
}

JSONValue::Object::const_iterator JSONValue::Object::find(std::string_view key) const {
    const auto place = std::ranges::lower_bound(m_members, key, {}, &Member::first);
    return place != end() && place->first == key ? place : end();
}

JSONValue& JSONValue::Object::operator[](std::string_view key) {
    const auto place = std::ranges::lower_bound(m_members, key, {}, &Member::first);
    const bool isThere = place != m_members.end() && place->first == key;
    return (isThere ? place : m_members.emplace(place, key, nullptr))->second;
}

void JSONValue::Object::erase(std::string_view key) {
    if (const auto place = find(key); place != end()) {
        m_members.erase(place);
    }
}

std::size_t JSONValue::childCount() const {
    const Array* array = arrayValue();
    const Object* object = objectValue();
    return array != nullptr ? array->size() : object != nullptr ? object->size() : 0;
}

const JSONValue& JSONValue::child(std::size_t index) const {
    const Array* array = arrayValue();
    return array != nullptr ? (*array)[index] : std::get<Object>(m_storage).m_members[index].second;
}

// The next three keep what is still to be done in a list instead of calling themselves.

void JSONValue::assignCopy(const JSONValue& other) {
    std::vector<std::pair<const JSONValue*, JSONValue*>> pending;
    const auto copy = [&pending](const JSONValue& from, JSONValue& to) {
        if (const Array* array = from.arrayValue()) {
            to.m_storage.emplace<Array>(array->size());
        } else if (const Object* object = from.objectValue()) {
            auto& members = to.m_storage.emplace<Object>().m_members;
            members.reserve(object->size());
            for (const auto& [key, value] : *object) {
                members.emplace_back(key, nullptr);
            }
        } else {
            to.m_storage = from.m_storage;
        }
        for (std::size_t i = 0; i < from.childCount(); ++i) {
            pending.emplace_back(&from.child(i), &to.child(i));
        }
    };
    copy(other, *this);
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        copy(*from, *to);
    }
}

void JSONValue::dismantle() {
    std::vector<JSONValue> pending;
    const auto takeFilledContainers = [&pending](JSONValue& value) {
        for (std::size_t i = 0; i < value.childCount(); ++i) {
            if (JSONValue& child = value.child(i); child.childCount() > 0) {
                pending.push_back(std::exchange(child, nullptr));
            }
        }
    };
    takeFilledContainers(*this);
    while (!pending.empty()) {
        JSONValue value = std::move(pending.back());
        pending.pop_back();
        takeFilledContainers(value);
    }
}

bool operator==(const JSONValue& left, const JSONValue& right) {
    std::vector<std::pair<const JSONValue*, const JSONValue*>> pending;
    const auto areEqual = [&pending](const JSONValue& a, const JSONValue& b) {
        if (!a.isContainer() || !b.isContainer()) {
            return a.m_storage == b.m_storage;
        }
        if (a.kind() != b.kind() || a.childCount() != b.childCount()) {
            return false;
        }
        for (std::size_t i = 0; i < a.childCount(); ++i) {
            pending.emplace_back(&a.child(i), &b.child(i));
        }
        const auto* object = a.objectValue();
        constexpr auto key = &JSONValue::Object::Member::first;
        return object == nullptr || std::ranges::equal(*object, *b.objectValue(), {}, key, key);
    };
    bool isEqual = areEqual(left, right);
    while (isEqual && !pending.empty()) {
        const auto [a, b] = pending.back();
        pending.pop_back();
        isEqual = areEqual(*a, *b);
    }
    return isEqual;
}

std::expected<JSONValue, DecodingError> JSONValue::decode(std::string_view document) {
    return JSONReader::decode<JSONValue>(document);
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
        return "nan"; // whatever its sign
    }
    const double magnitude = std::abs(number);
    const bool inDecimal = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e15);
    std::array<char, 32> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude == 0 ? 0 : number,
                                       inDecimal ? std::chars_format::fixed : std::chars_format::scientific);
    return {buffer.data(), written.ptr};
}

} // namespace menubar
