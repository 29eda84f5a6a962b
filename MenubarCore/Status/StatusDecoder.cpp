#include "MenubarCore/Status/StatusDecoder.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/Status/StatusFields.h"

namespace menubar::StatusDecoder {

std::expected<StatusFile, DecodingError> decode(std::string_view document) {
    return JSONReader::decode<StatusFile>(document);
}

std::optional<Date> parseDate(std::string_view text) {
    return TextForm<Date>::parse(text);
}

} // namespace menubar::StatusDecoder
