#include "demo/WatchCommand.h"

#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/SignalPipe.h"

#include "demo/AtomicFile.h"
#include "demo/ConfigValidation.h"
#include "demo/DemoConfig.h"
#include "demo/Simulation.h"
#include "demo/Timestamp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <expected>
#include <filesystem>
#include <utility>

#include <unistd.h>

namespace menubar::demo {

namespace {

using Steady = std::chrono::steady_clock;
using Outcome = std::expected<void, std::string>;

Date now() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

/// What the stand-in runs with, and what was wrong with its config file.
struct LoadedConfig {
    DemoConfig config;
    std::optional<std::string> error{}; ///< the file was ignored
};

/// Reads the config file, once, as the real daemon does. A file that is wrong anywhere is ignored as a whole.
LoadedConfig loadConfig(const WatchOptions& options) {
    JSONValue::Object flags;
    if (options.interval) {
        flags["poll-interval"] = std::to_string(options.interval->count()) + "ms";
    }
    const PosixFileManager files;
    if (!files.exists(options.configPath)) {
        return {.config = DemoConfig({}, flags)};
    }
    const auto file = readConfig(options.configPath, files);
    if (!file) {
        return {.config = DemoConfig({}, flags), .error = file.error()};
    }
    const auto issues = configIssues(*file);
    if (!issues.empty()) {
        const std::string& option = issues.front().options.front();
        return {.config = DemoConfig({}, flags), .error = option + ": " + issues.front().message};
    }
    return {.config = DemoConfig(*file, flags)};
}

/// The simulation and the files that it is written to.
class Writer {
public:
    explicit Writer(const WatchOptions& options)
        : m_statusPath(options.statusPath), m_stateDirectory(std::filesystem::path(options.statusPath).parent_path()),
          m_configPath(options.configPath), m_configAtStart(FileStamp::of(m_configPath)), m_loaded(loadConfig(options)),
          m_startedAt(now()), m_simulation({.startedAt = m_startedAt,
                                            .daemonPid = ::getpid(),
                                            .intervalMs = interval().count(),
                                            .handoffsDirectory = handoffsDirectory(),
                                            .homeDirectory = options.home,
                                            .seed = options.seed,
                                            .config = m_loaded.config}) {}

    /// Between two polls; never so short that nothing else gets done.
    [[nodiscard]] std::chrono::milliseconds interval() const {
        return std::max(std::chrono::milliseconds(std::llround(m_loaded.config.number("poll-interval"))),
                        std::chrono::milliseconds(1));
    }

    Outcome prepare() { return makeDirectories(handoffsDirectory()); }

    Outcome poll() { return write(now(), false); }

    Outcome stop() { return write(now(), true); }

private:
    [[nodiscard]] std::string handoffsDirectory() const { return (m_stateDirectory / "handoffs").string(); }

    Outcome write(Date at, bool stopped) {
        Simulation::Frame frame = m_simulation.poll(at);
        for (const Simulation::HandoffDocument& handoff : frame.handoffs) {
            if (Outcome outcome = writeAtomically(handoff.path, handoff.text); !outcome) {
                return outcome;
            }
        }
        frame.status["configFile"] =
            configFileStatus(m_configPath, m_startedAt, m_configAtStart, FileStamp::of(m_configPath));
        if (m_loaded.error) {
            frame.status["configError"] = JSONValue::Object{
                {"message", *m_loaded.error}, {"path", m_configPath}, {"at", timestampText(m_startedAt)}};
        }
        if (stopped) {
            frame.status["stoppedAt"] = timestampText(at);
        }
        const auto document = JSONValue(std::move(frame.status)).encode(JSONLayout::pretty);
        if (!document) {
            return std::unexpected(std::string(describe(document.error())));
        }
        return writeAtomically(m_statusPath, *document + "\n");
    }

    std::string m_statusPath;
    std::filesystem::path m_stateDirectory;
    std::string m_configPath;
    std::optional<FileStamp> m_configAtStart;
    LoadedConfig m_loaded;
    Date m_startedAt;
    Simulation m_simulation;
};

int failed(const std::string& message) {
    std::fprintf(stderr, "ostrel (stand-in): %s\n", message.c_str());
    return 1;
}

} // namespace

int watch(const WatchOptions& options) {
    constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};
    const auto stop = SignalPipe::create(signals);
    if (!stop) {
        return failed("cannot create a pipe");
    }
    Writer writer(options);
    if (const Outcome outcome = writer.prepare(); !outcome) {
        return failed(outcome.error());
    }
    auto deadline = Steady::now();
    do {
        if (const Outcome outcome = writer.poll(); !outcome) {
            return failed(outcome.error());
        }
        // A machine that slept does not catch up on the polls that it missed.
        deadline = std::max(deadline + writer.interval(), Steady::now());
    } while (!stop->waitUntil(deadline));
    const Outcome outcome = writer.stop();
    return outcome ? 0 : failed(outcome.error());
}

} // namespace menubar::demo
