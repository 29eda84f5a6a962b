#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::demo {

/// What the stand-ins for outside programs share. Each appends what it was asked to the file that OSTREL_DEMO_RECORD
/// names, so that a test or a person can see it: one line of JSON for each call, in one write,
///
///     {"arguments":["notify","--title","..."],"quiet":"1","tool":"cmux"}
///
/// with the value of CMUX_QUIET, null when unset. Without the variable nothing is recorded.
class Tool {
public:
    Tool(std::string_view name, int argc, char** argv);

    [[nodiscard]] std::span<const std::string> arguments() const { return m_arguments; }

    /// False when the record cannot be written; a reason is on standard error.
    [[nodiscard]] bool record() const;

    /// Whether OSTREL_DEMO_FAIL names the first argument: the call is to fail, whatever it asks.
    [[nodiscard]] bool isToldToFail() const;

    /// Says why on standard error; gives `status`.
    [[nodiscard]] int fail(int status, std::string_view reason) const;

private:
    std::string m_name;
    std::vector<std::string> m_arguments;
};

} // namespace menubar::demo
