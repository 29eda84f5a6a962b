#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCtl/Look.h"
#include "MenubarCtl/ThisSystem.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

enum class Verdict { ok, note, wrong };

} // namespace menubar::ctl

template <>
inline constexpr auto menubar::enumTexts<menubar::ctl::Verdict> =
    std::to_array<std::string_view>({"ok", "note", "wrong"});

namespace menubar::ctl {

/// One thing that has to be right, and how it is.
struct Check {
    std::string name{};
    Verdict verdict = Verdict::ok;
    std::string found;
    std::optional<std::string> fix{}; ///< what to do; absent where the verdict is `ok`

    bool operator==(const Check&) const = default;
};

/// How an outside program answered.
struct Answer {
    CommandResult result{};
    bool isOverdue = false; ///< it was killed, or not started at all: there was no time for it
    std::chrono::milliseconds took{};
};

/// What is at a path.
struct FileFacts {
    enum class Kind { missing, file, folder, other };

    Kind kind = Kind::missing;
    std::optional<std::string> linkTarget{}; ///< where the path is a link
    bool isWritable = false;

    bool operator==(const FileFacts&) const = default;
};

/// Everything that the checks ask of the world. Nothing in it changes anything. Used on one thread.
struct DoctorWorld {
    Environment environment{};
    std::string home{};
    StatusPaths paths{};
    bool isStatusFileGiven = false; ///< by the command line
    SystemTools tools{};
    std::uint64_t uid = 0;
    Date now{};
    TimeZone timeZone{};
    std::string version{}; ///< of this program
    std::optional<bool> storedCompact{};
    const FileManager* files = nullptr;
    std::function<bool(const std::string&)> isExecutable{};
    std::function<FileFacts(const std::string&)> lookAt{};
    std::function<bool(std::int64_t)> isProcessAlive{};
    /// Never takes longer than the limit.
    std::function<Answer(const std::string& executable, const std::vector<std::string>& arguments,
                         std::chrono::milliseconds limit)>
        run{};
    std::function<std::vector<RunningApp>()> runningApps{}; ///< empty where the system has none to find
    std::function<std::expected<LoginItemState, std::string>()> loginItem{}; ///< empty likewise
};

/// The checks, in the order in which one thing depends on another. Each look at the world is made once and kept for the
/// checks after it.
class Doctor {
public:
    explicit Doctor(DoctorWorld ownWorld) : world(std::move(ownWorld)) {}

    struct Step {
        std::string_view name; ///< of its checks that have none of their own
        std::vector<Check> (*check)(Doctor& doctor);
    };

    [[nodiscard]] static std::span<const Step> steps();

    [[nodiscard]] std::vector<Check> run(const Step& step);

    /// All steps.
    [[nodiscard]] std::vector<Check> runAll();

    // What several checks look at

    [[nodiscard]] const StatusPoll& poll();
    [[nodiscard]] const std::optional<LaunchAgentCommand>& command();
    [[nodiscard]] std::optional<std::string> cmuxPath() const;

    [[nodiscard]] bool hasLaunchctl() const { return world.isExecutable(world.tools.launchctl); }

    const DoctorWorld world;
    std::optional<SettingsSchema> schema; ///< once it was asked for, and when the daemon knew it

private:
    std::optional<StatusPoll> m_poll;
    std::optional<std::optional<LaunchAgentCommand>> m_command;
};

/// The daemon's command line, if it is found.
[[nodiscard]] std::optional<LaunchAgentCommand>
findCommand(const Environment& environment, const std::string& home, const StatusPaths& paths, const FileManager& files,
            const std::function<bool(const std::string&)>& isExecutable);

/// Runs a program to its end, or kills it, and what it started, at the limit. Nothing is logged. Blocks; any thread.
[[nodiscard]] Answer runWithin(std::chrono::milliseconds limit, const std::string& executable,
                               const std::vector<std::string>& arguments);

/// The daemon's answer to `config schema`, decoded; otherwise one line that says why there is none.
[[nodiscard]] std::expected<SettingsSchema, std::string> schemaFrom(const Answer& answer);

/// What `doctor` prints: a line for each check.
[[nodiscard]] std::string doctorText(const std::vector<Check>& checks, Styling styling);

/// What `doctor --json` prints.
[[nodiscard]] JSONValue doctorDocument(const std::vector<Check>& checks);

} // namespace menubar::ctl
