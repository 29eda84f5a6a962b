#include "MenubarApp/Platform/VisibilityProbe.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace menubar {

namespace {

/// Whole points; large enough for any finite double.
std::string points(std::optional<double> value) {
    if (!value) {
        return "?";
    }
    std::array<char, 328> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.0f", *value);
    return buffer.data();
}

const char* word(std::optional<bool> value, const char* yes, const char* no) {
    return !value ? "?" : *value ? yes : no;
}

} // namespace

VisibilityProbe probeWindow(std::span<const ListedWindow> windows, std::int64_t number, std::int64_t owner) {
    const auto item = std::ranges::find_if(
        windows, [&](const ListedWindow& window) { return window.number == number && window.owner == owner; });
    if (item == windows.end()) {
        return {};
    }
    const bool isMenuBarShown = std::ranges::any_of(
        windows, [&](const ListedWindow& window) { return window.level == item->level && window.onscreen; });
    return {.occlusionVisible = std::nullopt,
            .onscreen = isMenuBarShown ? std::optional(item->onscreen) : std::nullopt,
            .x = item->x,
            .width = item->width};
}

std::string describe(const VisibilityProbe& probe) {
    return "window x=" + points(probe.x) + " width=" + points(probe.width) +
           " onscreen=" + word(probe.onscreen, "yes", "no") +
           " occlusion=" + word(probe.occlusionVisible, "visible", "occluded");
}

} // namespace menubar
