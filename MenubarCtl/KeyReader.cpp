#include "MenubarCtl/KeyReader.h"

#include <algorithm>
#include <array>
#include <optional>

namespace menubar::ctl {

namespace {

struct Sequence {
    std::string_view bytes;
    Key key;
};

/// What terminals send: both forms of the cursor keys, and of Home and End the three that are in use.
constexpr std::array sequences{
    Sequence{.bytes = "\x1b[A", .key = Key::up},      Sequence{.bytes = "\x1bOA", .key = Key::up},
    Sequence{.bytes = "\x1b[B", .key = Key::down},    Sequence{.bytes = "\x1bOB", .key = Key::down},
    Sequence{.bytes = "\x1b[H", .key = Key::home},    Sequence{.bytes = "\x1bOH", .key = Key::home},
    Sequence{.bytes = "\x1b[1~", .key = Key::home},   Sequence{.bytes = "\x1b[7~", .key = Key::home},
    Sequence{.bytes = "\x1b[F", .key = Key::end},     Sequence{.bytes = "\x1bOF", .key = Key::end},
    Sequence{.bytes = "\x1b[4~", .key = Key::end},    Sequence{.bytes = "\x1b[8~", .key = Key::end},
    Sequence{.bytes = "\x1b[5~", .key = Key::pageUp}, Sequence{.bytes = "\x1b[6~", .key = Key::pageDown},
    Sequence{.bytes = "k", .key = Key::up},           Sequence{.bytes = "j", .key = Key::down},
    Sequence{.bytes = "\r", .key = Key::choose},      Sequence{.bytes = "\n", .key = Key::choose},
    Sequence{.bytes = "q", .key = Key::quit},
};

std::optional<Key> keyOf(std::string_view bytes) {
    const auto* const found = std::ranges::find(sequences, bytes, &Sequence::bytes);
    return found == sequences.end() ? std::nullopt : std::optional(found->key);
}

/// Whether an escape sequence is over with its last byte.
bool isWhole(std::string_view sequence) {
    constexpr std::size_t longest = 32; // of no use to anybody beyond that
    if (sequence.size() < 2) {
        return false;
    }
    if (sequence.size() == 2) {
        return sequence[1] != '[' && sequence[1] != 'O';
    }
    return (sequence.back() >= '@' && sequence.back() <= '~') || sequence.size() >= longest;
}

} // namespace

std::vector<Key> KeyReader::read(std::string_view bytes) {
    std::vector<Key> keys;
    for (const char byte : bytes) {
        // An escape key that was pressed by itself begins no sequence of what comes next.
        if (byte == '\x1b' || (m_sequence.size() == 1 && byte != '[' && byte != 'O')) {
            m_sequence.clear();
        }
        m_sequence += byte;
        if (m_sequence.front() == '\x1b' && !isWhole(m_sequence)) {
            continue;
        }
        if (const auto key = keyOf(m_sequence)) {
            keys.push_back(*key);
        }
        m_sequence.clear();
    }
    return keys;
}

} // namespace menubar::ctl
