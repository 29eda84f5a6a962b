#include "tests/e2e/ScratchHome.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace menubar::e2e {

const std::vector<std::string> ScratchHome::fixedTime{"--now", "2025-03-04T10:15:33Z", "--time-zone", "Asia/Kathmandu"};

ScratchHome::ScratchHome()
    : environment{{"HOME", m_directory.path()},
                  {"PATH", "/usr/bin:/bin"},
                  {"TZ", "UTC"},
                  {"OSTREL_MENUBAR_DEFAULTS_DOMAIN", defaultsDomain}} {}

std::string ScratchHome::installed(const std::string& name) {
    for (const char* folder : {"/usr/bin/", "/bin/", "/opt/homebrew/bin/", "/usr/local/bin/"}) {
        if (std::filesystem::exists(folder + name)) {
            return folder + name;
        }
    }
    return {};
}

std::string ScratchHome::write(const std::string& name, std::string_view bytes) const {
    std::filesystem::create_directories(std::filesystem::path(m_directory / name).parent_path());
    return m_directory.write(name, bytes);
}

void ScratchHome::writeStatus(std::string_view bytes) const {
    std::filesystem::rename(write(".local/state/ostrel/part", bytes), statusFile());
}

ChildProcess::Options ScratchHome::menubarctl(std::vector<std::string> arguments) const {
    return {.program = MENUBARCTL_PROGRAM, .arguments = std::move(arguments), .environment = environment};
}

ChildProcess::Options ScratchHome::demo(std::vector<std::string> arguments) const {
    return {.program = DEMO_PROGRAM, .arguments = std::move(arguments), .environment = environment};
}

ScratchHome::Result ScratchHome::run(const ChildProcess::Options& options) {
    ChildProcess child(options);
    const auto status = child.wait();
    EXPECT_TRUE(status) << options.program << " did not end";
    return {.status = status.value_or(-1), .output = child.output(), .errors = child.errors()};
}

ScratchHome::Result ScratchHome::atFixedTime(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), fixedTime.begin(), fixedTime.end());
    return run(menubarctl(std::move(arguments)));
}

} // namespace menubar::e2e
