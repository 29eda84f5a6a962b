#include "MenubarCore/JSON/JSONReader.h"

#include <limits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {

namespace {

enum class Unit { metre, inch, other };

/// A text that holds a JSON document of its own, so that reading it reads within a read.
struct Embedded {
    JSONValue value;
    bool operator==(const Embedded&) const = default;
};

struct Label {
    std::string text;
    std::optional<JSONValue> style{};
    bool operator==(const Label&) const = default;
};

struct Drawing {
    std::int64_t width = 0;
    double scale = 1.5;
    Unit unit = Unit::inch;
    std::optional<Embedded> source{};
    std::vector<std::vector<std::int64_t>> rows{};
    std::map<std::string, Label> labels{};
    bool operator==(const Drawing&) const = default;
};

} // namespace

template <>
inline constexpr auto enumTexts<Unit> = std::to_array<std::string_view>({"metre", "inch", "other"});

template <>
struct TextForm<Embedded> {
    static std::optional<Embedded> parse(std::string_view text) {
        auto value = JSONValue::decode(text);
        return value ? std::optional(Embedded{std::move(*value)}) : std::nullopt;
    }

    static std::string refusal(std::string_view text) { return "no document: " + std::string(text); }
};

template <>
inline constexpr auto recordRows<Label> = std::array{
    field::required<&Label::text>("text"),
    field::optional<&Label::style>("style"),
};

template <>
inline constexpr auto recordRows<Drawing> = std::array{
    field::required<&Drawing::width>("width"),  field::withDefault<&Drawing::scale>("scale"),
    field::withDefault<&Drawing::unit>("unit"), field::optional<&Drawing::source>("source"),
    field::withDefault<&Drawing::rows>("rows"), field::withDefault<&Drawing::labels>("labels"),
};

} // namespace menubar

using namespace menubar;

namespace {

Drawing decoded(std::string_view document) {
    auto drawing = JSONReader::decode<Drawing>(document);
    EXPECT_TRUE(drawing.has_value()) << document << ": " << describe(drawing.error());
    return drawing.value_or(Drawing{});
}

std::string errorOf(std::string_view document) {
    const auto drawing = JSONReader::decode<Drawing>(document);
    return drawing ? "" : describe(drawing.error());
}

} // namespace

TEST(Record, membersOfEveryShapeAreRead) {
    EXPECT_EQ(decoded(R"({"width":3,"scale":2,"unit":"metre","source":"[1,\"\\n\"]","rows":[[1,2],[],[3]],
                         "labels":{"a":{"text":"x","style":[true]},"b":{"text":"y"}}})"),
              (Drawing{.width = 3,
                       .scale = 2,
                       .unit = Unit::metre,
                       .source = Embedded{JSONValue::Array{1, "\n"}},
                       .rows = {{1, 2}, {}, {3}},
                       .labels = {{"a", {"x", JSONValue::Array{true}}}, {"b", {"y"}}}}));
}

TEST(Record, aMissingOrNullMemberKeepsTheDefaultOfAFreshRecord) {
    const Drawing fresh{.width = 1};
    EXPECT_EQ(decoded(R"({"width":1})"), fresh);
    EXPECT_EQ(decoded(R"({"width":1,"scale":null,"unit":null,"source":null,"rows":null,"labels":null})"), fresh);
    EXPECT_EQ(decoded(R"({"width":1,"scale":9,"unit":"metre","rows":[[1]],"scale":null,"unit":null,"rows":null})"),
              fresh);
}

TEST(Record, aTextOutsideTheTableIsTheLastEnumerator) {
    EXPECT_EQ(decoded(R"({"width":1,"unit":"furlong"})").unit, Unit::other);
    EXPECT_EQ(decoded(R"({"width":1,"unit":"other"})").unit, Unit::other);
}

TEST(Record, anOptionalValueOfAnyTypeIsAbsentWhenNull) {
    EXPECT_EQ(decoded(R"({"width":1,"labels":{"a":{"text":"","style":null}}})").labels.at("a").style, std::nullopt);
}

TEST(Record, pathsLeadThroughListsAndMaps) {
    EXPECT_EQ(errorOf(R"({"width":1,"rows":[[],[1,"x"]]})"), "type mismatch (Int) at rows.Index 1.Index 1");
    EXPECT_EQ(errorOf(R"({"width":1,"rows":[null]})"), "missing value (Array<Any>) at rows.Index 0");
    EXPECT_EQ(errorOf(R"({"width":1,"labels":{"a b":{"text":0}}})"), "type mismatch (String) at labels.a b.text");
    EXPECT_EQ(errorOf(R"({"width":1,"labels":{"a":{}}})"), "missing key text");
}

TEST(Record, aTextWithoutItsFormIsRefusedInItsOwnWords) {
    EXPECT_EQ(errorOf(R"({"width":1,"source":"[1"})"), "no document: [1");
}

TEST(Record, theMembersOfOneObjectCanBeReadInAnyOrderAndMoreThanOnce) {
    EXPECT_EQ(decoded(R"({"unit":"metre","width":"x","unit":"inch","scale":1,"width":2,"scale":3,"unit":"metre"})"),
              (Drawing{.width = 2, .scale = 3, .unit = Unit::metre}));
}

TEST(Integer, aTokenWithoutFractionAndExponentIsExact) {
    for (const std::int64_t value :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{9007199254740993}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_EQ(JSONReader::decode<std::int64_t>(std::to_string(value)), value);
    }
    EXPECT_EQ(JSONReader::decode<std::int64_t>("-0"), 0);
}

TEST(Integer, withAFractionOrAnExponentItIsTheNearestDouble) {
    struct Case {
        const char* text;
        std::int64_t value;
    };

    for (const auto& [text, value] :
         std::vector<Case>{{"0.0", 0},
                           {"-0.000e5", 0},
                           {"0e999999999", 0},
                           {"0e-999999999999999999999999", 0},
                           {"1e-999999999", 0},
                           {"1.0", 1},
                           {"-1.0", -1},
                           {"1.0000000000000000000000001", 1},
                           {"1e3", 1000},
                           {"10e-1", 1},
                           {"1000e-2", 10},
                           {"1.5e1", 15},
                           {"0.001e3", 1},
                           {"0.00012e5", 12},
                           {"120e-1", 12},
                           {"9007199254740993.0", 9007199254740992},
                           {"90071992547409930e-1", 9007199254740992},
                           {"9223372036854774784.0", 9223372036854774784},
                           {"-9223372036854775808.000", std::numeric_limits<std::int64_t>::min()},
                           {"-9.223372036854775809e18", std::numeric_limits<std::int64_t>::min()},
                           {"1e18", 1'000'000'000'000'000'000}}) {
        EXPECT_EQ(JSONReader::decode<std::int64_t>(text), value) << text;
    }
}

TEST(Integer, whatIsNotWholeOrDoesNotFitIsAMismatch) {
    std::istringstream numbers(
        R"(1.5 -0.5 1e-1 15e-1 0.1e0 9223372036854775808 -9223372036854775809 -9223372036854777857
        9.223372036854775807e18 9223372036854775807000e-3 9223372036854775807.5 -9223372036854777856.0 1e19 -1e19
        18446744073709551615 18446744073709551616 99999999999999999999 -99999999999999999999 1e300)");
    for (std::string text; numbers >> text;) {
        const auto value = JSONReader::decode<std::int64_t>(text);
        ASSERT_FALSE(value.has_value()) << text;
        EXPECT_EQ(describe(value.error()), "type mismatch (Int) at ") << text;
    }
}

TEST(Integer, isTheSameBesideAnIntegerOfMoreThanSixtyFourBits) {
    const auto beside = [](const std::string& text) {
        return JSONReader::decode<Drawing>("{\"width\":" + text + ",\"scale\":99999999999999999999}");
    };
    for (const char* text : {"-9223372036854775808.0", "-9.223372036854775808e18", "-9223372036854775808"}) {
        ASSERT_TRUE(beside(text).has_value()) << text;
        EXPECT_EQ(beside(text)->width, std::numeric_limits<std::int64_t>::min()) << text;
        EXPECT_EQ(beside(text)->scale, 1e20) << text;
    }
    for (const char* text : {"-9223372036854775809", "-9223372036854775900", "-9223372036854777857"}) {
        EXPECT_EQ(describe(beside(text).error()), "type mismatch (Int) at width") << text;
    }
}

TEST(JSONReader, readsListsMapsAndScalarsAtTheTopToo) {
    EXPECT_EQ(JSONReader::decode<std::int64_t>(" 7 "), 7);
    EXPECT_EQ(JSONReader::decode<std::string>("\"\\u0041\""), "A");
    EXPECT_EQ(JSONReader::decode<bool>("true"), true);
    EXPECT_EQ(JSONReader::decode<std::vector<double>>("[1,2.5]"), (std::vector<double>{1, 2.5}));
    EXPECT_EQ((JSONReader::decode<std::map<std::string, Unit>>(R"({"a":"inch"})")),
              (std::map<std::string, Unit>{{"a", Unit::inch}}));
    EXPECT_EQ(describe(JSONReader::decode<std::string>("null").error()), "missing value (String) at ");
    EXPECT_EQ(describe(JSONReader::decode<bool>("0").error()), "type mismatch (Bool) at ");
}

TEST(JSONReader, readsOnSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4);
    for (int& failed : failures) {
        threads.emplace_back([&failed] {
            for (int i = 0; i < 500; ++i) {
                const auto drawing =
                    JSONReader::decode<Drawing>(R"({"width":1,"source":"{\"a\":[1,2,3]}","rows":[[1]]})");
                failed += drawing.has_value() ? 0 : 1;
                failed += JSONReader::decode<Drawing>("{\"width\":[").has_value() ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, std::vector<int>(4));
}
