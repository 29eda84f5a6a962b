#include "MenubarApp/Settings/SaveFiles.h"

#include "tests/Settings/SampleSettings.h"
#include "tests/support/TemporaryDirectory.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace menubar;
using menubar::sample::form;
using menubar::sample::spec;
using menubar::testing_support::bytesOf;
using menubar::testing_support::TemporaryDirectory;

namespace fs = std::filesystem;

namespace {

using Kind = SettingControl::Kind;

const std::string newBytes = "{\n  \"a\" : \"x\"\n}\n";
constexpr const char* accepted = R"({"ok":true})";

mode_t modeOf(const std::string& path) {
    struct stat info{};
    return ::lstat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

/// The names in a directory, sorted, joined with blanks.
std::string listing(const std::string& directory) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.insert(entry.path().filename().string());
    }
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : " ") + name;
    }
    return text;
}

/// A process that has ended.
pid_t deadProcess() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    return child;
}

std::string candidateName(pid_t pid) {
    return "config.json." + std::to_string(pid) + ".tmp";
}

SettingsForm edited() {
    SettingsForm result = form({spec(Kind::text)});
    result.set("a", "x");
    return result;
}

struct Saving {
    SaveOutcome outcome;
    bool foundChange;
    std::optional<std::string> placed;
    std::vector<std::string> lines; ///< that were logged
};

/// Saves to where `path` leads; `during` is called with the candidate's path while the daemon validates.
Saving save(const std::string& path, std::optional<std::string> loaded,
            const std::function<void(const std::string&)>& during = {}) {
    const auto target = followLinks(path);
    EXPECT_TRUE(target) << path;
    std::vector<std::string> lines;
    SaveFiles files(target.value_or(path), std::move(loaded), [&](std::string_view line) { lines.emplace_back(line); });
    const auto validate = [&](const std::string& candidate) {
        if (during) {
            during(candidate);
        }
        return CommandOutcome{.status = 0, .stdout_ = accepted, .stderr_ = ""};
    };
    SaveOutcome outcome = SavePipeline::save(edited(), target.value_or(path), files.environment(validate), ::getpid());
    return {std::move(outcome), files.foundChange(), files.placed(), std::move(lines)};
}

std::string failureOf(const Saving& saving) {
    const auto* failed = std::get_if<SaveOutcome::WriteFailed>(&saving.outcome.storage());
    return failed == nullptr ? describe(saving.outcome) : failed->message;
}

constexpr uid_t nobody = 65534;

/// What `body` says as the user nobody, who is in no group but their own. Only for root.
bool asNobody(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isNobody = ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
        ::_exit(isNobody && body() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

// The two systems' calls differ in their last arguments.
#ifdef __APPLE__

bool setAttribute(const std::string& path, const char* name, std::string_view value) {
    return ::setxattr(path.c_str(), name, value.data(), value.size(), 0, 0) == 0;
}

ssize_t readAttribute(const std::string& path, const char* name, void* value, size_t size) {
    return ::getxattr(path.c_str(), name, value, size, 0, 0);
}

#else

bool setAttribute(const std::string& path, const char* name, std::string_view value) {
    return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
}

ssize_t readAttribute(const std::string& path, const char* name, void* value, size_t size) {
    return ::getxattr(path.c_str(), name, value, size);
}

#endif

/// Nothing when there is no such attribute.
std::optional<std::string> attribute(const std::string& path, const char* name) {
    std::string value(64, '\0');
    const ssize_t size = readAttribute(path, name, value.data(), value.size());
    return size < 0 ? std::nullopt : std::optional(value.substr(0, static_cast<std::size_t>(size)));
}

/// While it exists, new files are not given these bits of the mode that is asked for.
class Umask {
public:
    explicit Umask(mode_t withheld) : m_before(::umask(withheld)) {}

    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;

    ~Umask() { ::umask(m_before); }

private:
    mode_t m_before;
};

/// What only root can set up.
class SaveFilesOfOthers : public testing::Test {
protected:
    void SetUp() override {
        if (::getuid() != 0) {
            GTEST_SKIP() << "only root can set this up";
        }
    }
};

} // namespace

TEST(SaveFiles, aNewFileIsItsOwnersAlone) {
    for (const mode_t withheld : std::initializer_list<mode_t>{0, 022, 0777}) {
        const TemporaryDirectory directory;
        const Umask umask(withheld);
        const Saving saving = save(directory / "config.json", std::nullopt);
        EXPECT_EQ(saving.outcome, SaveOutcome::Saved{});
        EXPECT_EQ(saving.placed, newBytes);
        EXPECT_EQ(bytesOf(directory / "config.json"), newBytes);
        EXPECT_EQ(modeOf(directory / "config.json"), 0600) << withheld;
        EXPECT_EQ(listing(directory.path()), "config.json");
    }
}

TEST(SaveFiles, missingDirectoriesAreCreated) {
    const TemporaryDirectory directory;
    EXPECT_EQ(save(directory / "new/deep/config.json", std::nullopt).outcome, SaveOutcome::Saved{});
    EXPECT_EQ(bytesOf(directory / "new/deep/config.json"), newBytes);
}

TEST(SaveFiles, aDirectoryThatCannotBeCreatedIsNamed) {
    const TemporaryDirectory directory;
    directory.write("file", "");
    EXPECT_EQ(failureOf(save(directory / "file/x/config.json", std::nullopt)),
              "could not create the directory " + (directory / "file/x") + ": Not a directory");
    EXPECT_EQ(listing(directory.path()), "file");
}

TEST(SaveFiles, theCandidateIsWholeAndItsOwnersAloneWhileItIsValidated) {
    const TemporaryDirectory directory;
    const Umask umask(0);
    const std::string path = directory.write("config.json", "old");
    ::chmod(path.c_str(), 0644);
    bool validated = false;
    save(path, "old", [&](const std::string& candidate) {
        validated = true;
        EXPECT_EQ(candidate, directory / candidateName(::getpid()));
        EXPECT_EQ(bytesOf(candidate), newBytes);
        EXPECT_EQ(modeOf(candidate), 0600);
        EXPECT_EQ(bytesOf(path), "old");
    });
    EXPECT_TRUE(validated);
}

TEST(SaveFiles, anExistingFileKeepsItsMode) {
    for (const mode_t mode : std::initializer_list<mode_t>{0600, 0644, 0660, 0400, 0777, 02750}) {
        const TemporaryDirectory directory;
        const std::string path = directory.write("config.json", "old");
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        const mode_t before = modeOf(path);
        EXPECT_EQ(save(path, "old").outcome, SaveOutcome::Saved{});
        EXPECT_EQ(modeOf(path), before);
        EXPECT_EQ(bytesOf(path), newBytes);
    }
}

TEST_F(SaveFilesOfOthers, anExistingFileKeepsItsOwnerAndGroup) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    ASSERT_EQ(::chown(path.c_str(), 12345, 23456), 0);
    ASSERT_EQ(::chmod(path.c_str(), 04640), 0);
    EXPECT_EQ(save(path, "old").outcome, SaveOutcome::Saved{});
    struct stat info{};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_uid, 12345);
    EXPECT_EQ(info.st_gid, 23456);
    EXPECT_EQ(info.st_mode & 07777, 04640) << "though a change of owner clears that bit";
}

TEST_F(SaveFilesOfOthers, anExistingFileKeepsItsGroupThoughItsOwnerIsThePersonAnyway) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    ASSERT_EQ(::chown(path.c_str(), 0, 23456), 0);
    EXPECT_EQ(save(path, "old").outcome, SaveOutcome::Saved{});
    struct stat info{};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_gid, 23456);
}

TEST_F(SaveFilesOfOthers, aGroupThatThePersonIsNotInGivesWayToTheirsWithNoMoreRightsThanEverybody) {
    const struct {
        mode_t before;
        mode_t after;
    } modes[] = {{0660, 0600}, {0664, 0644}, {02674, 0644}, {0666, 0666}, {0606, 0606}};

    for (const auto& mode : modes) {
        const TemporaryDirectory directory;
        const std::string path = directory.write("config.json", "old");
        ASSERT_EQ(::chmod(directory.path().c_str(), 0777), 0);
        ASSERT_EQ(::chown(path.c_str(), nobody, 23456), 0);
        ASSERT_EQ(::chmod(path.c_str(), mode.before), 0);
        EXPECT_TRUE(asNobody([&] { return save(path, "old").outcome == SaveOutcome::Saved{}; }));
        struct stat info{};
        ASSERT_EQ(::stat(path.c_str(), &info), 0);
        EXPECT_EQ(info.st_uid, nobody);
        EXPECT_EQ(info.st_gid, nobody);
        EXPECT_EQ(info.st_mode & 07777, mode.after);
        EXPECT_EQ(bytesOf(path), newBytes);
    }
}

TEST_F(SaveFilesOfOthers, aDirectoryThatCannotBeOpenedToFlushItStopsNoSave) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "dropbox");
    ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);
    ASSERT_EQ(::chown((directory / "dropbox").c_str(), nobody, nobody), 0);
    ASSERT_EQ(::chmod((directory / "dropbox").c_str(), 0300), 0);
    EXPECT_TRUE(asNobody([&] {
        const Saving saving = save(directory / "dropbox/deep/config.json", std::nullopt);
        const Saving again = save(directory / "dropbox/config.json", std::nullopt);
        const std::vector<std::string> lines{"could not flush the directory " + (directory / "dropbox") +
                                             ": Permission denied"};
        return saving.outcome == SaveOutcome::Saved{} && saving.lines == lines &&
               again.outcome == SaveOutcome::Saved{} && again.lines == lines && again.placed == newBytes;
    }));
    EXPECT_EQ(bytesOf(directory / "dropbox/deep/config.json"), newBytes);
    EXPECT_EQ(bytesOf(directory / "dropbox/config.json"), newBytes);
}

TEST_F(SaveFilesOfOthers, aFileWhoseOwnerCannotBeKeptIsLeftAsItIs) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    ASSERT_EQ(::chmod(directory.path().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    EXPECT_TRUE(asNobody([&] {
        return failureOf(save(path, "old")) == "could not keep the file's owner and group: Operation not permitted";
    }));
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_EQ(listing(directory.path()), "config.json");
}

TEST(SaveFiles, anExistingFileKeepsItsExtendedAttributesAndNoOthers) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    if (!setAttribute(path, "user.note", "mine")) {
        GTEST_SKIP() << "this file system has no extended attributes";
    }
    ASSERT_TRUE(setAttribute(path, "user.empty", ""));
    const auto mark = [](const std::string& candidate) { EXPECT_TRUE(setAttribute(candidate, "user.other", "x")); };
    EXPECT_EQ(save(path, "old", mark).outcome, SaveOutcome::Saved{});
    EXPECT_EQ(attribute(path, "user.note"), "mine");
    EXPECT_EQ(attribute(path, "user.empty"), "");
    EXPECT_EQ(attribute(path, "user.other"), std::nullopt);
    EXPECT_EQ(bytesOf(path), newBytes);
}

// Symbolic links

TEST(SaveFiles, aLinkStaysALinkAndTheCandidateLiesBesideItsTarget) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "dotfiles");
    const std::string target = directory.write("dotfiles/ostrel.json", "old");
    for (const std::string& content : {target, std::string("dotfiles/ostrel.json")}) {
        directory.write("dotfiles/ostrel.json", "old");
        fs::remove(directory / "config.json");
        fs::create_symlink(content, directory / "config.json");
        save(directory / "config.json", "old", [&](const std::string& candidate) {
            EXPECT_EQ(listing(directory / "dotfiles"),
                      "ostrel.json ostrel.json." + std::to_string(::getpid()) + ".tmp");
            EXPECT_TRUE(fs::equivalent(fs::path(candidate).parent_path(), directory / "dotfiles"));
        });
        EXPECT_EQ(fs::read_symlink(directory / "config.json"), content);
        EXPECT_EQ(bytesOf(target), newBytes);
        EXPECT_EQ(listing(directory / "dotfiles"), "ostrel.json");
    }
}

TEST(SaveFiles, linksToLinksAreFollowedToTheEnd) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "sub");
    const std::string target = directory.write("sub/real.json", "old");
    fs::create_symlink("real.json", directory / "sub/second.json");
    fs::create_symlink("sub/second.json", directory / "config.json");
    EXPECT_EQ(followLinks(directory / "config.json"), directory / "sub/real.json");
    EXPECT_EQ(save(directory / "config.json", "old").outcome, SaveOutcome::Saved{});
    EXPECT_EQ(bytesOf(target), newBytes);
    EXPECT_TRUE(fs::is_symlink(directory / "config.json"));
    EXPECT_TRUE(fs::is_symlink(directory / "sub/second.json"));
}

TEST(SaveFiles, aLinkThatDanglesCreatesItsTarget) {
    const TemporaryDirectory directory;
    fs::create_symlink("not/there/yet.json", directory / "config.json");
    EXPECT_EQ(save(directory / "config.json", std::nullopt).outcome, SaveOutcome::Saved{});
    EXPECT_EQ(fs::read_symlink(directory / "config.json"), "not/there/yet.json");
    EXPECT_EQ(bytesOf(directory / "not/there/yet.json"), newBytes);
    EXPECT_EQ(modeOf(directory / "not/there/yet.json"), 0600);
}

TEST(SaveFiles, aLoopOfLinksIsNamed) {
    const TemporaryDirectory directory;
    fs::create_symlink("b.json", directory / "a.json");
    fs::create_symlink("a.json", directory / "b.json");
    const auto target = followLinks(directory / "a.json");
    ASSERT_FALSE(target);
    EXPECT_EQ(target.error().message,
              "could not follow the symbolic link " + (directory / "a.json") + ": Too many levels of symbolic links");
}

TEST(SaveFiles, aLongLinkIsReadWhole) {
    const TemporaryDirectory directory;
    const std::string name(250, 'n');
    const std::string content = "./././././././././././././././././././././././././././././././././././" + name;
    directory.write(name, "old");
    fs::create_symlink(content, directory / "config.json");
    EXPECT_EQ(followLinks(directory / "config.json"), directory / content);
}

TEST(SaveFiles, whatIsNoLinkLeadsToItself) {
    const TemporaryDirectory directory;
    EXPECT_EQ(followLinks(directory.write("file", "")), directory / "file");
    EXPECT_EQ(followLinks(directory / "missing"), directory / "missing");
    EXPECT_EQ(followLinks(directory.path()), directory.path());
    EXPECT_EQ(followLinks("relative"), "relative");
}

TEST(SaveFiles, aLinkInTheCandidatesPlaceIsReplacedAndNotFollowed) {
    const TemporaryDirectory directory;
    const std::string victim = directory.write("victim", "precious");
    fs::create_symlink("victim", directory / candidateName(::getpid()));
    EXPECT_EQ(save(directory / "config.json", std::nullopt).outcome, SaveOutcome::Saved{});
    EXPECT_EQ(bytesOf(victim), "precious");
    EXPECT_FALSE(fs::is_symlink(directory / "config.json"));
    EXPECT_EQ(listing(directory.path()), "config.json victim");
}

// What earlier processes left

TEST(SaveFiles, candidatesOfProcessesThatHaveEndedAreRemoved) {
    const TemporaryDirectory directory;
    directory.write(candidateName(deadProcess()), "half");
    directory.write(candidateName(::getpid()), "of a process that had our id");
    EXPECT_EQ(save(directory / "config.json", std::nullopt).outcome, SaveOutcome::Saved{});
    EXPECT_EQ(listing(directory.path()), "config.json");
}

TEST_F(SaveFilesOfOthers, theCandidateOfALivingProcessOfAnotherUserIsLeftAlone) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::chmod(directory.path().c_str(), 0777), 0);
    const std::string name = candidateName(::getpid());
    directory.write(name, "theirs");
    EXPECT_TRUE(
        asNobody([&] { return save(directory / "config.json", std::nullopt).outcome == SaveOutcome::Saved{}; }));
    EXPECT_EQ(listing(directory.path()), "config.json " + name);
}

TEST(SaveFiles, everythingElseInTheDirectoryIsLeftAlone) {
    const TemporaryDirectory directory;
    const std::string dead = std::to_string(deadProcess());
    const std::string names[] = {
        candidateName(::getppid()),
        "config.json.tmp",
        "config.json..tmp",
        "config.json." + dead,
        "config.json." + dead + ".bak",
        "config.json.x" + dead + ".tmp",
        "config.json.-" + dead + ".tmp",
        "other.json." + dead + ".tmp",
        "config.json.0.tmp",
        "config.json.99999999999999.tmp",
        "config.jsonx" + dead + ".tmp",
    };
    for (const std::string& name : names) {
        directory.write(name, name);
    }
    EXPECT_EQ(save(directory / "config.json", std::nullopt).outcome, SaveOutcome::Saved{});
    for (const std::string& name : names) {
        EXPECT_EQ(bytesOf(directory / name), name);
    }
}

// Changes by others

TEST(SaveFiles, aFileThatWasChangedAfterItWasLoadedIsLeftAsItIs) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "theirs");
    const Saving saving = save(path, "old", [](const std::string&) { FAIL() << "the daemon need not be asked"; });
    EXPECT_EQ(failureOf(saving),
              "the file was changed by another program after it was loaded, so it was left as it is");
    EXPECT_TRUE(saving.foundChange);
    EXPECT_EQ(saving.placed, std::nullopt);
    EXPECT_EQ(bytesOf(path), "theirs");
    EXPECT_EQ(listing(directory.path()), "config.json");
}

TEST(SaveFiles, soIsOneThatIsChangedWhileTheDaemonValidates) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    const Saving saving = save(path, "old", [&](const std::string&) { directory.write("config.json", "theirs"); });
    EXPECT_TRUE(saving.foundChange);
    EXPECT_EQ(bytesOf(path), "theirs");
    EXPECT_EQ(listing(directory.path()), "config.json");
}

TEST(SaveFiles, soIsOneThatIsRemovedOrReplacedByALinkWhileTheDaemonValidates) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    const Saving removed = save(path, "old", [&](const std::string&) { fs::remove(path); });
    EXPECT_EQ(failureOf(removed),
              "the file was removed by another program after it was loaded, so it was left as it is");
    EXPECT_TRUE(removed.foundChange);
    EXPECT_EQ(listing(directory.path()), "");

    directory.write("config.json", "old");
    const Saving replaced = save(path, "old", [&](const std::string&) {
        fs::rename(path, directory / "moved.json"); // the same content, behind a link
        fs::create_symlink("moved.json", path);
    });
    EXPECT_EQ(failureOf(replaced),
              "the file was replaced by another program after it was loaded, so it was left as it is");
    EXPECT_TRUE(replaced.foundChange);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(bytesOf(path), "old");
}

TEST(SaveFiles, aSaveTakesItsTurnBehindAnotherThatIsAtTheSamePoint) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    const int turn = ::open(directory.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(turn, LOCK_EX), 0);
    const pid_t other = ::fork();
    if (other == 0) {
        ::close(turn);
        const Saving saving = save(path, "old");
        ::_exit(saving.foundChange && saving.placed == std::nullopt ? 0 : 1);
    }
    // Long enough for a save that does not wait; one that waits does so for as long as this takes.
    for (int i = 0; i < 50 && bytesOf(path) == "old"; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(bytesOf(path), "old");
    directory.write("config.json", "theirs");
    ::close(turn);
    int status = -1;
    ::waitpid(other, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bytesOf(path), "theirs");
}

TEST(SaveFiles, soIsOneThatWasCreatedOrRemoved) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "theirs");
    EXPECT_EQ(failureOf(save(path, std::nullopt)),
              "the file was created by another program after it was loaded, so it was left as it is");
    EXPECT_EQ(bytesOf(path), "theirs");
    fs::remove(path);
    const Saving saving = save(path, "old");
    EXPECT_EQ(failureOf(saving),
              "the file was removed by another program after it was loaded, so it was left as it is");
    EXPECT_TRUE(saving.foundChange);
    EXPECT_EQ(listing(directory.path()), "");
}

TEST(SaveFiles, contentDecidesAndNotTheTimeOfTheLastChange) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    const auto rewrite = [&](const std::string&) {
        fs::remove(path);
        directory.write("config.json", "old");
        fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::hours(1));
    };
    const Saving saving = save(path, "old", rewrite);
    EXPECT_EQ(saving.outcome, SaveOutcome::Saved{});
    EXPECT_FALSE(saving.foundChange);
}

TEST(SaveFiles, whatCannotBeComparedIsLeftAsItIs) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "config.json");
    const Saving saving = save(directory / "config.json", std::nullopt);
    EXPECT_EQ(failureOf(saving),
              "The file \"" + (directory / "config.json") + "\" could not be read: it is a directory.");
    EXPECT_FALSE(saving.foundChange);
    EXPECT_EQ(listing(directory.path()), "config.json");
}

TEST(SaveFiles, aCandidateThatVanishesIsNoSave) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("config.json", "old");
    const Saving saving = save(path, "old", [](const std::string& candidate) { fs::remove(candidate); });
    EXPECT_EQ(failureOf(saving), "could not open the new file: No such file or directory");
    EXPECT_EQ(bytesOf(path), "old");
}
