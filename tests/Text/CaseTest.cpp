#include "MenubarCore/Text/Case.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

/// Every code point of category Z, and the controls that end or separate lines.
constexpr std::string_view allWhiteSpace =
    "\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029\u202F"
    "\u205F\u3000";

} // namespace

TEST(Case, asciiIsMappedLetterByLetter) {
    EXPECT_EQ(lowercased("YES @[`{ 09"), "yes @[`{ 09");
    EXPECT_EQ(uppercased("yes @[`{ 09"), "YES @[`{ 09");
    EXPECT_EQ(lowercased("AZ"), "az");
    EXPECT_EQ(uppercased("az"), "AZ");
    EXPECT_EQ(lowercased(""), "");
    EXPECT_EQ(uppercased(""), "");
}

TEST(Case, upperCasingIsFullSoThatOneCharacterMayBecomeSeveral) {
    EXPECT_EQ(uppercased("\u00DF"), "SS");
    EXPECT_EQ(uppercased("\uFB03"), "FFI");
    EXPECT_EQ(uppercased("\u00E9t\u00E9"), "\u00C9T\u00C9");
    EXPECT_EQ(uppercased("\u0390"), "\u0399\u0308\u0301") << "three times its letters, and more bytes";
}

TEST(Case, lowerCasingIsFullAndKnowsTheFinalSigma) {
    EXPECT_EQ(lowercased("\u00C9T\u00C9"), "\u00E9t\u00E9");
    EXPECT_EQ(lowercased("\u039F\u0394\u039F\u03A3"), "\u03BF\u03B4\u03BF\u03C2");
    EXPECT_EQ(lowercased("\u0130"), "i\u0307");
}

TEST(Case, noLanguageChangesTheMapping) {
    EXPECT_EQ(lowercased("I"), "i");
    EXPECT_EQ(lowercased("I\u00C9"), "i\u00E9");
    EXPECT_EQ(uppercased("i\u00E9"), "I\u00C9");
}

TEST(Case, aTextMayGrowManyTimesOver) {
    std::string many;
    std::string grown;
    for (int i = 0; i < 1000; ++i) {
        many += "\u0390";
        grown += "\u0399\u0308\u0301";
    }
    EXPECT_EQ(uppercased(many), grown);
}

TEST(Case, illFormedBytesBecomeReplacementCharacters) {
    EXPECT_EQ(lowercased("A\xFF"
                         "B"),
              "a\uFFFDb");
    EXPECT_EQ(uppercased("a\xE2\x80"
                         "b"),
              "A\uFFFDB");
    EXPECT_EQ(lowercased("\xFF"), "\uFFFD");
}

TEST(Case, aNulIsACharacterLikeAnother) {
    const std::string text("A\0\u00C9", 4);
    EXPECT_EQ(lowercased(text), std::string("a\0\u00E9", 4));
}

TEST(Case, trimmingTakesAllWhiteSpaceAndLineBreaksFromBothEnds) {
    const std::string blanks(allWhiteSpace);
    EXPECT_EQ(trimmed(blanks + "a b" + blanks), "a b");
    EXPECT_EQ(trimmed(blanks), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("plain"), "plain");
    EXPECT_EQ(trimmed("  YES\n"), "YES");
    EXPECT_EQ(trimmed("\r\nx\r\n"), "x");
}

TEST(Case, trimmingKeepsWhatOnlyLooksBlank) {
    for (const std::string_view kept : {"\u200B", "\uFEFF", "\u180E", "\u2800", "\x08", "\x0E", "\u0084", "\u0086"}) {
        EXPECT_EQ(trimmed(kept), kept);
    }
}

TEST(Case, trimmingStopsAtIllFormedBytes) {
    EXPECT_EQ(trimmed(" \xFF "), "\xFF");
    EXPECT_EQ(trimmed(" \x80\x80 "), "\x80\x80");
    EXPECT_EQ(trimmed("\xC2"), "\xC2");
}

TEST(Case, trimmingPointsIntoItsText) {
    const std::string text = " a ";
    EXPECT_EQ(trimmed(text).data(), text.data() + 1);
}
