#pragma once

#include <cstdint>
#include <optional>
#include <span>
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

/// A window as the window server lists it.
struct ListedWindow {
    std::int64_t number = 0;
    std::int64_t owner = 0; ///< process id
    std::int64_t level = 0; ///< status items have one of their own
    bool onscreen = false;
    std::optional<double> x;
    std::optional<double> width;
};

/// What the list tells of the status item's window, which has that number and belongs to that process; nothing when
/// there is none (some systems name another owner). Whether it is on screen stays absent, too, when it is not and no
/// other window of its level is either: then all items are hidden, by a full screen or a lock, and not this one for
/// want of room.
[[nodiscard]] VisibilityProbe probeWindow(std::span<const ListedWindow> windows, std::int64_t number,
                                          std::int64_t owner);

/// For the log, for example "window x=1412 width=0 onscreen=no occlusion=occluded"; "?" for what is absent.
[[nodiscard]] std::string describe(const VisibilityProbe& probe);

} // namespace menubar
