#include "MenubarCore/Daemon/PropertyList.h"

#include "MenubarCore/Daemon/BinaryPropertyList.h"
#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>

#include <plist/plist.h>

namespace menubar {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// How many elements open. A closing tag, a declaration and an instruction are none; an element in a comment counts,
/// which only makes the limit stricter.
std::size_t openingTags(std::string_view xml) {
    std::size_t count = 0;
    for (std::size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at + 1)) {
        const char next = at + 1 < xml.size() ? xml[at + 1] : '/';
        count += next != '/' && next != '!' && next != '?' ? 1 : 0;
    }
    return count;
}

std::unexpected<PropertyListError> failure(std::string_view message) {
    return std::unexpected(PropertyListError{std::string(message)});
}

/// What the library must not be given; it recurses, and unfolds shared objects, without limits of its own.
std::optional<std::string_view> objection(std::string_view bytes) {
    if (bytes.size() > PropertyList::maximumSize) {
        return "the property list is larger than 1 MB";
    }
    if (BinaryPropertyList::hasSignature(bytes)) {
        return BinaryPropertyList::unfoldsWithin(bytes, PropertyList::maximumValues)
                   ? std::nullopt
                   : std::optional("the binary property list is malformed or unfolds to too many values");
    }
    if (openingTags(bytes) > PropertyList::maximumValues) {
        return "the property list has too many elements";
    }
    if (wellFormed(bytes) != bytes) {
        return "the property list is not UTF-8";
    }
    return std::nullopt;
}

} // namespace

void PropertyList::Free::operator()(void* node) const {
    plist_free(node);
}

std::expected<PropertyList, PropertyListError> PropertyList::read(std::string_view bytes) {
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    if (const auto reason = objection(bytes)) {
        return failure(*reason);
    }
    plist_t root = nullptr;
    const char* const data = bytes.data();
    const auto size = static_cast<std::uint32_t>(bytes.size());
    // What these return differs between versions of the library; the handle says the same in all of them.
    if (BinaryPropertyList::hasSignature(bytes)) {
        plist_from_bin(data, size, &root);
    } else {
        plist_from_xml(data, size, &root);
    }
    if (root == nullptr) {
        return failure("the bytes are not a property list");
    }
    return PropertyList(root);
}

bool PropertyList::isDictionary() const {
    return plist_get_node_type(m_root.get()) == PLIST_DICT;
}

std::optional<std::vector<std::string>> PropertyList::strings(const std::string& key) const {
    plist_t list = isDictionary() ? plist_dict_get_item(m_root.get(), key.c_str()) : nullptr;
    if (list == nullptr || plist_get_node_type(list) != PLIST_ARRAY) {
        return std::nullopt;
    }
    std::vector<std::string> result;
    const std::uint32_t count = plist_array_get_size(list);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint64_t length = 0;
        plist_t item = plist_array_get_item(list, i);
        const char* text = plist_get_node_type(item) == PLIST_STRING ? plist_get_string_ptr(item, &length) : nullptr;
        if (text == nullptr) {
            return std::nullopt;
        }
        result.emplace_back(text, static_cast<std::size_t>(length));
    }
    return result;
}

} // namespace menubar
