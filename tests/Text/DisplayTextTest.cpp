#include "MenubarCore/Text/DisplayText.h"

#include "MenubarCore/Text/CodePoints.h"

#include "tests/support/GraphemeCount.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using namespace std::string_view_literals;

namespace {

std::string utf8(char32_t codePoint) {
    const auto byte = [](char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0 | codePoint >> 6), byte(0x80 | (codePoint & 0x3F))};
    }
    return {byte(0xE0 | codePoint >> 12), byte(0x80 | (codePoint >> 6 & 0x3F)), byte(0x80 | (codePoint & 0x3F))};
}

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range replacedRanges[] = {{0x0000, 0x001F}, {0x007F, 0x009F}, {0x061C, 0x061C}, {0x200E, 0x200F},
                                    {0x2028, 0x2029}, {0x202A, 0x202E}, {0x2066, 0x2069}};

} // namespace

TEST(DisplayText, ordinaryTextIsDrawnAsItStands) {
    for (const std::string_view text : {"", "api \u00B7 72%", "\u4E2D\u6587", "\U0001F468\u200D\U0001F469", "e\u0301",
                                        "\u05D0\u05D1\u05D2", "\u00A0\u00AD\u200B\uFEFF\uFFFD"}) {
        EXPECT_EQ(displayText(text), text);
    }
}

TEST(DisplayText, controlsAndSeparatorsAndBidirectionalControlsAreReplacedFromFirstToLast) {
    for (const Range range : replacedRanges) {
        for (char32_t codePoint = range.first; codePoint <= range.last; ++codePoint) {
            EXPECT_EQ(displayText("a" + utf8(codePoint) + "b"), "a\uFFFDb") << static_cast<unsigned>(codePoint);
        }
    }
}

TEST(DisplayText, theNeighboursOfWhatIsReplacedStay) {
    for (const char32_t codePoint : U" ~\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A"sv) {
        const std::string text = utf8(codePoint);
        EXPECT_EQ(displayText(text), text) << static_cast<unsigned>(codePoint);
    }
}

TEST(DisplayText, aRightToLeftOverrideCannotTurnTheTextAround) {
    EXPECT_EQ(displayText("gpj.\u202Eexe"), "gpj.\uFFFDexe");
}

TEST(DisplayText, anEscapeSequenceLosesItsEscape) {
    EXPECT_EQ(displayText("\x1B[31mred\x1B[0m"), "\uFFFD[31mred\uFFFD[0m");
    EXPECT_EQ(displayText("\u009B31m"), "\uFFFD31m") << "the one-character form";
}

TEST(DisplayText, lineFeedsStayOnlyWhereTheyAreKept) {
    EXPECT_EQ(displayText("a\nb"), "a\uFFFDb");
    EXPECT_EQ(displayText("a\nb\r\n\tc", LineFeeds::keep), "a\nb\uFFFD\n\uFFFDc");
}

TEST(DisplayText, eachIllFormedSequenceIsReplacedByOneCharacter) {
    EXPECT_EQ(displayText("a\xFF"
                          "b\xE2\x82"
                          "c\xC0\xAF"),
              "a\uFFFDb\uFFFDc\uFFFD\uFFFD");
    EXPECT_EQ(displayText("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
}

TEST(DisplayTitle, aTitleOfTheLimitIsWholeAndALongerOneEndsInAnEllipsis) {
    EXPECT_EQ(displayTitle(std::string(199, 'a')), std::string(199, 'a'));
    EXPECT_EQ(displayTitle(std::string(200, 'a')), std::string(200, 'a'));
    EXPECT_EQ(displayTitle(std::string(201, 'a')), std::string(199, 'a') + "\u2026");
    EXPECT_EQ(displayTitle(std::string(10000, 'a')), std::string(199, 'a') + "\u2026");
}

TEST(DisplayTitle, theLimitCountsUserPerceivedCharacters) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    std::string title;
    for (std::size_t i = 0; i < displayTitleLimit; ++i) {
        title += family;
    }
    EXPECT_EQ(displayTitle(title), title);
    const std::string cut = displayTitle(title + family);
    EXPECT_EQ(graphemeCount(cut), displayTitleLimit);
    EXPECT_TRUE(cut.ends_with("\u2026"));
}

TEST(DisplayTitle, controlsAreReplacedBeforeTheyAreCounted) {
    std::string title;
    for (int i = 0; i < 101; ++i) {
        title += "\r\n";
    }
    const std::string cut = displayTitle(title);
    EXPECT_EQ(graphemeCount(cut), displayTitleLimit) << "a carriage return and a line feed are drawn as two";
    EXPECT_TRUE(cut.ends_with("\uFFFD\u2026"));
}

TEST(DisplayTitle, whateverTheBytesTheResultIsWellFormedAndShort) {
    std::string bytes;
    for (unsigned i = 0; i < 10000; ++i) {
        bytes += static_cast<char>(static_cast<unsigned char>(i * 151 + i / 256));
    }
    const std::string title = displayTitle(bytes);
    EXPECT_EQ(graphemeCount(title), displayTitleLimit);
    EXPECT_EQ(wellFormed(title), title);
    EXPECT_EQ(displayText(title), title);
}
