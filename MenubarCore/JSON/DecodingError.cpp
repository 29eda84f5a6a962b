#include "MenubarCore/JSON/DecodingError.h"

#include "MenubarCore/Text/Join.h"

#include <ranges>

namespace menubar {

std::string CodingKey::name() const {
    if (const auto* index = std::get_if<std::size_t>(&step)) {
        return "Index " + std::to_string(*index);
    }
    return std::get<std::string>(step);
}

std::string describe(const CodingPath& path) {
    return joined(path | std::views::transform(&CodingKey::name), ".");
}

std::string describe(const DecodingError& error) {
    switch (error.kind) {
    case DecodingError::Kind::typeMismatch: return "type mismatch (" + error.expected + ") at " + describe(error.path);
    case DecodingError::Kind::valueNotFound: return "missing value (" + error.expected + ") at " + describe(error.path);
    case DecodingError::Kind::keyNotFound: return "missing key " + error.key;
    case DecodingError::Kind::dataCorrupted: return error.description;
    }
    return error.description;
}

} // namespace menubar
