#pragma once

#include "MenubarCore/JSON/JSONValue.h"

#include <expected>
#include <string>
#include <string_view>

namespace menubar {

/// Writes JSON text. Ill-formed UTF-8 in a value that was built in code comes out as U+FFFD, so that the result is
/// always a valid document. Uses constant stack for values of any depth. Pure; any thread.
namespace JSONWriter {

/// See `JSONValue::encode`.
[[nodiscard]] std::expected<std::string, EncodingError> write(const JSONValue& value, JSONLayout layout);

/// Appends `text` as a JSON string, quotation marks included.
void appendString(std::string& out, std::string_view text);

} // namespace JSONWriter

} // namespace menubar
