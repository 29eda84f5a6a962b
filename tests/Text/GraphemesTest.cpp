#include "MenubarCore/Text/Graphemes.h"

#include "tests/support/GraphemeCount.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

struct OneCharacter {
    const char* what;
    std::string text;
};

/// What a reader takes for one character, whatever it is made of.
const std::vector<OneCharacter>& singleCharacters() {
    static const std::vector<OneCharacter> all = {
        {"a letter", "a"},
        {"a NUL", std::string(1, '\0')},
        {"CR LF", "\r\n"},
        {"a precomposed letter", "\u00E9"},
        {"a letter with a combining mark", "e\u0301"},
        {"a letter with three combining marks", "o\u0302\u0323\u0301"},
        {"an emoji", "\U0001F680"},
        {"an emoji with a skin tone", "\U0001F44D\U0001F3FD"},
        {"a family joined by ZWJ", "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"},
        {"a heart with a variation selector", "\u2764\uFE0F"},
        {"a keycap", "1\uFE0F\u20E3"},
        {"a flag of two regional indicators", "\U0001F1E9\U0001F1EA"},
        {"a flag of tags", "\U0001F3F4\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F"},
        {"a Hangul syllable of three jamo", "\u1112\u1161\u11AB"},
        {"a precomposed Hangul syllable with a trailing jamo", "\uD558\u11AB"},
        {"a Thai consonant with vowel and tone", "\u0E01\u0E34\u0E48"},
        {"a Devanagari letter with a vowel sign", "\u0928\u093F"},
    };
    return all;
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

} // namespace

TEST(Graphemes, anEmptyTextHasNone) {
    EXPECT_EQ(graphemeCount(""), 0U);
    EXPECT_EQ(graphemePrefix("", 5), "");
}

TEST(Graphemes, eachUserPerceivedCharacterCountsAsOne) {
    for (const OneCharacter& one : singleCharacters()) {
        EXPECT_EQ(graphemeCount(one.text), 1U) << one.what;
        EXPECT_EQ(graphemeCount("x" + one.text + "y"), 3U) << one.what;
    }
}

TEST(Graphemes, characterBoundariesHoldAt69And70And71Characters) {
    for (const OneCharacter& one : singleCharacters()) {
        for (const std::size_t count : {69U, 70U, 71U}) {
            const std::string text = repeated(one.text, count);
            EXPECT_EQ(graphemeCount(text), count) << one.what;
            EXPECT_EQ(graphemePrefix(text, 69), repeated(one.text, 69)) << one.what;
            EXPECT_EQ(graphemePrefix(text, 70), repeated(one.text, count < 70 ? count : 70)) << one.what;
        }
    }
}

TEST(Graphemes, aPrefixNeverEndsInsideACharacter) {
    for (const OneCharacter& one : singleCharacters()) {
        const std::string text = "ab" + one.text + "cd";
        EXPECT_EQ(graphemePrefix(text, 2), "ab") << one.what;
        EXPECT_EQ(graphemePrefix(text, 3), "ab" + one.text) << one.what;
        EXPECT_EQ(graphemePrefix(text, 4), "ab" + one.text + "c") << one.what;
    }
}

TEST(Graphemes, aPrefixOfNoneIsEmptyAndOfMoreThanThereAreIsTheWholeText) {
    EXPECT_EQ(graphemePrefix("api", 0), "");
    EXPECT_EQ(graphemePrefix("api", 3), "api");
    EXPECT_EQ(graphemePrefix("api", 4), "api");
}

TEST(Graphemes, aPrefixPointsIntoItsText) {
    const std::string text = "h\u00E9llo";
    EXPECT_EQ(graphemePrefix(text, 3).data(), text.data());
}

TEST(Graphemes, carriageReturnAndLineFeedAreOneOnlyInThisOrder) {
    EXPECT_EQ(graphemeCount("\r\n"), 1U);
    EXPECT_EQ(graphemeCount("\n\r"), 2U);
    EXPECT_EQ(graphemeCount("\r\r\n\n"), 3U);
    EXPECT_EQ(graphemeCount("\r \n"), 3U);
    EXPECT_EQ(graphemeCount("\r"), 1U);
}

TEST(Graphemes, aMarkBelongsToTheAsciiLetterBeforeItButNotToALineBreak) {
    EXPECT_EQ(graphemeCount("abe\u0301cd"), 5U);
    EXPECT_EQ(graphemeCount("\n\u0301"), 2U);
    EXPECT_EQ(graphemeCount("\r\n\u0301"), 2U);
    EXPECT_EQ(graphemeCount("\u0301"), 1U);
}

TEST(Graphemes, regionalIndicatorsPairUpFromTheLeft) {
    const std::string indicator = "\U0001F1E9";
    EXPECT_EQ(graphemeCount(repeated(indicator, 3)), 2U);
    EXPECT_EQ(graphemeCount("a" + repeated(indicator, 5)), 4U);
    EXPECT_EQ(graphemePrefix(repeated(indicator, 5), 2), repeated(indicator, 4));
}

TEST(Graphemes, mixedTextIsCountedAcrossEveryChangeOfKind) {
    const std::string text = "ab\u00E9c\U0001F680\U0001F680d\r\ne\u0301f\u4E2Dg";
    EXPECT_EQ(graphemeCount(text), 12U);
    EXPECT_EQ(graphemePrefix(text, 7), "ab\u00E9c\U0001F680\U0001F680d");
    EXPECT_EQ(graphemePrefix(text, 8), "ab\u00E9c\U0001F680\U0001F680d\r\n");
}

TEST(Graphemes, illFormedBytesCountAsReplacementCharactersDo) {
    EXPECT_EQ(graphemeCount("a\xFF"), 2U);
    EXPECT_EQ(graphemeCount("\xFF\xFE"), 2U);
    EXPECT_EQ(graphemeCount("a\xE2\x80"), 2U) << "a sequence that is cut off is one";
    EXPECT_EQ(graphemeCount("\xC0\xAF"), 2U);
    EXPECT_EQ(graphemePrefix("a\xFF\xFE", 2), "a\xFF");
}

TEST(Graphemes, aLongTextOfOtherCharactersIsCountedInFull) {
    EXPECT_EQ(graphemeCount(repeated("\u4E2D", 100000)), 100000U);
    EXPECT_EQ(graphemeCount("a" + repeated("\u0301", 100000)), 1U);
    EXPECT_EQ(graphemeCount(repeated("\U0001F1E9\U0001F1EA", 20000)), 20000U);
}

TEST(Graphemes, threadsCountSideBySide) {
    std::vector<std::size_t> counts(4);
    {
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            threads.emplace_back([&counts, i] {
                for (int round = 0; round < 100; ++round) {
                    counts[i] += graphemeCount(repeated("e\u0301\U0001F680", i + 1));
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(counts, (std::vector<std::size_t>{200, 400, 600, 800}));
}
