// Feeds any bytes to everything that reads JSON, and holds the readers against each other: the parser against the
// checker that words its errors, what was read against what was written, a document against itself without duplicate
// keys.

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/SyntaxCheck.h"
#include "MenubarCore/Status/StatusDecoder.h"
#include "MenubarCore/Text/CodePoints.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace menubar;

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

void checkSyntaxError(std::string_view document, const DecodingError& error) {
    const auto fault = SyntaxCheck::firstFault(document, JSONReader::maximumDepth);
    require(fault.has_value(), "a refused document has a fault");
    require(error.kind == DecodingError::Kind::dataCorrupted, "a fault is corrupted data");
    require(error.path.empty(), "a fault has no path");
    require(error.description == fault->text(), "the error is the first fault");
    require(error.description.find('\n') == std::string::npos, "the error is one line");
    require(wellFormed(error.description) == error.description, "the error is well-formed text");
    require(fault->offset <= document.size(), "the fault lies in the document");
}

void checkWriting(const JSONValue& value) {
    for (const JSONLayout layout : {JSONLayout::compact, JSONLayout::pretty}) {
        const auto text = value.encode(layout);
        require(text.has_value(), "what was read can be written");
        const auto again = JSONValue::decode(*text);
        require(again.has_value(), "what was written can be read");
        require(*again == value, "what was written reads back");
        require(again->encode(layout) == *text, "writing again gives the same bytes");
    }
}

/// Whether every number has few digits and no exponent, so that going through doubles loses nothing.
bool hasOnlyShortNumbers(std::string_view document) {
    std::size_t digits = 0;
    for (const char c : document) {
        const bool isDigit = c >= '0' && c <= '9';
        if (digits > 15 || (digits > 0 && (c == 'e' || c == 'E'))) {
            return false;
        }
        digits = isDigit || (digits > 0 && c == '.') ? digits + 1 : 0;
    }
    return true;
}

/// Equal but for the order of keys, which the reader must not depend on, and for duplicates, of which the last counts.
void checkAgainstCanonicalDocument(const std::expected<StatusFile, DecodingError>& file, const JSONValue& value) {
    const auto canonical = StatusDecoder::decode(value.encode(JSONLayout::compact).value());
    require(file == canonical, "order and duplicates of keys make no difference");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const auto value = JSONValue::decode(document);
    const auto file = StatusDecoder::decode(document);
    if (!value) {
        checkSyntaxError(document, value.error());
        require(!file, "what is not JSON is no status file");
        require(file.error() == value.error(), "both readers name the same fault");
        return 0;
    }
    require(!SyntaxCheck::firstFault(document, JSONReader::maximumDepth), "a document that was read has no fault");
    checkWriting(*value);
    if (hasOnlyShortNumbers(document)) {
        checkAgainstCanonicalDocument(file, *value);
    }
    if (!file) {
        require(!describe(file.error()).empty(), "an error has a text");
    }
    return 0;
}
