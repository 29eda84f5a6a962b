#pragma once

#include <algorithm>

namespace menubar {

/// Lengths are points. y grows downwards from the top left corner of what holds the view.

struct Size {
    double width = 0.0;
    double height = 0.0;

    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    bool operator==(const Rect&) const = default;
};

/// Room on each side of something.
struct Insets {
    double top = 0.0;
    double leading = 0.0;
    double bottom = 0.0;
    double trailing = 0.0;

    bool operator==(const Insets&) const = default;

    [[nodiscard]] static constexpr Insets all(double length) {
        return {.top = length, .leading = length, .bottom = length, .trailing = length};
    }

    [[nodiscard]] static constexpr Insets symmetric(double vertical, double horizontal) {
        return {.top = vertical, .leading = horizontal, .bottom = vertical, .trailing = horizontal};
    }

    [[nodiscard]] constexpr double horizontal() const { return leading + trailing; }

    [[nodiscard]] constexpr double vertical() const { return top + bottom; }
};

/// What is left inside; nothing, not less, where the insets are larger than the rectangle.
[[nodiscard]] constexpr Rect inset(const Rect& rect, const Insets& insets) {
    return {.x = rect.x + insets.leading,
            .y = rect.y + insets.top,
            .width = std::max(0.0, rect.width - insets.horizontal()),
            .height = std::max(0.0, rect.height - insets.vertical())};
}

} // namespace menubar
