#include "MenubarCore/JSON/ParsedDocument.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/SyntaxCheck.h"

#include <algorithm>
#include <atomic>

namespace menubar {

namespace {

/// One for the process, taken out while in use: a parse within a parse, or beside it on another thread, makes its own.
/// What it holds at the end is left to the system.
std::atomic<simdjson::dom::parser*> spareParser;

/// Refuses containers inside one another when there are `depth` that are not empty.
simdjson::error_code parse(std::string_view text, std::size_t depth, simdjson::dom::parser& parser,
                           simdjson::dom::element& root) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // newer parsers pass over it
    if (text.starts_with(byteOrderMark)) {
        return simdjson::UTF8_ERROR;
    }
    if (parser.max_depth() != depth) {
        if (const auto error = parser.allocate(std::max(parser.capacity(), text.size()), depth)) {
            return error;
        }
    }
    return parser.parse(text.data(), text.size()).get(root); // of a copy, which the parser keeps room for
}

/// What the parse of a document up to the first size, in bytes, works with is kept; up to the second one as long as
/// the documents are about that large.
bool isWorthKeeping(const simdjson::dom::parser& parser, std::size_t documentSize) {
    constexpr std::size_t usualSize = std::size_t{1} << 20U;
    constexpr std::size_t largeSize = std::size_t{16} << 20U;
    const std::size_t size = parser.capacity();
    return size <= usualSize || (size <= largeSize && size / 4 <= documentSize);
}

} // namespace

ParsedDocument::ParsedDocument(std::string_view document)
    : m_size(document.size()), m_parser(spareParser.exchange(nullptr, std::memory_order_acquire)) {
    if (m_parser == nullptr) {
        m_parser = std::make_unique<simdjson::dom::parser>();
    }
    // Empty containers do not count for the parser, so that it cannot be told the limit: it gets one that lets nothing
    // through that is too deep.
    constexpr std::size_t depth = JSONReader::maximumDepth;
    if (parse(document, depth, *m_parser, m_root) == simdjson::SUCCESS) {
        return;
    }
    if (const auto fault = SyntaxCheck::firstFault(document, depth)) {
        m_problem = fault->text();
        return;
    }
    // It is JSON all the same: as deep as allowed, or with an integer that the parser has no type for.
    m_hasWideIntegers = true;
    const std::string prepared = SyntaxCheck::withWideIntegersAsDoubles(document);
    if (const auto error = parse(prepared, depth + 1, *m_parser, m_root)) {
        m_problem = simdjson::error_message(error);
    }
}

ParsedDocument::~ParsedDocument() {
    if (isWorthKeeping(*m_parser, m_size)) {
        m_parser.reset(spareParser.exchange(m_parser.release(), std::memory_order_acq_rel));
    }
}

} // namespace menubar
