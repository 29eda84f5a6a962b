#include "MenubarCore/JSON/JSONReader.h"

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
