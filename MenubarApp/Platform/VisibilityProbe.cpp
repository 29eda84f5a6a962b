#include "MenubarApp/Platform/VisibilityProbe.h"

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

std::string describe(const VisibilityProbe& probe) {
    return "window x=" + points(probe.x) + " width=" + points(probe.width) +
           " onscreen=" + word(probe.onscreen, "yes", "no") +
           " occlusion=" + word(probe.occlusionVisible, "visible", "occluded");
}

} // namespace menubar
