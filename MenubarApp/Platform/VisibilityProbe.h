#pragma once

#include <optional>
#include <string>

namespace menubar {

/// One reading of the status item's window; `StatusItem::readVisibility` takes it. A field is absent when the window
/// server did not tell.
struct VisibilityProbe {
    std::optional<bool> occlusionVisible; ///< only logged, never used to decide
    std::optional<bool> onscreen;
    std::optional<double> x;     ///< points from the left edge of the main display
    std::optional<double> width; ///< points

    bool operator==(const VisibilityProbe&) const = default;
};

/// For the log, for example "window x=1412 width=0 onscreen=no occlusion=occluded"; "?" for what is absent.
[[nodiscard]] std::string describe(const VisibilityProbe& probe);

} // namespace menubar
