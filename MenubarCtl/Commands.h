#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCtl/Context.h"

#include <expected>
#include <string_view>

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

/// Keeps the menu on the terminal, where it can be used, until a key or a signal ends it.
[[nodiscard]] ExitStatus runMenuOnScreen(const Context& context);

[[nodiscard]] ExitStatus runSessions(const Context& context);

/// One line for the status bar of another program. Always done: a bar makes nothing of a failure.
[[nodiscard]] ExitStatus runBar(const Context& context);

/// Tells what keeps the app from working. Failed when anything does.
[[nodiscard]] ExitStatus runDoctor(const Context& context);

/// What a completion script asks: prints what the last of the line's values may become.
[[nodiscard]] ExitStatus runComplete(const Context& context);

/// Brings the terminal of the session that the line names to the front.
[[nodiscard]] ExitStatus runFocus(const Context& context);

/// Tells whether the daemon runs, or starts, stops or restarts its launch agent; starting one that runs restarts it, as
/// in the menu.
[[nodiscard]] ExitStatus runDaemon(const Context& context);

/// Lists, reads or changes the daemon's settings; what is changed is validated by the daemon before it is written.
[[nodiscard]] ExitStatus runSettings(const Context& context);

/// Makes the app start at login or not, or tells whether it does.
[[nodiscard]] ExitStatus runLogin(const Context& context, LoginItem& item);

/// Writes to standard output.
[[nodiscard]] ExitStatus print(std::string_view bytes);

/// How a command ends that came down to writing: complains of a failure, but not when the reader has gone.
[[nodiscard]] ExitStatus finishWriting(const std::expected<void, int>& written);

/// Writes one JSON document to standard output; on a terminal in a form that the terminal cannot obey.
[[nodiscard]] ExitStatus printDocument(const JSONValue& document);

/// Writes "ostrel-menubarctl: ", the message and a line feed to standard error.
void complain(std::string_view message);

/// Complains of a wrong command line and says how to get help; gives `wrongUsage`.
[[nodiscard]] ExitStatus refuseUsage(const UsageError& error);

/// Complains; gives `failed`.
[[nodiscard]] ExitStatus fail(std::string_view message);

/// How a command ends that came down to one outside program: complains when that failed, with what it said.
[[nodiscard]] ExitStatus finish(std::string_view program, const CommandResult& result);

} // namespace menubar::ctl
