#include "MenubarCore/JSON/SyntaxCheck.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using menubar::SyntaxCheck::withWideIntegersAsDoubles;

TEST(WideIntegers, getAnExponentWhereTheyDoNotFitSixtyFourBits) {
    struct Case {
        const char* document;
        const char* result;
    };

    for (const auto& [document, result] :
         std::vector<Case>{{"18446744073709551616", "18446744073709551616e0"},
                           {"-9223372036854775809", "-9223372036854775809e0"},
                           {"[1,99999999999999999999 ,{\"a\":-99999999999999999999}]",
                            "[1,99999999999999999999e0 ,{\"a\":-99999999999999999999e0}]"}}) {
        EXPECT_EQ(withWideIntegersAsDoubles(document), result);
    }
}

TEST(WideIntegers, everythingElseStaysAsItIs) {
    for (const std::string document :
         {"", "-", "18446744073709551615", "-9223372036854775808", "[0,-1,null]", "99999999999999999999.0",
          "99999999999999999999e1", "1.99999999999999999999", "1e99999999999999999999", "\"99999999999999999999\"",
          "\"\\\"99999999999999999999\"", "\"\\\\99999999999999999999", "\"open \\", "\"", "+99999999999999999999",
          "--99999999999999999999", "true99999999999999999999"}) {
        EXPECT_EQ(withWideIntegersAsDoubles(document), document);
    }
}
