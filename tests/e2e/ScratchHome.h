#pragma once

#include "tests/e2e/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::e2e {

/// A person's home directory for one test, and the programs run in it: with an environment of its own, in UTC.
class ScratchHome {
    testing_support::TemporaryDirectory m_directory; // first: the environment names it

public:
    /// The time and zone that the literal documents of the tests are for.
    static const std::vector<std::string> fixedTime;

    /// Where the programs look for preferences. HOME does not move those of macOS, so nothing is ever stored here.
    static constexpr const char* defaultsDomain = "ostrel-menubar-e2e-tests";

    /// A locale with UTF-8 that the system has.
#if defined(__APPLE__)
    static constexpr const char* utf8Locale = "en_US.UTF-8";
#else
    static constexpr const char* utf8Locale = "C.UTF-8";
#endif

    /// Where a package put a program of this name, where there is one; else empty.
    [[nodiscard]] static std::string installed(const std::string& name);

    struct Result {
        ChildProcess::Status status = -1;
        std::string output;
        std::string errors;
    };

    ScratchHome();

    [[nodiscard]] std::string path() const { return m_directory.path(); }

    [[nodiscard]] std::string operator/(std::string_view name) const { return m_directory / name; }

    [[nodiscard]] std::string statusFile() const { return m_directory / ".local/state/ostrel/status.json"; }

    /// Writes a file, with the directories above it, and returns its path.
    std::string write(const std::string& name, std::string_view bytes) const;

    /// In one step, as the daemon does: a look at the file finds the old or the new.
    void writeStatus(std::string_view bytes) const;

    /// What the programs find in their environment.
    std::map<std::string, std::string> environment;

    [[nodiscard]] ChildProcess::Options menubarctl(std::vector<std::string> arguments) const;
    [[nodiscard]] ChildProcess::Options demo(std::vector<std::string> arguments) const;

    /// Runs to the end. Fails the test when that takes too long.
    [[nodiscard]] static Result run(const ChildProcess::Options& options);

    /// `ostrel-menubarctl` with these arguments and the fixed time.
    [[nodiscard]] Result atFixedTime(std::vector<std::string> arguments) const;
};

} // namespace menubar::e2e
