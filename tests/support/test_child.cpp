// A child process for the tests that does what its arguments say, in order:
//   out TEXT, err TEXT        writes the text
//   out-bytes N, err-bytes N  writes N times "x"
//   hex TEXT                  writes the bytes that the hexadecimal text stands for to standard output
//   arguments ...             writes each argument that follows on a line of its own, bytes beyond "!" to "~" as \xNN
//   variable NAME             writes NAME=VALUE, or "NAME unset"
//   stdin                     writes how many bytes standard input held until its end
//   descriptors               writes the numbers of the open descriptors
//   signals                   writes "default", or which signals are blocked or ignored
//   sleep MS                  waits
//   leave MS                  leaves a process behind that holds every output for that long and then writes "left";
//                             writes its process id
//   leave-writing MS          the same, and that process writes all the time
//   close                     closes both outputs
//   raise N, exit N           ends so
// "\n" in TEXT stays as it is; nothing adds a line feed but the commands that write lines.

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace {

void writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(fd, text.data(), text.size());
        if (count < 0) {
            std::_Exit(97);
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void printLine(const std::string& text) {
    writeAll(STDOUT_FILENO, text + "\n");
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c >= '!' && c <= '~' && c != '\\') {
            result += c;
        } else {
            std::array<char, 5> code{};
            std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
            result += code.data();
        }
    }
    return result;
}

std::string unhex(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        result += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    }
    return result;
}

void printDescriptors() {
    std::string line;
    for (int fd = 0; fd < 1024; ++fd) {
        if (::fcntl(fd, F_GETFD) != -1) {
            line += std::to_string(fd) + " ";
        }
    }
    printLine(line);
}

void printSignals() {
    std::string line;
    sigset_t blocked;
    ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action{};
        if (sigismember(&blocked, number) == 1) {
            line += "blocked " + std::to_string(number) + " ";
        }
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
            line += "ignored " + std::to_string(number) + " ";
        }
    }
    printLine(line.empty() ? "default" : line);
}

void printStandardInput() {
    std::array<char, 256> buffer{};
    std::size_t total = 0;
    for (ssize_t count = 0; (count = ::read(STDIN_FILENO, buffer.data(), buffer.size())) > 0;) {
        total += static_cast<std::size_t>(count);
    }
    printLine(std::to_string(total));
}

void sleepFor(const char* milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(milliseconds)));
}

void leave(const char* milliseconds, bool writing) {
    // The id comes first: until the pipe closes, the process that is left behind writes nothing.
    std::array<int, 2> printed{};
    if (::pipe(printed.data()) != 0) {
        std::_Exit(97);
    }
    const pid_t left = ::fork();
    if (left != 0) {
        printLine(std::to_string(left));
        ::close(printed[0]);
        ::close(printed[1]);
        return;
    }
    ::close(printed[1]);
    char none = 0;
    static_cast<void>(::read(printed[0], &none, 1) == 0);
    ::close(printed[0]);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::atoi(milliseconds));
    while (std::chrono::steady_clock::now() < end) {
        if (writing) {
            writeAll(STDOUT_FILENO, std::string(4096, 'y'));
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    writeAll(STDOUT_FILENO, "left");
    std::_Exit(0);
}

void printVariable(const char* name) {
    const char* value = std::getenv(name);
    printLine(value == nullptr ? std::string(name) + " unset" : std::string(name) + "=" + value);
}

/// Runs a command that takes an argument.
bool runWith(std::string_view command, const char* argument) {
    if (command == "out") {
        writeAll(STDOUT_FILENO, argument);
    } else if (command == "err") {
        writeAll(STDERR_FILENO, argument);
    } else if (command == "out-bytes") {
        writeAll(STDOUT_FILENO, std::string(static_cast<std::size_t>(std::atol(argument)), 'x'));
    } else if (command == "err-bytes") {
        writeAll(STDERR_FILENO, std::string(static_cast<std::size_t>(std::atol(argument)), 'x'));
    } else if (command == "hex") {
        writeAll(STDOUT_FILENO, unhex(argument));
    } else if (command == "variable") {
        printVariable(argument);
    } else if (command == "sleep") {
        sleepFor(argument);
    } else if (command == "leave" || command == "leave-writing") {
        leave(argument, command == "leave-writing");
    } else if (command == "raise") {
        ::raise(std::atoi(argument));
    } else if (command == "exit") {
        std::_Exit(std::atoi(argument));
    } else {
        return false;
    }
    return true;
}

/// Runs a command that takes none.
bool runAlone(std::string_view command) {
    if (command == "stdin") {
        printStandardInput();
    } else if (command == "descriptors") {
        printDescriptors();
    } else if (command == "signals") {
        printSignals();
    } else if (command == "close") {
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "arguments") {
            for (++i; i < argc; ++i) {
                printLine(escaped(argv[i]));
            }
        } else if (!runAlone(argv[i]) && (i + 1 >= argc || !runWith(argv[i], argv[i + 1]) || ++i < 0)) {
            std::fprintf(stderr, "test_child: cannot do \"%s\"\n", argv[i]);
            return 98;
        }
    }
    return 0;
}
