#include "MenubarApp/AppKit/AppKitUserDefaults.h"

#include "tests/appkit/Driver.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace menubar {
namespace {

/// What another process does.
void writeDomain(const std::string& valueOfCompact) {
    driver::replaceDefaults(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict><key>compact</key>)" +
                            valueOfCompact + "</dict></plist>\n");
}

/// Whether that is seen, within a poll.
bool becomes(std::optional<bool> value) {
    return driver::pumpUntil([&] { return AppKitUserDefaults().boolValue("compact") == value; });
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

TEST(AppKitUserDefaults, seesWhatAnotherProcessHasWritten) {
    AppKitUserDefaults defaults;
    defaults.setBool("compact", true);
    writeDomain("<false/>");
    EXPECT_TRUE(becomes(false));
    writeDomain("<true/>");
    EXPECT_TRUE(becomes(true));
}

TEST(AppKitUserDefaults, onlyABoolIsABool) {
    for (const char* value : {"<integer>1</integer>", "<integer>0</integer>", "<string>1</string>",
                              "<string>true</string>", "<real>1.0</real>", "<array/>"}) {
        writeDomain("<true/>");
        ASSERT_TRUE(becomes(true));
        writeDomain(value);
        EXPECT_TRUE(becomes(std::nullopt)) << value;
    }
}

TEST(AppKitUserDefaults, keepsWhatElseIsInTheDomain) {
    writeDomain("<true/><key>other</key><false/>");
    ASSERT_TRUE(becomes(true));
    AppKitUserDefaults defaults;
    defaults.setBool("compact", false);
    EXPECT_EQ(defaults.boolValue("compact"), false);
    EXPECT_EQ(defaults.boolValue("other"), false);
}

} // namespace
} // namespace menubar
