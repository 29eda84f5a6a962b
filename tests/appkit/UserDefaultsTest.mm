#include "MenubarApp/AppKit/AppKitUserDefaults.h"

#include "tests/appkit/Driver.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace menubar {
namespace {

std::filesystem::path domainFile() {
    return std::filesystem::path(std::getenv("HOME")) / "GNUstep" / "Defaults" / "ostrel-menubar.plist";
}

/// What another process does: replaces the file.
void writeDomain(std::string_view valueOfCompact) {
    std::filesystem::create_directories(domainFile().parent_path());
    const std::filesystem::path part = domainFile().string() + ".part";
    std::ofstream(part) << R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict><key>compact</key>)"
                        << valueOfCompact << "</dict></plist>\n";
    std::filesystem::rename(part, domainFile());
}

TEST(AppKitUserDefaults, anUnknownKeyHasNoValue) {
    EXPECT_EQ(AppKitUserDefaults().boolValue("neverWritten"), std::nullopt);
}

TEST(AppKitUserDefaults, remembersBothBools) {
    AppKitUserDefaults defaults;
    defaults.setBool("compact", true);
    EXPECT_EQ(defaults.boolValue("compact"), true);
    defaults.setBool("compact", false);
    EXPECT_EQ(defaults.boolValue("compact"), false);
    EXPECT_EQ(AppKitUserDefaults().boolValue("compact"), false);
}

TEST(AppKitUserDefaults, storesThemUnderHomeInTheAppsDomain) {
    std::filesystem::remove(domainFile());
    AppKitUserDefaults().setBool("compact", true);
    std::ifstream file(domainFile());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(text.find("<key>compact</key>"), std::string::npos) << text;
}

TEST(AppKitUserDefaults, seesWhatAnotherProcessHasWritten) {
    AppKitUserDefaults defaults;
    defaults.setBool("compact", true);
    writeDomain("<false/>");
    EXPECT_EQ(defaults.boolValue("compact"), false);
    writeDomain("<true/>");
    EXPECT_EQ(defaults.boolValue("compact"), true);
}

TEST(AppKitUserDefaults, onlyABoolIsABool) {
    AppKitUserDefaults defaults;
    for (const char* value : {"<integer>1</integer>", "<integer>0</integer>", "<string>1</string>",
                              "<string>true</string>", "<real>1.0</real>", "<array/>"}) {
        writeDomain(value);
        EXPECT_EQ(defaults.boolValue("compact"), std::nullopt) << value;
    }
}

TEST(AppKitUserDefaults, keepsWhatElseIsInTheDomain) {
    writeDomain("<true/><key>other</key><false/>");
    AppKitUserDefaults defaults;
    defaults.setBool("compact", false);
    EXPECT_EQ(defaults.boolValue("compact"), false);
    EXPECT_EQ(defaults.boolValue("other"), false);
}

TEST(AppKitUserDefaults, anUnreadableFileHasNoValues) {
    std::ofstream(domainFile()) << "not a property list {";
    EXPECT_EQ(AppKitUserDefaults().boolValue("compact"), std::nullopt);
    std::filesystem::remove(domainFile());
    EXPECT_EQ(AppKitUserDefaults().boolValue("compact"), std::nullopt);
}

TEST(AppKitUserDefaults, saysInOneLineThatItCannotWrite) {
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
