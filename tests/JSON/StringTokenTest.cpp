#include "MenubarCore/JSON/StringToken.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

TEST(StringToken, theEndIsTheFirstQuotationMarkThatIsNotEscaped) {
    struct Case {
        std::string text;
        std::size_t length;
        bool hasEscapes;
    };

    for (const auto& [text, length, hasEscapes] : std::vector<Case>{{"\"", 0, false},
                                                                    {"abc\"def\"", 3, false},
                                                                    {"a\\\"b\"", 4, true},
                                                                    {"\\\\\"", 2, true},
                                                                    {"\\\\\\\"\"", 4, true},
                                                                    {"exactly8\"", 8, false},
                                                                    {"longer than one word\"x", 20, false},
                                                                    {"longer than one word \\n\"", 23, true},
                                                                    {"\xFF\xA2\xDC\x80\xFF\"", 5, false}}) {
        const auto extent = findStringEnd(text);
        ASSERT_TRUE(extent.has_value()) << text;
        EXPECT_EQ(extent->length, length) << text;
        EXPECT_EQ(extent->hasEscapes, hasEscapes) << text;
    }
}

TEST(StringToken, aStringWithoutEndHasNone) {
    for (const char* text : {"", "abc", "abc\\", "abc\\\"", "a long one without any mark"}) {
        EXPECT_FALSE(findStringEnd(text).has_value()) << text;
    }
}

TEST(StringToken, theMarkIsFoundAtEveryPlace) {
    for (std::size_t place = 0; place < 40; ++place) {
        const std::string text = std::string(place, 'x') + "\"" + std::string(9, '!');
        EXPECT_EQ(findStringEnd(text)->length, place);
    }
}

TEST(StringToken, escapesStandForTheirCharacters) {
    struct Case {
        const char* raw;
        std::string text;
    };

    for (const auto& [raw, text] :
         std::vector<Case>{{R"(\"\\\/\b\f\n\r\t)", "\"\\/\b\f\n\r\t"},
                           {R"(\u0041\u00e9\u00E9)", "Aéé"},
                           {R"(\u0000)", std::string("\0", 1)},
                           {R"(\u007f\u0080\u07ff\u0800\uffff)", "\x7F\u0080\u07FF\u0800\uFFFF"},
                           {R"(\ud7ff\ue000)", "\uD7FF\uE000"},
                           {R"(\ud800\udc00)", "\U00010000"},
                           {R"(\uD83D\uDE00!)", "😀!"},
                           {R"(\udbff\udfff)", "\U0010FFFF"},
                           {R"(a\nb\nc)", "a\nb\nc"},
                           {R"(\\u0041)", "\\u0041"},
                           {"", ""}}) {
        std::string out = "left over";
        EXPECT_TRUE(unescape(raw, out)) << raw;
        EXPECT_EQ(out, text) << raw;
    }
}

TEST(StringToken, brokenEscapesAreRefusedWithTheirReason) {
    struct Case {
        const char* raw;
        EscapeFault fault;
    };

    for (const auto& [raw, fault] : std::vector<Case>{{R"(\x41)", EscapeFault::unknownEscape},
                                                      {R"(\U0041)", EscapeFault::unknownEscape},
                                                      {R"(\')", EscapeFault::unknownEscape},
                                                      {R"(\0)", EscapeFault::unknownEscape},
                                                      {"\\", EscapeFault::unknownEscape},
                                                      {"\\\n", EscapeFault::unknownEscape},
                                                      {R"(\u)", EscapeFault::hexDigits},
                                                      {R"(\u004)", EscapeFault::hexDigits},
                                                      {R"(\u00g1)", EscapeFault::hexDigits},
                                                      {R"(\u+041)", EscapeFault::hexDigits},
                                                      {"\\u00\xC3\xA9", EscapeFault::hexDigits},
                                                      {R"(\ud800)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800x)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800\n)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800\u0041)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800\ud800)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800\udc0)", EscapeFault::loneSurrogate},
                                                      {R"(\ud800\\udc00)", EscapeFault::loneSurrogate},
                                                      {R"(\udc00)", EscapeFault::loneSurrogate},
                                                      {R"(\udc00\ud800)", EscapeFault::loneSurrogate},
                                                      {R"(\udfff)", EscapeFault::loneSurrogate}}) {
        std::string out;
        EXPECT_FALSE(unescape(raw, out)) << raw;
        EXPECT_EQ(readEscape(raw, 0).fault, fault) << raw;
    }
}
