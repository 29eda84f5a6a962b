#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace menubar {

/// Why bytes are no property list: one lower-case sentence.
struct PropertyListError {
    std::string message;

    bool operator==(const PropertyListError&) const = default;
};

/// A property list in XML (in any encoding that its byte-order mark or declaration names) or binary form, as far as a
/// launch agent's one is looked into. Bytes from anywhere may be given: what is larger, or unfolds to more, than any
/// launch agent's list is refused before it costs time, memory or stack. Any thread, one at a time.
class PropertyList {
public:
    static constexpr std::size_t maximumSize = std::size_t{1} << 16;
    /// Values of a binary list as it unfolds, where one object may stand in many places.
    static constexpr std::size_t maximumValues = 1024;

    [[nodiscard]] static std::expected<PropertyList, PropertyListError> read(std::string_view bytes);

    /// Whether the top-level value is a dictionary.
    [[nodiscard]] bool isDictionary() const;

    /// The list of strings at a key of the top-level dictionary; nothing when there is no such key, or its value is
    /// not a list, or an element is not a string. An empty list is a list of strings.
    [[nodiscard]] std::optional<std::vector<std::string>> strings(const std::string& key) const;

private:
    struct Free {
        void operator()(void* node) const;
    };

    explicit PropertyList(void* root) : m_root(root) {}

    std::unique_ptr<void, Free> m_root; // the library's opaque handle
};

} // namespace menubar
