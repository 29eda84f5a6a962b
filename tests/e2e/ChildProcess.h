#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace menubar::e2e {

/// A program of ours as a child process, with its output collected. Destroying it kills and reaps a child that still
/// runs.
class ChildProcess {
public:
    /// What standard input and output are connected to. Standard error is always a pipe.
    enum class Output { pipe, terminal, closedPipe };

    struct Options {
        std::string program;
        std::vector<std::string> arguments;
        std::map<std::string, std::string> environment; ///< all of it
        Output output = Output::pipe;
        unsigned short columns = 80; ///< of the terminal
        unsigned short rows = 50;
        std::optional<uid_t> user{}; ///< to become, for the superuser only
    };

    /// Of all that was written so far.
    using Condition = std::function<bool(const std::string& text)>;

    /// How a child ended: its exit status, or minus the signal that killed it.
    using Status = int;

    static constexpr std::chrono::seconds patience{60};

    explicit ChildProcess(const Options& options);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return m_pid; }

    void send(int signal) const;
    /// Types on the terminal.
    void type(std::string_view keys) const;
    void resizeTerminal(unsigned short columns, unsigned short rows) const;

    /// Collects output until `isEnough` says so; false when the child ended, or the time was up, before.
    bool readUntil(const Condition& isEnough);
    bool readErrorsUntil(const Condition& isEnough);

    /// Lets the child's next write of output fail.
    void closeOutput();

    /// False when the child is not stopped (as by SIGSTOP) in time.
    bool waitUntilStopped();

    /// Collects output until the child ends; absent (and the child killed) when it does not in time.
    std::optional<Status> wait();

    [[nodiscard]] const std::string& output() const { return m_output; }

    [[nodiscard]] const std::string& errors() const { return m_errors; }

private:
    void collect(std::chrono::milliseconds timeout);
    bool collectUntil(const std::string& text, const int& descriptor, const Condition& isEnough);
    bool reapIfEnded();

    pid_t m_pid = -1;
    int m_outputDescriptor = -1;
    int m_errorDescriptor = -1;
    std::string m_output;
    std::string m_errors;
    std::optional<Status> m_status;
};

[[nodiscard]] inline ChildProcess::Condition contains(std::string part) {
    return [part = std::move(part)](const std::string& text) { return text.find(part) != std::string::npos; };
}

} // namespace menubar::e2e
