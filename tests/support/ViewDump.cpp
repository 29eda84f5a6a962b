#include "tests/support/ViewDump.h"

#include "MenubarCore/JSON/JSONValue.h"

#include "tests/support/Literal.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace menubar {

namespace {

std::string_view name(Font font) {
    switch (font) {
    case Font::body: return "body";
    case Font::headline: return "headline";
    case Font::caption: return "caption";
    case Font::monospaced: return "monospaced";
    }
    return "";
}

std::string_view name(TextColor color) {
    switch (color) {
    case TextColor::primary: return "primary";
    case TextColor::secondary: return "secondary";
    case TextColor::red: return "red";
    case TextColor::orange: return "orange";
    }
    return "";
}

std::string_view name(ButtonStyle style) {
    switch (style) {
    case ButtonStyle::bordered: return "bordered";
    case ButtonStyle::borderless: return "borderless";
    case ButtonStyle::small: return "small";
    }
    return "";
}

std::string_view name(KeyShortcut shortcut) {
    switch (shortcut) {
    case KeyShortcut::none: return "none";
    case KeyShortcut::defaultAction: return "return";
    case KeyShortcut::cancelAction: return "escape";
    case KeyShortcut::commandS: return "cmd-s";
    }
    return "";
}

std::string_view name(HorizontalAlignment alignment) {
    switch (alignment) {
    case HorizontalAlignment::leading: return "leading";
    case HorizontalAlignment::center: return "center";
    case HorizontalAlignment::trailing: return "trailing";
    }
    return "";
}

std::string_view name(VerticalAlignment alignment) {
    switch (alignment) {
    case VerticalAlignment::top: return "top";
    case VerticalAlignment::center: return "center";
    case VerticalAlignment::bottom: return "bottom";
    case VerticalAlignment::firstBaseline: return "baseline";
    }
    return "";
}

/// One line of a dump: words separated by blanks; what is at its default is left out.
class Line {
public:
    explicit Line(std::string& out) : m_out(out) {}

    Line& word(std::string_view text) {
        m_out += m_isEmpty ? "" : " ";
        m_out += text;
        m_isEmpty = false;
        return *this;
    }

    Line& flag(bool isSet, std::string_view text) { return isSet ? word(text) : *this; }

    /// Line feeds and quotes stay visible, so that one view stays on one line.
    Line& quoted(std::string_view text, std::string_view label = {}) {
        return word(std::string(label) + literal(text));
    }

    Line& text(std::string_view label, std::string_view text) { return text.empty() ? *this : quoted(text, label); }

    Line& number(std::string_view label, double value) { return word(std::string(label) + JSONValue::format(value)); }

    Line& number(std::string_view label, const std::optional<double>& value) {
        return value ? number(label, *value) : *this;
    }

    template <class Enumeration>
    Line& choice(Enumeration value, Enumeration usual) {
        return flag(value != usual, name(value));
    }

private:
    std::string& m_out;
    bool m_isEmpty = true;
};

void append(Line& line, const VStack& stack) {
    line.word("VStack").number("spacing=", stack.spacing).choice(stack.alignment, HorizontalAlignment::leading);
}

void append(Line& line, const HStack& stack) {
    line.word("HStack").number("spacing=", stack.spacing).choice(stack.alignment, VerticalAlignment::center);
}

void append(Line& line, const Spacer& spacer) {
    line.word("Spacer");
    if (spacer.minLength != 0.0) {
        line.number("min=", spacer.minLength);
    }
}

void append(Line& line, const ScrollView& scroll) {
    line.word("ScrollView").number("spacing=", scroll.spacing);
}

void append(Line& line, const Box&) {
    line.word("Box");
}

void append(Line& line, const Text& text) {
    line.word("Text").quoted(text.text).choice(text.font, Font::body).choice(text.color, TextColor::primary);
    line.flag(text.selectable, "selectable");
    if (text.lineLimit != 0) {
        line.number("lines=", text.lineLimit);
    }
}

void append(Line& line, const Symbol& symbol) {
    line.word("Symbol").word(symbol.name).text("described=", symbol.description);
    line.choice(symbol.font, Font::body).choice(symbol.color, TextColor::primary);
}

void append(Line& line, const Divider&) {
    line.word("Divider");
}

void append(Line& line, const Button& button) {
    line.word("Button").quoted(button.title).flag(!button.symbol.empty(), button.symbol);
    line.choice(button.style, ButtonStyle::bordered);
    if (button.shortcut != KeyShortcut::none) {
        line.word("key=" + std::string(name(button.shortcut)));
    }
    line.flag(!button.enabled, "disabled");
}

void append(Line& line, const Toggle& toggle) {
    line.word("Toggle").word(toggle.isOn ? "on" : "off").flag(!toggle.enabled, "disabled");
}

void append(Line& line, const Checkbox& checkbox) {
    line.word("Checkbox").quoted(checkbox.title).word(checkbox.isOn ? "on" : "off");
    line.flag(!checkbox.enabled, "disabled");
}

void append(Line& line, const TextField& field) {
    line.word("TextField").quoted(field.text).text("prompt=", field.prompt).flag(!field.enabled, "disabled");
}

void append(Line& line, const TextEditor& editor) {
    line.word("TextEditor").quoted(editor.text).flag(!editor.enabled, "disabled");
}

void append(Line& line, const Stepper& stepper) {
    line.word("Stepper").word(JSONValue::format(stepper.value));
    line.number("min=", stepper.min).number("max=", stepper.max);
    if (stepper.step != 1.0) {
        line.number("step=", stepper.step);
    }
    line.flag(!stepper.enabled, "disabled");
}

void append(Line& line, const Picker& picker) {
    line.word("Picker");
    for (std::size_t i = 0; i < picker.options.size(); ++i) {
        line.quoted(picker.options[i], picker.selection == i ? "*" : "");
    }
    line.flag(!picker.enabled, "disabled");
}

void append(Line& line, const Spinner&) {
    line.word("Spinner");
}

void append(Line& line, const Sizing& sizing) {
    line.number("width=", sizing.width).number("height=", sizing.height).number("max-height=", sizing.maxHeight);
    line.flag(sizing.fillWidth, "fill-width").flag(sizing.fillHeight, "fill-height");
    if (const Insets& padding = sizing.padding; padding != Insets{}) {
        line.word("padding=" + JSONValue::format(padding.top) + "," + JSONValue::format(padding.leading) + "," +
                  JSONValue::format(padding.bottom) + "," + JSONValue::format(padding.trailing));
    }
}

void append(Line& line, const Shown& shown, bool scrolls) {
    constexpr auto format = JSONValue::format;
    const Rect& frame = shown.frame;
    line.word("(" + format(frame.x) + "," + format(frame.y) + " " + format(frame.width) + "x" + format(frame.height) +
              ")");
    if (scrolls) {
        line.word("content=" + format(shown.contentSize.width) + "x" + format(shown.contentSize.height));
    }
}

void append(std::string& out, const View& view, std::size_t depth, bool withFrames) {
    out.append(depth * 2, ' ');
    Line line(out);
    const std::size_t start = out.size();
    std::visit([&](const auto& content) { append(line, content); }, view.content);
    if (withFrames && !isControl(view)) {
        out.resize(std::min(out.size(), out.find(' ', start))); // how a stack places shows in the frames
    }
    const auto other = [&] {
        line.text("help=", view.tooltip).text("label=", view.accessibility.label);
        line.text("description=", view.accessibility.description);
    };
    if (withFrames) {
        other();
    }
    line.flag(!view.id.empty(), "#" + view.id);
    if (withFrames) {
        append(line, view.shown, std::holds_alternative<ScrollView>(view.content));
    } else {
        append(line, view.sizing);
        other();
    }
    out += '\n';
    for (const View& child : view.children) {
        append(out, child, depth + 1, withFrames);
    }
}

} // namespace

std::string dump(const View& view) {
    std::string out;
    append(out, view, 0, false);
    return out;
}

std::string dumpFrames(const View& root) {
    std::string out;
    append(out, root, 0, true);
    return out;
}

} // namespace menubar
