#include "MenubarCtl/Doctor.h"

#include "MenubarApp/Commands/Cmux.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarCore/Daemon/ExecutableLocator.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Settings/ValidateOutput.h"
#include "MenubarCore/Status/StatusFileLocator.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCore/Text/Tilde.h"
#include "MenubarCtl/JSONOutput.h"

#include <algorithm>
#include <array>
#include <utility>

namespace menubar::ctl {

namespace {

using namespace std::chrono_literals;

// What the daemon is given to answer, and what the system is.
constexpr std::chrono::milliseconds daemonLimit = 3s;
constexpr std::chrono::milliseconds systemLimit = 1s;

Check ok(std::string_view name, std::string found) {
    return {.name = std::string(name), .found = std::move(found)};
}

Check note(std::string_view name, std::string found, std::string fix) {
    return {.name = std::string(name), .verdict = Verdict::note, .found = std::move(found), .fix = std::move(fix)};
}

Check wrong(std::string_view name, std::string found, std::string fix) {
    return {.name = std::string(name), .verdict = Verdict::wrong, .found = std::move(found), .fix = std::move(fix)};
}

std::string seconds(std::chrono::milliseconds limit) {
    return std::to_string(std::max<std::int64_t>(1, limit.count() / 1000)) + " s";
}

/// Why a program's answer is none; one line.
std::string failureOf(const Answer& answer) {
    if (answer.isOverdue) {
        return "it did not answer within " + seconds(answer.took);
    }
    const CommandResult& result = answer.result;
    if (!result.stderr_.empty()) {
        return result.stderr_;
    }
    return "exit status " + std::to_string(result.status);
}

std::string_view rawText(Verdict verdict) {
    switch (verdict) {
    case Verdict::ok: return "ok";
    case Verdict::note: return "note";
    case Verdict::wrong: return "wrong";
    }
    return "";
}

std::string_view colourOf(Verdict verdict) {
    using Tone = StatusItemPresentation::Tone;
    switch (verdict) {
    case Verdict::ok: return ctl::colourOf(Tone::ok);
    case Verdict::note: return ctl::colourOf(Tone::warn);
    case Verdict::wrong: return ctl::colourOf(Tone::critical);
    }
    return "";
}

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

// What several checks look at

const StatusPoll& Doctor::poll() {
    if (!m_poll) {
        m_poll = StatusPoll::read(m_world.paths.statusFile, m_world.environment, m_world.storedCompact, *m_world.files,
                                  m_world.now, m_world.timeZone);
    }
    return *m_poll;
}

const std::optional<LaunchAgentCommand>& Doctor::command() {
    if (!m_command) {
        const auto readFile = [this](const std::string& path) -> std::optional<std::string> {
            auto contents = m_world.files->contents(path);
            return contents ? std::optional(*std::move(contents)) : std::nullopt;
        };
        m_command = LaunchAgentCommand::resolve(m_world.environment, m_world.home, m_world.paths.launchAgentPlist,
                                                readFile, m_world.isExecutable);
    }
    return *m_command;
}

std::optional<std::string> Doctor::cmuxPath() const {
    return ExecutableLocator::resolve("cmux", m_world.tools.cmux, variable(m_world.environment, "PATH"),
                                      m_world.isExecutable);
}

// The checks. Steps are of one type, whether or not they keep what they looked at.
// NOLINTBEGIN(readability-make-member-function-const)

std::vector<Check> Doctor::statusFile() {
    constexpr std::string_view name = "status file";
    const std::string key(StatusFileLocator::environmentKey);
    const std::string why = m_world.isStatusFileGiven                    ? "--status-file"
                            : variable(m_world.environment, key).empty() ? "the default"
                                                                         : key;
    const std::string where = m_world.paths.statusFile + " (" + why + ")";
    const StatusSnapshot& snapshot = poll().snapshot;
    if (const auto* unreadable = std::get_if<StatusSnapshot::Unreadable>(&snapshot.storage())) {
        return {wrong(name, where + ": " + unreadable->reason,
                      "make it readable, or let the daemon write it anew: ostrel-menubarctl daemon restart")};
    }
    const StatusFile* file = snapshot.file();
    if (file == nullptr) {
        return {
            wrong(name, where + " is not there",
                  "start the daemon (ostrel-menubarctl daemon start), or set " + key + " to the file that it writes")};
    }
    return {ok(name, where + ", " + std::to_string(file->sessions.size()) +
                         (file->sessions.size() == 1 ? " session" : " sessions"))};
}

std::vector<Check> Doctor::daemon() {
    constexpr std::string_view name = "daemon";
    const DaemonState& state = poll().state;
    const StatusFile* file = poll().snapshot.file();
    const std::optional<std::int64_t> process = file == nullptr ? std::nullopt : file->daemonPid;
    const bool isAlive = process && *process > 0 && m_world.isProcessAlive(*process);
    const std::string shown =
        state.title(m_world.timeZone) +
        (!process ? "" : ", process " + std::to_string(*process) + (isAlive ? "" : ", which is gone"));
    const std::string start = "start it: ostrel-menubarctl daemon start";
    const std::string restart =
        "restart it: ostrel-menubarctl daemon restart; its logs are in " + m_world.paths.logsDirectory;
    switch (state.kind()) {
    case DaemonState::Case::running:
        // A file from another machine names a process of that machine.
        return {!process || isAlive ? ok(name, shown) : note(name, shown, restart)};
    case DaemonState::Case::stale: return {wrong(name, shown, isAlive ? restart : start)};
    case DaemonState::Case::stopped: return {wrong(name, state.title(m_world.timeZone), start)};
    case DaemonState::Case::missing: return {wrong(name, shown, start)};
    case DaemonState::Case::unreadable: break;
    }
    return {note(name, "not known, for its status file cannot be read", "see above")};
}

/// The app that was opened at login has the variables of the login session, not those of a shell.
std::vector<Check> Doctor::variables() {
    constexpr std::string_view name = "variables";
    constexpr std::array<std::string_view, 4> keys{StatusFileLocator::environmentKey, configFileKey,
                                                   LaunchAgentCommand::environmentKey, CompactSetting::environmentKey};
    if (!hasLaunchctl()) {
        return {};
    }
    std::vector<Check> checks;
    for (const std::string_view key : keys) {
        const Answer answer = m_world.run(m_world.tools.launchctl, {"getenv", std::string(key)}, systemLimit);
        if (answer.isOverdue || answer.result.status == CommandResult::notStarted) {
            checks.push_back(wrong(name, "launchctl: " + failureOf(answer), "log in again"));
            return checks;
        }
        const std::string here(variable(m_world.environment, key));
        const std::string there = answer.result.status == 0 ? answer.result.stdout_ : "";
        if (here != there) {
            const std::string fix = here.empty() ? "launchctl unsetenv " + std::string(key)
                                                 : "launchctl setenv " + std::string(key) + " " + here;
            checks.push_back(note(name,
                                  std::string(key) + " is " + (here.empty() ? "not set" : here) + " here and " +
                                      (there.empty() ? "not set" : there) + " for the app",
                                  fix + ", then quit the app and open it again"));
        }
    }
    if (checks.empty()) {
        checks.push_back(ok(name, "the app has those of this shell"));
    }
    return checks;
}

std::vector<Check> Doctor::launchAgent() {
    constexpr std::string_view name = "launch agent";
    const std::string& path = m_world.paths.launchAgentPlist;
    const std::string install = "install the daemon: ostrel install";
    if (!m_world.files->exists(path)) {
        const std::string found = path + " is not there";
        return {poll().state.isRunning()
                    ? note(name, found + ", yet the daemon runs", install + "; until then nothing here can control it")
                    : wrong(name, found, install)};
    }
    const auto contents = m_world.files->contents(path);
    if (!contents) {
        return {wrong(name, contents.error().message, install)};
    }
    const auto parsed = LaunchAgentCommand::parse(*contents);
    if (!parsed) {
        return {wrong(name, path + ": " + description(parsed.error()), install)};
    }
    if (!m_world.isExecutable(parsed->executable)) {
        return {wrong(name, path + " starts " + parsed->executable + ", which is no program", install)};
    }
    if (!hasLaunchctl()) {
        return {ok(name, path + " starts " + parsed->executable)};
    }
    const std::string service = "gui/" + std::to_string(m_world.uid) + "/" + std::string(LaunchAgentLabel);
    const Answer answer = m_world.run(m_world.tools.launchctl, {"print", service}, systemLimit);
    if (answer.isOverdue) {
        return {wrong(name, "launchctl: " + failureOf(answer), "log in again")};
    }
    if (answer.result.status != 0) {
        return {wrong(name, path + " is not loaded", "start the daemon: ostrel-menubarctl daemon start")};
    }
    return {ok(name, path + " starts " + parsed->executable + ", loaded")};
}

std::vector<Check> Doctor::commandLine() {
    constexpr std::string_view name = "command line";
    const std::string key(LaunchAgentCommand::environmentKey);
    std::vector<Check> checks;
    const std::string asked(variable(m_world.environment, key));
    const auto& found = command();
    if (!asked.empty() && (!found || found->origin != LaunchAgentCommand::Origin::environment)) {
        checks.push_back(note(name, key + " is " + asked + ", which is no program, and is passed over",
                              "set it to the daemon's program, or unset it"));
    }
    if (!found) {
        checks.push_back(wrong(name, "the daemon's program is in no known place",
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
    checks.push_back(ok(name, found->describe({}) + " (" + why + ")"));
    return checks;
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

std::vector<Check> Doctor::schema() {
    constexpr std::string_view name = "settings schema";
    const auto& found = command();
    if (!found) {
        return {};
    }
    const std::vector<std::string> subcommand{"config", "schema"};
    const Answer answer = m_world.run(found->executable, found->arguments(subcommand), daemonLimit);
    auto decoded = schemaFrom(answer);
    if (!decoded) {
        return {wrong(name, found->describe(subcommand) + ": " + decoded.error(),
                      "install a newer daemon; without its answer there are no settings")};
    }
    m_schema = *std::move(decoded);
    return {ok(name, found->describe(subcommand) + " names " + std::to_string(m_schema->settings().size()) +
                         " settings, in " + std::to_string(answer.took.count()) + " ms")};
}

std::vector<Check> Doctor::configFile() {
    constexpr std::string_view name = "config file";
    const StatusFile* status = poll().snapshot.file();
    const std::string path = SettingsModel::defaultConfigPath(status, m_world.environment, m_world.home);
    const bool isNamed = status != nullptr && status->configFile && !status->configFile->path.value_or("").empty();
    const std::string why = !variable(m_world.environment, configFileKey).empty() ? std::string(configFileKey)
                            : isNamed                                             ? "the daemon's"
                                                                                  : "the default";
    const FileFacts facts = m_world.lookAt(path);
    const std::string where = path + " (" + why + (facts.linkTarget ? ", a link to " + *facts.linkTarget : "") + ")";
    std::vector<Check> checks;
    // A save puts a new file beside the real one.
    const std::string real = !facts.linkTarget                    ? path
                             : facts.linkTarget->starts_with('/') ? *facts.linkTarget
                                                                  : parentOf(path) + "/" + *facts.linkTarget;
    const FileFacts folder = m_world.lookAt(parentOf(real));
    if (folder.kind == FileFacts::Kind::folder && !folder.isWritable) {
        checks.push_back(wrong(name, parentOf(real) + " cannot be written to, so no setting can be saved",
                               "make the folder writable: chmod u+w " + parentOf(real)));
    }
    if (facts.kind == FileFacts::Kind::missing) {
        checks.push_back(ok(name, where + " is not there yet; defaults hold"));
        return checks;
    }
    const auto contents = m_world.files->contents(path);
    if (!contents) {
        checks.push_back(wrong(name, where + ": " + contents.error().message, "make it readable: chmod u+r " + path));
        return checks;
    }
    auto parsed = SettingsForm::parseFile(*contents);
    if (!parsed) {
        checks.push_back(wrong(name, where + ": " + describe(parsed.error()), "mend it with an editor"));
        return checks;
    }
    if (m_schema) {
        const SettingsForm form(*m_schema, *std::move(parsed));
        for (const auto& [setting, error] : form.errors()) {
            std::string found = where;
            found.append(", ").append(setting).append(": ").append(error);
            std::string fix = "ostrel-menubarctl settings reset ";
            fix.append(setting).append(", or settings set it anew");
            checks.push_back(wrong(name, std::move(found), std::move(fix)));
        }
        if (const auto unknown = form.unknownKeys(); !unknown.empty()) {
            checks.push_back(note(name, where + " has keys that the daemon does not know: " + joined(unknown, ", "),
                                  "take them out with an editor"));
        }
    }
    if (checks.empty()) {
        checks.push_back(ok(name, where));
    }
    return checks;
}

std::vector<Check> Doctor::configCheck() {
    constexpr std::string_view name = "config check";
    const auto& found = command();
    const std::string path =
        SettingsModel::defaultConfigPath(poll().snapshot.file(), m_world.environment, m_world.home);
    if (!found || m_world.lookAt(path).kind != FileFacts::Kind::file) {
        return {};
    }
    const std::vector<std::string> subcommand{"config", "validate", path, "--json"};
    const Answer answer = m_world.run(found->executable, found->arguments(subcommand), daemonLimit);
    const auto output = ValidateOutput::parse(answer.result.stdout_);
    if (answer.isOverdue || !output) {
        return {wrong(name, found->describe(subcommand) + ": " + failureOf(answer), "install a newer daemon")};
    }
    const ValidateOutput::Invalid* invalid = output->invalid();
    if (invalid == nullptr) {
        return {ok(name, "the daemon accepts the config file")};
    }
    std::vector<std::string> messages;
    messages.reserve(invalid->issues.size());
    for (const ValidationIssue& issue : invalid->issues) {
        std::string& message = messages.emplace_back(joined(issue.options, ", "));
        message += message.empty() ? "" : ": ";
        message += issue.message;
    }
    return {wrong(name, "the daemon refuses the config file" + (messages.empty() ? "" : ": " + joined(messages, "; ")),
                  "ostrel-menubarctl settings set, or an editor")};
}

/// What the running daemon makes of the file.
std::vector<Check> Doctor::runningSettings() {
    constexpr std::string_view name = "running settings";
    const StatusFile* file = poll().snapshot.file();
    if (file == nullptr || !poll().state.isRunning()) {
        return {};
    }
    std::vector<Check> checks;
    const std::string restart = "restart the daemon: ostrel-menubarctl daemon restart";
    for (const ConfigNotice& notice : ConfigNotices::notices(file, poll().state)) {
        checks.push_back(notice.configError
                             ? wrong(name, "the daemon could not use the config file: " + notice.configError->message,
                                     "mend it: ostrel-menubarctl settings list; then " + restart)
                             : note(name, "the config file has changed since the daemon read it", restart));
    }
    if (const auto locked = file->flagLockedSettings(); !locked.empty()) {
        checks.push_back(
            note(name, "set by flags of the launch agent, whatever the config file says: " + joined(locked, ", "),
                 "reinstall the daemon without them, to set them in the file"));
    }
    if (checks.empty()) {
        checks.push_back(ok(name, "the daemon runs with what the config file says"));
    }
    return checks;
}

std::vector<Check> Doctor::cmux() {
    constexpr std::string_view name = "cmux";
    std::vector<Check> checks;
    const auto path = cmuxPath();
    checks.push_back(
        path ? ok(name, *path)
             : note(name, Cmux::notFound(m_world.tools), "install cmux: it brings a session's terminal forward"));
    std::vector<std::string> names;
    const StatusFile* file = poll().snapshot.file();
    for (const SessionStatus& session : file == nullptr ? std::vector<SessionStatus>() : file->sessions) {
        if (session.workspaceId.value_or("").empty()) {
            names.push_back(displayTitle(session.displayName()));
        }
    }
    if (!names.empty()) {
        constexpr std::size_t mostListed = 10;
        const std::size_t count = names.size();
        names.resize(std::min(count, mostListed));
        checks.push_back(note("focus",
                              "in no cmux workspace, so that they cannot be brought forward: " + joined(names, ", ") +
                                  (count > mostListed ? " and " + std::to_string(count - mostListed) + " more" : ""),
                              "run those sessions in cmux"));
    }
    return checks;
}

std::vector<Check> Doctor::notifications() {
    constexpr std::string_view name = "notifications";
    if (const auto path = cmuxPath()) {
        return {ok(name, "through " + *path)};
    }
    if (m_world.isExecutable(m_world.tools.osascript)) {
        return {ok(name, "through " + m_world.tools.osascript +
                             "; System Settings > Notifications > Script Editor allows them")};
    }
    return {note(name, "there is neither cmux nor " + m_world.tools.osascript, "install cmux")};
}

std::vector<Check> Doctor::logs() {
    constexpr std::string_view name = "logs";
    const std::string& path = m_world.paths.logsDirectory;
    return {m_world.files->exists(path)
                ? ok(name, path)
                : note(name, path + " is not there", "the daemon makes it when it is installed: ostrel install")};
}

std::vector<Check> Doctor::app() {
    constexpr std::string_view name = "app";
    if (!m_world.runningApps) {
        return {};
    }
    const auto apps = m_world.runningApps();
    if (apps.empty()) {
        return {note(name, "it does not run", "open ostrel-menubar.app")};
    }
    std::vector<Check> checks;
    for (const RunningApp& each : apps) {
        if (each.path.contains("/AppTranslocation/")) {
            checks.push_back(wrong(name, each.path + ", where the system's quarantine has moved it",
                                   "quit it, move ostrel-menubar.app to Applications with the Finder, open it there"));
        } else if (!each.version.empty() && each.version != m_world.version) {
            checks.push_back(note(name, each.path + " is version " + each.version + ", this is " + m_world.version,
                                  "quit the app and open it again, or use the command line that lies in it"));
        } else {
            checks.push_back(ok(name, each.path + (each.version.empty() ? "" : ", version " + each.version)));
        }
    }
    return checks;
}

std::vector<Check> Doctor::loginItem() {
    constexpr std::string_view name = "login item";
    if (!m_world.loginItem) {
        return {};
    }
    const auto state = m_world.loginItem();
    if (!state) {
        return {note(name, state.error(), "use the command line that lies in the app")};
    }
    switch (*state) {
    case LoginItemState::on: return {ok(name, "the app starts at login")};
    case LoginItemState::off: return {ok(name, "the app does not start at login")};
    case LoginItemState::awaitsApproval: break;
    }
    return {note(name, "macOS waits for your approval", "allow it under System Settings > General > Login Items")};
}

std::vector<Check> Doctor::iconOnly() {
    constexpr std::string_view name = "icon only";
    const CompactSetting& compact = poll().compact;
    const std::string key(CompactSetting::environmentKey);
    const std::string shown = compact.compact ? "on" : "off";
    if (const std::string value(variable(m_world.environment, key)); !value.empty() && !CompactSetting::parse(value)) {
        return {note(name, shown + "; " + key + " is " + value + ", which is neither on nor off, and is passed over",
                     "set it to 1 or 0, or unset it")};
    }
    switch (compact.source) {
    case CompactSetting::Source::environment: return {ok(name, shown + " (" + key + ")")};
    case CompactSetting::Source::defaults: return {ok(name, shown + " (stored)")};
    case CompactSetting::Source::builtIn: break;
    }
    return {ok(name, shown + " (built in)")};
}

// NOLINTEND(readability-make-member-function-const)

std::span<const Doctor::Step> Doctor::steps() {
    static constexpr std::array steps{
        Step{.name = "status file", .check = &Doctor::statusFile},
        Step{.name = "daemon", .check = &Doctor::daemon},
        Step{.name = "variables", .check = &Doctor::variables},
        Step{.name = "launch agent", .check = &Doctor::launchAgent},
        Step{.name = "command line", .check = &Doctor::commandLine},
        Step{.name = "settings schema", .check = &Doctor::schema},
        Step{.name = "config file", .check = &Doctor::configFile},
        Step{.name = "config check", .check = &Doctor::configCheck},
        Step{.name = "running settings", .check = &Doctor::runningSettings},
        Step{.name = "cmux", .check = &Doctor::cmux},
        Step{.name = "notifications", .check = &Doctor::notifications},
        Step{.name = "logs", .check = &Doctor::logs},
        Step{.name = "app", .check = &Doctor::app},
        Step{.name = "login item", .check = &Doctor::loginItem},
        Step{.name = "icon only", .check = &Doctor::iconOnly},
    };
    return steps;
}

std::vector<Check> Doctor::runAll() {
    std::vector<Check> checks;
    for (const Step& step : steps()) {
        const std::vector<Check> more = run(step);
        checks.insert(checks.end(), more.begin(), more.end());
    }
    return checks;
}

std::string doctorText(const std::vector<Check>& checks, Styling styling) {
    std::string text;
    for (const Check& check : checks) {
        const std::string verdict(rawText(check.verdict));
        const std::string line = check.name + ": " + check.found + (check.fix ? " → " + *check.fix : "");
        text += drawn(verdict, {.weight = "1", .colour = colourOf(check.verdict)}, styling) +
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
