#include "MenubarApp/Settings/SaveFiles.h"

#include "MenubarApp/Platform/FileDescriptor.h"
#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Settings/FileAttributes.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace menubar {

namespace {

using Result = SaveEnvironment::Result;

/// As many links as the system itself follows.
constexpr int maximumLinks = 40;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

std::string reason(int error) {
    return std::generic_category().message(error);
}

std::unexpected<SaveError> failure(std::string_view what, int error) {
    return std::unexpected(SaveError{std::string(what) + ": " + reason(error)});
}

/// Not open, with `errno` set, when the file did not open.
FileDescriptor open(const std::string& path, int flags, mode_t mode = 0) {
    int fd = -1;
    do {
        fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (fd < 0 && errno == EINTR);
    return FileDescriptor(fd);
}

int writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// Creates the file, which no one else may read. What is in its place was left by a process that had our id and ended.
int writeNewFile(const std::string& path, std::string_view bytes) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) {
        return errno;
    }
    const FileDescriptor file = open(path, flags, ownerOnly);
    if (!file.isOpen()) {
        return errno;
    }
    // A umask may have withheld even what its owner needs.
    int error = ::fchmod(file.get(), ownerOnly) == 0 ? writeAll(file.get(), bytes) : errno;
    if (error == 0) {
        // What a file system would say only when the file is closed, it says here.
        error = flushToDisk(file.get());
    }
    if (error != 0) {
        ::unlink(path.c_str());
    }
    return error;
}

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
}

/// A directory whose entries are about to change: open beforehand, since a directory that may be written to need not be
/// one that may be opened.
class ChangingDirectory {
public:
    explicit ChangingDirectory(std::string path)
        : m_path(std::move(path)), m_descriptor(open(m_path, O_RDONLY | O_DIRECTORY)), m_openError(errno) {}

    /// Waits until no other process of ours is at the same point; until this object goes none will be. A lock that is
    /// not to be had (some network volumes have none, and another program may hold it) is done without.
    void lock() const {
        const auto end = std::chrono::steady_clock::now() + longestWait;
        while (m_descriptor.isOpen() && ::flock(m_descriptor.get(), LOCK_EX | LOCK_NB) != 0 &&
               (errno == EWOULDBLOCK || errno == EINTR) && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    /// The entries have changed, which no failure to flush them takes back: that is only logged.
    void flush(const Log& log) const {
        if (const int error = m_descriptor.isOpen() ? flushToDisk(m_descriptor.get()) : m_openError; error != 0) {
            log("could not flush the directory " + m_path + ": " + reason(error));
        }
    }

private:
    static constexpr std::chrono::seconds longestWait{5};

    std::string m_path;
    FileDescriptor m_descriptor;
    int m_openError;
};

bool isDirectory(const std::string& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

/// Creates the directory, parents first. 0 or the error number.
int createDirectories(const std::string& path, const Log& log) {
    if (path.empty() || isDirectory(path)) {
        return 0;
    }
    const std::string parent = directoryOf(path.substr(0, path.find_last_not_of('/') + 1));
    if (const int error = createDirectories(parent, log); error != 0) {
        return error;
    }
    const ChangingDirectory changing(parent);
    if (::mkdir(path.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) != 0) {
        if (errno != EEXIST) {
            return errno;
        }
        return isDirectory(path) ? 0 : ENOTDIR; // another process was faster, or something else is in the way
    }
    changing.flush(log);
    return 0;
}

/// Gives the candidate the existing file's owner, and its group where that may be given. Whether the group is the same;
/// or the system's error number.
std::expected<bool, int> takeOverOwner(const struct stat& from, const struct stat& to, int candidate) {
    if (from.st_uid != to.st_uid) {
        return ::fchown(candidate, from.st_uid, from.st_gid) == 0 ? std::expected<bool, int>(true)
                                                                  : std::unexpected(errno);
    }
    constexpr auto same = static_cast<uid_t>(-1);
    if (from.st_gid == to.st_gid || ::fchown(candidate, same, from.st_gid) == 0) {
        return true;
    }
    return errno == EPERM ? std::expected<bool, int>(false) : std::unexpected(errno);
}

/// A mode for a file whose group is another one: that group may do what everybody may.
mode_t withoutGroup(mode_t mode) {
    const auto everybodys = static_cast<mode_t>((mode & S_IRWXO) << 3);
    return (mode & ~static_cast<mode_t>(S_IRWXG | S_ISGID)) | (mode & S_IRWXG & everybodys);
}

/// Gives the candidate what the existing file has besides its content.
Result takeOverAttributes(int existing, int candidate) {
    struct stat from{};
    struct stat to{};
    if (::fstat(existing, &from) != 0 || ::fstat(candidate, &to) != 0) {
        return failure("could not read the file's attributes", errno);
    }
    const auto sameGroup = takeOverOwner(from, to, candidate);
    if (!sameGroup) {
        return failure("could not keep the file's owner and group", sameGroup.error());
    }
    if (const int error = copyExtendedAttributes(existing, candidate); error != 0) {
        return failure("could not keep the file's extended attributes", error);
    }
    // Last, for until here nobody else may read the candidate, and because a change of owner clears some bits.
    constexpr mode_t permissions = 07777;
    const mode_t mode = from.st_mode & permissions;
    if (::fchmod(candidate, *sameGroup ? mode : withoutGroup(mode)) != 0) {
        return failure("could not keep the file's mode", errno);
    }
    return {};
}

enum class Existing { required, optional };

/// Makes the candidate all that the file at `path` shall be.
Result prepareToReplace(const std::string& candidate, const std::string& path, Existing presence) {
    const FileDescriptor file = open(candidate, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen()) {
        return failure("could not open the new file", errno);
    }
    const FileDescriptor existing = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!existing.isOpen() && (errno != ENOENT || presence == Existing::required)) {
        return failure("could not read the file's attributes", errno);
    }
    if (existing.isOpen()) {
        if (auto taken = takeOverAttributes(existing.get(), file.get()); !taken) {
            return taken;
        }
    }
    if (const int error = flushToDisk(file.get()); error != 0) {
        return failure("could not flush the new file to the disk", error);
    }
    return {};
}

/// The process that wrote this candidate of `name`; nothing for every other file.
std::optional<pid_t> candidateOwner(std::string_view entry, std::string_view name) {
    constexpr std::string_view suffix = ".tmp";
    if (entry.size() <= name.size() + 1 + suffix.size() || !entry.starts_with(name) || !entry.ends_with(suffix) ||
        entry[name.size()] != '.') {
        return std::nullopt;
    }
    const std::string_view digits = entry.substr(name.size() + 1, entry.size() - name.size() - 1 - suffix.size());
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), pid);
    const bool isPid = error == std::errc() && end == digits.data() + digits.size() && pid > 0;
    return isPid ? std::optional(pid) : std::nullopt;
}

bool hasEnded(pid_t pid) {
    return ::kill(pid, 0) != 0 && errno == ESRCH;
}

/// The content of the link at `path`; the empty text when it is no link or nothing.
std::expected<std::string, int> linkTarget(const std::string& path) {
    std::string target(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            const bool isNoLink = errno == EINVAL || errno == ENOENT || errno == ENOTDIR;
            return isNoLink ? std::expected<std::string, int>(std::string()) : std::unexpected(errno);
        }
        if (std::cmp_less(length, target.size())) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

} // namespace

std::expected<std::string, SaveError> followLinks(const std::string& path) {
    std::string current = path;
    for (int links = 0; links <= maximumLinks; ++links) {
        const auto target = linkTarget(current);
        if (!target) {
            return failure("could not follow the symbolic link " + current, target.error());
        }
        if (target->empty()) {
            return current;
        }
        current = target->starts_with('/') ? *target : directoryOf(current) + "/" + *target;
    }
    return failure("could not follow the symbolic link " + path, ELOOP);
}

SaveFiles::SaveFiles(std::string path, std::optional<std::string> loaded, Log log)
    : m_path(std::move(path)), m_loaded(std::move(loaded)), m_log(std::move(log)) {}

SaveEnvironment SaveFiles::environment(std::function<CommandOutcome(const std::string&)> runValidate) {
    return {
        .runValidate = std::move(runValidate),
        .writeFile = [this](const std::string& path, std::string_view bytes) { return write(path, bytes); },
        .createDirectory = [this](const std::string& path) -> Result {
            const int error = createDirectories(path, m_log);
            return error == 0 ? Result() : failure("could not create the directory " + path, error);
        },
        .rename = [this](const std::string& from, const std::string& to) { return place(from, to); },
        .remove = [](const std::string& path) { ::unlink(path.c_str()); },
    };
}

SaveFiles::Result SaveFiles::write(const std::string& candidate, std::string_view bytes) {
    removeStaleCandidates();
    // Asked again before the rename; asked now so that nobody waits for the daemon's opinion in vain.
    if (auto unchanged = checkUnchanged(); !unchanged) {
        return unchanged;
    }
    if (const int error = writeNewFile(candidate, bytes); error != 0) {
        return failure("could not write the new file", error);
    }
    m_written = bytes;
    return {};
}

SaveFiles::Result SaveFiles::place(const std::string& candidate, const std::string& path) {
    const Existing presence = m_loaded ? Existing::required : Existing::optional;
    const ChangingDirectory directory(directoryOf(path));
    directory.lock();
    if (auto prepared = prepareToReplace(candidate, path, presence); !prepared) {
        // A file that has gone, or a link in its place, cannot be opened either; then that is what there is to say.
        auto unchanged = checkUnchanged();
        return m_foundChange ? unchanged : prepared;
    }
    // As late as can be. Between this look and the rename the change of a program that takes no lock can still be lost:
    // no system offers a rename that depends on content.
    if (auto unchanged = checkUnchanged(); !unchanged) {
        return unchanged;
    }
    if (::rename(candidate.c_str(), path.c_str()) != 0) {
        return std::unexpected(SaveError::rename(reason(errno)));
    }
    m_placed = std::move(m_written);
    directory.flush(m_log);
    return {};
}

SaveFiles::Result SaveFiles::checkUnchanged() {
    const PosixFileManager files;
    std::optional<std::string> now;
    if (files.exists(m_path)) {
        auto contents = files.contents(m_path);
        if (!contents) {
            return std::unexpected(SaveError{std::move(contents.error().message)});
        }
        now = *std::move(contents);
    }
    std::error_code none; // what cannot be looked at is no link
    const bool isReplaced = m_loaded && std::filesystem::is_symlink(m_path, none);
    if (now == m_loaded && !isReplaced) {
        return {};
    }
    m_foundChange = true;
    const std::string_view what = isReplaced ? "replaced" : !now ? "removed" : !m_loaded ? "created" : "changed";
    return std::unexpected(SaveError{"the file was " + std::string(what) +
                                     " by another program after it was loaded, so it was left as it is"});
}

void SaveFiles::removeStaleCandidates() const {
    const std::string directory = directoryOf(m_path);
    const std::string name = m_path.substr(m_path.rfind('/') + 1);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.c_str()), ::closedir);
    if (!entries) {
        return;
    }
    std::vector<std::string> stale;
    while (const dirent* entry = ::readdir(entries.get())) {
        if (const auto pid = candidateOwner(entry->d_name, name); pid && hasEnded(*pid)) {
            stale.push_back(directory + "/" + entry->d_name);
        }
    }
    for (const std::string& path : stale) {
        ::unlink(path.c_str());
    }
}

} // namespace menubar
