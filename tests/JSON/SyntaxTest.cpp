#include "MenubarCore/JSON/JSONReader.h"
#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/SyntaxCheck.h"

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

/// The words of a text, which blanks and line feeds keep apart.
std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

std::string errorOf(std::string_view document) {
    const auto value = JSONValue::decode(document);
    return value ? "" : describe(value.error());
}

struct BadDocument {
    std::string text;
    std::string error;
};

/// Each document fails with its text: alone, in an array, and under a key that nobody reads.
void expectErrors(const std::vector<BadDocument>& table) {
    for (const BadDocument& bad : table) {
        EXPECT_EQ(errorOf(bad.text), bad.error) << bad.text;
    }
}

/// Each value is refused wherever it stands.
void expectRefusedEverywhere(const std::vector<std::string>& values) {
    for (const std::string& value : values) {
        for (const auto& [before, after] : std::vector<std::pair<std::string, std::string>>{
                 {"", ""}, {"[", "]"}, {"[1,", ",2]"}, {"{\"a\":", "}"}, {"{\"a\":[{\"b\":", "}]}"}, {" ", "\n"}}) {
            const std::string document = before + value + after;
            EXPECT_NE(errorOf(document), "") << document;
            EXPECT_EQ(errorOf(document).find('\n'), std::string::npos) << document;
            EXPECT_TRUE(SyntaxCheck::firstFault(document, 1000).has_value()) << document;
        }
    }
}

} // namespace

TEST(Syntax, anEmptyDocumentIsRefused) {
    expectErrors({{"", "expected a value at line 1, column 1, where the document ends"},
                  {" ", "expected a value at line 1, column 2, where the document ends"},
                  {"\n\t\r\n ", "expected a value at line 3, column 2, where the document ends"}});
}

TEST(Syntax, theErrorNamesWhatWasExpectedWithLineAndColumn) {
    expectErrors({
        {"[1 2]", R"(expected "," or "]" at line 1, column 4)"},
        {"[1,]", "expected a value at line 1, column 4"},
        {"[,1]", R"(expected a value or "]" at line 1, column 2)"},
        {"[1,,2]", "expected a value at line 1, column 4"},
        {"[", R"(expected a value or "]" at line 1, column 2, where the document ends)"},
        {"[1", R"(expected "," or "]" at line 1, column 3, where the document ends)"},
        {"[1}", R"(expected "," or "]" at line 1, column 3)"},
        {"{\n  \"a\": 1\n  \"b\": 2}", R"(expected "," or "}" at line 3, column 3)"},
        {R"({"a":1,})", "expected a key at line 1, column 8"},
        {R"({,"a":1})", R"(expected a key or "}" at line 1, column 2)"},
        {R"({a:1})", R"(expected a key or "}" at line 1, column 2)"},
        {R"({"a" 1})", R"(expected ":" at line 1, column 6)"},
        {R"({"a"})", R"(expected ":" at line 1, column 5)"},
        {R"({"a":})", "expected a value at line 1, column 6"},
        {R"({"a":1])", R"(expected "," or "}" at line 1, column 7)"},
        {R"({"a":1)", R"(expected "," or "}" at line 1, column 7, where the document ends)"},
        {"{", R"(expected a key or "}" at line 1, column 2, where the document ends)"},
        {R"({"é": "日本", "x": ?})", "expected a value at line 1, column 18"},
        {"\"abc", "expected a closing quotation mark at line 1, column 5, where the document ends"},
        {"]", "expected a value at line 1, column 1"},
        {"/* no comments */ 1", "expected a value at line 1, column 1"},
    });
}

TEST(Syntax, nothingMayFollowTheValue) {
    expectErrors({{"1 2", "expected the end of the document at line 1, column 3"},
                  {"1,", "expected the end of the document at line 1, column 2"},
                  {"1,2", "expected the end of the document at line 1, column 2"},
                  {"{}x", "expected the end of the document at line 1, column 3"},
                  {"{} {}", "expected the end of the document at line 1, column 4"},
                  {"[]]", "expected the end of the document at line 1, column 3"},
                  {"[][", "expected the end of the document at line 1, column 3"},
                  {"{}}", "expected the end of the document at line 1, column 3"},
                  {"1],[2", "expected the end of the document at line 1, column 2"},
                  {"],[", "expected a value at line 1, column 1"},
                  {"[1],[2]", "expected the end of the document at line 1, column 4"},
                  {"\"a\"\"b\"", "expected the end of the document at line 1, column 4"},
                  {"\"a\":1", "expected the end of the document at line 1, column 4"},
                  {"null\nnull", "expected the end of the document at line 2, column 1"},
                  {std::string("{}\0", 3), "expected the end of the document at line 1, column 3"}});
}

TEST(Syntax, numbersFollowTheGrammar) {
    expectErrors({{"01", "superfluous leading zero at line 1, column 1"},
                  {"[-012]", "superfluous leading zero at line 1, column 3"},
                  {"-", "expected a digit at line 1, column 2, where the document ends"},
                  {"[1.]", "expected a digit at line 1, column 4"},
                  {"[1e]", "expected a digit at line 1, column 4"},
                  {"[1e+]", "expected a digit at line 1, column 5"},
                  {"[.5]", R"(expected a value or "]" at line 1, column 2)"},
                  {"[+1]", R"(expected a value or "]" at line 1, column 2)"},
                  {"[NaN]", R"(expected a value or "]" at line 1, column 2)"},
                  {"[1x]", R"(expected "," or "]" at line 1, column 3)"},
                  {"[0x10]", R"(expected "," or "]" at line 1, column 3)"}});
    for (const char* number : {"0", "-0", "7", "10", "1.5", "0.5", "-0.5e-10", "1e3", "1E+3", "1e-03", "0e0",
                               "123456789012345678901234567890", "-123456789012345678901234567890"}) {
        EXPECT_EQ(errorOf(number), "") << number;
        EXPECT_EQ(errorOf("{\"a\":[" + std::string(number) + "]}"), "") << number;
    }
    expectRefusedEverywhere({"01",  "-01", "00",    "-",   "+1",  ".5",       "1.",        "1.e1",
                             "1e",  "1e+", "1e1.5", "NaN", "nan", "Infinity", "-Infinity", "inf",
                             "0x1", "1_0", "1,5.",  "--1", "1-",  "- 1",      "1 e5"});
}

TEST(Syntax, aNumberBeyondTheRangeOfADoubleFailsTheDocumentWhereverItStands) {
    expectErrors({{"1E400", "number beyond the range of a double at line 1, column 1"},
                  {"[0, -1e400]", "number beyond the range of a double at line 1, column 5"},
                  {"[" + std::string(400, '9') + "]", "number beyond the range of a double at line 1, column 2"}});
    expectRefusedEverywhere({"1E400", "-1e400", "1e309", "1.7976931348623159e308", "-1.7976931348623159e308",
                             "1e99999999999999999999", "20000000000e299"});
    for (const char* number : {"1.7976931348623157e308", "-179.76931348623158e306", "0e99999999999999999999", "1e-400",
                               "0.0000000001e310", "10000000000e298"}) {
        EXPECT_EQ(errorOf(number), "") << number;
    }
}

TEST(Syntax, aNumberBeyondTheRangeIsNotHiddenByAnIntegerOfManyDigits) {
    EXPECT_EQ(errorOf("[99999999999999999999, 1e400]"), "number beyond the range of a double at line 1, column 24");
    EXPECT_EQ(errorOf("[99999999999999999999, 01]"), "superfluous leading zero at line 1, column 24");
}

TEST(Syntax, literalsAreSpelledOut) {
    expectErrors({{"[tru]", R"(expected "true" at line 1, column 2)"},
                  {"[fals", R"(expected "false" at line 1, column 2)"},
                  {"[nul]", R"(expected "null" at line 1, column 2)"},
                  {"[nulll]", R"(expected "," or "]" at line 1, column 6)"},
                  {"True", "expected a value at line 1, column 1"}});
    expectRefusedEverywhere(
        {"tru", "truee", "true1", "fals", "falsey", "nul", "nulls", "n", "t", "f", "TRUE", "None", "undefined"});
}

TEST(Syntax, stringsHoldNoRawControlCharacters) {
    expectErrors({{"[\"a\nb\"]", "unescaped control character U+000A in a string at line 1, column 4"},
                  {"[\"\x1F\"]", "unescaped control character U+001F in a string at line 1, column 3"},
                  {std::string("[\"\0\"]", 5), "unescaped control character U+0000 in a string at line 1, column 3"},
                  {"{\"\t\":1}", "unescaped control character U+0009 in a string at line 1, column 3"}});
    for (char c = 0; c < 0x20; ++c) {
        expectRefusedEverywhere({std::string("\"x") + c + "y\""});
    }
    EXPECT_EQ(errorOf("\"\x7F\""), "");
}

TEST(Syntax, controlCharactersBetweenTokensAreRefused) {
    for (char c = 0; c < 0x20; ++c) {
        if (c == '\t' || c == '\n' || c == '\r') {
            continue;
        }
        for (const std::string& document :
             {std::string("[1") + c + "]", std::string("[1,") + c + "2]", std::string("{\"a\"") + c + ":1}",
              std::string("{") + c + "\"a\":1}", std::string("[\"a\"") + c + "]", c + std::string("[]"),
              std::string("[]") + c, std::string("[") + c + "]"}) {
            EXPECT_NE(errorOf(document), "") << static_cast<int>(c) << ' ' << document;
        }
    }
}

TEST(Syntax, aBrokenEscapeIsNamed) {
    struct Case {
        std::string raw;
        std::string problem;
    };

    const std::string unknown = "invalid escape";
    const std::string digits = R"(expected four hexadecimal digits after "\u")";
    const std::string surrogate = "lone surrogate escape";
    for (const auto& [raw, problem] : std::vector<Case>{{R"(\x41)", unknown},
                                                        {R"(\U0041)", unknown},
                                                        {R"(\')", unknown},
                                                        {R"(\0)", unknown},
                                                        {"\\\n", unknown},
                                                        {R"(\u)", digits},
                                                        {R"(\u004)", digits},
                                                        {R"(\u00g1)", digits},
                                                        {R"(\u+041)", digits},
                                                        {R"(\u-041)", digits},
                                                        {R"(\u0x41)", digits},
                                                        {"\\u00\xC3\xA9", digits},
                                                        {R"(\ud800)", surrogate},
                                                        {R"(\ud800x)", surrogate},
                                                        {R"(\ud800\n)", surrogate},
                                                        {R"(\ud800\u0041)", surrogate},
                                                        {R"(\ud800\ud800)", surrogate},
                                                        {R"(\ud800\udc0)", surrogate},
                                                        {R"(\ud800\\udc00)", surrogate},
                                                        {R"(\udc00)", surrogate},
                                                        {R"(\udc00\ud800)", surrogate},
                                                        {R"(\udfff)", surrogate}}) {
        EXPECT_EQ(errorOf("\"" + raw + "\""), problem + " at line 1, column 2") << raw;
    }
    EXPECT_EQ(errorOf("\"\\"), unknown + " at line 1, column 2");
}

TEST(Syntax, keysAreAsStrictAsStrings) {
    for (const char* key : {R"(\x)", R"(\ud800)", R"(\udc00)", R"(\u12)", "\x01", "\xFF", "\xC3"}) {
        for (const char* format : {"{\"%\":1}", "{\"a\":{\"%\":1}}", "[[{\"%\":[]}]]"}) {
            std::string document = format;
            document.replace(document.find('%'), 1, key);
            EXPECT_NE(errorOf(document), "") << document;
        }
    }
}

TEST(Syntax, textIsWellFormedUTF8) {
    expectErrors({{"[\"a\xFF\"]", "invalid UTF-8 at line 1, column 4"},
                  {"[\"é\xC3\"]", "invalid UTF-8 at line 1, column 4"},
                  {"[\xFF]", R"(expected a value or "]" at line 1, column 2)"}});
    expectRefusedEverywhere({"\"\x80\"", "\"\xC0\xAF\"", "\"\xC1\xBF\"", "\"\xE0\x9F\xBF\"", "\"\xED\xA0\x80\"",
                             "\"\xED\xBF\xBF\"", "\"\xF0\x8F\xBF\xBF\"", "\"\xF4\x90\x80\x80\"", "\"\xF5\x80\x80\x80\"",
                             "\"\xC3\"", "\"\xE2\x82\"", "\"\xF0\x9F\x98\"", "\"\xFE\"", "\"\xFF\""});
}

TEST(Syntax, aByteOrderMarkIsRefused) {
    expectErrors({{"\uFEFF{}", "unexpected byte-order mark at line 1, column 1"},
                  {"\uFEFF", "unexpected byte-order mark at line 1, column 1"},
                  {std::string("\xFF\xFE{\0}\0", 6), "expected a value at line 1, column 1"},
                  {std::string("\xFE\xFF\0{\0}", 6), "expected a value at line 1, column 1"}});
    EXPECT_NE(errorOf("[\uFEFF1]"), "");
    EXPECT_EQ(errorOf("\"\uFEFF\""), "");
}

TEST(Syntax, bracketsMatch) {
    expectRefusedEverywhere(
        words(R"([ { ] } [} {] [[] [[} {"a":[} {"a":{] [{] [[1} {"a"} {"a","b"} {1:2} {null:1} {[]:1}
        ["a":1] ["a"b] [1:2] {"a"b:1} {"a":1,} [1,] [,] {,} : , [{}{}] [[][]] [1[]] {"a"::1} {"a":"b":1})"));
    expectRefusedEverywhere({"{\"a\":1 \"b\":2}", "[\"a\" \"b\"]"});
}

TEST(Syntax, whiteSpaceIsAllowedBetweenTokens) {
    EXPECT_EQ(errorOf(" \t\r\n{ \"a\" : [ 1 , true , null , \"x\" ] , \"b\" : { } , \"c\":[ ] }\r\n"), "");
}

TEST(Depth, theLimitHoldsForEmptyAndForFilledContainersAndAfterADocumentOfThatDepth) {
    const std::size_t depth = JSONReader::maximumDepth;
    static_assert(JSONReader::maximumDepth >= 512);
    for (int round = 0; round < 2; ++round) {
        for (const std::string core : {"", "1", "99999999999999999999"}) {
            EXPECT_EQ(errorOf(std::string(depth, '[') + core + std::string(depth, ']')), "") << core;
            EXPECT_EQ(errorOf(std::string(depth + 1, '[') + core + std::string(depth + 1, ']')),
                      "more than 1000 containers inside one another at line 1, column 1001");
        }
    }
}

TEST(Depth, aHundredThousandContainersFailCleanly) {
    const std::size_t depth = 100'000;
    const std::string error = "more than 1000 containers inside one another at line 1, column 1001";
    EXPECT_EQ(errorOf(std::string(depth, '[') + std::string(depth, ']')), error);
    EXPECT_EQ(errorOf(std::string(depth, '[')), error);
    std::string objects;
    for (std::size_t i = 0; i < depth; ++i) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(errorOf(objects + "1" + std::string(depth, '}')),
              "more than 1000 containers inside one another at line 1, column 5001");
}

TEST(Depth, siblingsDoNotAddUp) {
    std::string document = "[";
    for (int i = 0; i < 3000; ++i) {
        document += i == 0 ? "[[]]" : ",[{}]";
    }
    EXPECT_EQ(errorOf(document + "]"), "");
}
