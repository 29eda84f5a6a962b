#pragma once

#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Settings/SettingsModel.h"

#include "tests/support/RecordingShell.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace menubar::recording {

/// A settings model in a real home directory, with a daemon "/opt/ostrel" that answers what the test told it to. Set
/// the scene, then `create()`; nothing of the background runs before `mainLoop.drain()`.
struct SettingsHarness {
    static constexpr const char* daemon = "/opt/ostrel";
    /// A text, a number of 1...10, a list of lower-case words, and `warn-context`, a percentage.
    static constexpr const char* schema = R"({
        "properties": {"text": {"default": "d"}, "words": {"items": {"pattern": "^[a-z]+$"}}},
        "x-groups": [{"id": "g", "title": "Group", "settings": [
            {"name": "text", "control": "text"},
            {"name": "number", "control": "number", "min": 1, "max": 10},
            {"name": "words", "control": "list"},
            {"name": "warn-context", "control": "percent", "min": 0, "max": 100}]}]})";

    testing_support::TemporaryDirectory home;
    Environment environment{{"OSTREL_CLI", daemon}, {"PATH", ""}};
    FakeMainLoop mainLoop;
    PosixFileManager files;
    FakeClock clock;
    FakeCommands commands;
    bool hasDaemon = true;
    CommandResult schemaResult{.status = 0, .stdout_ = schema, .stderr_ = ""};
    CommandResult validation{.status = 0, .stdout_ = R"({"ok":true})", .stderr_ = ""};
    std::function<void(const std::string& candidate)> duringValidation;
    std::vector<std::string> runs; ///< command lines, the candidate's path as CANDIDATE
    std::vector<std::string> log;
    int changes = 0;
    std::shared_ptr<SettingsModel> model;
    Subscription subscription;

    SettingsHarness() {
        clock.time = Date(std::chrono::seconds(1741096980));
        std::filesystem::create_directories(home / ".config/ostrel");
    }

    [[nodiscard]] std::string configPath() const { return home / ".config/ostrel/config.json"; }

    void writeConfig(std::string_view bytes) const { home.write(".config/ostrel/config.json", bytes); }

    /// The config file's bytes; empty when there is none.
    [[nodiscard]] std::string config() const { return files.contents(configPath()).value_or(""); }

    void create() {
        model = SettingsModel::create(
            environment, home.path(),
            {.mainLoop = mainLoop,
             .files = files,
             .clock = clock,
             .commands = commands,
             .run = [this](const auto& executable, const auto& arguments) { return run(executable, arguments); },
             .isExecutable = [this](const std::string& path) { return hasDaemon && path == daemon; },
             .log = [this](std::string_view line) { log.emplace_back(line); }});
        subscription = model->onChange([this] { ++changes; });
    }

    /// Creates the model and loads.
    void load() {
        create();
        reload();
    }

    void reload() {
        model->load();
        mainLoop.drain();
    }

    /// Sets one field, as a person's edit does.
    void set(std::string_view name, const SettingValue& value) const {
        model->edit([&](SettingsForm& form) { form.set(name, value); });
    }

    /// Saves and waits for the outcome.
    SaveOutcome save() {
        std::optional<SaveOutcome> result;
        model->save([&](const SaveOutcome& outcome) { result = outcome; });
        mainLoop.drain();
        return result.value_or(SaveOutcome::CommandFailed{"the save did not complete"});
    }

    [[nodiscard]] SettingField field(std::string_view name) const {
        const SettingField* found = model->form() == nullptr ? nullptr : model->form()->field(name);
        return found == nullptr ? SettingField{} : *found;
    }

    [[nodiscard]] bool isLoaded() const { return std::holds_alternative<SettingsModel::Loaded>(model->state().phase); }

    /// The failure's title, a line feed and its detail; empty when loading has not failed.
    [[nodiscard]] std::string loadFailure() const {
        const auto* failure = std::get_if<SettingsLoadFailure>(&model->state().phase);
        return failure == nullptr ? "" : failure->title + "\n" + failure->detail;
    }

    /// The message of a failed save; empty in every other state.
    [[nodiscard]] std::string saveFailure() const {
        const auto* failure = std::get_if<SettingsModel::SaveFailed>(&model->state().saveState);
        return failure == nullptr ? "" : failure->message;
    }

private:
    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments) {
        std::string line = executable;
        for (const std::string& argument : arguments) {
            line += " " + (argument.ends_with(".tmp") ? std::string("CANDIDATE") : argument);
        }
        runs.push_back(std::move(line));
        if (arguments.size() < 3) {
            return schemaResult;
        }
        if (duringValidation) {
            duringValidation(arguments[arguments.size() - 2]);
        }
        return validation;
    }
};

} // namespace menubar::recording
