#include "MenubarCore/Settings/SettingsSchema.h"

#include <string_view>
#include <utility>

#include <gtest/gtest.h>

using namespace menubar;
using Kind = SettingControl::Kind;

namespace {

constexpr std::pair<std::string_view, Kind> knownControls[] = {
    {"toggle", Kind::toggle}, {"number", Kind::number}, {"percent", Kind::percent},  {"duration", Kind::duration},
    {"text", Kind::text},     {"list", Kind::list},     {"enum", Kind::enumeration}, {"path", Kind::path},
};

} // namespace

TEST(SettingControl, eachKnownTextHasItsKindAndGoesBackToItsText) {
    for (const auto& [text, kind] : knownControls) {
        const SettingControl control = SettingControl::fromRawValue(text);
        EXPECT_EQ(control.kind(), kind) << text;
        EXPECT_EQ(control, SettingControl(kind)) << text;
        EXPECT_EQ(control.rawValue(), text);
        EXPECT_TRUE(control.isKnown()) << text;
    }
}

TEST(SettingControl, everyOtherTextIsUnknownAndCarried) {
    for (const std::string_view text :
         {"", "Toggle", "TOGGLE", " toggle", "toggle ", "enumeration", "unknown", "slider"}) {
        const SettingControl control = SettingControl::fromRawValue(text);
        EXPECT_EQ(control.kind(), Kind::unknown) << text;
        EXPECT_FALSE(control.isKnown()) << text;
        EXPECT_EQ(control.rawValue(), text);
    }
}

TEST(SettingControl, unknownOnesAreEqualWhenTheirTextsAre) {
    EXPECT_EQ(SettingControl::fromRawValue("slider"), SettingControl::fromRawValue("slider"));
    EXPECT_NE(SettingControl::fromRawValue("slider"), SettingControl::fromRawValue("dial"));
    EXPECT_EQ(SettingControl::fromRawValue(""), SettingControl());
    EXPECT_EQ(SettingControl(Kind::unknown), SettingControl());
}
