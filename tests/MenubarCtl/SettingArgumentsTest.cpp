#include "MenubarCtl/SettingArguments.h"

#include "tests/Settings/SampleSettings.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::ctl;
using menubar::sample::field;
using menubar::sample::form;
using menubar::sample::spec;

namespace {

using Kind = SettingControl::Kind;
using List = SettingValue::List;
using Values = std::vector<std::string>;

/// The field after the values were applied to it, or why they were not.
std::expected<SettingField, ArgumentError> applied(const SettingSpec& setting, const Values& values) {
    SettingsForm edited = form({setting});
    if (const auto result = applyArguments(edited, *edited.field("a"), values); !result) {
        return std::unexpected(result.error());
    }
    return field(edited);
}

SettingSpec multiple() {
    SettingSpec result = spec(Kind::enumeration);
    result.multiple = true;
    result.values = {"x", "y"};
    return result;
}

} // namespace

TEST(SettingArguments, aToggleTakesTheUsualWords) {
    for (const char* word : {"on", "true", "yes", "1", "On", "TRUE"}) {
        EXPECT_EQ(applied(spec(Kind::toggle), {word})->value, SettingValue(true)) << word;
    }
    for (const char* word : {"off", "false", "no", "0", "OFF"}) {
        EXPECT_EQ(applied(spec(Kind::toggle), {word})->value, SettingValue(false)) << word;
    }
    for (const char* word : {"", "y", "2", " on", "onn"}) {
        EXPECT_EQ(applied(spec(Kind::toggle), {word}).error(), ArgumentError::notReadable) << word;
    }
}

TEST(SettingArguments, aNumberIsReadAsTheConfigFileReadsOne) {
    for (const Kind kind : {Kind::number, Kind::percent}) {
        EXPECT_EQ(applied(spec(kind), {"-5"})->value, SettingValue(-5));
        EXPECT_EQ(applied(spec(kind), {" 1e3\t"})->value, SettingValue(1000));
        EXPECT_EQ(applied(spec(kind), {".5"})->value, SettingValue(0.5));
        for (const char* word : {"", "5s", "0x5", "nan", "inf", "1e999"}) {
            EXPECT_EQ(applied(spec(kind), {word}).error(), ArgumentError::notReadable) << word;
        }
    }
}

TEST(SettingArguments, aPercentageMayCarryItsSign) {
    EXPECT_EQ(applied(spec(Kind::percent), {"71%"})->value, SettingValue(71));
    EXPECT_EQ(applied(spec(Kind::percent), {" 71 % "})->value, SettingValue(71));
    for (const char* word : {"%", "71%%", "%71"}) {
        EXPECT_EQ(applied(spec(Kind::percent), {word}).error(), ArgumentError::notReadable) << word;
    }
    EXPECT_EQ(applied(spec(Kind::number), {"71%"}).error(), ArgumentError::notReadable);
}

TEST(SettingArguments, listsTakeEachValueAsAnItem) {
    EXPECT_EQ(applied(spec(Kind::list), {"x", "y z", "x"})->value, SettingValue(List{"x", "y z", "x"}));
    EXPECT_EQ(applied(multiple(), {"y", "x"})->value, SettingValue(List{"y", "x"}));
    EXPECT_EQ(applied(spec(Kind::list), {})->value, SettingValue(List{}));
    EXPECT_FALSE(applied(spec(Kind::list), {})->isSet);
    EXPECT_EQ(applied(spec(Kind::list), {""})->error, "Item 1 is empty");
}

TEST(SettingArguments, everythingElseTakesWhatAPersonWouldType) {
    SettingSpec prefixed = spec(Kind::text);
    prefixed.requiredPrefix = "--";
    EXPECT_EQ(applied(prefixed, {"x"})->value, SettingValue("-- x"));
    SettingSpec choice = spec(Kind::enumeration);
    choice.values = {"x"};
    EXPECT_EQ(applied(choice, {"y"})->error, "Unknown value y (allowed: x)");
    for (const Kind kind : {Kind::duration, Kind::path, Kind::unknown}) {
        EXPECT_EQ(applied(spec(kind), {" 30s "})->value, SettingValue(" 30s "));
    }
    EXPECT_FALSE(applied(spec(Kind::text), {""})->isSet);
}

TEST(SettingArguments, allButListsTakeExactlyOneValue) {
    for (const Kind kind : {Kind::toggle, Kind::number, Kind::percent, Kind::duration, Kind::text, Kind::enumeration,
                            Kind::path, Kind::unknown}) {
        EXPECT_EQ(applied(spec(kind), {}).error(), ArgumentError::wrongNumber);
        EXPECT_EQ(applied(spec(kind), {"1", "1"}).error(), ArgumentError::wrongNumber);
    }
}
