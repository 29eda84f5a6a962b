#pragma once

#include "MenubarApp/View/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// Names one native control while it lives; never used again afterwards.
using ControlId = std::uint64_t;

/// Holds the controls that lie directly in the window.
inline constexpr ControlId windowContent = 0;

/// How large a control wants to be.
struct Measured {
    double width = 0.0;
    double height = 0.0;
    double baseline = 0.0; ///< of its first line, from its top

    bool operator==(const Measured&) const = default;
};

/// How wide a view may be.
struct WidthRange {
    double min = 0.0;   ///< below it, it overflows
    double ideal = 0.0; ///< at least `min`
    bool grows = false; ///< takes more than `ideal` where there is more

    bool operator==(const WidthRange&) const = default;
};

/// What is known of a view that is on the screen. The first block is what a host was last told; the second remembers
/// what layout found out, until `forgetSizes`. It is no part of the view's value: all compare equal.
struct Shown {
    ControlId id = windowContent; ///< of the native control, when there is one
    std::string viewText{};       ///< what the view last said of a TextField or TextEditor, which may show otherwise
    std::optional<Rect> placed{};
    std::optional<Size> placedContent{};
    std::vector<ControlId> order{}; ///< the native controls directly inside, as the host has them

    std::optional<Measured> natural{};
    std::optional<WidthRange> widths{};
    bool growsInHeight = false; ///< valid with `widths`
    double sizedFor = -1.0;     ///< the width that `height` and `baseline` belong to
    double height = 0.0;
    double baseline = 0.0;
    Rect frame{}; ///< in the content of the nearest native control around it
    Size contentSize{};

    void forgetSizes() {
        natural.reset();
        widths.reset();
        sizedFor = -1.0;
    }

    friend bool operator==(const Shown&, const Shown&) { return true; }
};

} // namespace menubar
