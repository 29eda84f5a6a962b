#include "MenubarCore/Text/Regex.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

Regex::Outcome search(std::string_view pattern, std::string_view text) {
    auto expression = Regex::compile(pattern);
    EXPECT_TRUE(expression) << pattern;
    RegexBudget budget = Regex::searchBudget;
    return expression ? expression->search(text, budget) : Regex::Outcome::tooCostly;
}

bool isFound(std::string_view pattern, std::string_view text) {
    return search(pattern, text) == Regex::Outcome::found;
}

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

const std::string endless = "(a+)+$";
const std::string endlessText = std::string(60, 'a') + "b";

} // namespace

TEST(Regex, searchesAnywhereInTheTextUnlessThePatternIsAnchored) {
    EXPECT_TRUE(isFound("[0-9]+", "abc 12"));
    EXPECT_FALSE(isFound("^[0-9]+", "abc 12"));
    EXPECT_TRUE(isFound("^[0-9]+(ms|s|m|h)$", "10m"));
    EXPECT_FALSE(isFound("^[0-9]+(ms|s|m|h)$", "10m "));
}

TEST(Regex, aDollarMatchesBeforeOneFinalLineBreakAsTheEngineDefinesIt) {
    EXPECT_TRUE(isFound("^10m$", "10m\n"));
    EXPECT_FALSE(isFound("^10m\\z", "10m\n"));
}

TEST(Regex, hasNoOptionsSoThatCaseMattersAndADotStopsAtALineBreak) {
    EXPECT_FALSE(isFound("abc", "ABC"));
    EXPECT_FALSE(isFound("a.b", "a\nb"));
    EXPECT_FALSE(isFound("^b", "a\nb"));
    EXPECT_TRUE(isFound("(?i)abc", "ABC")) << "a pattern may set its own";
}

TEST(Regex, countsCodePoints) {
    EXPECT_TRUE(isFound("^.$", "\U0001F600"));
    EXPECT_TRUE(isFound("^..$", "e\u0301"));
    EXPECT_TRUE(isFound("^\\p{L}+$", "\u00C4rger"));
    EXPECT_TRUE(isFound("\U0001F600", "a\U0001F600"));
}

TEST(Regex, illFormedBytesCountAsReplacementCharacters) {
    EXPECT_TRUE(isFound("^a\uFFFDb$", "a\xFF"
                                      "b"));
}

TEST(Regex, aTextMayHoldNulCharacters) {
    EXPECT_TRUE(isFound("b$", std::string_view("a\0b", 3)));
}

TEST(Regex, refusesWhatIsNoPattern) {
    for (const std::string_view pattern : {"", "[", "(", "a{2,1}", "*", "(?<n", "\\", "a{2000000000}"}) {
        EXPECT_FALSE(Regex::compile(pattern)) << pattern;
    }
    EXPECT_FALSE(Regex::compile(std::string(Regex::maximumPatternLength + 1, 'a')));
    EXPECT_TRUE(Regex::compile(std::string(Regex::maximumPatternLength, 'a')));
    EXPECT_FALSE(Regex::compile(std::string(2000, '(') + std::string(2000, ')'))) << "nested too deeply for the engine";
}

TEST(Regex, aPatternThatBacktracksForEverIsGivenUp) {
    EXPECT_EQ(search(endless, endlessText), Regex::Outcome::tooCostly);
    EXPECT_EQ(search("(.*)\\1c", std::string(Regex::maximumTextLength, 'a')), Regex::Outcome::tooCostly)
        << "few saved states, but each stands for a long comparison";
    EXPECT_EQ(search("(?:(?=a*)a)*c", std::string(Regex::maximumTextLength, 'a')), Regex::Outcome::tooCostly);
}

TEST(Regex, backtrackingThatIsTooDeepIsGivenUp) {
    RegexBudget plenty{.steps = 1'000'000'000'000};
    // Every saved state holds the bounds of every group.
    auto expression = Regex::compile("(?:" + repeated("(x)?", 100) + "s)*$");
    ASSERT_TRUE(expression);
    const std::string text(Regex::maximumTextLength, 's');
    EXPECT_EQ(expression->search(text, plenty), Regex::Outcome::tooCostly);
}

TEST(Regex, anOrdinarySearchOfTheLongestTextFitsItsBudget) {
    EXPECT_EQ(search("^[a-z]+(-[a-z]+)*$", std::string(Regex::maximumTextLength, 'a')), Regex::Outcome::found);
    EXPECT_EQ(search("^[a-z]+(-[a-z]+)*$", std::string(Regex::maximumTextLength - 1, 'a') + "!"),
              Regex::Outcome::notFound);
    EXPECT_EQ(search("x$", std::string(Regex::maximumTextLength, 'a')), Regex::Outcome::notFound);
    EXPECT_EQ(search("a", std::string(Regex::maximumTextLength + 1, 'a')), Regex::Outcome::tooCostly);
}

TEST(Regex, searchesAgainAfterItGaveUp) {
    auto expression = Regex::compile(endless);
    ASSERT_TRUE(expression);
    RegexBudget budget = Regex::searchBudget;
    EXPECT_EQ(expression->search(endlessText, budget), Regex::Outcome::tooCostly);
    EXPECT_EQ(budget.steps, 0);
    budget = Regex::searchBudget;
    EXPECT_EQ(expression->search("aaa", budget), Regex::Outcome::found);
    EXPECT_EQ(expression->search("bbb", budget), Regex::Outcome::notFound);
}

TEST(PatternChecker, acceptsWhatMatchesAndRefusesWhatDoesNot) {
    PatternChecker checker;
    EXPECT_TRUE(checker.accepts("^[0-9]+s$", "30s"));
    EXPECT_FALSE(checker.accepts("^[0-9]+s$", "30"));
    EXPECT_TRUE(checker.accepts("^[0-9]+s$", "31s"));
}

TEST(PatternChecker, aPatternThatDoesNotCompileAcceptsEverything) {
    PatternChecker checker;
    EXPECT_TRUE(checker.accepts("[", "x"));
    EXPECT_TRUE(checker.accepts("[", ""));
}

TEST(PatternChecker, aPatternThatOverranItsBudgetAcceptsEverythingFromThenOn) {
    PatternChecker checker;
    EXPECT_FALSE(checker.accepts(endless, "b"));
    EXPECT_TRUE(checker.accepts(endless, endlessText));
    EXPECT_TRUE(checker.accepts(endless, "b"));
    EXPECT_FALSE(checker.accepts("^a$", "b")) << "other patterns are still checked";
}

TEST(PatternChecker, aTextTooLongToSearchIsAcceptedAndCostsThePatternNothing) {
    PatternChecker checker;
    EXPECT_TRUE(checker.accepts("^a$", std::string(Regex::maximumTextLength + 1, 'b')));
    EXPECT_FALSE(checker.accepts("^a$", "b"));
}

TEST(PatternChecker, allPatternsTogetherAreBounded) {
    PatternChecker checker;
    // Each of these alone would take the whole bound of one search.
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(checker.accepts(endless + std::string(static_cast<std::size_t>(i), '$'), endlessText));
    }
    EXPECT_TRUE(checker.accepts("^a$", "b")) << "the common bound is spent";
}
