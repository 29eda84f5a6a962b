#include "MenubarApp/View/ViewNode.h"

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <map>
#include <utility>

namespace menubar {

namespace {

constexpr Insets formPadding = Insets::all(20.0);
constexpr double formSpacing = 20.0;
constexpr Insets boxPadding = Insets::symmetric(10.0, 12.0);
constexpr double boxSpacing = 10.0;
constexpr double titleSpacing = 8.0;
constexpr double labelSpacing = 6.0;

using Kind = LayoutStyle::Kind;

/// Nearly every text is plain ASCII and is drawn as it stands.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; });
}

void makeDrawable(std::string& text) {
    if (text.size() > drawnTextLimit) {
        std::size_t end = drawnTextLimit;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
            --end; // inside a code point
        }
        text.resize(end);
        text += "…";
    }
    if (!isPlain(text)) {
        text = displayText(text, LineFeeds::keep);
    }
}

struct DrawableTexts {
    void operator()(Text& text) const { makeDrawable(text.text); }

    void operator()(Symbol& symbol) const { makeDrawable(symbol.description); }

    void operator()(Button& button) const { makeDrawable(button.title); }

    void operator()(Checkbox& checkbox) const { makeDrawable(checkbox.title); }

    void operator()(TextField& field) const { makeDrawable(field.prompt); }

    void operator()(Picker& picker) const { std::ranges::for_each(picker.options, makeDrawable); }

    template <class Content>
    void operator()(Content&) const {}
};

void setKey(ViewNode& node, std::string id) {
    node.key.id = std::move(id);
    node.key.kind = node.control ? node.control->content.index()
                                 : std::variant_size_v<Control::Content> + static_cast<std::size_t>(node.style.kind);
}

ViewNode makeControl(Control::Content content, LayoutStyle style = {}, std::string help = {},
                     Accessibility accessibility = {}) {
    ViewNode node{
        .style = style,
        .control =
            Control{.content = std::move(content), .help = std::move(help), .accessibility = std::move(accessibility)}};
    std::visit(DrawableTexts{}, node.control->content);
    makeDrawable(node.control->help);
    makeDrawable(node.control->accessibility.label);
    makeDrawable(node.control->accessibility.description);
    setKey(node, {});
    return node;
}

/// Siblings of one kind and identity are told apart by their order.
void numberSiblings(std::vector<ViewNode>& siblings) {
    std::map<std::pair<std::string_view, std::size_t>, std::size_t> seen;
    for (ViewNode& node : siblings) {
        node.key.ordinal = seen[{node.key.id, node.key.kind}]++;
    }
}

std::vector<ViewNode> makeNodes(std::vector<View>& views) {
    std::vector<ViewNode> nodes;
    nodes.reserve(views.size());
    for (View& view : views) {
        nodes.push_back(makeNode(std::move(view)));
    }
    return nodes;
}

/// The rows of a section with a hairline between each two, on their background.
ViewNode makeBox(std::vector<View>& rows) {
    ViewNode box =
        makeControl(Box{}, {.kind = Kind::vertical, .spacing = boxSpacing, .sizing = {.padding = boxPadding}});
    box.style.sizing.fillWidth = true;
    for (View& row : rows) {
        if (!box.children.empty()) {
            box.children.push_back(makeControl(Divider{}));
        }
        box.children.push_back(makeNode(std::move(row)));
    }
    numberSiblings(box.children);
    return box;
}

/// What a view becomes, without its key.
struct NodeMaker {
    View& view;

    ViewNode operator()(VStack& stack) const {
        return {.style = {.kind = Kind::vertical,
                          .spacing = stack.spacing,
                          .horizontal = stack.alignment,
                          .sizing = view.sizing},
                .children = makeNodes(view.children)};
    }

    ViewNode operator()(HStack& stack) const {
        return {.style = {.kind = Kind::horizontal,
                          .spacing = stack.spacing,
                          .vertical = stack.alignment,
                          .sizing = view.sizing},
                .children = makeNodes(view.children)};
    }

    ViewNode operator()(Spacer& spacer) const {
        return {.style = {.kind = Kind::spacer, .minLength = spacer.minLength, .sizing = view.sizing}};
    }

    ViewNode operator()(ScrollView& scroll) const { return makeScroll(scroll); }

    ViewNode operator()(Form&) const {
        view.sizing.padding = formPadding;
        return makeScroll({.spacing = formSpacing});
    }

    ViewNode operator()(Section& section) const {
        ViewNode node{.style = {.kind = Kind::vertical, .spacing = titleSpacing, .sizing = view.sizing}};
        node.style.sizing.fillWidth = true;
        if (!section.title.empty()) {
            node.children.push_back(makeControl(Text{.text = std::move(section.title), .font = Font::headline}));
        }
        if (!view.children.empty()) { // a box around nothing is only a smudge
            node.children.push_back(makeBox(view.children));
        }
        return node;
    }

    ViewNode operator()(Label& label) const {
        ViewNode node{.style = {.kind = Kind::horizontal,
                                .spacing = labelSpacing,
                                .vertical = VerticalAlignment::firstBaseline,
                                .sizing = view.sizing}};
        node.children.push_back(makeControl(Symbol{.name = std::move(label.symbol),
                                                   .description = std::move(label.symbolDescription),
                                                   .font = label.font,
                                                   .color = label.symbolColor}));
        node.children.push_back(makeControl(Text{.text = std::move(label.text),
                                                 .font = label.font,
                                                 .color = label.color,
                                                 .selectable = label.selectable},
                                            {}, std::move(view.help), std::move(view.accessibility)));
        return node;
    }

    ViewNode operator()(ProgressView& progress) const {
        ViewNode node{.style = {.kind = Kind::vertical,
                                .spacing = titleSpacing,
                                .horizontal = HorizontalAlignment::center,
                                .sizing = view.sizing}};
        node.children.push_back(makeControl(Spinner{}, {}, {}, {.label = progress.title}));
        node.children.push_back(makeControl(Text{.text = std::move(progress.title)}));
        return node;
    }

    template <class Content>
    ViewNode operator()(Content& content) const {
        return makeControl(std::move(content), {.sizing = view.sizing}, std::move(view.help),
                           std::move(view.accessibility));
    }

    [[nodiscard]] ViewNode makeScroll(ScrollView scroll) const {
        ViewNode node = makeControl(scroll, {.kind = Kind::scroll, .spacing = scroll.spacing, .sizing = view.sizing},
                                    std::move(view.help), std::move(view.accessibility));
        node.children = makeNodes(view.children);
        return node;
    }
};

void append(std::string& out, const ViewNode& node, std::size_t depth) {
    constexpr auto format = JSONValue::format;
    const Rect& frame = node.frame;
    out.append(depth * 2, ' ');
    if (node.control) {
        out += dump(*node.control);
    } else {
        switch (node.style.kind) {
        case Kind::vertical: out += "VStack"; break;
        case Kind::horizontal: out += "HStack"; break;
        case Kind::spacer: out += "Spacer"; break;
        case Kind::scroll:
        case Kind::leaf: break; // always with a control
        }
    }
    out += node.key.id.empty() ? "" : " #" + node.key.id;
    out +=
        " (" + format(frame.x) + "," + format(frame.y) + " " + format(frame.width) + "x" + format(frame.height) + ")";
    if (node.style.kind == Kind::scroll) {
        out += " content=" + format(node.contentSize.width) + "x" + format(node.contentSize.height);
    }
    out += '\n';
    for (const ViewNode& child : node.children) {
        append(out, child, depth + 1);
    }
}

} // namespace

ViewNode makeNode(View view) {
    ViewNode node = std::visit(NodeMaker{view}, view.content);
    setKey(node, std::move(view.id));
    numberSiblings(node.children);
    return node;
}

std::string dumpFrames(const ViewNode& root) {
    std::string out;
    append(out, root, 0);
    return out;
}

} // namespace menubar
