#pragma once

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

    /// In bytes.
    [[nodiscard]] std::size_t size() const { return m_size; }

    /// Whether a double of -2^63 stands for an integer below that: see `withWideIntegersAsDoubles`.
    [[nodiscard]] bool hasWideIntegers() const { return m_hasWideIntegers; }

private:
    std::size_t m_size;
    std::unique_ptr<simdjson::dom::parser> m_parser;
    simdjson::dom::element m_root;
    bool m_hasWideIntegers = false;
    std::string m_problem;
};

} // namespace menubar
