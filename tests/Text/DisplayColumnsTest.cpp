#include "MenubarCore/Text/DisplayColumns.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

struct WidthCase {
    const char* name;
    std::string text;
    std::size_t columns;
};

class DisplayColumnsOf : public testing::TestWithParam<WidthCase> {};

} // namespace

TEST_P(DisplayColumnsOf, areThoseThatATerminalUses) {
    EXPECT_EQ(displayColumns(GetParam().text), GetParam().columns) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DisplayColumnsOf,
    testing::Values(WidthCase{"empty", "", 0}, WidthCase{"ascii", "api 72%", 7}, WidthCase{"middleDot", "a · b", 5},
                    WidthCase{"accentPrecomposed", "é", 1}, WidthCase{"accentCombining", "e\u0301", 1},
                    WidthCase{"manyMarks", "e\u0301\u0302\u0303x", 2}, WidthCase{"cjk", "日本語", 6},
                    WidthCase{"fullwidthLatin", "ＡＢ", 4}, WidthCase{"halfwidthKatakana", "ｱｲ", 2},
                    WidthCase{"hangulSyllable", "한", 2}, WidthCase{"hangulJamo", "\u1112\u1161\u11AB", 2},
                    WidthCase{"emoji", "🚀", 2}, WidthCase{"heartWithSelector", "❤\uFE0F", 2},
                    WidthCase{"familyCountsEveryMember", "👩\u200D👧", 4}, WidthCase{"flag", "🇳🇵", 2},
                    WidthCase{"softHyphen", "a\u00ADb", 3}, WidthCase{"zeroWidthSpace", "a\u200Bb", 2},
                    WidthCase{"arabicWithMarks", "مَ", 1}, WidthCase{"replacement", "\uFFFD", 1},
                    WidthCase{"illFormed", "a\xFF\xFE", 3}, WidthCase{"onlyMarks", "\u0301\u0301", 0}),
    [](const auto& tested) { return tested.param.name; });

TEST(FittedToColumns, textThatFitsExactlyIsLeftWhole) {
    EXPECT_EQ(fittedToColumns("abcde", 5), "abcde");
    EXPECT_EQ(fittedToColumns("日本", 4), "日本");
    EXPECT_EQ(fittedToColumns("", 0), "");
    EXPECT_EQ(fittedToColumns("", 3), "");
}

TEST(FittedToColumns, longerTextEndsInAnEllipsisWithinTheColumns) {
    EXPECT_EQ(fittedToColumns("abcdef", 5), "abcd…");
    EXPECT_EQ(fittedToColumns("ab", 1), "…");
    EXPECT_EQ(fittedToColumns("ab", 0), "");
}

TEST(FittedToColumns, aWideCharacterThatWouldStraddleTheEdgeIsLeftOut) {
    EXPECT_EQ(fittedToColumns("日本語", 5), "日本…");
    EXPECT_EQ(fittedToColumns("日本語", 4), "日…");
    EXPECT_EQ(fittedToColumns("日本語", 1), "…");
}

TEST(FittedToColumns, aCharacterKeepsItsMarksOrGoesWithThem) {
    EXPECT_EQ(fittedToColumns("e\u0301e\u0301e\u0301", 2), "e\u0301…");
    EXPECT_EQ(fittedToColumns("abe\u0301", 3), "abe\u0301");
    EXPECT_EQ(fittedToColumns("ab👩\u200D👧cd", 6), "ab…");
}

TEST(FittedToColumns, everyWidthIsKeptForAMixedText) {
    const std::string text = "[critical] 日本 · e\u0301 · 👩\u200D👧 · 한 · café";
    for (std::size_t columns = 0; columns < displayColumns(text) + 2; ++columns) {
        EXPECT_LE(displayColumns(fittedToColumns(text, columns)), columns);
    }
}
