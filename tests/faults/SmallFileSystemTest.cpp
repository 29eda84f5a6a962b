#include "MenubarApp/Settings/SaveFiles.h"

#include "tests/Settings/SampleSettings.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace menubar;
using menubar::sample::form;
using menubar::sample::spec;
using menubar::testing_support::bytesOf;
using menubar::testing_support::TemporaryDirectory;

namespace fs = std::filesystem;

namespace {

constexpr int cannotMount = 77;
const std::string oldBytes = "{\"a\":\"old\"}";

/// Mounts a file system of that size over `directory`, for this process alone.
bool mountSmall(const std::string& directory, int bytes) {
    const bool isAlone = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    const std::string size = "size=" + std::to_string(bytes);
    return isAlone && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("tmpfs", directory.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

SaveOutcome save(const std::string& path, std::size_t size) {
    SettingsForm edited = form({spec(SettingControl::Kind::text)}, oldBytes);
    edited.set("a", std::string(size, 'n'));
    SaveFiles files(path, oldBytes, [](std::string_view) {});
    const auto validate = [](const std::string&) {
        return CommandOutcome{.status = 0, .stdout_ = R"({"ok":true})", .stderr_ = ""};
    };
    return SavePipeline::save(edited, path, files.environment(validate), ::getpid());
}

/// Runs in a child. 0 when everything is as it must be; else the reason is on standard error.
int fillTheDisk(const std::string& directory) {
    if (!mountSmall(directory, 64 << 10)) {
        return cannotMount;
    }
    const std::string path = directory + "/config.json";
    std::ofstream(path, std::ios::binary) << oldBytes;
    for (const std::size_t size : {60U << 10, 64U << 10, 1U << 20}) {
        const SaveOutcome outcome = save(path, size);
        const bool isRefused =
            outcome == SaveOutcome::WriteFailed{"could not write the new file: No space left on device"};
        const bool isAlone = std::distance(fs::directory_iterator(directory), {}) == 1;
        if (!isRefused || bytesOf(path) != oldBytes || !isAlone) {
            std::fprintf(stderr, "%zu bytes: %s\n", size, describe(outcome).c_str());
            return 1;
        }
    }
    return save(path, 1000) == SaveOutcome::Saved{} && bytesOf(path).size() > 1000 ? 0 : 2;
}

} // namespace

TEST(SmallFileSystem, aFullDiskLeavesTheOldFileAndNothingElse) {
    const TemporaryDirectory directory;
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::_exit(fillTheDisk(directory.path()));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == cannotMount) {
        GTEST_SKIP() << "this process may not mount a file system";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
