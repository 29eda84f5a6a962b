#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/NumberToken.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// One walk through a document, value by value, in the order in which they stand: what the parser is to the rest of
/// this folder. It is always at one value, the current one. Each value is read once, by one of the functions below,
/// or looked at and passed by `check`, so that by the end every byte has been looked at.
///
/// Once a function has found the document to be broken the walk is over: every later one fails too.
///
/// Any thread. What can be used again is kept for the next walk.
class DocumentWalk {
public:
    /// A key of the document, which may hold escapes.
    class Key {
    public:
        explicit Key(const char* text) : m_text(text) {}

        /// Whether the key is written exactly like `name`, a key of a table: one that is not too long to be compared
        /// before the document's own key is measured, and that needs no escapes.
        [[nodiscard]] bool isWritten(std::string_view name) const {
            return m_text[name.size()] == '"' && equal(m_text, name.data(), name.size());
        }

    private:
        friend class DocumentWalk;

        /// Compares eight bytes at a time, which for keys is faster than a call.
        [[nodiscard]] static bool equal(const char* left, const char* right, std::size_t size) {
            std::size_t index = 0;
            for (; index + sizeof(std::uint64_t) <= size; index += sizeof(std::uint64_t)) {
                std::uint64_t a = 0;
                std::uint64_t b = 0;
                std::memcpy(&a, left + index, sizeof a);
                std::memcpy(&b, right + index, sizeof b);
                if (a != b) {
                    return false;
                }
            }
            while (index < size && left[index] == right[index]) {
                ++index;
            }
            return index == size;
        }

        const char* m_text; ///< after the quotation mark
    };

    /// Moves to the document's one value.
    explicit DocumentWalk(std::string_view document);
    ~DocumentWalk();
    DocumentWalk(const DocumentWalk&) = delete;
    DocumentWalk& operator=(const DocumentWalk&) = delete;

    /// Whether the document turned out not to be JSON.
    [[nodiscard]] bool isBroken() const { return m_broken; }

    /// To be called after the document's value has been read: nothing may follow it.
    void finish();

    /// What is wrong with the broken document, in one line, with its place.
    [[nodiscard]] std::string problem() const;

    /// The current value's first character, which tells its type.
    [[nodiscard]] char kind() const { return m_token.front(); }

    [[nodiscard]] bool isNumber() const { return kind() == '-' || (kind() >= '0' && kind() <= '9'); }

    /// The current value is the literal `text`. A broken literal is none.
    [[nodiscard]] bool isLiteral(std::string_view text) const { return kind() == text.front() && scalar() == text; }

    /// The current value, a string. Valid until the next text or key is asked for.
    [[nodiscard]] std::optional<std::string_view> text();

    /// The current value, a number within double's range.
    [[nodiscard]] std::optional<NumberToken> number();
    [[nodiscard]] std::optional<double> nearestDouble();

    /// The current value whole, whatever it is.
    [[nodiscard]] std::optional<JSONValue> value();

    /// Looks at every byte of the current value, whatever it is. False when it is broken.
    [[nodiscard]] bool check();

    /// Calls `visit()` with each element of the current value, an array, as the current value. False when the array
    /// is broken or a call returns false.
    template <typename Visit>
    [[nodiscard]] bool eachElement(Visit visit) {
        return walkArray(&visit, [](void* context) { return (*static_cast<Visit*>(context))(); });
    }

    /// Calls `visit(key)` with each member's value of the current value, an object, as the current value.
    template <typename Visit>
    [[nodiscard]] bool eachMember(Visit visit) {
        return walkObject(&visit, [](void* context, Key key) { return (*static_cast<Visit*>(context))(key); });
    }

    /// What a key stands for. Valid until the next text or key is asked for.
    [[nodiscard]] std::optional<std::string_view> name(Key key);

private:
    struct State;
    struct Level;

    [[nodiscard]] static std::atomic<State*>& spareState();
    [[nodiscard]] static std::unique_ptr<State> takeState();
    [[nodiscard]] bool start();
    [[nodiscard]] bool succeeds(int code);
    bool breakOff(int code);
    template <typename Result>
    [[nodiscard]] bool moveTo(Result value);
    [[nodiscard]] std::string_view scalar() const;
    [[nodiscard]] bool hasBackslash(std::string_view token);
    [[nodiscard]] std::optional<std::string_view> unescaped(std::string_view raw);
    [[nodiscard]] bool checkScalar();
    [[nodiscard]] std::optional<JSONValue> scalarValue();
    [[nodiscard]] bool enterContainer();
    [[nodiscard]] bool walkArray(void* context, bool (*visit)(void* context));
    [[nodiscard]] bool walkObject(void* context, bool (*visit)(void* context, Key key));
    template <typename Visitor>
    [[nodiscard]] bool walkDeep(Visitor& visitor);

    std::string_view m_document;
    std::unique_ptr<State> m_state;
    std::string_view m_token; ///< the current value's text up to the next token; a container's is its bracket
    const char* m_nextBackslash = nullptr; ///< none stands between the start of the current value and this one
    std::size_t m_depth = 0;
    bool m_broken = false;
    int m_code = 0; ///< the parser's own reason
};

} // namespace menubar
