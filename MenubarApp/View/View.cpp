#include "MenubarApp/View/View.h"

namespace menubar {

View View::withId(std::string text) && {
    id = std::move(text);
    return std::move(*this);
}

View View::withWidth(double width) && {
    sizing.width = width;
    return std::move(*this);
}

View View::withHeight(double height) && {
    sizing.height = height;
    return std::move(*this);
}

View View::withMaxHeight(double height) && {
    sizing.maxHeight = height;
    return std::move(*this);
}

View View::fillingWidth() && {
    sizing.fillWidth = true;
    return std::move(*this);
}

View View::fillingHeight() && {
    sizing.fillHeight = true;
    return std::move(*this);
}

View View::withPadding(const Insets& padding) && {
    sizing.padding = padding;
    return std::move(*this);
}

View View::withHelp(std::string text) && {
    help = std::move(text);
    return std::move(*this);
}

View View::withAccessibility(std::string label, std::string description) && {
    accessibility = {.label = std::move(label), .description = std::move(description)};
    return std::move(*this);
}

} // namespace menubar
