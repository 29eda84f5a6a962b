#include "MenubarCore/Daemon/BinaryPropertyList.h"

#include <cstdint>
#include <optional>

namespace menubar::BinaryPropertyList {

namespace {

constexpr std::string_view signature = "bplist";
constexpr std::size_t trailerSize = 32;

/// The upper half of an object's first byte; the lower half counts, `longCount` meaning that an integer object follows.
constexpr unsigned integerMarker = 0x1;
constexpr unsigned arrayMarker = 0xA;
constexpr unsigned setMarker = 0xC;
constexpr unsigned dictionaryMarker = 0xD;
constexpr unsigned longCount = 0xF;

/// A big-endian number of up to 8 bytes, if it lies within the bytes.
std::optional<std::uint64_t> number(std::string_view bytes, std::uint64_t at, std::uint64_t size) {
    if (size == 0 || size > 8 || at > bytes.size() || size > bytes.size() - at) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const char c : bytes.substr(at, size)) {
        value = value << 8 | static_cast<unsigned char>(c);
    }
    return value;
}

/// The references of one container: `count` numbers from `at` on.
struct References {
    std::uint64_t at = 0;
    std::uint64_t count = 0;
};

class Walk {
public:
    Walk(std::string_view bytes, std::size_t budget) : m_bytes(bytes), m_budget(budget) {}

    bool start() {
        if (m_bytes.size() < signature.size() + trailerSize) {
            return false;
        }
        const std::size_t trailer = m_bytes.size() - trailerSize;
        const auto top = number(m_bytes, trailer + 16, 8);
        m_offsetSize = number(m_bytes, trailer + 6, 1).value_or(0);
        m_referenceSize = number(m_bytes, trailer + 7, 1).value_or(0);
        m_objectCount = number(m_bytes, trailer + 8, 8).value_or(0);
        m_offsetTable = number(m_bytes, trailer + 24, 8).value_or(0);
        return top && m_offsetTable <= m_bytes.size() && visit(*top);
    }

private:
    /// Follows every reference below an object.
    bool visit(std::uint64_t object) {
        if (m_budget == 0 || object >= m_objectCount || object > m_bytes.size()) {
            return false;
        }
        --m_budget;
        const auto offset = number(m_bytes, m_offsetTable + (object * m_offsetSize), m_offsetSize);
        const auto references = offset ? referencesAt(*offset) : std::nullopt;
        if (!references) {
            return false;
        }
        for (std::uint64_t i = 0; i < references->count; ++i) {
            const auto child = number(m_bytes, references->at + (i * m_referenceSize), m_referenceSize);
            if (!child || !visit(*child)) {
                return false;
            }
        }
        return true;
    }

    /// None for an object that holds no others; nothing when the object is malformed.
    [[nodiscard]] std::optional<References> referencesAt(std::uint64_t offset) const {
        const auto first = number(m_bytes, offset, 1);
        if (!first) {
            return std::nullopt;
        }
        const auto marker = static_cast<unsigned>(*first >> 4);
        if (marker != arrayMarker && marker != setMarker && marker != dictionaryMarker) {
            return References{};
        }
        References found{.at = offset + 1, .count = *first & longCount};
        if (found.count == longCount) {
            const auto width = number(m_bytes, offset + 1, 1);
            if (!width || *width >> 4 != integerMarker) {
                return std::nullopt;
            }
            const std::uint64_t size = std::uint64_t{1} << (*width & 0xF);
            const auto count = number(m_bytes, offset + 2, size);
            if (!count || *count > m_bytes.size()) {
                return std::nullopt;
            }
            found = {.at = offset + 2 + size, .count = *count};
        }
        // A dictionary's keys come first, as many as its values.
        found.count *= marker == dictionaryMarker ? 2 : 1;
        return found;
    }

    std::string_view m_bytes;
    std::size_t m_budget;
    std::uint64_t m_offsetSize = 0;
    std::uint64_t m_referenceSize = 0;
    std::uint64_t m_objectCount = 0;
    std::uint64_t m_offsetTable = 0;
};

} // namespace

bool hasSignature(std::string_view bytes) {
    return bytes.starts_with(signature);
}

bool unfoldsWithin(std::string_view bytes, std::size_t maximumValues) {
    return Walk(bytes, maximumValues).start();
}

} // namespace menubar::BinaryPropertyList
