#include "MenubarApp/View/Layout.h"

#include "MenubarApp/View/Flex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace menubar {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double narrowestText = 48.0;
constexpr double narrowestChoice = 80.0;
constexpr double narrowestField = 60.0;
constexpr double idealField = 160.0;
constexpr double editorHeight = 96.0;
constexpr double dividerHeight = 1.0;

/// The widths between which a control may be drawn, given its natural one.
WidthRange controlWidths(const View& view, double natural) {
    const auto is = [&view]<class... Content>() { return (std::holds_alternative<Content>(view.content) || ...); };
    if (is.operator()<Divider>()) {
        return {.min = 0.0, .ideal = 0.0, .grows = true};
    }
    if (is.operator()<TextField, TextEditor>()) {
        return {.min = narrowestField, .ideal = idealField, .grows = true};
    }
    const double least = is.operator()<Text>()               ? narrowestText
                         : is.operator()<Checkbox, Picker>() ? narrowestChoice
                                                             : natural;
    return {.min = std::min(natural, least), .ideal = natural, .grows = false};
}

enum class Kind { leaf, spacer, column, row, scroll };

Kind kind(const View& view) {
    if (std::holds_alternative<HStack>(view.content)) {
        return Kind::row;
    }
    if (std::holds_alternative<Spacer>(view.content)) {
        return Kind::spacer;
    }
    if (std::holds_alternative<ScrollView>(view.content)) {
        return Kind::scroll;
    }
    const bool isColumn = std::holds_alternative<VStack>(view.content) || std::holds_alternative<Box>(view.content);
    return isColumn ? Kind::column : Kind::leaf;
}

/// Between the views in it.
double spacing(const View& view) {
    return std::visit(
        [](const auto& content) {
            if constexpr (requires { content.spacing; }) {
                return content.spacing;
            } else {
                return 0.0;
            }
        },
        view.content);
}

struct Height {
    double height = 0.0;
    double baseline = 0.0;
};

double clampedWidth(const WidthRange& range, double available) {
    return std::max(range.min, range.grows ? available : std::min(range.ideal, available));
}

/// A scroll view that takes whatever height there is, and needs none.
bool growsByScrolling(const View& node) {
    return kind(node) == Kind::scroll && !node.sizing.maxHeight && !node.sizing.height;
}

class Layout {
public:
    explicit Layout(Measurer& measurer) : m_measurer(measurer) {}

    void place(View& node, const Rect& frame) {
        const Insets& padding = node.sizing.padding;
        node.shown.frame = frame;
        switch (kind(node)) {
        case Kind::leaf: node.shown.frame = inset(frame, padding); return;
        case Kind::spacer: return;
        case Kind::scroll: placeScroll(node); return;
        case Kind::column:
        case Kind::row: break;
        }
        // A native control starts its own coordinates.
        const Rect area =
            isControl(node) ? Rect{.x = 0.0, .y = 0.0, .width = frame.width, .height = frame.height} : frame;
        if (kind(node) == Kind::column) {
            placeColumn(node, inset(area, padding));
        } else {
            placeRow(node, inset(area, padding));
        }
    }

private:
    // Widths

    [[nodiscard]] const WidthRange& widths(View& node) {
        if (!node.shown.widths) {
            WidthRange range = contentWidths(node);
            const Sizing& sizing = node.sizing;
            if (sizing.width) {
                range = {.min = *sizing.width, .ideal = *sizing.width, .grows = false};
            }
            range.grows = range.grows || sizing.fillWidth;
            range.min += sizing.padding.horizontal();
            range.ideal += sizing.padding.horizontal();
            node.shown.widths = range;
        }
        return *node.shown.widths;
    }

    WidthRange contentWidths(View& node) {
        node.shown.growsInHeight = node.sizing.fillHeight;
        switch (kind(node)) {
        case Kind::leaf: return leafWidths(node);
        case Kind::spacer:
            return {.min = std::get<Spacer>(node.content).minLength,
                    .ideal = std::get<Spacer>(node.content).minLength,
                    .grows = true};
        case Kind::column: return columnWidths(node);
        case Kind::row: return rowWidths(node);
        case Kind::scroll: {
            WidthRange range = columnWidths(node);
            range.grows = true;
            node.shown.growsInHeight = growsByScrolling(node);
            return range;
        }
        }
        return {};
    }

    WidthRange leafWidths(View& node) {
        const bool isDivider = std::holds_alternative<Divider>(node.content);
        return controlWidths(node, isDivider ? 0.0 : natural(node).width);
    }

    WidthRange columnWidths(View& node) {
        WidthRange range;
        for (View& child : node.children) {
            const WidthRange& inner = widths(child);
            if (kind(child) == Kind::spacer) {
                node.shown.growsInHeight = true;
                continue;
            }
            range.min = std::max(range.min, inner.min);
            range.ideal = std::max(range.ideal, inner.ideal);
            range.grows = range.grows || inner.grows;
            node.shown.growsInHeight = node.shown.growsInHeight || child.shown.growsInHeight;
        }
        return range;
    }

    WidthRange rowWidths(View& node) {
        WidthRange range;
        for (View& child : node.children) {
            const WidthRange& inner = widths(child);
            range.min += inner.min;
            range.ideal += inner.ideal;
            range.grows = range.grows || inner.grows;
            node.shown.growsInHeight = node.shown.growsInHeight || child.shown.growsInHeight;
        }
        const double gaps = node.children.empty() ? 0.0 : spacing(node) * static_cast<double>(node.children.size() - 1);
        range.min += gaps;
        range.ideal += gaps;
        return range;
    }

    // Heights

    Height heightFor(View& node, double width) {
        if (node.shown.sizedFor != width) {
            const Sizing& sizing = node.sizing;
            Height result = contentHeight(node, width - sizing.padding.horizontal());
            if (sizing.height) {
                result.height = *sizing.height;
            }
            // The padding of a scroll view scrolls with its content.
            result.height += growsByScrolling(node) ? 0.0 : sizing.padding.vertical();
            if (sizing.maxHeight) {
                result.height = std::min(result.height, *sizing.maxHeight);
            }
            node.shown.height = result.height;
            node.shown.baseline = result.baseline + sizing.padding.top;
            node.shown.sizedFor = width;
        }
        return {.height = node.shown.height, .baseline = node.shown.baseline};
    }

    Height contentHeight(View& node, double width) {
        switch (kind(node)) {
        case Kind::leaf: return leafHeight(node, width);
        case Kind::spacer: return {};
        case Kind::column: return columnHeight(node, width);
        case Kind::row: return rowHeight(node, width);
        case Kind::scroll: return growsByScrolling(node) ? Height{} : columnHeight(node, width);
        }
        return {};
    }

    Height leafHeight(View& node, double width) {
        const auto& content = node.content;
        if (std::holds_alternative<Divider>(content)) {
            return {.height = dividerHeight, .baseline = dividerHeight};
        }
        const Measured& size = natural(node);
        if (std::holds_alternative<Text>(content) && width < size.width) {
            const Measured wrapped = measured(node, width);
            return {.height = wrapped.height, .baseline = wrapped.baseline};
        }
        if (std::holds_alternative<TextEditor>(content)) {
            return {.height = editorHeight, .baseline = size.baseline};
        }
        return {.height = size.height, .baseline = size.baseline};
    }

    Height heightInColumn(View& child, double width) {
        if (const auto* spacer = std::get_if<Spacer>(&child.content)) {
            return {.height = spacer->minLength, .baseline = 0.0};
        }
        return heightFor(child, clampedWidth(widths(child), width));
    }

    Height columnHeight(View& node, double width) {
        Height result;
        for (View& child : node.children) {
            const bool isFirst = &child == &node.children.front();
            const Height inner = heightInColumn(child, width);
            result.baseline = isFirst ? inner.baseline : result.baseline;
            result.height += inner.height + (isFirst ? 0.0 : spacing(node));
        }
        return result;
    }

    Height rowHeight(View& node, double width) {
        const std::vector<double> shares = distribute(node, width);
        double above = 0.0; // the baseline, where views are aligned by it
        double below = 0.0;
        double tallest = 0.0;
        for (std::size_t i = 0; i < node.children.size(); ++i) {
            const Height inner = heightFor(node.children[i], shares[i]);
            above = std::max(above, inner.baseline);
            below = std::max(below, inner.height - inner.baseline);
            tallest = std::max(tallest, inner.height);
        }
        return {.height = std::get<HStack>(node.content).alignment == VerticalAlignment::firstBaseline ? above + below
                                                                                                       : tallest,
                .baseline = above};
    }

    // Sharing a row's width

    std::vector<double> distribute(View& row, double available) {
        std::vector<double> shares;
        std::vector<WidthRange> ranges;
        std::vector<std::size_t> growing;
        std::vector<std::size_t> spacers;
        std::vector<std::size_t> rigid;
        double total = -spacing(row);
        for (View& child : row.children) {
            const std::size_t i = shares.size();
            ranges.push_back(widths(child));
            shares.push_back(ranges.back().ideal);
            total += shares.back() + spacing(row);
            (kind(child) == Kind::spacer ? spacers : ranges.back().grows ? growing : rigid).push_back(i);
        }
        if (total > available) {
            const double deficit = flexShrink(shares, ranges, growing, total - available);
            (void)flexShrink(shares, ranges, rigid, deficit); // what is missing even then overflows
        } else if (const auto& takers = growing.empty() ? spacers : growing; !takers.empty()) {
            flexGrow(shares, takers, available - total);
        }
        return shares;
    }

    // Frames

    void placeScroll(View& scroll) {
        const Insets& padding = scroll.sizing.padding;
        const double width = scroll.shown.frame.width;
        const double needed = columnHeight(scroll, width - padding.horizontal()).height + padding.vertical();
        scroll.shown.contentSize = {.width = width, .height = std::max(needed, scroll.shown.frame.height)};
        placeColumn(scroll,
                    inset({.x = 0.0, .y = 0.0, .width = width, .height = scroll.shown.contentSize.height}, padding));
    }

    void placeColumn(View& column, const Rect& area) {
        std::vector<double> lengths;
        std::vector<std::size_t> growing;
        std::vector<std::size_t> spacers;
        double total = -spacing(column);
        for (View& child : column.children) {
            const std::size_t i = lengths.size();
            lengths.push_back(heightInColumn(child, area.width).height);
            total += lengths.back() + spacing(column);
            if (kind(child) == Kind::spacer) {
                spacers.push_back(i);
            } else if (child.shown.growsInHeight) {
                growing.push_back(i);
            }
        }
        if (const auto& takers = growing.empty() ? spacers : growing; !takers.empty() && area.height > total) {
            flexGrow(lengths, takers, area.height - total);
        }
        const auto* stack = std::get_if<VStack>(&column.content);
        const auto alignment = stack == nullptr ? HorizontalAlignment::leading : stack->alignment;
        double y = area.y;
        for (std::size_t i = 0; i < column.children.size(); ++i) {
            View& child = column.children[i];
            const double width = kind(child) == Kind::spacer ? 0.0 : clampedWidth(widths(child), area.width);
            const double room = area.width - width;
            double x = area.x;
            switch (alignment) {
            case HorizontalAlignment::leading: break;
            case HorizontalAlignment::center: x += std::floor(room / 2.0); break;
            case HorizontalAlignment::trailing: x += room; break;
            }
            place(child, {.x = x, .y = y, .width = width, .height = lengths[i]});
            y += lengths[i] + spacing(column);
        }
    }

    void placeRow(View& row, const Rect& area) {
        const std::vector<double> shares = distribute(row, area.width);
        double baseline = 0.0;
        for (std::size_t i = 0; i < row.children.size(); ++i) {
            baseline = std::max(baseline, heightFor(row.children[i], shares[i]).baseline);
        }
        double x = area.x;
        for (std::size_t i = 0; i < row.children.size(); ++i) {
            View& child = row.children[i];
            const Height inner = heightFor(child, shares[i]);
            const double height = child.shown.growsInHeight ? std::max(inner.height, area.height) : inner.height;
            double y = area.y;
            switch (std::get<HStack>(row.content).alignment) {
            case VerticalAlignment::top: break;
            case VerticalAlignment::center: y += std::floor((area.height - height) / 2.0); break;
            case VerticalAlignment::bottom: y += area.height - height; break;
            case VerticalAlignment::firstBaseline:
                y += child.shown.growsInHeight ? 0.0 : baseline - inner.baseline;
                break;
            }
            place(child, {.x = x, .y = y, .width = shares[i], .height = height});
            x += shares[i] + spacing(row);
        }
    }

    // Measuring

    /// Whole points, so that sums of them stay whole.
    Measured measured(View& node, double width) {
        const Measured size = m_measurer.measure(node.shown.id, node, width);
        return {
            .width = std::ceil(size.width), .height = std::ceil(size.height), .baseline = std::round(size.baseline)};
    }

    const Measured& natural(View& node) {
        if (!node.shown.natural) {
            node.shown.natural = measured(node, infinity);
        }
        return *node.shown.natural;
    }

    Measurer& m_measurer;
};

} // namespace

void layOut(View& root, Size size, Measurer& measurer) {
    Layout(measurer).place(root,
                           {.x = 0.0, .y = 0.0, .width = std::floor(size.width), .height = std::floor(size.height)});
}

} // namespace menubar
