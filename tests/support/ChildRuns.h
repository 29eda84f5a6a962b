#pragma once

#include "MenubarApp/Commands/CommandRunner.h"

#include "tests/support/Programs.h"

#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace menubar::testing_support {

/// One run and the lines that it logged.
struct LoggedRun {
    CommandResult result;
    std::vector<std::string> lines;
};

inline LoggedRun run(const std::string& executable, const std::vector<std::string>& arguments,
                     const Environment& extra = {}) {
    LoggedRun ran;
    ran.result = CommandRunner::runSync(executable, arguments, extra,
                                        [&](std::string_view line) { ran.lines.emplace_back(line); });
    return ran;
}

/// What the test's child makes of its arguments.
inline CommandResult runChild(const std::vector<std::string>& arguments, const Environment& extra = {}) {
    return run(testChild, arguments, extra).result;
}

/// How the system calls an error.
inline std::string reason(int error) {
    return std::generic_category().message(error);
}

} // namespace menubar::testing_support
