#include "MenubarCore/Settings/SettingValue.h"

#include "tests/Settings/SampleSettings.h"

#include <iterator>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::sample::json;
using menubar::sample::spec;

namespace {

using Kind = SettingControl::Kind;
using List = SettingValue::List;

SettingSpec multiple() {
    SettingSpec result = spec(Kind::enumeration);
    result.multiple = true;
    return result;
}

std::optional<SettingValue> from(std::string_view document, const SettingSpec& setting) {
    return SettingValue::from(json(document), setting);
}

std::optional<double> numberText(const std::string& text) {
    const auto value = SettingValue::from(JSONValue(text), spec(Kind::number));
    return value ? value->number() : std::nullopt;
}

const SettingSpec unknown = spec(SettingControl::fromRawValue("colour"));

} // namespace

TEST(SettingValue, aPayloadIsFoundUnderItsCaseOnly) {
    EXPECT_EQ(SettingValue(true).bool_(), true);
    EXPECT_EQ(SettingValue(true).number(), std::nullopt);
    EXPECT_EQ(SettingValue(2.5).number(), 2.5);
    EXPECT_EQ(SettingValue(2.5).bool_(), std::nullopt);
    const SettingValue text("t");
    ASSERT_NE(text.text(), nullptr);
    EXPECT_EQ(*text.text(), "t");
    EXPECT_EQ(text.list(), nullptr);
    const SettingValue list(List{"t"});
    ASSERT_NE(list.list(), nullptr);
    EXPECT_EQ(*list.list(), List{"t"});
    EXPECT_EQ(list.text(), nullptr);
}

TEST(SettingValue, onlyTextsAndListsCanBeEmpty) {
    EXPECT_FALSE(SettingValue(false).isEmpty());
    EXPECT_FALSE(SettingValue(0).isEmpty());
    EXPECT_TRUE(SettingValue("").isEmpty());
    EXPECT_FALSE(SettingValue(" ").isEmpty());
    EXPECT_TRUE(SettingValue(List{}).isEmpty());
    EXPECT_FALSE(SettingValue(List{""}).isEmpty());
}

TEST(SettingValue, valuesOfDifferentCasesDiffer) {
    EXPECT_NE(SettingValue(1), SettingValue(true));
    EXPECT_NE(SettingValue(""), SettingValue(List{}));
    EXPECT_EQ(SettingValue(0.0), SettingValue(-0.0));
    EXPECT_NE(SettingValue(List{"a", "b"}), SettingValue(List{"b", "a"}));
}

TEST(SettingValue, eachControlAcceptsItsKindOfJSON) {
    struct Case {
        SettingSpec spec;
        const char* json;
        std::optional<SettingValue> value;
    };

    const Case cases[] = {
        {spec(Kind::toggle), "true", true},
        {spec(Kind::toggle), "false", false},
        {spec(Kind::toggle), "1", std::nullopt},
        {spec(Kind::toggle), "\"true\"", std::nullopt},
        {spec(Kind::toggle), "null", std::nullopt},
        {spec(Kind::number), "5", 5},
        {spec(Kind::number), "-0.5", -0.5},
        {spec(Kind::number), "\"7\"", 7},
        {spec(Kind::number), "true", std::nullopt},
        {spec(Kind::number), "\"seven\"", std::nullopt},
        {spec(Kind::number), "[5]", std::nullopt},
        {spec(Kind::number), "null", std::nullopt},
        {spec(Kind::percent), "70", 70},
        {spec(Kind::percent), "\" 70\\t\"", 70},
        {spec(Kind::percent), "\"70%\"", std::nullopt},
        {spec(Kind::duration), "\"30s\"", "30s"},
        {spec(Kind::duration), "30", std::nullopt},
        {spec(Kind::text), "\"\"", ""},
        {spec(Kind::text), "1", std::nullopt},
        {spec(Kind::text), "null", std::nullopt},
        {spec(Kind::path), "\"~/x\"", "~/x"},
        {spec(Kind::path), "{}", std::nullopt},
        {spec(Kind::enumeration), "\"not among the values\"", "not among the values"},
        {spec(Kind::enumeration), "[\"a\"]", std::nullopt},
        {multiple(), "[\"a\",\"a\"]", List{"a", "a"}},
        {multiple(), "[]", List{}},
        {multiple(), "\"a\"", std::nullopt},
        {multiple(), "[\"a\",1]", std::nullopt},
        {spec(Kind::list), "[]", List{}},
        {spec(Kind::list), "[\"a\",\"\"]", List{"a", ""}},
        {spec(Kind::list), "[1,2]", std::nullopt},
        {spec(Kind::list), "[null]", std::nullopt},
        {spec(Kind::list), "{\"0\":\"a\"}", std::nullopt},
        {unknown, "\"red\"", "red"},
        {unknown, "5", "5"},
        {unknown, "true", "true"},
        {unknown, "null", "null"},
        {unknown, "[1, {\"b\": null, \"a\": \"x/y\"}]", "[1,{\"a\":\"x\\/y\",\"b\":null}]"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(from(each.json, each.spec), each.value) << each.spec.control.rawValue() << " " << each.json;
    }
}

TEST(SettingValue, aNumberMayBeWrittenAsTextInEveryDecimalForm) {
    struct Case {
        const char* text;
        double number;
    };

    const Case cases[] = {
        {"7", 7},
        {"+5", 5},
        {"-5", -5},
        {".5", 0.5},
        {"5.", 5},
        {"-.5", -0.5},
        {"1e3", 1000},
        {"1E+3", 1e3},
        {"1e-3", 0.001},
        {"00.50e01", 5},
        {"  7  ", 7},
        {"\t7\t", 7},
        {"-0", 0},
        {"0.1", 0.1},
        {"1.e2", 100},
        {".5e1", 5},
        {"1e400", -1},
        {"1e-400", 0},
        {"9007199254740993", 9007199254740992},
        {"1e0000000000000000000002", 100},
    };
    for (const Case& each : cases) {
        if (each.number == -1) {
            EXPECT_EQ(numberText(each.text), std::nullopt) << each.text << " is beyond a double's range";
        } else {
            EXPECT_EQ(numberText(each.text), each.number) << each.text;
        }
    }
}

TEST(SettingValue, whatIsLeftOverMakesATextNoNumber) {
    std::istringstream words(
        "+ - . e3 1e 1e+ +-5 --5 1.2.3 5s 0x10 inf -inf infinity nan NaN 1,5 1_000 \xD9\xA7 1d3 1f");
    std::vector<std::string> texts{std::istream_iterator<std::string>(words), {}};
    texts.insert(texts.end(), {"", " ", "1 2", "+ 5", "\n7", "7\n", "\u00A07"});
    for (const std::string& text : texts) {
        EXPECT_EQ(numberText(text), std::nullopt) << text;
    }
}

TEST(SettingValue, aTextOfManyDigitsIsRoundedExactly) {
    EXPECT_EQ(numberText("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(numberText(std::string(300, '0') + "12"), 12);
    EXPECT_EQ(numberText("1" + std::string(308, '0')), 1e308);
    EXPECT_EQ(numberText("1" + std::string(309, '0')), std::nullopt);
}

TEST(SettingValue, goesBackToTheJSONThatItCameFrom) {
    for (const char* document : {"true", "false"}) {
        EXPECT_EQ(from(document, spec(Kind::toggle))->json(spec(Kind::toggle)), json(document));
    }
    EXPECT_EQ(from("5", spec(Kind::number))->json(spec(Kind::number)), JSONValue(5));
    EXPECT_EQ(from("\"7\"", spec(Kind::number))->json(spec(Kind::number)), JSONValue(7)) << "as a number from now on";
    EXPECT_EQ(from("\"5\"", spec(Kind::text))->json(spec(Kind::text)), JSONValue("5"));
    EXPECT_EQ(from("[\"a\"]", spec(Kind::list))->json(spec(Kind::list)), json("[\"a\"]"));
    EXPECT_EQ(from("[]", spec(Kind::list))->json(spec(Kind::list)), json("[]"));
}

TEST(SettingValue, theTextOfAnUnknownControlIsWrittenAsTheJSONThatItIs) {
    struct Case {
        const char* text;
        JSONValue json;
    };

    const Case cases[] = {
        {"5", 5},
        {"true", true},
        {"null", nullptr},
        {"\"quoted\"", "quoted"},
        {" [1] ", JSONValue::Array{1}},
        {R"({"a":{}})", JSONValue::Object{{"a", JSONValue::Object{}}}},
        {"red", "red"},
        {"", ""},
        {"[1", "[1"},
        {"1 2", "1 2"},
        {"01", "01"},
        {"1e999", "1e999"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(SettingValue(each.text).json(unknown), each.json) << each.text;
    }
    EXPECT_EQ(SettingValue("5").json(spec(Kind::text)), JSONValue("5")) << "known controls keep texts";
}

TEST(SettingValue, anUnknownControlRoundTripsWhateverTheFileHolds) {
    for (const char* document :
         {"5", "1e15", "-0.25", "true", "null", "[]", "{}", R"("red")", R"([1,{"b":[null,"x"]}])"}) {
        EXPECT_EQ(from(document, unknown)->json(unknown), json(document)) << document;
    }
}

TEST(SettingValue, stringsAreAnArrayOfNothingElse) {
    EXPECT_EQ(SettingValue::strings(json("[]")), List{});
    EXPECT_EQ(SettingValue::strings(json(R"(["a","b"])")), (List{"a", "b"}));
    EXPECT_EQ(SettingValue::strings(json(R"(["a",null])")), std::nullopt);
    EXPECT_EQ(SettingValue::strings(json(R"("a")")), std::nullopt);
    EXPECT_EQ(SettingValue::strings(json("{}")), std::nullopt);
}
