#pragma once

#include "MenubarApp/View/View.h"
#include "MenubarApp/View/ViewHost.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace menubar {

/// Tells a node from its siblings: identity, kind, and the place among those that agree in both.
struct NodeKey {
    std::string id{};
    std::size_t kind = 0;
    std::size_t ordinal = 0;

    auto operator<=>(const NodeKey&) const = default;
};

/// How a node places what it holds, and how much room it takes.
struct LayoutStyle {
    enum class Kind { leaf, spacer, vertical, horizontal, scroll };

    Kind kind = Kind::leaf;
    double spacing = 0.0;
    double minLength = 0.0; ///< of a spacer
    HorizontalAlignment horizontal = HorizontalAlignment::leading;
    VerticalAlignment vertical = VerticalAlignment::center;
    Sizing sizing{};

    bool operator==(const LayoutStyle&) const = default;
};

/// How wide a node may be.
struct WidthRange {
    double min = 0.0;   ///< below it, it overflows
    double ideal = 0.0; ///< at least `min`
    bool grows = false; ///< takes more than `ideal` where there is more

    bool operator==(const WidthRange&) const = default;
};

/// One node of what is on the screen: a native control, or a stack that only places others. The first block comes from
/// the view; the second is what a host was last told; the third remembers what layout found out, until `forgetSizes`.
struct ViewNode {
    NodeKey key{};
    LayoutStyle style{};
    std::optional<Control> control{}; ///< absent for stacks and spacers
    std::vector<ViewNode> children{};

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
};

/// The tree of nodes that shows `view`: forms, sections, labels and progress views become the simpler things they are
/// made of, and texts are made safe to draw (control characters replaced, the excessively long ones cut). The text
/// that a field edits stays as it is.
[[nodiscard]] ViewNode makeNode(View view);

/// The longest text that is drawn, in bytes. What is longer ends in "…" there.
inline constexpr std::size_t drawnTextLimit = 20'000;

/// A stable text of a laid-out tree: one line a node with its frame, "(x,y width x height)".
[[nodiscard]] std::string dumpFrames(const ViewNode& root);

} // namespace menubar
