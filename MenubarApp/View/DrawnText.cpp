#include "MenubarApp/View/DrawnText.h"

#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace menubar {

namespace {

/// Nearly every text is plain ASCII and is drawn as it stands.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; });
}

void clean(std::string& text) {
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

} // namespace

void makeDrawable(View& view) {
    const auto cleanTexts = [](auto& content) {
        if constexpr (requires { content.title; }) {
            clean(content.title);
        }
        if constexpr (requires { content.prompt; }) {
            clean(content.prompt);
        }
        if constexpr (requires { content.description; }) {
            clean(content.description);
        }
        if constexpr (requires { content.options; }) {
            std::ranges::for_each(content.options, clean);
        }
    };
    std::visit(cleanTexts, view.content);
    if (auto* text = std::get_if<Text>(&view.content)) { // the text of the others is a person's
        clean(text->text);
    }
    clean(view.tooltip);
    clean(view.accessibility.label);
    clean(view.accessibility.description);
    std::ranges::for_each(view.children, makeDrawable);
}

} // namespace menubar
