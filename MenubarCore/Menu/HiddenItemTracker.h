#pragma once

#include "MenubarCore/Text/Date.h"
#include "MenubarCore/Text/TimeZone.h"

#include <optional>
#include <string>
#include <string_view>

namespace menubar {

/// Whether the status item is on screen, as far as the window server tells.
enum class ItemVisibility { visible, hidden, unknown };

/// `unknown` unless both are present and the width (points) is greater than 0.
[[nodiscard]] ItemVisibility itemVisibility(std::optional<bool> onscreen, std::optional<double> width);

/// Remembers since when the status item has been hidden. An unknown reading neither starts nor ends a hidden spell, so
/// that each spell is announced once.
struct HiddenItemTracker {
    enum class Transition { becameHidden, becameVisible, unchanged };

    std::optional<Date> hiddenSince; ///< first reading of the current hidden spell

    [[nodiscard]] bool isHidden() const { return hiddenSince.has_value(); }

    Transition observe(ItemVisibility visibility, Date now);

    bool operator==(const HiddenItemTracker&) const = default;
};

/// The fixed texts about a hidden item.
namespace HiddenItemCopy {

inline constexpr std::string_view reason = "menu bar full or behind the notch";
inline constexpr std::string_view notificationTitle = "ostrel menu bar icon is hidden";
extern const std::string_view notificationBody;

[[nodiscard]] std::string logLine(bool compact);
[[nodiscard]] std::string menuLine(Date since, const TimeZone& timeZone);

} // namespace HiddenItemCopy

} // namespace menubar
