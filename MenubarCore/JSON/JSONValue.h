#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/Text/CaseOf.h"

#include <cstddef>
#include <expected>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// Why a value could not be written as JSON.
enum class EncodingError {
    nonFiniteNumber, ///< a NaN or an infinity, which JSON has no form for
};

/// A lower-case sentence for people.
[[nodiscard]] std::string_view describe(EncodingError error);

/// Whether JSON is written with line breaks and indentation or without any white space.
enum class JSONLayout { pretty, compact };

/// A JSON tree of values whose shape is not known in advance. A value type: immutable once built, copies are
/// independent. Every number is a double; integers beyond 2^53 lose precision, which is accepted. Objects hold their
/// keys in ascending order of their UTF-8 bytes (which is code-point order).
///
/// Copying, comparing, writing and destroying take constant stack, however deep the value is: it may be handled on a
/// background thread, where the stack is small.
///
/// Equality is by case and payload; numbers compare as IEEE doubles (NaN differs from itself, 0.0 equals -0.0).
class JSONValue {
public:
    struct Null {
        bool operator==(const Null&) const = default;
    };

    using Array = std::vector<JSONValue>;

    /// Values by key, each key once. A sorted list: built and walked through in a fraction of a tree's time.
    class Object {
    public:
        using mapped_type = JSONValue; // NOLINT(readability-identifier-naming): as the library's maps say it
        using Member = std::pair<std::string, JSONValue>;
        using const_iterator = std::vector<Member>::const_iterator;

        Object() = default;

        Object(std::initializer_list<Member> members) : Object(std::vector(members)) {}

        /// In any order; of members with the same key the last counts.
        explicit Object(std::vector<Member> members);

        [[nodiscard]] const_iterator begin() const { return m_members.begin(); }

        [[nodiscard]] const_iterator end() const { return m_members.end(); }

        [[nodiscard]] std::size_t size() const { return m_members.size(); }

        [[nodiscard]] bool empty() const { return m_members.empty(); }

        [[nodiscard]] const_iterator find(std::string_view key) const;

        [[nodiscard]] bool contains(std::string_view key) const { return find(key) != end(); }

        /// The value of a key that the object has.
        [[nodiscard]] const JSONValue& at(std::string_view key) const {
            return m_members.at(static_cast<std::size_t>(find(key) - begin())).second;
        }

        /// The value of the key; a new `null` where the object lacks it.
        JSONValue& operator[](std::string_view key);

        void erase(std::string_view key);

        bool operator==(const Object& other) const { return m_members == other.m_members; }

    private:
        friend class JSONValue;

        std::vector<Member> m_members; ///< ascending by the keys' bytes
    };

    /// The payload, one alternative for each case.
    using Storage = std::variant<bool, double, std::string, Array, Object, Null>;

    enum class Case { bool_, number, string, array, object, null };

    JSONValue() : m_storage(Null{}) {}

    JSONValue(std::nullptr_t) : m_storage(Null{}) {}

    JSONValue(bool value) : m_storage(value) {}

    JSONValue(double value) : m_storage(value) {}

    JSONValue(int value) : m_storage(static_cast<double>(value)) {}

    JSONValue(std::string value) : m_storage(std::in_place_type<std::string>, std::move(value)) {}

    JSONValue(std::string_view value) : m_storage(std::in_place_type<std::string>, value) {}

    JSONValue(const char* value) : m_storage(std::in_place_type<std::string>, value) {}

    JSONValue(Array value) : m_storage(std::move(value)) {}

    JSONValue(Object value) : m_storage(std::move(value)) {}

    JSONValue(const JSONValue& other) : m_storage(Null{}) { assignCopy(other); }

    JSONValue(JSONValue&&) noexcept = default;

    JSONValue& operator=(const JSONValue& other) { return *this = JSONValue(other); }

    /// Safe when `other` lies inside this value.
    JSONValue& operator=(JSONValue&& other) noexcept {
        JSONValue taken(std::move(other));
        m_storage.swap(taken.m_storage);
        return *this;
    }

    ~JSONValue() {
        if (isContainer()) {
            dismantle();
        }
    }

    [[nodiscard]] Case kind() const {
        return caseOf(m_storage, Named<bool, Case::bool_>{}, Named<double, Case::number>{},
                      Named<std::string, Case::string>{}, Named<Array, Case::array>{}, Named<Object, Case::object>{},
                      Named<Null, Case::null>{});
    }

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    /// The payload when the case matches, nothing otherwise. The pointers live as long as this value, unchanged.
    [[nodiscard]] std::optional<bool> boolValue() const { return copyOf<bool>(m_storage); }

    [[nodiscard]] std::optional<double> numberValue() const { return copyOf<double>(m_storage); }

    [[nodiscard]] const std::string* stringValue() const& { return std::get_if<std::string>(&m_storage); }

    [[nodiscard]] const Array* arrayValue() const& { return std::get_if<Array>(&m_storage); }

    [[nodiscard]] const Object* objectValue() const& { return std::get_if<Object>(&m_storage); }

    const std::string* stringValue() && = delete;
    const Array* arrayValue() && = delete;
    const Object* objectValue() && = delete;

    [[nodiscard]] bool isNull() const { return std::holds_alternative<Null>(m_storage); }

    /// Reads one whole JSON document (UTF-8); a bare scalar is accepted. See JSONReader.h for what is refused.
    [[nodiscard]] static std::expected<JSONValue, DecodingError> decode(std::string_view document);

    /// Writes the document. Keys are sorted at every depth, "/" is written "\/", control characters are escaped,
    /// everything else is UTF-8 as it stands, ill-formed sequences U+FFFD. Pretty layout: two blanks a level, `"key" :
    /// value`, empty containers as
    /// `[]` and `{}`; no line feed at the end.
    [[nodiscard]] std::expected<std::string, EncodingError> encode(JSONLayout layout) const;

    /// One line for display: strings unquoted, containers as compact JSON (empty text when they hold a non-finite
    /// number).
    [[nodiscard]] std::string compactText() const;

    /// The text of a number: whole numbers below 1e15 in magnitude as integers, every other one as the shortest
    /// decimal that reads back; exponent form below 1e-4 and from 1e15 on ("1e+15", "1.5e-07", "nan", "inf").
    [[nodiscard]] static std::string format(double number);

    friend bool operator==(const JSONValue& left, const JSONValue& right);

private:
    [[nodiscard]] bool isContainer() const { return kind() == Case::array || kind() == Case::object; }

    /// A container's values in their order; none in anything else.
    [[nodiscard]] std::size_t childCount() const;
    [[nodiscard]] const JSONValue& child(std::size_t index) const;

    [[nodiscard]] JSONValue& child(std::size_t index) {
        return const_cast<JSONValue&>(std::as_const(*this).child(index));
    }

    void assignCopy(const JSONValue& other);
    void dismantle();

    Storage m_storage;
};

} // namespace menubar
