#pragma once

#include "MenubarApp/Commands/CommandRunner.h"
#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarApp/Platform/LoginItem.h"
#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/Daemon/LaunchAgentCommand.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCtl/AppFacts.h"
#include "MenubarCtl/Look.h"

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

/// One thing that has to be right, and how it is.
struct Check {
    std::string name;
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
    explicit Doctor(DoctorWorld world) : m_world(std::move(world)) {}

    struct Step {
        std::string_view name; ///< of its first check
        std::vector<Check> (Doctor::*check)();
    };

    [[nodiscard]] static std::span<const Step> steps();

    [[nodiscard]] std::vector<Check> run(const Step& step) { return (this->*step.check)(); }

    /// All steps.
    [[nodiscard]] std::vector<Check> runAll();

private:
    std::vector<Check> statusFile();
    std::vector<Check> daemon();
    std::vector<Check> variables();
    std::vector<Check> launchAgent();
    std::vector<Check> commandLine();
    std::vector<Check> schema();
    std::vector<Check> configFile();
    std::vector<Check> configCheck();
    std::vector<Check> runningSettings();
    std::vector<Check> cmux();
    std::vector<Check> notifications();
    std::vector<Check> logs();
    std::vector<Check> app();
    std::vector<Check> loginItem();
    std::vector<Check> iconOnly();

    [[nodiscard]] bool hasLaunchctl() const { return m_world.isExecutable(m_world.tools.launchctl); }

    [[nodiscard]] const StatusPoll& poll();
    [[nodiscard]] const std::optional<LaunchAgentCommand>& command();
    [[nodiscard]] std::optional<std::string> cmuxPath() const;

    DoctorWorld m_world;
    std::optional<StatusPoll> m_poll;
    std::optional<std::optional<LaunchAgentCommand>> m_command;
    std::optional<SettingsSchema> m_schema;
};

/// The daemon's answer to `config schema`, decoded; otherwise one line that says why there is none.
[[nodiscard]] std::expected<SettingsSchema, std::string> schemaFrom(const Answer& answer);

/// What `doctor` prints: a line for each check.
[[nodiscard]] std::string doctorText(const std::vector<Check>& checks, Styling styling);

/// What `doctor --json` prints.
[[nodiscard]] JSONValue doctorDocument(const std::vector<Check>& checks);

} // namespace menubar::ctl
