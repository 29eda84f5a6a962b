#include "MenubarCtl/Commands.h"
#include "MenubarCtl/Doctor.h"
#include "MenubarCtl/Help.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace menubar::ctl {

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

constexpr std::chrono::milliseconds timeForPrograms = 7s; ///< for all that are run, together
constexpr std::chrono::milliseconds timeForAll = 9s;
constexpr std::chrono::milliseconds timeForLoginItem = 2s;

FileFacts lookAt(const std::string& path) {
    namespace fs = std::filesystem;
    FileFacts facts;
    std::error_code error;
    if (fs::is_symlink(path, error)) {
        facts.linkTarget = fs::read_symlink(path, error).string();
    }
    switch (fs::status(path, error).type()) {
    case fs::file_type::not_found: return facts;
    case fs::file_type::regular: facts.kind = FileFacts::Kind::file; break;
    case fs::file_type::directory: facts.kind = FileFacts::Kind::folder; break;
    default:
        facts.kind = FileFacts::Kind::other;
        break; // what may not be looked at, too, is there for all that is known
    }
    facts.isWritable = ::access(path.c_str(), W_OK) == 0;
    return facts;
}

DoctorWorld realWorld(const Context& context, const FileManager& files) {
    DoctorWorld world{.environment = context.environment(),
                      .home = context.commands().home,
                      .paths = context.paths(),
                      .isStatusFileGiven = context.line().statusFile.has_value(),
                      .tools = context.commands().tools,
                      .uid = context.commands().uid,
                      .now = context.clock().now(),
                      .timeZone = context.clock().timeZone(),
                      .version = std::string(programVersion),
                      .storedCompact = storedBool(CompactSetting::defaultsKey, context.environment(), files),
                      .files = &files,
                      .isExecutable = PosixFileManager::isExecutableFile,
                      .lookAt = lookAt};
    world.isProcessAlive = [](std::int64_t process) {
        return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
    };
    const auto timeLeft = [deadline = Steady::now() + timeForPrograms] {
        return std::max(0ms, std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now()));
    };
    world.run = [timeLeft](const std::string& executable, const std::vector<std::string>& arguments,
                           std::chrono::milliseconds limit) {
        const auto left = timeLeft();
        return left.count() > 0 ? runWithin(std::min(limit, left), executable, arguments)
                                : Answer{.isOverdue = true, .took = 0ms};
    };
    if (canFindApps()) {
        world.runningApps = runningApps;
        world.loginItem = [timeLeft]() -> std::expected<LoginItemState, std::string> {
            const auto item = systemLoginItem(std::min(timeForLoginItem, timeLeft()));
            if (!item) {
                return std::unexpected(item.error().message);
            }
            return (*item)->state();
        };
    }
    return world;
}

/// What the examining thread and the waiting one share; as long as either.
struct Examination {
    explicit Examination(DoctorWorld world) : doctor(std::move(world)) {}

    Doctor doctor;
    std::mutex mutex;
    std::condition_variable progress;
    std::vector<Check> checks; ///< of the steps that are done
    std::size_t stepsDone = 0;
};

void examine(const std::shared_ptr<Examination>& examination) {
    for (const Doctor::Step& step : Doctor::steps()) {
        const std::vector<Check> checks = examination->doctor.run(step);
        const std::scoped_lock lock(examination->mutex);
        examination->checks.insert(examination->checks.end(), checks.begin(), checks.end());
        ++examination->stepsDone;
        examination->progress.notify_all();
    }
}

/// Writes what was found. Failed when anything is wrong.
ExitStatus report(const Context& context, const std::vector<Check>& checks) {
    const ExitStatus printed = context.line().json ? printDocument(doctorDocument(checks))
                                                   : print(doctorText(checks, context.outputStyle().styling));
    const bool isWrong = std::ranges::find(checks, Verdict::wrong, &Check::verdict) != checks.end();
    return isWrong ? ExitStatus::failed : printed;
}

} // namespace

ExitStatus runDoctor(const Context& context) {
    static const PosixFileManager files;
    const auto examination = std::make_shared<Examination>(realWorld(context, files));
    std::thread([examination] { examine(examination); }).detach();
    std::unique_lock lock(examination->mutex);
    const std::size_t all = Doctor::steps().size();
    if (examination->progress.wait_for(lock, timeForAll, [&] { return examination->stepsDone == all; })) {
        return report(context, examination->checks);
    }
    // A file system that hangs can be waited for by nobody; the thread goes with the process.
    std::vector<Check> checks = examination->checks;
    checks.push_back({.name = std::string(Doctor::steps()[examination->stepsDone].name),
                      .verdict = Verdict::wrong,
                      .found = "this look did not end, and those after it were not made",
                      .fix = "see whether the disks that hold your home folder answer"});
    std::_Exit(static_cast<int>(report(context, checks)));
}

} // namespace menubar::ctl
