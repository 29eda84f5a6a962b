#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct URegularExpression;

namespace menubar {

/// How much work searches may still do, in characters looked at (an estimate that errs upwards). What is spent is
/// spent: several searches that share a budget are bounded together. Counted rather than timed, so that the same input
/// always gives the same answer.
struct RegexBudget {
    std::int64_t steps = 0;
};

/// A regular expression as the platform's own engine reads it: searching anywhere in UTF-8 text, by code points, with
/// no options. An ill-formed sequence in the text counts as U+FFFD. One search at a time on each object.
class Regex {
public:
    enum class Outcome {
        found,
        notFound,
        tooCostly, ///< the budget was spent, the backtracking too deep, or the text longer than `maximumTextLength`
    };

    /// Of one search, about a tenth of a second at most: backtracking can take exponential time otherwise.
    static constexpr RegexBudget searchBudget{.steps = 50'000'000};
    /// In bytes. The work between two looks at the budget grows with the text's length, so that is bounded too.
    static constexpr std::size_t maximumTextLength = 4096;
    static constexpr std::size_t maximumPatternLength = 4096;

    /// Nothing when `pattern` is no regular expression, or longer than `maximumPatternLength` bytes.
    [[nodiscard]] static std::optional<Regex> compile(std::string_view pattern);

    /// Takes what it uses off `budget`.
    [[nodiscard]] Outcome search(std::string_view text, RegexBudget& budget);

private:
    struct Close {
        void operator()(URegularExpression* expression) const;
    };

    explicit Regex(URegularExpression* expression) : m_expression(expression) {}

    std::unique_ptr<URegularExpression, Close> m_expression;
};

/// Checks texts against patterns that come from outside. A pattern that cannot be used accepts every text: one that
/// does not compile, and from then on one whose search overran its budget. So a pattern that backtracks for ever costs
/// its bound once and then checks nothing; the program that uses the value has the last word. A text that is too long
/// to search is accepted too.
///
/// Each pattern is compiled once. All searches of one object share a bound, after which every text is accepted.
class PatternChecker {
public:
    static constexpr RegexBudget totalBudget{.steps = 10 * Regex::searchBudget.steps};

    [[nodiscard]] bool accepts(std::string_view pattern, std::string_view text);

private:
    std::map<std::string, std::optional<Regex>, std::less<>> m_expressions; ///< empty: cannot be used
    RegexBudget m_left = totalBudget;
};

} // namespace menubar
