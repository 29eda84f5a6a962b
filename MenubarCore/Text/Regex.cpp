#include "MenubarCore/Text/Regex.h"

#include <algorithm>
#include <utility>

#include <unicode/uregex.h>
#include <unicode/utext.h>

namespace menubar {

namespace {

/// The engine's own unit: it reports after this many saved states.
constexpr std::int64_t statesPerReport = 10'000;
/// Bytes of saved states, in place of ICU's 8 MB: a pattern may be kept for each of thousands of settings.
constexpr std::int32_t stackLimit = 2 << 20;

struct CloseText {
    void operator()(UText* text) const { utext_close(text); }
};

using Text = std::unique_ptr<UText, CloseText>;

Text open(std::string_view text, UErrorCode& error) {
    return Text(utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &error));
}

/// What one search may use, and what it costs to look at the text once.
struct Meter {
    std::int64_t steps;
    std::int64_t textLength;

    UBool charge(std::int64_t cost) {
        steps -= cost;
        return static_cast<UBool>(steps > 0);
    }
};

/// A saved state may stand for one scan or comparison of the whole text, which the engine does not count.
UBool chargeReport(const void* context, std::int32_t) {
    auto* meter = static_cast<Meter*>(const_cast<void*>(context));
    return meter->charge(statesPerReport * (meter->textLength + 16));
}

/// So may one attempt at one starting position.
UBool chargeAttempt(const void* context, std::int64_t) {
    auto* meter = static_cast<Meter*>(const_cast<void*>(context));
    return meter->charge(meter->textLength);
}

} // namespace

void Regex::Close::operator()(URegularExpression* expression) const {
    uregex_close(expression);
}

std::optional<Regex> Regex::compile(std::string_view pattern) {
    if (pattern.size() > maximumPatternLength) {
        return std::nullopt;
    }
    UErrorCode error = U_ZERO_ERROR;
    const Text source = open(pattern, error);
    Regex result(uregex_openUText(source.get(), 0, nullptr, &error)); // keeps its own copy of the pattern
    uregex_setStackLimit(result.m_expression.get(), stackLimit, &error);
    return U_SUCCESS(error) ? std::optional(std::move(result)) : std::nullopt;
}

Regex::Outcome Regex::search(std::string_view text, RegexBudget& budget) {
    if (text.size() > maximumTextLength) {
        return Outcome::tooCostly;
    }
    UErrorCode error = U_ZERO_ERROR;
    const Text subject = open(text, error);
    URegularExpression* const expression = m_expression.get();
    Meter meter{.steps = budget.steps, .textLength = static_cast<std::int64_t>(text.size())};
    uregex_setUText(expression, subject.get(), &error);
    uregex_setMatchCallback(expression, chargeReport, &meter, &error);
    uregex_setFindProgressCallback(expression, chargeAttempt, &meter, &error);
    const bool found = uregex_find(expression, -1, &error);
    budget.steps = std::max<std::int64_t>(meter.steps, 0);
    if (U_FAILURE(error)) {
        return Outcome::tooCostly;
    }
    return found ? Outcome::found : Outcome::notFound;
}

bool PatternChecker::accepts(std::string_view pattern, std::string_view text) {
    auto known = m_expressions.find(pattern);
    if (known == m_expressions.end()) {
        known = m_expressions.emplace(pattern, Regex::compile(pattern)).first;
    }
    std::optional<Regex>& expression = known->second;
    if (!expression || m_left.steps == 0 || text.size() > Regex::maximumTextLength) {
        return true;
    }
    const std::int64_t lent = std::min(m_left.steps, Regex::searchBudget.steps);
    RegexBudget budget{lent};
    const Regex::Outcome outcome = expression->search(text, budget);
    m_left.steps -= lent - budget.steps;
    switch (outcome) {
    case Regex::Outcome::found: return true;
    case Regex::Outcome::notFound: return false;
    case Regex::Outcome::tooCostly: expression.reset(); return true;
    }
    return true;
}

} // namespace menubar
