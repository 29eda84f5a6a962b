#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// What a person may press.
enum class Key { up, down, pageUp, pageDown, home, end, choose, quit };

/// Makes keys of the bytes that a terminal sends. A key's bytes may come in any number of pieces, as over a slow line;
/// what stands for no key is dropped.
class KeyReader {
public:
    [[nodiscard]] std::vector<Key> read(std::string_view bytes);

private:
    std::string m_sequence; // an escape sequence that has begun
};

} // namespace menubar::ctl
