#pragma once

#include "MenubarCore/JSON/JSONValue.h"

#include <string>
#include <vector>

namespace menubar {

/// Puts a `JSONValue` together from the events of a walk, with constant stack. Calls must nest as JSON does; in an
/// object `key` comes before each value. Of duplicate keys the last one counts.
class ValueBuilder {
public:
    void openArray() { m_open.emplace_back(JSONValue::Array{}); }

    void openObject() { m_open.emplace_back(JSONValue::Object{}); }

    /// Names the next value of the innermost container, an object.
    void key(std::string name) { m_open.back().key = std::move(name); }

    /// Adds a finished value to the innermost container; with none open it is the result.
    void add(JSONValue value);

    /// Finishes the innermost container.
    void close();

    /// The finished value.
    [[nodiscard]] JSONValue take() { return std::move(m_result); }

private:
    struct Container {
        explicit Container(std::variant<JSONValue::Array, JSONValue::Object> empty) : elements(std::move(empty)) {}

        std::variant<JSONValue::Array, JSONValue::Object> elements;
        std::string key;
    };

    std::vector<Container> m_open;
    JSONValue m_result;
};

} // namespace menubar
