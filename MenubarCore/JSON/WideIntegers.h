#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// `document` with an exponent of zero after each integer of more than 64 bits, signed or not, for a parser that takes
/// such a number as a double only. The result is JSON exactly if `document` is. Pure; any thread.
[[nodiscard]] std::string withWideIntegersAsDoubles(std::string_view document);

} // namespace menubar
