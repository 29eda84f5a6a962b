#include "MenubarCore/Daemon/PropertyList.h"

#include "MenubarCore/Daemon/BinaryPropertyList.h"

#include <cstdint>

#include <plist/plist.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

namespace menubar {

namespace {

using Failure = std::unexpected<PropertyListError>;

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

/// What the XML declaration says; XML without one is UTF-8.
std::string declaredEncoding(std::string_view xml) {
    const std::string_view declaration = xml.substr(0, xml.starts_with("<?xml") ? xml.find("?>") : 0);
    const std::size_t word = declaration.find("encoding");
    const std::size_t open = word == std::string_view::npos ? word : declaration.find_first_of("\"'", word);
    if (open == std::string_view::npos) {
        return "UTF-8";
    }
    const std::string_view rest = declaration.substr(open + 1);
    return std::string(rest.substr(0, rest.find(declaration[open])));
}

/// Leaves the error that ICU has set where it meets bytes that are wrong, instead of putting something in their place.
void leaveError(const void* /*context*/, UConverterToUnicodeArgs* /*arguments*/, const char* /*bytes*/,
                std::int32_t /*length*/, UConverterCallbackReason /*reason*/, UErrorCode* /*error*/) {}

/// The text in UTF-8; absent for an encoding that is unknown, and unless every byte is right in it.
std::optional<std::string> decoded(std::string_view bytes, const std::string& encoding) {
    if (encoding.empty()) {
        return std::nullopt; // which would stand for the machine's own
    }
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> converter(ucnv_open(encoding.c_str(), &error));
    ucnv_setToUCallBack(converter.get(), leaveError, nullptr, nullptr, nullptr, &error);
    std::u16string units(2 * bytes.size(), u'\0'); // as much as any encoding needs
    const std::int32_t count = ucnv_toUChars(converter.get(), units.data(), static_cast<std::int32_t>(units.size()),
                                             bytes.data(), static_cast<std::int32_t>(bytes.size()), &error);
    std::string text(3 * units.size(), '\0');
    std::int32_t length = 0;
    u_strToUTF8(text.data(), static_cast<std::int32_t>(text.size()), &length, units.data(), count, &error);
    if (U_FAILURE(error)) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(length));
    return text;
}

/// XML in UTF-8, whatever it was in: the library heeds neither byte-order mark nor declaration.
std::expected<std::string, PropertyListError> xmlInUTF8(std::string_view bytes) {
    std::int32_t markSize = 0;
    UErrorCode error = U_ZERO_ERROR;
    const char* const marked =
        ucnv_detectUnicodeSignature(bytes.data(), static_cast<std::int32_t>(bytes.size()), &markSize, &error);
    const std::string encoding = marked != nullptr ? marked : declaredEncoding(bytes);
    auto text = decoded(bytes.substr(static_cast<std::size_t>(markSize)), encoding);
    if (!text) {
        return Failure(PropertyListError{"the property list is not text in its encoding"});
    }
    return *std::move(text);
}

/// Null when the library finds no property list.
plist_t readBinary(std::string_view bytes) {
    plist_t root = nullptr;
    // What these return differs between versions of the library; the handle says the same in all of them.
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    return root;
}

plist_t readXML(std::string_view text) {
    plist_t root = nullptr;
    plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &root);
    return root;
}

} // namespace

void PropertyList::Free::operator()(void* node) const {
    plist_free(node);
}

std::expected<PropertyList, PropertyListError> PropertyList::read(std::string_view bytes) {
    if (bytes.size() > maximumSize) {
        return Failure(PropertyListError{"the property list is larger than 64 KB"});
    }
    if (BinaryPropertyList::hasSignature(bytes)) {
        plist_t root = BinaryPropertyList::unfoldsWithin(bytes, maximumValues) ? readBinary(bytes) : nullptr;
        return root != nullptr
                   ? std::expected<PropertyList, PropertyListError>(PropertyList(root))
                   : Failure(PropertyListError{"the binary property list is malformed or unfolds to too many values"});
    }
    const auto text = xmlInUTF8(bytes);
    if (!text) {
        return Failure(text.error());
    }
    plist_t root = readXML(*text);
    if (root == nullptr) {
        return Failure(PropertyListError{"the bytes are neither an XML nor a binary property list"});
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
