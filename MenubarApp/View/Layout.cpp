#include "MenubarApp/View/Layout.h"

#include "MenubarApp/View/Shares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace menubar {

namespace {

using Kind = LayoutStyle::Kind;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double narrowestText = 48.0;
constexpr double narrowestChoice = 80.0;
constexpr double narrowestField = 60.0;
constexpr double idealField = 160.0;
constexpr double editorHeight = 96.0;
constexpr double dividerHeight = 1.0;

/// The widths between which a control may be drawn, given its natural one.
struct ControlWidths {
    double natural;

    WidthRange operator()(const Text&) const { return shrinksTo(narrowestText); }

    WidthRange operator()(const Checkbox&) const { return shrinksTo(narrowestChoice); }

    WidthRange operator()(const Picker&) const { return shrinksTo(narrowestChoice); }

    WidthRange operator()(const TextField&) const {
        return {.min = narrowestField, .ideal = idealField, .grows = true};
    }

    WidthRange operator()(const TextEditor&) const {
        return {.min = narrowestField, .ideal = idealField, .grows = true};
    }

    WidthRange operator()(const Divider&) const { return {.min = 0.0, .ideal = 0.0, .grows = true}; }

    template <class Content>
    WidthRange operator()(const Content&) const {
        return {.min = natural, .ideal = natural, .grows = false};
    }

    [[nodiscard]] WidthRange shrinksTo(double least) const {
        return {.min = std::min(natural, least), .ideal = natural, .grows = false};
    }
};

struct Height {
    double height = 0.0;
    double baseline = 0.0;
};

double clampedWidth(const WidthRange& range, double available) {
    return std::max(range.min, range.grows ? available : std::min(range.ideal, available));
}

/// A scroll view that takes whatever height there is, and needs none.
bool growsByScrolling(const ViewNode& node) {
    return node.style.kind == Kind::scroll && !node.style.sizing.maxHeight && !node.style.sizing.height;
}

class Layout {
public:
    explicit Layout(Measurer& measurer) : m_measurer(measurer) {}

    void place(ViewNode& node, const Rect& frame);

private:
    [[nodiscard]] const WidthRange& widths(ViewNode& node);
    [[nodiscard]] WidthRange contentWidths(ViewNode& node);
    [[nodiscard]] WidthRange leafWidths(ViewNode& node);
    [[nodiscard]] WidthRange columnWidths(ViewNode& node);
    [[nodiscard]] WidthRange rowWidths(ViewNode& node);

    Height heightFor(ViewNode& node, double width);
    [[nodiscard]] Height contentHeight(ViewNode& node, double width);
    [[nodiscard]] Height leafHeight(ViewNode& node, double width);
    [[nodiscard]] Height columnHeight(ViewNode& node, double width);
    [[nodiscard]] Height rowHeight(ViewNode& node, double width);

    [[nodiscard]] std::vector<double> distribute(ViewNode& row, double available);
    void placeColumn(ViewNode& column, const Rect& area);
    void placeRow(ViewNode& row, const Rect& area);
    void placeScroll(ViewNode& scroll);

    [[nodiscard]] const Measured& natural(ViewNode& node);
    [[nodiscard]] Measured measured(ViewNode& node, double width);

    Measurer& m_measurer;
};

// Widths

const WidthRange& Layout::widths(ViewNode& node) {
    if (!node.widths) {
        WidthRange range = contentWidths(node);
        const Sizing& sizing = node.style.sizing;
        if (sizing.width) {
            range = {.min = *sizing.width, .ideal = *sizing.width, .grows = false};
        }
        range.grows = range.grows || sizing.fillWidth;
        range.min += sizing.padding.horizontal();
        range.ideal += sizing.padding.horizontal();
        node.widths = range;
    }
    return *node.widths;
}

WidthRange Layout::contentWidths(ViewNode& node) {
    node.growsInHeight = node.style.sizing.fillHeight;
    switch (node.style.kind) {
    case Kind::leaf: return leafWidths(node);
    case Kind::spacer: return {.min = node.style.minLength, .ideal = node.style.minLength, .grows = true};
    case Kind::vertical: return columnWidths(node);
    case Kind::horizontal: return rowWidths(node);
    case Kind::scroll: {
        WidthRange range = columnWidths(node);
        range.grows = true;
        node.growsInHeight = growsByScrolling(node);
        return range;
    }
    }
    return {};
}

WidthRange Layout::leafWidths(ViewNode& node) {
    const bool isDivider = std::holds_alternative<Divider>(node.control->content);
    return std::visit(ControlWidths{isDivider ? 0.0 : natural(node).width}, node.control->content);
}

WidthRange Layout::columnWidths(ViewNode& node) {
    WidthRange range;
    for (ViewNode& child : node.children) {
        const WidthRange& inner = widths(child);
        if (child.style.kind == Kind::spacer) {
            node.growsInHeight = true;
            continue;
        }
        range.min = std::max(range.min, inner.min);
        range.ideal = std::max(range.ideal, inner.ideal);
        range.grows = range.grows || inner.grows;
        node.growsInHeight = node.growsInHeight || child.growsInHeight;
    }
    return range;
}

WidthRange Layout::rowWidths(ViewNode& node) {
    WidthRange range;
    for (ViewNode& child : node.children) {
        const WidthRange& inner = widths(child);
        range.min += inner.min;
        range.ideal += inner.ideal;
        range.grows = range.grows || inner.grows;
        node.growsInHeight = node.growsInHeight || child.growsInHeight;
    }
    const double gaps =
        node.children.empty() ? 0.0 : node.style.spacing * static_cast<double>(node.children.size() - 1);
    range.min += gaps;
    range.ideal += gaps;
    return range;
}

// Heights

Height Layout::heightFor(ViewNode& node, double width) {
    if (node.sizedFor != width) {
        const Sizing& sizing = node.style.sizing;
        Height result = contentHeight(node, width - sizing.padding.horizontal());
        if (sizing.height) {
            result.height = *sizing.height;
        }
        // The padding of a scroll view scrolls with its content.
        result.height += growsByScrolling(node) ? 0.0 : sizing.padding.vertical();
        if (sizing.maxHeight) {
            result.height = std::min(result.height, *sizing.maxHeight);
        }
        node.height = result.height;
        node.baseline = result.baseline + sizing.padding.top;
        node.sizedFor = width;
    }
    return {.height = node.height, .baseline = node.baseline};
}

Height Layout::contentHeight(ViewNode& node, double width) {
    switch (node.style.kind) {
    case Kind::leaf: return leafHeight(node, width);
    case Kind::spacer: return {};
    case Kind::vertical: return columnHeight(node, width);
    case Kind::horizontal: return rowHeight(node, width);
    case Kind::scroll: return growsByScrolling(node) ? Height{} : columnHeight(node, width);
    }
    return {};
}

Height Layout::leafHeight(ViewNode& node, double width) {
    const auto& content = node.control->content;
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

Height Layout::columnHeight(ViewNode& node, double width) {
    Height result;
    bool isFirst = true;
    for (ViewNode& child : node.children) {
        const WidthRange& range = widths(child);
        const bool isSpacer = child.style.kind == Kind::spacer;
        const Height inner = isSpacer ? Height{.height = child.style.minLength, .baseline = 0.0}
                                      : heightFor(child, clampedWidth(range, width));
        result.baseline = isFirst ? inner.baseline : result.baseline;
        result.height += inner.height + (isFirst ? 0.0 : node.style.spacing);
        isFirst = false;
    }
    return result;
}

Height Layout::rowHeight(ViewNode& node, double width) {
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
    return {.height = node.style.vertical == VerticalAlignment::firstBaseline ? above + below : tallest,
            .baseline = above};
}

// Sharing a row's width

std::vector<double> Layout::distribute(ViewNode& row, double available) {
    std::vector<double> shares;
    std::vector<WidthRange> ranges;
    std::vector<std::size_t> growing;
    std::vector<std::size_t> spacers;
    std::vector<std::size_t> rigid;
    double total = -row.style.spacing;
    for (ViewNode& child : row.children) {
        const std::size_t i = shares.size();
        ranges.push_back(widths(child));
        shares.push_back(ranges.back().ideal);
        total += shares.back() + row.style.spacing;
        (child.style.kind == Kind::spacer ? spacers : ranges.back().grows ? growing : rigid).push_back(i);
    }
    if (total > available) {
        const double deficit = shrinkShares(shares, ranges, growing, total - available);
        (void)shrinkShares(shares, ranges, rigid, deficit); // what is missing even then overflows
    } else if (const auto& takers = growing.empty() ? spacers : growing; !takers.empty()) {
        growShares(shares, takers, available - total);
    }
    return shares;
}

// Frames

void Layout::place(ViewNode& node, const Rect& frame) {
    const Insets& padding = node.style.sizing.padding;
    node.frame = frame;
    switch (node.style.kind) {
    case Kind::leaf: node.frame = inset(frame, padding); return;
    case Kind::spacer: return;
    case Kind::scroll: placeScroll(node); return;
    case Kind::vertical:
    case Kind::horizontal: break;
    }
    // A native control starts its own coordinates.
    const Rect area = node.control ? Rect{.x = 0.0, .y = 0.0, .width = frame.width, .height = frame.height} : frame;
    if (node.style.kind == Kind::vertical) {
        placeColumn(node, inset(area, padding));
    } else {
        placeRow(node, inset(area, padding));
    }
}

void Layout::placeScroll(ViewNode& scroll) {
    const Insets& padding = scroll.style.sizing.padding;
    const double width = scroll.frame.width;
    const double needed = columnHeight(scroll, width - padding.horizontal()).height + padding.vertical();
    scroll.contentSize = {.width = width, .height = std::max(needed, scroll.frame.height)};
    placeColumn(scroll, inset({.x = 0.0, .y = 0.0, .width = width, .height = scroll.contentSize.height}, padding));
}

void Layout::placeColumn(ViewNode& column, const Rect& area) {
    std::vector<double> lengths;
    std::vector<std::size_t> growing;
    std::vector<std::size_t> spacers;
    double total = -column.style.spacing;
    for (ViewNode& child : column.children) {
        const bool isSpacer = child.style.kind == Kind::spacer;
        const WidthRange& range = widths(child);
        if (isSpacer) {
            spacers.push_back(lengths.size());
        } else if (child.growsInHeight) {
            growing.push_back(lengths.size());
        }
        lengths.push_back(isSpacer ? child.style.minLength : heightFor(child, clampedWidth(range, area.width)).height);
        total += lengths.back() + column.style.spacing;
    }
    if (const auto& takers = growing.empty() ? spacers : growing; !takers.empty() && area.height > total) {
        growShares(lengths, takers, area.height - total);
    }
    double y = area.y;
    for (std::size_t i = 0; i < column.children.size(); ++i) {
        ViewNode& child = column.children[i];
        const double width = child.style.kind == Kind::spacer ? 0.0 : clampedWidth(widths(child), area.width);
        const double room = area.width - width;
        double x = area.x;
        switch (column.style.horizontal) {
        case HorizontalAlignment::leading: break;
        case HorizontalAlignment::center: x += std::floor(room / 2.0); break;
        case HorizontalAlignment::trailing: x += room; break;
        }
        place(child, {.x = x, .y = y, .width = width, .height = lengths[i]});
        y += lengths[i] + column.style.spacing;
    }
}

void Layout::placeRow(ViewNode& row, const Rect& area) {
    const std::vector<double> shares = distribute(row, area.width);
    double baseline = 0.0;
    for (std::size_t i = 0; i < row.children.size(); ++i) {
        baseline = std::max(baseline, heightFor(row.children[i], shares[i]).baseline);
    }
    double x = area.x;
    for (std::size_t i = 0; i < row.children.size(); ++i) {
        ViewNode& child = row.children[i];
        const Height inner = heightFor(child, shares[i]);
        const double height = child.growsInHeight ? std::max(inner.height, area.height) : inner.height;
        double y = area.y;
        switch (row.style.vertical) {
        case VerticalAlignment::top: break;
        case VerticalAlignment::center: y += std::floor((area.height - height) / 2.0); break;
        case VerticalAlignment::bottom: y += area.height - height; break;
        case VerticalAlignment::firstBaseline: y += child.growsInHeight ? 0.0 : baseline - inner.baseline; break;
        }
        place(child, {.x = x, .y = y, .width = shares[i], .height = height});
        x += shares[i] + row.style.spacing;
    }
}

// Measuring

/// Whole points, so that sums of them stay whole.
Measured Layout::measured(ViewNode& node, double width) {
    const Measured size = m_measurer.measure(node.id, *node.control, width);
    return {.width = std::ceil(size.width), .height = std::ceil(size.height), .baseline = std::round(size.baseline)};
}

const Measured& Layout::natural(ViewNode& node) {
    if (!node.natural) {
        node.natural = measured(node, infinity);
    }
    return *node.natural;
}

} // namespace

void layOut(ViewNode& root, Size size, Measurer& measurer) {
    Layout(measurer).place(root,
                           {.x = 0.0, .y = 0.0, .width = std::floor(size.width), .height = std::floor(size.height)});
}

} // namespace menubar
