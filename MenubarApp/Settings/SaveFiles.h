#pragma once

#include "MenubarApp/Commands/log.h"
#include "MenubarCore/Settings/SavePipeline.h"

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// The path that `path` leads to when every symbolic link at its end is followed, whether or not anything is there: a
/// link that dangles leads to what it would be. Fails when the links form a loop or may not be read. Any thread.
[[nodiscard]] std::expected<std::string, SaveError> followLinks(const std::string& path);

/// The effects of one save of one file, done so that a crash, a kill or a full disk at any point leaves the old file or
/// the new one, whole:
///
/// - The candidate is created anew, readable by its owner only, and flushed to the disk before it takes the file's
///   place; the directory is flushed after. What fails once the file is in place is only logged.
/// - It takes over mode, owner, group, extended attributes and access control list of the file just before the rename.
///   What cannot be kept stops the save, but for the group: who may not give it gives theirs, with no rights that
///   everybody does not have. A file that is new keeps the candidate's mode, 0600.
/// - A file whose content is no longer what was loaded is left alone: see `foundChange`. Content decides, not times.
///   Two of these at once take turns, by an advisory lock on the directory (flock) from that look to the rename.
/// - Candidates of processes that have ended are removed.
///
/// One thread at a time. The object outlives the environment that it gives.
class SaveFiles {
public:
    /// `path` is where the file really is (see followLinks). `loaded` is the content that the edits began from; nothing
    /// when there was no file.
    SaveFiles(std::string path, std::optional<std::string> loaded, Log log);

    [[nodiscard]] SaveEnvironment environment(std::function<CommandOutcome(const std::string&)> runValidate);

    /// Whether the save was refused because another program has changed, created or removed the file.
    [[nodiscard]] bool foundChange() const { return m_foundChange; }

    /// What the file holds now if this save has put it there.
    [[nodiscard]] const std::optional<std::string>& placed() const& { return m_placed; }

    const std::optional<std::string>& placed() && = delete;

private:
    using Result = SaveEnvironment::Result;

    Result write(const std::string& candidate, std::string_view bytes);
    Result place(const std::string& candidate, const std::string& path);
    Result checkUnchanged();
    void removeStaleCandidates() const;

    std::string m_path;
    std::optional<std::string> m_loaded;
    Log m_log;
    std::optional<std::string> m_written; ///< the candidate's content
    std::optional<std::string> m_placed;
    bool m_foundChange = false;
};

} // namespace menubar
