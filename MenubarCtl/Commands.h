#pragma once

#include "MenubarApp/Commands/CommandResult.h"
#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCtl/Context.h"

#include <string_view>

namespace menubar {
struct CommandContext;
}

namespace menubar::ctl {

enum class ExitStatus : int {
    done = 0,
    failed = 1, ///< what was asked for failed; standard error says why
    wrongUsage = 2,
};

/// Each command writes to standard output and tells how it went. The process ignores SIGPIPE: a reader that has gone
/// ends a command quietly, and counts as done.

[[nodiscard]] ExitStatus runStatus(const Context& context);
[[nodiscard]] ExitStatus runMenu(const Context& context);

/// Redraws the menu until interrupted.
[[nodiscard]] ExitStatus runMenuWatch(const Context& context);

/// Brings the terminal of the session that the line names to the front.
[[nodiscard]] ExitStatus runFocus(const Context& context, const CommandContext& commands);

/// Starts, stops or restarts the daemon's launch agent; starting one that runs restarts it, as in the menu.
[[nodiscard]] ExitStatus runDaemon(const Context& context, const CommandContext& commands);

/// Lists, reads or changes the daemon's settings; what is changed is validated by the daemon before it is written.
[[nodiscard]] ExitStatus runSettings(const Context& context, const CommandContext& commands);

/// Makes the app start at login or not, or tells whether it does.
[[nodiscard]] ExitStatus runLogin(const Context& context, LoginItem& item);

/// Writes to standard output.
[[nodiscard]] ExitStatus print(std::string_view bytes);

/// Writes one JSON document to standard output; on a terminal in a form that the terminal cannot obey.
[[nodiscard]] ExitStatus printDocument(const JSONValue& document);

/// Writes "ostrel-menubarctl: ", the message and a line feed to standard error.
void complain(std::string_view message);

/// Complains; gives `failed`.
[[nodiscard]] ExitStatus fail(std::string_view message);

/// How a command ends that came down to one outside program: complains when that failed, with what it said.
[[nodiscard]] ExitStatus finish(std::string_view program, const CommandResult& result);

} // namespace menubar::ctl
