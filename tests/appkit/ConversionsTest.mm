#import <Foundation/Foundation.h>

#include "MenubarApp/AppKit/Conversions.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace menubar {
namespace {

struct Case {
    std::string_view bytes;
    const char* expected; ///< what comes back
};

TEST(Conversions, textsOfEveryKindComeBackAsTheyWere) {
    for (const std::string_view text :
         {std::string_view(""), std::string_view("abc"), std::string_view("a\0b", 3), std::string_view("72% · naïve"),
          std::string_view("日本語"), std::string_view("👩‍👩‍👧"),
          std::string_view("\xEF\xBB\xBF"
                           "BOM"),
          std::string_view("\xEF\xBF\xBE\xEF\xBF\xBF"), std::string_view("e\xCC\x81")}) {
        EXPECT_EQ(toString(toNSString(text)), text);
    }
}

TEST(Conversions, countsInUtf16Units) {
    EXPECT_EQ([toNSString("") length], 0U);
    EXPECT_EQ([toNSString("é") length], 1U);
    EXPECT_EQ([toNSString("😀") length], 2U);
}

TEST(Conversions, illFormedBytesBecomeReplacementCharacters) {
    const std::vector<Case> cases = {
        {"a\xFF"
         "b",
         "a\uFFFDb"},                                     // no such byte
        {"a\xC3", "a\uFFFD"},                             // cut off
        {"\xE2\x82", "\uFFFD"},                           // cut off
        {"\xC0\xAF", "\uFFFD\uFFFD"},                     // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond Unicode
    };
    for (const Case& c : cases) {
        EXPECT_EQ(toString(toNSString(c.bytes)), c.expected) << testing::PrintToString(c.bytes);
    }
}

TEST(Conversions, nilIsTheEmptyText) {
    EXPECT_EQ(toString(nil), "");
}

TEST(Conversions, unpairedSurrogatesBecomeReplacementCharacters) {
    NSString* text = [NSString stringWithFormat:@"a%Cb%C", static_cast<unichar>(0xD83D), static_cast<unichar>(0xDE00)];
    ASSERT_EQ([text length], 4U);
    EXPECT_EQ(toString(text), "a\uFFFDb\uFFFD");
}

TEST(Conversions, pathsSurviveTheWayThroughAUrl) {
    for (const char* path : {"/a", "/a b/c", "/a#b?c&d=e%20f", "/ü/日本.md", "/a:b;c@d", "/~/x", "/a/../b"}) {
        NSURL* url = toFileURL(path);
        EXPECT_TRUE([url isFileURL]);
        EXPECT_EQ(toString([url path]), path);
    }
}

} // namespace
} // namespace menubar
