#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Menu/MenuItem.h"
#include "MenubarCore/Text/TimeZone.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace menubar::ctl {

/// The documents that --json prints. What is absent is null; texts are as they were read. Pure.

/// What `status --json` prints.
[[nodiscard]] JSONValue statusDocument(const StatusPoll& poll, const TimeZone& timeZone);

/// What `menu --json` prints.
[[nodiscard]] JSONValue menuDocument(const Menu& menu);

/// A document is UTF-8; file names, and what was typed, need not be.
[[nodiscard]] JSONValue text(std::string_view value);
[[nodiscard]] JSONValue textOrNull(const std::optional<std::string>& value);

/// The document in one line, with its line feed.
[[nodiscard]] std::expected<std::string, EncodingError> documentText(const JSONValue& document);

/// The same JSON for a person's terminal: characters that a terminal would obey (controls, bidirectional overrides) are
/// written as escapes, which JSON reads back as the same text.
[[nodiscard]] std::string terminalSafe(std::string_view json);

} // namespace menubar::ctl
