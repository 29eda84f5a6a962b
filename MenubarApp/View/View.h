#pragma once

#include "MenubarApp/View/Controls.h"
#include "MenubarApp/View/Geometry.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// A user interface as a value: a tree of what to show, written afresh from the model whenever the model changes. It
/// holds no state and no native object; ViewPresenter keeps the native controls that match it.

enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom, firstBaseline };

/// Views below each other.
struct VStack {
    double spacing = 8.0;
    HorizontalAlignment alignment = HorizontalAlignment::leading;

    bool operator==(const VStack&) const = default;
};

/// Views beside each other. What is too wide gives way: first what can grow, then texts, the longest first.
struct HStack {
    double spacing = 8.0;
    VerticalAlignment alignment = VerticalAlignment::center;

    bool operator==(const HStack&) const = default;
};

/// Takes the room that nothing else in its stack wants.
struct Spacer {
    double minLength = 0.0;

    bool operator==(const Spacer&) const = default;
};

/// A scrolling column of sections that fills its room.
struct Form {
    bool operator==(const Form&) const = default;
};

/// Rows on a common background with hairlines between them, below a title (none when empty).
struct Section {
    std::string title{};

    bool operator==(const Section&) const = default;
};

/// A symbol and a text beside it, aligned at the first line.
struct Label {
    std::string symbol{};
    std::string symbolDescription{};
    std::string text{};
    Font font = Font::body;
    TextColor color = TextColor::primary;
    TextColor symbolColor = TextColor::primary;
    bool selectable = false;

    bool operator==(const Label&) const = default;
};

/// A spinning wheel above a text.
struct ProgressView {
    std::string title{};

    bool operator==(const ProgressView&) const = default;
};

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

struct View {
    using Content = std::variant<VStack, HStack, Spacer, Form, Section, Label, ProgressView, ScrollView, Text, Symbol,
                                 Divider, Button, Toggle, Checkbox, TextField, TextEditor, Stepper, Picker>;

    Content content;
    std::vector<View> children{}; ///< of stacks, ScrollView, Form and Section; empty for all others
    /// Tells a view from its siblings across changes, so that its native control lives on. Siblings of one kind with
    /// the same identity (none, as a rule) are told apart by their order.
    std::string id{};
    Sizing sizing{};
    std::string help{};            ///< of a control; a Label's belongs to its text
    Accessibility accessibility{}; ///< of a control; a Label's belongs to its text

    /// Handlers do not count.
    bool operator==(const View&) const = default;

    [[nodiscard]] View withId(std::string text) &&;
    [[nodiscard]] View withWidth(double width) &&;
    [[nodiscard]] View withHeight(double height) &&;
    [[nodiscard]] View withMaxHeight(double height) &&;
    [[nodiscard]] View fillingWidth() &&;
    [[nodiscard]] View fillingHeight() &&;
    [[nodiscard]] View withPadding(const Insets& padding) &&;
    [[nodiscard]] View withHelp(std::string text) &&;
    [[nodiscard]] View withAccessibility(std::string label, std::string description = {}) &&;
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

/// A stable text of the tree, one line a view and two blanks a level: kind, texts, what differs from the default.
[[nodiscard]] std::string dump(const View& view);

/// The same line for one control, without a line feed.
[[nodiscard]] std::string dump(const Control& control);

} // namespace menubar
