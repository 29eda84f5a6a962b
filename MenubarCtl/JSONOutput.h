#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Menu/MenuItem.h"
#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/TimeZone.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace menubar::ctl {

/// The documents that --json prints. What is absent is null; texts are as they were read. Pure.

/// A text as a document holds it: file names, and what was typed, need not be UTF-8; a document must be.
[[nodiscard]] JSONValue text(std::string_view value);
[[nodiscard]] JSONValue textOrNull(const std::optional<std::string>& value);

/// "2025-03-04T10:15:33Z", with six digits of a fraction where there is one.
[[nodiscard]] std::string timestampText(Date date);

/// The key "state" of the documents.
[[nodiscard]] JSONValue stateDocument(const StatusPoll& poll, const TimeZone& timeZone);

/// What `status --json` prints.
[[nodiscard]] JSONValue statusDocument(const StatusPoll& poll, const TimeZone& timeZone);

/// What `menu --json` prints.
[[nodiscard]] JSONValue menuDocument(const Menu& menu);

/// The document in one line, with its line feed.
[[nodiscard]] std::expected<std::string, EncodingError> documentText(const JSONValue& document);

/// The same JSON for a person's terminal: characters that a terminal would obey (controls, bidirectional overrides) are
/// written as escapes, which JSON reads back as the same text.
[[nodiscard]] std::string terminalSafe(std::string_view json);

} // namespace menubar::ctl
