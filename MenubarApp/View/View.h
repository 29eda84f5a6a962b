#pragma once

#include "MenubarApp/View/Controls.h"
#include "MenubarApp/View/Geometry.h"
#include "MenubarApp/View/Shown.h"

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// How much room a view takes where its kind leaves that open.
struct Sizing {
    std::optional<double> width{};     ///< exactly; without the padding
    std::optional<double> height{};    ///< exactly; without the padding
    std::optional<double> maxHeight{}; ///< of a ScrollView, which is then as high as its content up to this
    bool fillWidth = false;
    bool fillHeight = false;
    /// Inside the edges of what holds views, around everything else. A control with negative padding reaches that far
    /// into what is around its place.
    Insets padding{};

    bool operator==(const Sizing&) const = default;
};

/// A user interface as a value: a tree of what to show, written afresh from the model whenever the model changes.
/// Reconciler keeps the native controls that match it, and notes in the tree what is on the screen.
struct View {
    using Content = std::variant<VStack, HStack, Spacer, ScrollView, Box, Text, Symbol, Divider, Button, Toggle,
                                 Checkbox, TextField, TextEditor, Stepper, Picker, Spinner>;

    Content content;
    std::vector<View> children{}; ///< of stacks, ScrollView and Box; empty for all others
    /// Tells a view from its siblings across changes, so that its native control lives on. Siblings of one kind with
    /// the same identity (none, as a rule) are told apart by their order.
    std::string id{};
    Sizing sizing{};
    std::string tooltip{};         ///< of a control: shown while the pointer rests on it; none when empty
    Accessibility accessibility{}; ///< of a control
    Shown shown{};                 ///< for those who show it

    /// Neither handlers nor what is on the screen count.
    bool operator==(const View&) const = default;

    [[nodiscard]] View withId(std::string text) && { return with(id, std::move(text)); }

    [[nodiscard]] View withWidth(double width) && { return with(sizing.width, width); }

    [[nodiscard]] View withHeight(double height) && { return with(sizing.height, height); }

    [[nodiscard]] View withMaxHeight(double height) && { return with(sizing.maxHeight, height); }

    [[nodiscard]] View fillingWidth() && { return with(sizing.fillWidth, true); }

    [[nodiscard]] View fillingHeight() && { return with(sizing.fillHeight, true); }

    [[nodiscard]] View withPadding(const Insets& padding) && { return with(sizing.padding, padding); }

    [[nodiscard]] View withTooltip(std::string text) && { return with(tooltip, std::move(text)); }

    [[nodiscard]] View withAccessibility(std::string label, std::string description = {}) && {
        return with(accessibility, {.label = std::move(label), .description = std::move(description)});
    }

private:
    template <class T>
    View with(T& member, std::type_identity_t<T> value) {
        member = std::move(value);
        return std::move(*this);
    }
};

/// A view of `content` that holds `children` in this order.
template <class... Views>
[[nodiscard]] View view(View::Content content, Views&&... children) {
    View result{.content = std::move(content)};
    result.children.reserve(sizeof...(children));
    (result.children.push_back(std::forward<Views>(children)), ...);
    return result;
}

/// A view of `content` that holds `children`.
[[nodiscard]] inline View viewOf(View::Content content, std::vector<View> children) {
    return {.content = std::move(content), .children = std::move(children)};
}

/// See isNative.
[[nodiscard]] bool isControl(const View& view);

/// Whether a host shows both in the same way, wherever they lie and whatever is in them.
[[nodiscard]] bool looksAlike(const View& left, const View& right);

// What is composed of these

/// A symbol and a text beside it, aligned at the first line.
[[nodiscard]] View label(Symbol symbol, Text text);

/// A small text beside or below what it is about.
[[nodiscard]] View caption(std::string text, TextColor color = TextColor::secondary);

/// A spinning wheel above a text.
[[nodiscard]] View progressView(const std::string& title);

/// Rows on a common background with hairlines between them, below a title (none when empty).
[[nodiscard]] View section(std::string title, std::vector<View> rows);

/// A scrolling column of sections that fills its room.
[[nodiscard]] View form(std::vector<View> sections);

} // namespace menubar
