#include "demo/tools/LaunchDomain.h"

#include "MenubarCore/Daemon/PropertyList.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace menubar::demo {

namespace {

using namespace std::chrono_literals;

std::unexpected<std::string> failure(std::string_view what, int error) {
    return std::unexpected(std::string(what) + ": " + std::strerror(error));
}

/// Everything that the keeper of an agent needs, made before the fork.
struct Start {
    std::vector<char*> words;
    std::string log;
    std::string pid;
    int report = -1; // gets the error number of a start that failed; closes without one when the program runs
};

/// In the agent's process: becomes the program.
[[noreturn]] void becomeProgram(const Start& start) {
    const int null = ::open("/dev/null", O_RDONLY);
    const int log = ::open(start.log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (null >= 0 && log >= 0 && ::dup2(null, STDIN_FILENO) >= 0 && ::dup2(log, STDOUT_FILENO) >= 0 &&
        ::dup2(log, STDERR_FILENO) >= 0) {
        ::execv(start.words.front(), start.words.data());
    }
    const int error = errno;
    (void)::write(start.report, &error, sizeof error);
    ::_exit(127);
}

/// In a process of its own: starts the program, waits for its end, and then takes the process id away. Somebody has to
/// wait, or who looks whether the agent still runs would find its zombie.
[[noreturn]] void keep(const Start& start) {
    ::setsid();
    const pid_t agent = ::fork();
    if (agent == 0) {
        becomeProgram(start);
    }
    if (agent > 0) {
        std::ofstream(start.pid) << agent << '\n';
    }
    // Nobody but the program holds what the caller may be reading to its end.
    for (int fd = 0; fd <= start.report; ++fd) {
        ::close(fd);
    }
    while (agent > 0 && ::waitpid(agent, nullptr, 0) < 0 && errno == EINTR) {
    }
    ::unlink(start.pid.c_str());
    ::_exit(0);
}

/// Whether it became so within the time that the real one gives a program to end.
template <typename Condition>
bool comesTrue(Condition condition) {
    for (const auto end = std::chrono::steady_clock::now() + 20s; std::chrono::steady_clock::now() < end;) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(5ms);
    }
    return condition();
}

} // namespace

std::filesystem::path LaunchDomain::file(const std::string& label, std::string_view suffix) const {
    return m_directory / (label + std::string(suffix));
}

bool LaunchDomain::isLoaded(const std::string& label) const {
    std::error_code ignored;
    return std::filesystem::is_symlink(file(label, ".plist"), ignored);
}

pid_t LaunchDomain::processOf(const std::string& label) const {
    pid_t process = 0;
    std::ifstream(file(label, ".pid")) >> process;
    return process;
}

bool LaunchDomain::isRunning(const std::string& label) const {
    const pid_t process = processOf(label);
    return process > 0 && ::kill(process, 0) == 0;
}

std::expected<std::vector<std::string>, std::string> LaunchDomain::words(const std::string& label) const {
    std::ifstream in(file(label, ".plist"), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto list = PropertyList::read(bytes);
    if (!list) {
        return std::unexpected(list.error().message);
    }
    auto words = list->strings("ProgramArguments");
    if (!words || words->empty()) {
        return std::unexpected("no program arguments");
    }
    return *std::move(words);
}

LaunchDomain::Outcome LaunchDomain::load(const std::filesystem::path& plist) {
    std::error_code error;
    std::filesystem::create_directories(m_directory, error);
    if (!std::filesystem::is_regular_file(plist, error)) {
        return failure(plist.string(), ENOENT);
    }
    const std::string label = plist.stem().string();
    std::filesystem::create_symlink(std::filesystem::absolute(plist), file(label, ".plist"), error);
    if (error) {
        return std::unexpected(error.message());
    }
    if (const auto found = words(label); !found) {
        std::filesystem::remove(file(label, ".plist"), error);
        return std::unexpected(found.error());
    }
    return {};
}

LaunchDomain::Outcome LaunchDomain::unload(const std::string& label) {
    std::error_code error;
    std::filesystem::remove(file(label, ".plist"), error);
    if (error) {
        return std::unexpected(error.message());
    }
    return {};
}

LaunchDomain::Outcome LaunchDomain::start(const std::string& label) {
    auto program = words(label);
    if (!program) {
        return std::unexpected(program.error());
    }
    int report[2]; // NOLINT(modernize-avoid-c-arrays): what pipe takes
    if (::pipe(report) != 0 || ::fcntl(report[1], F_SETFD, FD_CLOEXEC) != 0) {
        return failure("pipe", errno);
    }
    Start start{.words = {}, .log = file(label, ".log"), .pid = file(label, ".pid"), .report = report[1]};
    for (std::string& word : *program) {
        start.words.push_back(word.data());
    }
    start.words.push_back(nullptr);
    const pid_t keeper = ::fork();
    if (keeper == 0) {
        keep(start);
    }
    ::close(report[1]);
    int error = keeper < 0 ? errno : 0;
    if (keeper > 0) {
        (void)::read(report[0], &error, sizeof error);
    }
    ::close(report[0]);
    return error == 0 ? Outcome{} : Outcome{failure(program->front(), error)};
}

LaunchDomain::Outcome LaunchDomain::stop(const std::string& label) {
    // A process id that belongs to nobody is left over from a keeper that was killed.
    const auto gone = [&] { return !isRunning(label); };
    for (const int signal : {SIGTERM, SIGKILL}) {
        if (const pid_t process = processOf(label); process > 0) {
            ::kill(process, signal);
        }
        if (comesTrue(gone)) {
            return {};
        }
    }
    return failure(label, ETIMEDOUT);
}

} // namespace menubar::demo
