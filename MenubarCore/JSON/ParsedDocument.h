#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <simdjson.h>

namespace menubar {

/// A document that the parser has looked at, every byte of it. Where this folder meets the parser.
///
/// Any thread; what a parse works with is kept for the next one, as long as it is not large.
class ParsedDocument {
public:
    explicit ParsedDocument(std::string_view document);
    ~ParsedDocument();
    ParsedDocument(const ParsedDocument&) = delete;
    ParsedDocument& operator=(const ParsedDocument&) = delete;

    /// What is wrong with a document that is not JSON, in one line, with its place; empty for JSON.
    [[nodiscard]] const std::string& problem() const { return m_problem; }

    /// The one value of a document that is JSON.
    [[nodiscard]] const simdjson::dom::element& root() const { return m_root; }

    /// Whether an integer of more than 64 bits may stand in the document, as a double.
    [[nodiscard]] bool mayHoldWideIntegers() const { return m_mayHoldWideIntegers; }

private:
    struct Workspace;

    [[nodiscard]] static std::atomic<Workspace*>& spareWorkspace();

    std::size_t m_size;
    std::unique_ptr<Workspace> m_workspace;
    simdjson::dom::element m_root;
    bool m_mayHoldWideIntegers = false;
    std::string m_problem;
};

} // namespace menubar
