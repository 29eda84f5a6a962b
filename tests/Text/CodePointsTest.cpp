#include "MenubarCore/Text/CodePoints.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

std::vector<std::int32_t> forward(std::string_view text) {
    std::vector<std::int32_t> result;
    for (std::size_t index = 0; index < text.size();) {
        result.push_back(nextCodePoint(text, index));
    }
    return result;
}

std::vector<std::int32_t> backward(std::string_view text) {
    std::vector<std::int32_t> result;
    for (std::size_t index = text.size(); index > 0;) {
        result.push_back(previousCodePoint(text, index));
    }
    std::ranges::reverse(result);
    return result;
}

} // namespace

TEST(CodePoints, bothDirectionsSeeTheSameCodePoints) {
    const std::string text = "a\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFFz";
    const std::vector<std::int32_t> expected = {'a',    0x7F,   0x80,    0x7FF,    0x800, 0xD7FF,
                                                0xE000, 0xFFFF, 0x10000, 0x10FFFF, 'z'};
    EXPECT_EQ(forward(text), expected);
    EXPECT_EQ(backward(text), expected);
}

TEST(CodePoints, overlongFormsAndSurrogatesAndTooLargeOnesAreIllFormed) {
    for (const std::string_view bytes :
         {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8", "\x80"}) {
        for (const std::int32_t codePoint : forward(bytes)) {
            EXPECT_EQ(codePoint, illFormed);
        }
        EXPECT_EQ(forward(bytes), backward(bytes));
    }
}

TEST(CodePoints, aSequenceThatIsCutOffIsOneIllFormedSequence) {
    EXPECT_EQ(forward("\xF0\x9F\x9A"), std::vector<std::int32_t>{illFormed});
    EXPECT_EQ(forward("\xE2\x82"
                      "a"),
              (std::vector<std::int32_t>{illFormed, 'a'}));
    EXPECT_EQ(backward("a\xE2\x82"), (std::vector<std::int32_t>{'a', illFormed}));
}

TEST(CodePoints, bothDirectionsAgreeOnWhateverBytesThereAre) {
    constexpr std::string_view bytes = "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xE2\xED\xEF\xF0\xF3\xF4\xF5\xFF";
    std::mt19937 random(20250304);
    for (int round = 0; round < 5000; ++round) {
        std::string text(random() % 12, '\0');
        std::ranges::generate(text, [&] { return bytes[random() % bytes.size()]; });
        ASSERT_EQ(forward(text), backward(text)) << testing::PrintToString(text);
    }
}

TEST(CodePoints, wellFormedTextStaysAndTheRestIsReplacedSequenceBySequence) {
    EXPECT_EQ(wellFormed("a\u00E9\U0001F680"), "a\u00E9\U0001F680");
    EXPECT_EQ(wellFormed("\xFF"
                         "a\xE2\x82"
                         "b\xF0\x9F"),
              "\uFFFDa\uFFFDb\uFFFD");
    EXPECT_EQ(wellFormed(""), "");
}

TEST(CodePoints, asciiEndsAt7F) {
    EXPECT_TRUE(isAscii(""));
    EXPECT_TRUE(isAscii(std::string_view("\0\x7F", 2)));
    EXPECT_FALSE(isAscii("a\x80"));
}
