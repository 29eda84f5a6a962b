#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace menubar::demo {

/// Creates the directory and the ones above it that are missing. The error is a sentence for people.
[[nodiscard]] std::expected<void, std::string> makeDirectories(const std::string& path);

/// Replaces the file as a whole: a reader sees the old bytes or the new ones, never a part. The new bytes go to a
/// temporary file beside it, which is renamed into place and removed when anything fails. The error is a sentence for
/// people.
[[nodiscard]] std::expected<void, std::string> writeAtomically(const std::string& path, std::string_view bytes);

} // namespace menubar::demo
