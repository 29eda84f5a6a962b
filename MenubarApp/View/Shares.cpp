#include "MenubarApp/View/Shares.h"

#include <algorithm>
#include <cmath>

namespace menubar {

namespace {

/// The shares at `which` when none is wider than `level`.
class Levelled {
public:
    Levelled(const std::vector<WidthRange>& ranges, std::span<const std::size_t> which)
        : m_ranges(ranges), m_which(which) {}

    [[nodiscard]] double share(std::size_t i, double level) const {
        return std::max(m_ranges[i].min, std::min(m_ranges[i].ideal, std::floor(level)));
    }

    [[nodiscard]] double sum(double level) const {
        double sum = 0.0;
        for (const std::size_t i : m_which) {
            sum += share(i, level);
        }
        return sum;
    }

    /// The highest level between 0 and `high` whose sum is at most `goal`, or less than one point below it. Whole
    /// points decide, so halving the interval ends.
    [[nodiscard]] double highest(double high, double goal) const {
        double low = 0.0;
        while (high - low > 0.5) {
            const double level = (low + high) / 2.0;
            (sum(level) <= goal ? low : high) = level;
        }
        return low;
    }

private:
    const std::vector<WidthRange>& m_ranges;
    std::span<const std::size_t> m_which;
};

} // namespace

double shrinkShares(std::vector<double>& shares, const std::vector<WidthRange>& ranges,
                    std::span<const std::size_t> which, double deficit) {
    if (deficit <= 0.0 || which.empty()) {
        return deficit;
    }
    double widest = 0.0;
    double total = 0.0;
    for (const std::size_t i : which) {
        widest = std::max(widest, shares[i]);
        total += shares[i];
    }
    const Levelled levelled(ranges, which);
    const double goal = std::max(total - deficit, levelled.sum(0.0));
    const double level = levelled.highest(std::ceil(widest), goal);
    double left = goal - levelled.sum(level);
    for (const std::size_t i : which) {
        // Less than a point for each of them is left over: the first ones that may take it.
        const double share = levelled.share(i, level);
        const double more = std::clamp(ranges[i].ideal - share, 0.0, left);
        shares[i] = share + more;
        left -= more;
    }
    return deficit - (total - goal);
}

void growShares(std::vector<double>& shares, std::span<const std::size_t> which, double extra) {
    const double each = std::floor(extra / static_cast<double>(which.size()));
    double remainder = extra - (each * static_cast<double>(which.size()));
    for (const std::size_t i : which) {
        const double more = std::min(1.0, remainder);
        shares[i] += each + more;
        remainder -= more;
    }
}

} // namespace menubar
