#pragma once

#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Settings/ValidateOutput.h"
#include "MenubarCore/Text/CaseOf.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// Why a step of a save failed: one line for people.
struct SaveError {
    std::string message;

    /// The candidate file could not take the real one's place; `reason` is the system's text.
    [[nodiscard]] static SaveError rename(std::string_view reason);

    bool operator==(const SaveError&) const = default;
};

/// The effects of a save; those on the real file come from `SaveFiles::environment(runValidate)`. They may block; a
/// save calls them one after the other on its own thread.
struct SaveEnvironment {
    using Result = std::expected<void, SaveError>;

    /// Runs the daemon's validation of the file at a path. Never fails: see CommandOutcome.
    std::function<CommandOutcome(const std::string& path)> runValidate;
    /// Writes a whole file or leaves nothing at the path.
    std::function<Result(const std::string& path, std::string_view bytes)> writeFile;
    /// Creates a directory and its missing parents; one that exists is no error. The empty path is the current one.
    std::function<Result(const std::string& path)> createDirectory;
    std::function<Result(const std::string& from, const std::string& to)> rename;
    /// Removes a file; failing to is of no consequence.
    std::function<void(const std::string& path)> remove;
};

/// How a save ended. In every case but `Saved` the config file is as it was.
class SaveOutcome {
public:
    /// Fields break the schema's rules: messages by name. Nothing was written.
    struct InvalidLocally {
        std::map<std::string, std::string> errors;
        bool operator==(const InvalidLocally&) const = default;
    };

    /// The daemon refused the file: messages for fields by name, and the rest.
    struct Rejected {
        std::map<std::string, std::string> fields;
        std::vector<std::string> general;
        bool operator==(const Rejected&) const = default;
    };

    /// What the validate command printed could not be understood.
    struct CommandFailed {
        std::string message;
        bool operator==(const CommandFailed&) const = default;
    };

    /// A file operation failed.
    struct WriteFailed {
        std::string message;
        bool operator==(const WriteFailed&) const = default;
    };

    /// The new file is in place.
    struct Saved {
        bool operator==(const Saved&) const = default;
    };

    using Storage = std::variant<InvalidLocally, Rejected, CommandFailed, WriteFailed, Saved>;

    template <AlternativeOf<Storage> Outcome>
    SaveOutcome(Outcome outcome) : m_storage(std::move(outcome)) {}

    [[nodiscard]] bool isSaved() const { return std::holds_alternative<Saved>(m_storage); }

    /// Null unless the daemon refused the file.
    [[nodiscard]] const Rejected* rejected() const& { return std::get_if<Rejected>(&m_storage); }

    const Rejected* rejected() && = delete;

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    bool operator==(const SaveOutcome&) const = default;

private:
    Storage m_storage;
};

/// For the log: the case's name, and its payload with texts quoted.
[[nodiscard]] std::string describe(const SaveOutcome& outcome);

/// Saving never leaves the daemon a config file that it rejects: the new file is written beside the real one, the
/// daemon validates exactly those bytes, and only then they take the real one's place. No state; any thread, but only
/// one save of a file at a time in one process.
namespace SavePipeline {

/// The new file's temporary path: beside the real one, so that one rename puts it in place, and with the process's id
/// in its name, so that no two processes write the same.
[[nodiscard]] std::string candidatePath(std::string_view path, std::int32_t pid);

/// `path` is where the file really is, not a link to it. Blocks for the daemon's validation.
[[nodiscard]] SaveOutcome save(const SettingsForm& form, const std::string& path, const SaveEnvironment& environment,
                               std::int32_t pid);

} // namespace SavePipeline

} // namespace menubar
