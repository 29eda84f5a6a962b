#pragma once

#include <string>
#include <string_view>

namespace menubar {

/// `path` with a leading "~" that stands alone or before a "/" replaced by `home`; nothing else changes. "~user/x"
/// stays as it is: whose home that is, only the system's account list could tell. Any thread; no state.
[[nodiscard]] std::string expandTilde(std::string_view path, std::string_view home);

} // namespace menubar
