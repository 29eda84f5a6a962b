#include "MenubarCore/JSON/ParsedDocument.h"

#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/SyntaxCheck.h"
#include "MenubarCore/JSON/WideIntegers.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace menubar {

namespace {

/// Newer parsers pass over it.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// What the parse of a document up to the first size, in bytes, works with is kept; up to the second one as long as
/// the documents are about that large.
constexpr std::size_t usualSize = std::size_t{1} << 20U;
constexpr std::size_t largeSize = std::size_t{16} << 20U;

} // namespace

struct ParsedDocument::Workspace {
    simdjson::dom::parser parser;
    std::vector<char> bytes; ///< a copy of the document, with the zeros after it that the parser may look at

    /// Refuses containers inside one another when there are `depth` that are not empty.
    [[nodiscard]] simdjson::error_code parse(std::string_view text, std::size_t depth, simdjson::dom::element& root) {
        if (text.starts_with(byteOrderMark)) {
            return simdjson::UTF8_ERROR;
        }
        if (parser.max_depth() != depth) {
            if (const auto error = parser.allocate(std::max(parser.capacity(), text.size()), depth)) {
                return error;
            }
        }
        const std::size_t size = text.size() + simdjson::SIMDJSON_PADDING;
        if (bytes.size() < size) {
            bytes = std::vector<char>(size);
        }
        std::ranges::copy(text, bytes.begin());
        std::fill_n(bytes.data() + text.size(), simdjson::SIMDJSON_PADDING, '\0');
        return parser.parse(bytes.data(), text.size(), false).get(root);
    }

    [[nodiscard]] bool isWorthKeeping(std::size_t documentSize) const {
        const std::size_t size = std::max(bytes.size(), parser.capacity());
        return size <= usualSize || (size <= largeSize && size / 4 <= documentSize);
    }
};

/// One for the process, taken out while in use: a parse within a parse, or beside it on another thread, makes its own.
/// What it holds at the end is left to the system.
std::atomic<ParsedDocument::Workspace*>& ParsedDocument::spareWorkspace() {
    static std::atomic<Workspace*> workspace;
    return workspace;
}

ParsedDocument::ParsedDocument(std::string_view document)
    : m_size(document.size()), m_workspace(spareWorkspace().exchange(nullptr, std::memory_order_acquire)) {
    if (m_workspace == nullptr) {
        m_workspace = std::make_unique<Workspace>();
    }
    // Empty containers do not count for the parser, so that it cannot be told the limit: it gets one that lets nothing
    // through that is too deep.
    if (m_workspace->parse(document, JSONReader::maximumDepth, m_root) == simdjson::SUCCESS) {
        return;
    }
    if (const auto fault = SyntaxCheck::firstFault(document, JSONReader::maximumDepth)) {
        m_problem = fault->text();
        return;
    }
    // It is JSON all the same: as deep as allowed, or with an integer that the parser has no type for.
    m_mayHoldWideIntegers = true;
    const auto error = m_workspace->parse(withWideIntegersAsDoubles(document), JSONReader::maximumDepth + 1, m_root);
    if (error != simdjson::SUCCESS) {
        m_problem = simdjson::error_message(error);
    }
}

ParsedDocument::~ParsedDocument() {
    if (m_workspace->isWorthKeeping(m_size)) {
        m_workspace.reset(spareWorkspace().exchange(m_workspace.release(), std::memory_order_acq_rel));
    }
}

} // namespace menubar
