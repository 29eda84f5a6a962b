#include "MenubarApp/Settings/Stepping.h"

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/Digits.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace menubar {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::size_t mostDigits = 14;

} // namespace

double steppedNumber(double value, const SettingSpec& spec, StepDirection direction) {
    const bool isDuration = spec.control.kind() == SettingControl::Kind::duration;
    const double min = isDuration ? std::max(0.0, spec.min.value_or(0.0)) : spec.min.value_or(-infinity);
    const double max = std::max(min, spec.max.value_or(infinity));
    switch (direction) {
    case StepDirection::up: return std::max(value, std::clamp(value + SettingSpec::step, min, max));
    case StepDirection::down: return std::min(value, std::clamp(value - SettingSpec::step, min, max));
    }
    return value;
}

std::optional<double> leadingNumber(std::string_view duration) {
    const std::string_view digits = takeDigits(duration);
    std::int64_t number = 0;
    if (digits.empty() || digits.size() > mostDigits ||
        std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc()) {
        return std::nullopt;
    }
    return static_cast<double>(number);
}

std::optional<std::string> steppedDuration(std::string_view duration, const SettingSpec& spec,
                                           StepDirection direction) {
    const auto number = leadingNumber(duration);
    if (!number) {
        return std::nullopt;
    }
    std::string result = JSONValue::format(steppedNumber(*number, spec, direction));
    (void)takeDigits(duration);
    return result.append(duration);
}

} // namespace menubar
