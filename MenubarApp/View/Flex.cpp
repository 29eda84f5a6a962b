#include "MenubarApp/View/Flex.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace menubar {

double flexShrink(std::vector<double>& lengths, const std::vector<WidthRange>& ranges,
                  std::span<const std::size_t> which, double deficit) {
    if (deficit <= 0.0 || which.empty()) {
        return deficit;
    }
    double longest = 0.0;
    double total = 0.0;
    for (const std::size_t i : which) {
        longest = std::max(longest, lengths[i]);
        total += lengths[i];
    }
    const auto levelled = [&](std::size_t i, double level) {
        return std::clamp(level, ranges[i].min, ranges[i].ideal);
    };
    const auto sum = [&](double level) {
        double result = 0.0;
        for (const std::size_t i : which) {
            result += levelled(i, level);
        }
        return result;
    };
    // The highest whole level at which all of them together take no more than they may.
    const double goal = std::max(total - deficit, sum(0.0));
    const auto levels = std::views::iota(1, static_cast<int>(std::ceil(longest)) + 1);
    const auto tooHigh = std::ranges::partition_point(levels, [&](int level) { return sum(level) <= goal; });
    const auto level = static_cast<double>(tooHigh - levels.begin());
    double left = goal - sum(level);
    for (const std::size_t i : which) {
        // Less than a point for each of them is left over: the first ones that may take it.
        const double length = levelled(i, level);
        const double more = std::clamp(ranges[i].ideal - length, 0.0, left);
        lengths[i] = length + more;
        left -= more;
    }
    return deficit - (total - goal);
}

void flexGrow(std::vector<double>& lengths, std::span<const std::size_t> which, double extra) {
    const double each = std::floor(extra / static_cast<double>(which.size()));
    double remainder = extra - (each * static_cast<double>(which.size()));
    for (const std::size_t i : which) {
        const double more = std::min(1.0, remainder);
        lengths[i] += each + more;
        remainder -= more;
    }
}

} // namespace menubar
