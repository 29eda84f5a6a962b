#include "MenubarApp/Settings/SaveFiles.h"

#include "tests/Settings/SampleSettings.h"
#include "tests/faults/SystemCalls.h"
#include "tests/support/TemporaryDirectory.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace menubar;
using menubar::faults::Fault;
using menubar::faults::Plan;
using menubar::faults::Watch;
using menubar::sample::form;
using menubar::sample::spec;
using menubar::testing_support::bytesOf;
using menubar::testing_support::TemporaryDirectory;

namespace fs = std::filesystem;

namespace {

/// Long enough that half of it is not whole.
const std::string oldBytes = "{\"a\":\"" + std::string(9000, 'o') + "\"}";
constexpr mode_t oldMode = 0640;

mode_t modeOf(const std::string& path) {
    struct stat info{};
    return ::lstat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

SettingsForm edited() {
    SettingsForm result = form({spec(SettingControl::Kind::text)}, oldBytes);
    result.set("a", std::string(9000, 'n'));
    return result;
}

const std::string newBytes = edited().serializedData().value_or("");

/// A config file behind a link, and what a killed process left beside it.
class Scene {
public:
    Scene() {
        fs::create_directory(m_directory / "real");
        m_directory.write("real/config.json", oldBytes);
        ::chmod(target().c_str(), oldMode);
        // Not every file system has them.
        m_hasNote = ::setxattr(target().c_str(), "user.note", "mine", 4, 0) == 0;
        fs::create_symlink("real/config.json", path());
        m_directory.write("real/config.json.2147483646.tmp", "half");
    }

    [[nodiscard]] std::string path() const { return m_directory / "config.json"; }

    [[nodiscard]] std::string target() const { return m_directory / "real/config.json"; }

    /// A whole save, as the settings do it.
    [[nodiscard]] SaveOutcome save(const std::string& loaded) const {
        auto where = followLinks(path());
        if (!where) {
            return SaveOutcome::WriteFailed{where.error().message};
        }
        SaveFiles files(*where, loaded, [](std::string_view) {});
        const auto validate = [](const std::string&) {
            return CommandOutcome{.status = 0, .stdout_ = R"({"ok":true})", .stderr_ = ""};
        };
        return SavePipeline::save(edited(), *where, files.environment(validate), ::getpid());
    }

    /// The config file is one of the two, whole, with its mode, and still behind its link.
    void expectOneOfTheTwo(const std::string& when) const {
        const std::string now = bytesOf(target());
        EXPECT_TRUE(now == oldBytes || now == newBytes) << when << ": " << now.size() << " bytes";
        EXPECT_EQ(modeOf(target()), oldMode) << when;
        EXPECT_TRUE(fs::is_symlink(path())) << when;
        if (m_hasNote) {
            char note[8] = {};
            EXPECT_EQ(::getxattr(target().c_str(), "user.note", note, sizeof note), 4) << when;
            EXPECT_STREQ(note, "mine") << when;
        }
    }

    [[nodiscard]] bool isNew() const { return bytesOf(target()) == newBytes; }

    [[nodiscard]] std::set<std::string> candidates() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_directory / "real")) {
            names.insert(entry.path().filename().string());
        }
        names.erase("config.json");
        return names;
    }

private:
    TemporaryDirectory m_directory;
    bool m_hasNote = false;
};

/// While it exists temporary directories lie in memory, where waiting for the disk costs nothing.
class TemporaryDirectoriesInMemory {
public:
    TemporaryDirectoriesInMemory() {
        if (::access("/dev/shm", W_OK) == 0) {
            ::setenv("TMPDIR", "/dev/shm", 1);
        }
    }

    TemporaryDirectoriesInMemory(const TemporaryDirectoriesInMemory&) = delete;
    TemporaryDirectoriesInMemory& operator=(const TemporaryDirectoriesInMemory&) = delete;

    ~TemporaryDirectoriesInMemory() {
        if (m_before.empty()) {
            ::unsetenv("TMPDIR");
        } else {
            ::setenv("TMPDIR", m_before.c_str(), 1);
        }
    }

private:
    std::string m_before = std::getenv("TMPDIR") == nullptr ? "" : std::getenv("TMPDIR");
};

std::vector<std::string> callsOfOneSave() {
    const Scene scene;
    const Watch watch(Plan{.index = 0, .fault = Fault::none, .error = 0});
    EXPECT_EQ(scene.save(oldBytes), SaveOutcome::Saved{});
    return watch.calls();
}

/// What may fail without consequence: what it did can be done without, or is only asked to be sure.
bool isHarmless(const SaveOutcome& outcome, const Scene& scene) {
    return outcome.isSaved() && scene.isNew();
}

} // namespace

TEST(SaveFaults, aSaveMakesTheCallsThatThisTestMeansToBreak) {
    const auto calls = callsOfOneSave();
    for (const char* call : {"readlink", "stat", "open", "read", "write", "fsync", "fchmod", "flistxattr", "rename",
                             "unlink", "opendir", "fstat"}) {
        EXPECT_NE(std::ranges::find(calls, call), calls.end()) << call;
    }
    EXPECT_EQ(std::ranges::count(calls, "fsync"), 3) << "the data, the attributes, the directory";
    const auto rename = std::ranges::find(calls, "rename");
    EXPECT_EQ(std::count(calls.begin(), rename, "fsync"), 2);
    const auto write = std::ranges::find(calls, "write");
    EXPECT_EQ(*(write + 1), "fsync") << "nothing depends on bytes that are not on the disk";
    EXPECT_EQ(*(rename + 1), "fsync") << "the directory is flushed after the rename";
}

TEST(SaveFaults, theParentOfADirectoryThatWasCreatedIsFlushedBeforeAnythingIsWritten) {
    const TemporaryDirectory directory;
    SaveFiles files(directory / "new/config.json", std::nullopt, [](std::string_view) {});
    const Watch watch(Plan{.index = 0, .fault = Fault::none, .error = 0});
    ASSERT_TRUE(files.environment({}).createDirectory(directory / "new"));
    const auto mkdir = std::ranges::find(watch.calls(), "mkdir");
    ASSERT_GT(watch.calls().end() - mkdir, 1);
    EXPECT_EQ(*(mkdir + 1), "fsync");
}

TEST(SaveFaults, whicheverCallFailsTheFileIsTheOldOneOrTheNewOneAndTheOutcomeSaysWhich) {
    const auto calls = callsOfOneSave();
    for (const int error : {EIO, ENOSPC, EACCES, ENOENT, EINTR}) {
        for (std::size_t index = 0; index < calls.size(); ++index) {
            const std::string when =
                calls[index] + " at " + std::to_string(index) + " fails with " + std::to_string(error);
            const Scene scene;
            SaveOutcome outcome = SaveOutcome::Saved{};
            {
                const Watch watch(Plan{.index = index, .fault = Fault::fail, .error = error});
                outcome = scene.save(oldBytes);
            }
            scene.expectOneOfTheTwo(when);
            if (isHarmless(outcome, scene)) {
                continue;
            }
            const auto* failed = std::get_if<SaveOutcome::WriteFailed>(&outcome.storage());
            ASSERT_NE(failed, nullptr) << when << ": " << describe(outcome);
            EXPECT_FALSE(failed->message.empty()) << when;
            EXPECT_FALSE(scene.isNew()) << when << ": " << failed->message;
            EXPECT_FALSE(scene.candidates().contains("config.json." + std::to_string(::getpid()) + ".tmp")) << when;
        }
    }
}

TEST(SaveFaults, aFailureLeavesNothingThatWouldStopTheNextSave) {
    const auto calls = callsOfOneSave();
    for (std::size_t index = 0; index < calls.size(); ++index) {
        const Scene scene;
        {
            const Watch watch(Plan{.index = index, .fault = Fault::fail, .error = EIO});
            static_cast<void>(scene.save(oldBytes));
        }
        EXPECT_EQ(scene.save(bytesOf(scene.target())), SaveOutcome::Saved{}) << calls[index] << " at " << index;
        EXPECT_TRUE(scene.isNew());
        EXPECT_TRUE(scene.candidates().empty());
    }
}

TEST(SaveFaults, aThousandSavesKilledAtEveryStepLeaveTheOldFileOrTheNewOne) {
    const TemporaryDirectoriesInMemory inMemory;
    const std::size_t steps = callsOfOneSave().size();
    constexpr std::size_t saves = 1000;
    std::size_t old = 0;
    for (std::size_t i = 0; i < saves; ++i) {
        const std::size_t step = i % steps;
        const Scene scene;
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const Watch watch(Plan{.index = step, .fault = Fault::kill, .error = 0});
            static_cast<void>(scene.save(oldBytes));
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const std::string when = "killed at step " + std::to_string(step);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << when;
        scene.expectOneOfTheTwo(when);
        old += scene.isNew() ? 0 : 1;
        EXPECT_EQ(scene.save(bytesOf(scene.target())), SaveOutcome::Saved{}) << when;
        EXPECT_TRUE(scene.candidates().empty()) << when << ": what the dead process left is removed";
    }
    EXPECT_GT(old, saves / 2);
    EXPECT_LT(old, saves) << "a kill after the rename leaves the new file";
}
