#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/Status/StatusFile.h"

#include <expected>
#include <optional>
#include <string_view>

namespace menubar {

/// Reads the status file: strict about types, lenient about presence. One bad value anywhere fails the whole document;
/// unknown keys are ignored. Pure; any thread.
///
/// No `make()` gives out a decoder: its one setting, how dates are read, is `TextForm<Date>` beside the record tables.
namespace StatusDecoder {

[[nodiscard]] std::expected<StatusFile, DecodingError> decode(std::string_view document);

/// The instant of a timestamp text (see `parseTimestamp`), or absent.
[[nodiscard]] std::optional<Date> parseDate(std::string_view text);

} // namespace StatusDecoder

} // namespace menubar
