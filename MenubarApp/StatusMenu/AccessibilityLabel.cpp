#include "MenubarApp/StatusMenu/AccessibilityLabel.h"

namespace menubar {

std::string accessibilityLabel(const StatusItemPresentation& presentation) {
    std::string label = "ostrel";
    // "--" says that no percentage is known; read aloud it says nothing.
    if (!presentation.title.empty() && presentation.title != "--") {
        label += ", " + presentation.title;
    }
    if (!presentation.tooltip.empty()) {
        label += ", " + presentation.tooltip;
    }
    return label;
}

} // namespace menubar
