#include "MenubarCore/JSON/JSONValue.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <pthread.h>

using namespace menubar;
using Array = JSONValue::Array;
using Object = JSONValue::Object;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::nan("");

/// An array in an array in an array ... around `core`, or objects alternating with arrays.
JSONValue nested(int depth, JSONValue core) {
    for (int i = 0; i < depth; ++i) {
        if (i % 2 == 0) {
            Array array;
            array.push_back(std::move(core));
            core = JSONValue(std::move(array));
        } else {
            Object object;
            object["k"] = std::move(core);
            core = JSONValue(std::move(object));
        }
    }
    return core;
}

/// Runs `body` on a thread with the small stack that background threads have on macOS.
template <typename Body>
void onSmallStack(Body body) {
    pthread_attr_t attributes{};
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{512} * 1024), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<Body*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &body), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

struct NumberText {
    double number;
    const char* text;
};

void expectFormats(const std::vector<NumberText>& table) {
    for (const auto& [number, text] : table) {
        EXPECT_EQ(JSONValue::format(number), text);
    }
}

} // namespace

TEST(JSONValue, aDefaultValueIsNull) {
    EXPECT_TRUE(JSONValue().isNull());
    EXPECT_EQ(JSONValue().kind(), JSONValue::Case::null);
}

TEST(JSONValue, theCasesKeepTheirOrder) {
    EXPECT_EQ(JSONValue(true).storage().index(), 0U);
    EXPECT_EQ(JSONValue(1.0).storage().index(), 1U);
    EXPECT_EQ(JSONValue("s").storage().index(), 2U);
    EXPECT_EQ(JSONValue(Array{}).storage().index(), 3U);
    EXPECT_EQ(JSONValue(Object{}).storage().index(), 4U);
    EXPECT_EQ(JSONValue(nullptr).storage().index(), 5U);
}

TEST(JSONValue, anAccessorYieldsThePayloadOfItsOwnCaseOnly) {
    const std::vector<JSONValue> values{true, 1.5, "text", Array{1}, Object{{"k", 2}}, nullptr};
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(values[i].boolValue().has_value(), i == 0) << i;
        EXPECT_EQ(values[i].numberValue().has_value(), i == 1) << i;
        EXPECT_EQ(values[i].stringValue() != nullptr, i == 2) << i;
        EXPECT_EQ(values[i].arrayValue() != nullptr, i == 3) << i;
        EXPECT_EQ(values[i].objectValue() != nullptr, i == 4) << i;
        EXPECT_EQ(values[i].isNull(), i == 5) << i;
    }
    EXPECT_EQ(values[0].boolValue(), true);
    EXPECT_EQ(values[1].numberValue(), 1.5);
    EXPECT_EQ(*values[2].stringValue(), "text");
    EXPECT_EQ(values[3].arrayValue()->front(), JSONValue(1));
    EXPECT_EQ(values[4].objectValue()->at("k"), JSONValue(2));
}

TEST(JSONValue, equalityIsByCaseAndPayload) {
    EXPECT_EQ(JSONValue(1), JSONValue(1.0));
    EXPECT_NE(JSONValue(1), JSONValue(true));
    EXPECT_NE(JSONValue("1"), JSONValue(1));
    EXPECT_NE(JSONValue(false), JSONValue(nullptr));
    EXPECT_EQ(JSONValue(nullptr), JSONValue());
    EXPECT_NE(JSONValue(Array{}), JSONValue(Object{}));
    EXPECT_NE(JSONValue(Array{}), JSONValue(nullptr));
}

TEST(JSONValue, numbersCompareAsIEEEDoubles) {
    EXPECT_EQ(JSONValue(0.0), JSONValue(-0.0));
    const JSONValue value(notANumber);
    EXPECT_FALSE(value == value);
    const JSONValue list(Array{notANumber});
    EXPECT_FALSE(list == list);
}

TEST(JSONValue, arraysCompareInOrderAndByLength) {
    EXPECT_EQ(JSONValue(Array{1, "a"}), JSONValue(Array{1, "a"}));
    EXPECT_NE(JSONValue(Array{1, 2}), JSONValue(Array{2, 1}));
    EXPECT_NE(JSONValue(Array{1}), JSONValue(Array{1, 1}));
}

TEST(JSONValue, objectsCompareAsMapsWhateverTheOrder) {
    EXPECT_EQ(JSONValue(Object{{"a", 1}, {"b", 2}}), JSONValue(Object{{"b", 2}, {"a", 1}}));
    EXPECT_NE(JSONValue(Object{{"a", 1}}), JSONValue(Object{{"a", 2}}));
    EXPECT_NE(JSONValue(Object{{"a", 1}}), JSONValue(Object{{"b", 1}}));
    EXPECT_NE(JSONValue(Object{{"a", 1}}), JSONValue(Object{{"a", 1}, {"b", 1}}));
    EXPECT_NE(JSONValue(Object{{"a", nullptr}}), JSONValue(Object{}));
}

TEST(JSONValue, aCopyIsIndependent) {
    JSONValue original(Object{{"list", Array{1, 2}}, {"text", "t"}});
    const JSONValue copy = original;
    original = nullptr;
    EXPECT_EQ(copy, JSONValue(Object{{"list", Array{1, 2}}, {"text", "t"}}));
}

TEST(JSONValue, aValueMayBeReplacedByAPartOfItself) {
    JSONValue moved(Array{Object{{"inner", 1}}});
    moved = std::move(const_cast<JSONValue&>(moved.arrayValue()->front()));
    EXPECT_EQ(moved, JSONValue(Object{{"inner", 1}}));
    JSONValue copied(Array{Object{{"inner", 1}}});
    copied = copied.arrayValue()->front();
    EXPECT_EQ(copied, JSONValue(Object{{"inner", 1}}));
}

TEST(JSONValue, deepValuesAreCopiedComparedWrittenAndDestroyedOnASmallStack) {
    onSmallStack([] {
        const int depth = 100'000;
        const JSONValue value = nested(depth, 7);
        const JSONValue copy = value;
        EXPECT_TRUE(copy == value);
        EXPECT_FALSE(copy == nested(depth, 8));
        const auto text = value.encode(JSONLayout::compact);
        ASSERT_TRUE(text.has_value());
        EXPECT_EQ(text->substr(0, 14), R"({"k":[{"k":[{")");
    });
}

TEST(NumberFormat, wholeNumbersAreIntegersBelowTheLimitAndHaveAnExponentFromThere) {
    expectFormats({{3.0, "3"},
                   {-7.0, "-7"},
                   {0.0, "0"},
                   {-0.0, "0"},
                   {12.0, "12"},
                   {1e14, "100000000000000"},
                   {999999999999999.0, "999999999999999"},
                   {-999999999999999.0, "-999999999999999"},
                   {1e15, "1e+15"},
                   {-1e15, "-1e+15"},
                   {1000000000000001.0, "1.000000000000001e+15"},
                   {9007199254740993.0, "9.007199254740992e+15"},
                   {1e16, "1e+16"},
                   {1e22, "1e+22"},
                   {1e100, "1e+100"}});
}

TEST(NumberFormat, fractionsAreTheShortestDecimalThatReadsBack) {
    expectFormats({{0.5, "0.5"},
                   {-0.5, "-0.5"},
                   {0.1, "0.1"},
                   {12.5, "12.5"},
                   {10.25, "10.25"},
                   {123456.789, "123456.789"},
                   {0.1 + 0.2, "0.30000000000000004"},
                   {1.0 / 3.0, "0.3333333333333333"},
                   {72.49999999999999, "72.49999999999999"},
                   {99999999999999.98, "99999999999999.98"},
                   {999999999999999.9, "999999999999999.9"}});
}

TEST(NumberFormat, smallNumbersAreDecimalDownToAFourthPlaceAndHaveAnExponentBelow) {
    expectFormats({{0.001, "0.001"},
                   {0.0001, "0.0001"},
                   {-0.00012, "-0.00012"},
                   {0.00009999999999999999, "9.999999999999999e-05"},
                   {1e-5, "1e-05"},
                   {1.5e-7, "1.5e-07"},
                   {-1.5e-7, "-1.5e-07"},
                   {1e-10, "1e-10"},
                   {2.5e-100, "2.5e-100"}});
}

TEST(NumberFormat, coversTheExtremesAndWhatIsNoNumber) {
    expectFormats({{std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
                   {std::numeric_limits<double>::min(), "2.2250738585072014e-308"},
                   {std::numeric_limits<double>::denorm_min(), "5e-324"},
                   {notANumber, "nan"},
                   {-notANumber, "nan"},
                   {infinity, "inf"},
                   {-infinity, "-inf"}});
}

TEST(CompactText, ofScalarsIsTheirPlainText) {
    EXPECT_EQ(JSONValue(true).compactText(), "true");
    EXPECT_EQ(JSONValue(false).compactText(), "false");
    EXPECT_EQ(JSONValue(nullptr).compactText(), "null");
    EXPECT_EQ(JSONValue(3.0).compactText(), "3");
    EXPECT_EQ(JSONValue(1.5e-7).compactText(), "1.5e-07");
    EXPECT_EQ(JSONValue(notANumber).compactText(), "nan");
    EXPECT_EQ(JSONValue(-infinity).compactText(), "-inf");
}

TEST(CompactText, ofAStringIsTheStringItself) {
    EXPECT_EQ(JSONValue("a\"b").compactText(), "a\"b");
    EXPECT_EQ(JSONValue("a/b\n\x01").compactText(), "a/b\n\x01");
    EXPECT_EQ(JSONValue("").compactText(), "");
    EXPECT_EQ(JSONValue(std::string_view("a\0b", 3)).compactText(), std::string("a\0b", 3));
}

TEST(CompactText, ofAContainerIsItsCompactJSONWithSortedKeys) {
    EXPECT_EQ(JSONValue(Object{{"b", 1}, {"a", Array{true, nullptr}}}).compactText(), R"({"a":[true,null],"b":1})");
    EXPECT_EQ(JSONValue(Array{"a/b", 0.5}).compactText(), R"(["a\/b",0.5])");
    EXPECT_EQ(JSONValue(Array{}).compactText(), "[]");
    EXPECT_EQ(JSONValue(Object{}).compactText(), "{}");
}

TEST(CompactText, ofAContainerWithANonFiniteNumberIsEmpty) {
    EXPECT_EQ(JSONValue(Array{1, notANumber}).compactText(), "");
    EXPECT_EQ(JSONValue(Object{{"a", Array{infinity}}}).compactText(), "");
}

TEST(CompactText, repairsIllFormedTextBuiltInCode) {
    EXPECT_EQ(JSONValue("a\xFF"
                        "b")
                  .compactText(),
              "a\uFFFDb");
    EXPECT_EQ(JSONValue(Array{"\xC3"}).compactText(), "[\"\uFFFD\"]");
}
