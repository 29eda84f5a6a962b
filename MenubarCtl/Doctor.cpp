#include "MenubarCtl/Doctor.h"

#include "MenubarApp/Commands/ChildProcess.h"
#include "MenubarApp/Commands/Cmux.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarCore/Daemon/ExecutableLocator.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Settings/ValidateOutput.h"
#include "MenubarCore/Status/StatusFileLocator.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCore/Text/Tilde.h"
#include "MenubarCtl/JSONOutput.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <system_error>
#include <utility>

namespace menubar::ctl {

namespace {

using namespace std::chrono_literals;

// What the daemon is given to answer, and what the system is.
constexpr std::chrono::milliseconds daemonLimit = 3s;
constexpr std::chrono::milliseconds systemLimit = 1s;

using Checks = std::vector<Check>;

Check ok(std::string found) {
    return {.found = std::move(found)};
}

Check note(std::string found, std::string fix) {
    return {.verdict = Verdict::note, .found = std::move(found), .fix = std::move(fix)};
}

Check wrong(std::string found, std::string fix) {
    return {.verdict = Verdict::wrong, .found = std::move(found), .fix = std::move(fix)};
}

/// Why a program's answer is none; one line.
std::string failureOf(const Answer& answer) {
    if (answer.isOverdue) {
        return "it did not answer within " + std::to_string(std::max<std::int64_t>(1, answer.took / 1s)) + " s";
    }
    const CommandResult& result = answer.result;
    if (!result.stderr_.empty()) {
        return result.stderr_;
    }
    return "exit status " + std::to_string(result.status);
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

// The checks

Checks statusFile(Doctor& doctor) {
    const std::string key(StatusFileLocator::environmentKey);
    const std::string why = doctor.world.isStatusFileGiven                    ? "--status-file"
                            : variable(doctor.world.environment, key).empty() ? "the default"
                                                                              : key;
    const std::string where = doctor.world.paths.statusFile + " (" + why + ")";
    const StatusSnapshot& snapshot = doctor.poll().snapshot;
    if (const auto* unreadable = std::get_if<StatusSnapshot::Unreadable>(&snapshot.storage())) {
        return {wrong(where + ": " + unreadable->reason,
                      "make it readable, or let the daemon write it anew: ostrel-menubarctl daemon restart")};
    }
    const StatusFile* file = snapshot.file();
    if (file == nullptr) {
        return {wrong(where + " is not there", "start the daemon (ostrel-menubarctl daemon start), or set " + key +
                                                   " to the file that it writes")};
    }
    return {ok(where + ", " + std::to_string(file->sessions.size()) +
               (file->sessions.size() == 1 ? " session" : " sessions"))};
}

Checks daemonState(Doctor& doctor) {
    const DaemonState& state = doctor.poll().state;
    const StatusFile* file = doctor.poll().snapshot.file();
    const std::optional<std::int64_t> process = file == nullptr ? std::nullopt : file->daemonPid;
    const bool isAlive = process && *process > 0 && doctor.world.isProcessAlive(*process);
    const std::string shown =
        state.title(doctor.world.timeZone) +
        (!process ? "" : ", process " + std::to_string(*process) + (isAlive ? "" : ", which is gone"));
    const std::string start = "start it: ostrel-menubarctl daemon start";
    const std::string restart =
        "restart it: ostrel-menubarctl daemon restart; its logs are in " + doctor.world.paths.logsDirectory;
    switch (state.kind()) {
    case DaemonState::Case::running:
        // A file from another machine names a process of that machine.
        return {!process || isAlive ? ok(shown) : note(shown, restart)};
    case DaemonState::Case::stale: return {wrong(shown, isAlive ? restart : start)};
    case DaemonState::Case::stopped: return {wrong(state.title(doctor.world.timeZone), start)};
    case DaemonState::Case::missing: return {wrong(shown, start)};
    case DaemonState::Case::unreadable: break;
    }
    return {note("not known, for its status file cannot be read", "see above")};
}

/// The app that was opened at login has the variables of the login session, not those of a shell.
Checks variables(Doctor& doctor) {
    constexpr std::array<std::string_view, 4> keys{StatusFileLocator::environmentKey, configFileKey,
                                                   LaunchAgentCommand::environmentKey, CompactSetting::environmentKey};
    if (!doctor.hasLaunchctl()) {
        return {};
    }
    Checks checks;
    for (const std::string_view key : keys) {
        const Answer answer = doctor.world.run(doctor.world.tools.launchctl, {"getenv", std::string(key)}, systemLimit);
        if (answer.isOverdue || answer.result.status == CommandResult::notStarted) {
            checks.push_back(wrong("launchctl: " + failureOf(answer), "log in again"));
            return checks;
        }
        const std::string here(variable(doctor.world.environment, key));
        const std::string there = answer.result.status == 0 ? answer.result.stdout_ : "";
        if (here != there) {
            const std::string fix = here.empty() ? "launchctl unsetenv " + std::string(key)
                                                 : "launchctl setenv " + std::string(key) + " " + here;
            checks.push_back(note(std::string(key) + " is " + (here.empty() ? "not set" : here) + " here and " +
                                      (there.empty() ? "not set" : there) + " for the app",
                                  fix + ", then quit the app and open it again"));
        }
    }
    if (checks.empty()) {
        checks.push_back(ok("the app has those of this shell"));
    }
    return checks;
}

Checks launchAgent(Doctor& doctor) {
    const std::string& path = doctor.world.paths.launchAgentPlist;
    const std::string install = "install the daemon: ostrel install";
    if (!doctor.world.files->exists(path)) {
        const std::string found = path + " is not there";
        return {doctor.poll().state.isRunning()
                    ? note(found + ", yet the daemon runs", install + "; until then nothing here can control it")
                    : wrong(found, install)};
    }
    const auto contents = doctor.world.files->contents(path);
    if (!contents) {
        return {wrong(contents.error().message, install)};
    }
    const auto parsed = LaunchAgentCommand::parse(*contents);
    if (!parsed) {
        return {wrong(path + ": " + description(parsed.error()), install)};
    }
    if (!doctor.world.isExecutable(parsed->executable)) {
        return {wrong(path + " starts " + parsed->executable + ", which is no program", install)};
    }
    if (!doctor.hasLaunchctl()) {
        return {ok(path + " starts " + parsed->executable)};
    }
    const std::string service = "gui/" + std::to_string(doctor.world.uid) + "/" + std::string(LaunchAgentLabel);
    const Answer answer = doctor.world.run(doctor.world.tools.launchctl, {"print", service}, systemLimit);
    if (answer.isOverdue) {
        return {wrong("launchctl: " + failureOf(answer), "log in again")};
    }
    if (answer.result.status != 0) {
        return {wrong(path + " is not loaded", "start the daemon: ostrel-menubarctl daemon start")};
    }
    return {ok(path + " starts " + parsed->executable + ", loaded")};
}

Checks daemonCommand(Doctor& doctor) {
    const std::string key(LaunchAgentCommand::environmentKey);
    Checks checks;
    const std::string asked(variable(doctor.world.environment, key));
    const auto& found = doctor.command();
    if (!asked.empty() && (!found || found->origin != LaunchAgentCommand::Origin::environment)) {
        checks.push_back(note(key + " is " + asked + ", which is no program, and is passed over",
                              "set it to the daemon's program, or unset it"));
    }
    if (!found) {
        checks.push_back(wrong("the daemon's program is in no known place",
                               "install the daemon (ostrel install), put ostrel on PATH, or set " + key));
        return checks;
    }
    std::string why;
    switch (found->origin) {
    case LaunchAgentCommand::Origin::environment: why = key; break;
    case LaunchAgentCommand::Origin::launchAgent: why = "the launch agent's"; break;
    case LaunchAgentCommand::Origin::path:
        why =
            std::ranges::find(LaunchAgentCommand::candidates, found->executable) == LaunchAgentCommand::candidates.end()
                ? "from PATH"
                : "a fixed place";
        break;
    }
    checks.push_back(ok(found->describe({}) + " (" + why + ")"));
    return checks;
}

Checks settingsSchema(Doctor& doctor) {
    const auto& found = doctor.command();
    if (!found) {
        return {};
    }
    const std::vector<std::string> subcommand{"config", "schema"};
    const Answer answer = doctor.world.run(found->executable, found->arguments(subcommand), daemonLimit);
    auto decoded = schemaFrom(answer);
    if (!decoded) {
        return {wrong(found->describe(subcommand) + ": " + decoded.error(),
                      "install a newer daemon; without its answer there are no settings")};
    }
    doctor.schema = *std::move(decoded);
    return {ok(found->describe(subcommand) + " names " + std::to_string(doctor.schema->settings().size()) +
               " settings, in " + std::to_string(answer.took.count()) + " ms")};
}

Checks configFile(Doctor& doctor) {
    const StatusFile* status = doctor.poll().snapshot.file();
    const std::string path = SettingsModel::defaultConfigPath(status, doctor.world.environment, doctor.world.home);
    const bool isNamed = status != nullptr && status->configFile && !status->configFile->path.value_or("").empty();
    const std::string why = !variable(doctor.world.environment, configFileKey).empty() ? std::string(configFileKey)
                            : isNamed                                                  ? "the daemon's"
                                                                                       : "the default";
    const FileFacts facts = doctor.world.lookAt(path);
    const std::string where = path + " (" + why + (facts.linkTarget ? ", a link to " + *facts.linkTarget : "") + ")";
    Checks checks;
    // A save puts a new file beside the real one.
    const std::string real = !facts.linkTarget                    ? path
                             : facts.linkTarget->starts_with('/') ? *facts.linkTarget
                                                                  : parentOf(path) + "/" + *facts.linkTarget;
    const FileFacts folder = doctor.world.lookAt(parentOf(real));
    if (folder.kind == FileFacts::Kind::folder && !folder.isWritable) {
        checks.push_back(wrong(parentOf(real) + " cannot be written to, so no setting can be saved",
                               "make the folder writable: chmod u+w " + parentOf(real)));
    }
    if (facts.kind == FileFacts::Kind::missing) {
        checks.push_back(ok(where + " is not there yet; defaults hold"));
        return checks;
    }
    const auto contents = doctor.world.files->contents(path);
    if (!contents) {
        checks.push_back(wrong(where + ": " + contents.error().message, "make it readable: chmod u+r " + path));
        return checks;
    }
    auto parsed = SettingsForm::parseFile(*contents);
    if (!parsed) {
        checks.push_back(wrong(where + ": " + describe(parsed.error()), "mend it with an editor"));
        return checks;
    }
    if (doctor.schema) {
        const SettingsForm form(*doctor.schema, *std::move(parsed));
        for (const auto& [setting, error] : form.errors()) {
            std::string found = where;
            found.append(", ").append(setting).append(": ").append(error);
            std::string fix = "ostrel-menubarctl settings reset ";
            fix.append(setting).append(", or settings set it anew");
            checks.push_back(wrong(std::move(found), std::move(fix)));
        }
        if (const auto unknown = form.unknownKeys(); !unknown.empty()) {
            checks.push_back(note(where + " has keys that the daemon does not know: " + joined(unknown, ", "),
                                  "take them out with an editor"));
        }
    }
    if (checks.empty()) {
        checks.push_back(ok(where));
    }
    return checks;
}

Checks configCheck(Doctor& doctor) {
    const auto& found = doctor.command();
    const std::string path =
        SettingsModel::defaultConfigPath(doctor.poll().snapshot.file(), doctor.world.environment, doctor.world.home);
    if (!found || doctor.world.lookAt(path).kind != FileFacts::Kind::file) {
        return {};
    }
    const std::vector<std::string> subcommand{"config", "validate", path, "--json"};
    const Answer answer = doctor.world.run(found->executable, found->arguments(subcommand), daemonLimit);
    const auto output = ValidateOutput::parse(answer.result.stdout_);
    if (answer.isOverdue || !output) {
        return {wrong(found->describe(subcommand) + ": " + failureOf(answer), "install a newer daemon")};
    }
    const ValidateOutput::Invalid* invalid = output->invalid();
    if (invalid == nullptr) {
        return {ok("the daemon accepts the config file")};
    }
    std::vector<std::string> messages;
    messages.reserve(invalid->issues.size());
    for (const ValidationIssue& issue : invalid->issues) {
        std::string& message = messages.emplace_back(joined(issue.options, ", "));
        message += message.empty() ? "" : ": ";
        message += issue.message;
    }
    return {wrong("the daemon refuses the config file" + (messages.empty() ? "" : ": " + joined(messages, "; ")),
                  "ostrel-menubarctl settings set, or an editor")};
}

/// What the running daemon makes of the file.
Checks runningSettings(Doctor& doctor) {
    const StatusFile* file = doctor.poll().snapshot.file();
    if (file == nullptr || !doctor.poll().state.isRunning()) {
        return {};
    }
    Checks checks;
    const std::string restart = "restart the daemon: ostrel-menubarctl daemon restart";
    for (const ConfigNotice& notice : ConfigNotices::notices(file, doctor.poll().state)) {
        checks.push_back(notice.configError
                             ? wrong("the daemon could not use the config file: " + notice.configError->message,
                                     "mend it: ostrel-menubarctl settings list; then " + restart)
                             : note("the config file has changed since the daemon read it", restart));
    }
    if (const auto locked = file->flagLockedSettings(); !locked.empty()) {
        checks.push_back(
            note("set by flags of the launch agent, whatever the config file says: " + joined(locked, ", "),
                 "reinstall the daemon without them, to set them in the file"));
    }
    if (checks.empty()) {
        checks.push_back(ok("the daemon runs with what the config file says"));
    }
    return checks;
}

Checks cmux(Doctor& doctor) {
    Checks checks;
    const auto path = doctor.cmuxPath();
    checks.push_back(
        path ? ok(*path)
             : note(Cmux::notFound(doctor.world.tools), "install cmux: it brings a session's terminal forward"));
    std::vector<std::string> names;
    const StatusFile* file = doctor.poll().snapshot.file();
    for (const SessionStatus& session : file == nullptr ? std::vector<SessionStatus>() : file->sessions) {
        if (session.workspaceId.value_or("").empty()) {
            names.push_back(displayTitle(session.displayName()));
        }
    }
    if (!names.empty()) {
        constexpr std::size_t mostListed = 10;
        const std::size_t count = names.size();
        names.resize(std::min(count, mostListed));
        checks.push_back(note("in no cmux workspace, so that they cannot be brought forward: " + joined(names, ", ") +
                                  (count > mostListed ? " and " + std::to_string(count - mostListed) + " more" : ""),
                              "run those sessions in cmux"));
        checks.back().name = "focus";
    }
    return checks;
}

Checks notifications(Doctor& doctor) {
    if (const auto path = doctor.cmuxPath()) {
        return {ok("through " + *path)};
    }
    if (doctor.world.isExecutable(doctor.world.tools.osascript)) {
        return {ok("through " + doctor.world.tools.osascript +
                   "; System Settings > Notifications > Script Editor allows them")};
    }
    return {note("there is neither cmux nor " + doctor.world.tools.osascript, "install cmux")};
}

Checks logs(Doctor& doctor) {
    const std::string& path = doctor.world.paths.logsDirectory;
    return {doctor.world.files->exists(path)
                ? ok(path)
                : note(path + " is not there", "the daemon makes it when it is installed: ostrel install")};
}

Checks app(Doctor& doctor) {
    if (!doctor.world.runningApps) {
        return {};
    }
    const auto apps = doctor.world.runningApps();
    if (apps.empty()) {
        return {note("it does not run", "open ostrel-menubar.app")};
    }
    Checks checks;
    for (const RunningApp& each : apps) {
        if (each.path.contains("/AppTranslocation/")) {
            checks.push_back(wrong(each.path + ", where the system's quarantine has moved it",
                                   "quit it, move ostrel-menubar.app to Applications with the Finder, open it there"));
        } else if (!each.version.empty() && each.version != doctor.world.version) {
            checks.push_back(note(each.path + " is version " + each.version + ", this is " + doctor.world.version,
                                  "quit the app and open it again, or use the command line that lies in it"));
        } else {
            checks.push_back(ok(each.path + (each.version.empty() ? "" : ", version " + each.version)));
        }
    }
    return checks;
}

Checks loginItem(Doctor& doctor) {
    if (!doctor.world.loginItem) {
        return {};
    }
    const auto state = doctor.world.loginItem();
    if (!state) {
        return {note(state.error(), "use the command line that lies in the app")};
    }
    switch (*state) {
    case LoginItemState::on: return {ok("the app starts at login")};
    case LoginItemState::off: return {ok("the app does not start at login")};
    case LoginItemState::awaitsApproval: break;
    }
    return {note("macOS waits for your approval", "allow it under System Settings > General > Login Items")};
}

Checks iconOnly(Doctor& doctor) {
    const CompactSetting& compact = doctor.poll().compact;
    const std::string key(CompactSetting::environmentKey);
    const std::string shown = compact.compact ? "on" : "off";
    if (const std::string value(variable(doctor.world.environment, key));
        !value.empty() && !CompactSetting::parse(value)) {
        return {note(shown + "; " + key + " is " + value + ", which is neither on nor off, and is passed over",
                     "set it to 1 or 0, or unset it")};
    }
    return {ok(shown + " (" + std::string(originOf(compact.source)) + ")")};
}

} // namespace

// What several checks look at

const StatusPoll& Doctor::poll() {
    if (!m_poll) {
        m_poll = StatusPoll::read(world.paths.statusFile, world.environment, world.storedCompact, *world.files,
                                  world.now, world.timeZone);
    }
    return *m_poll;
}

const std::optional<LaunchAgentCommand>& Doctor::command() {
    if (!m_command) {
        m_command = findCommand(world.environment, world.home, world.paths, *world.files, world.isExecutable);
    }
    return *m_command;
}

std::optional<std::string> Doctor::cmuxPath() const {
    return ExecutableLocator::resolve("cmux", world.tools.cmux, variable(world.environment, "PATH"),
                                      world.isExecutable);
}

std::expected<SettingsSchema, std::string> schemaFrom(const Answer& answer) {
    if (answer.isOverdue || answer.result.status != 0) {
        return std::unexpected(failureOf(answer));
    }
    auto schema = SettingsSchema::decode(answer.result.stdout_);
    if (!schema) {
        return std::unexpected(describe(schema.error()));
    }
    return *std::move(schema);
}

std::optional<LaunchAgentCommand> findCommand(const Environment& environment, const std::string& home,
                                              const StatusPaths& paths, const FileManager& files,
                                              const std::function<bool(const std::string&)>& isExecutable) {
    const auto readFile = [&files](const std::string& path) -> std::optional<std::string> {
        auto contents = files.contents(path);
        return contents ? std::optional(*std::move(contents)) : std::nullopt;
    };
    return LaunchAgentCommand::resolve(environment, home, paths.launchAgentPlist, readFile, isExecutable);
}

std::span<const Doctor::Step> Doctor::steps() {
    static constexpr std::array steps{
        Step{.name = "status file", .check = statusFile},
        Step{.name = "daemon", .check = daemonState},
        Step{.name = "variables", .check = variables},
        Step{.name = "launch agent", .check = launchAgent},
        Step{.name = "command line", .check = daemonCommand},
        Step{.name = "settings schema", .check = settingsSchema},
        Step{.name = "config file", .check = configFile},
        Step{.name = "config check", .check = configCheck},
        Step{.name = "running settings", .check = runningSettings},
        Step{.name = "cmux", .check = cmux},
        Step{.name = "notifications", .check = notifications},
        Step{.name = "logs", .check = logs},
        Step{.name = "app", .check = app},
        Step{.name = "login item", .check = loginItem},
        Step{.name = "icon only", .check = iconOnly},
    };
    return steps;
}

std::vector<Check> Doctor::run(const Step& step) {
    std::vector<Check> checks = step.check(*this);
    for (Check& check : checks) {
        check.name = check.name.empty() ? step.name : check.name;
    }
    return checks;
}

std::vector<Check> Doctor::runAll() {
    std::vector<Check> checks;
    for (const Step& step : steps()) {
        std::ranges::copy(run(step), std::back_inserter(checks));
    }
    return checks;
}

Answer runWithin(std::chrono::milliseconds limit, const std::string& executable,
                 const std::vector<std::string>& arguments) {
    using Steady = std::chrono::steady_clock;
    const auto start = Steady::now();
    const auto ended = ChildProcess::run(executable, arguments, processEnvironment(), limit);
    Answer answer;
    answer.took = std::chrono::duration_cast<std::chrono::milliseconds>(Steady::now() - start);
    if (!ended) {
        answer.result.status = CommandResult::notStarted;
        answer.result.stderr_ = std::generic_category().message(ended.error().error);
        return answer;
    }
    answer.isOverdue = ended->isOverdue;
    answer.result = {.status = ended->status,
                     .stdout_ = wellFormed(trimmed(ended->standardOutput)),
                     .stderr_ = wellFormed(trimmed(ended->standardError))};
    return answer;
}

std::string doctorText(const std::vector<Check>& checks, Styling styling) {
    using Tone = StatusItemPresentation::Tone;
    constexpr std::array tones{Tone::ok, Tone::warn, Tone::critical}; // of the verdicts
    std::string text;
    for (const Check& check : checks) {
        const std::string verdict(rawText(check.verdict));
        const std::string line = check.name + ": " + check.found + (check.fix ? " → " + *check.fix : "");
        text += drawn(verdict, {.weight = "1", .colour = colourOf(tones.at(static_cast<std::size_t>(check.verdict)))},
                      styling) +
                std::string(std::size_t{7} - verdict.size(), ' ') + displayText(line) + "\n";
    }
    return text;
}

JSONValue doctorDocument(const std::vector<Check>& checks) {
    JSONValue::Array array;
    for (const Check& check : checks) {
        array.emplace_back(JSONValue::Object{
            {"fix", textOrNull(check.fix)},
            {"found", text(check.found)},
            {"name", text(check.name)},
            {"verdict", rawText(check.verdict)},
        });
    }
    return JSONValue::Object{{"checks", std::move(array)}};
}

} // namespace menubar::ctl
