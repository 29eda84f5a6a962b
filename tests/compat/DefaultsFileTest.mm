// The user defaults as the file that the stand-in keeps them in.
#include "MenubarApp/AppKit/AppKitUserDefaults.h"

#include "tests/appkit/Driver.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace menubar {
namespace {

std::filesystem::path domainFile() {
    return std::filesystem::path(std::getenv("HOME")) / "GNUstep/Defaults" /
           (std::string(std::getenv("OSTREL_MENUBAR_DEFAULTS_DOMAIN")) + ".plist");
}

TEST(DefaultsFile, isUnderHomeInTheAppsDomain) {
    std::filesystem::remove(domainFile());
    AppKitUserDefaults().setBool("compact", true);
    std::ifstream file(domainFile());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(text.find("<key>compact</key>"), std::string::npos) << text;
}

TEST(DefaultsFile, hasNoValuesWhenItCannotBeRead) {
    std::ofstream(domainFile()) << "not a property list {";
    EXPECT_EQ(AppKitUserDefaults().boolValue("compact"), std::nullopt);
    std::filesystem::remove(domainFile());
    EXPECT_EQ(AppKitUserDefaults().boolValue("compact"), std::nullopt);
}

TEST(DefaultsFile, saysInOneLineThatItCannotWrite) {
    std::filesystem::remove_all(domainFile().parent_path());
    std::ofstream(domainFile().parent_path()) << "a file where the directory should be";
    ::testing::internal::CaptureStderr();
    AppKitUserDefaults().setBool("compact", true);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ostrel-menubar: cannot write " + domainFile().string() + "\n");
    EXPECT_EQ(driver::takeLoggedLines().size(), 1U) << "GNUstep says so too";
    std::filesystem::remove(domainFile().parent_path());
}

} // namespace
} // namespace menubar
