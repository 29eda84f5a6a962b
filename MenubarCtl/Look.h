#pragma once

#include "MenubarCore/Menu/CompactSetting.h"
#include "MenubarCore/Menu/StatusItemPresentation.h"
#include "MenubarCore/Status/StatusFile.h"
#include "MenubarCtl/Terminal.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// How text is dressed for a terminal. Pure.

/// How text may be written: how wide, and with which escape sequences.
struct TextStyle {
    std::size_t columns = 80;
    Styling styling = Styling::plain;
    bool cuts = true; ///< whether what is wider than the columns is cut; a reader that is no terminal gets it whole
};

/// A way of drawing some characters, as the parameters of the terminal's "select graphic rendition".
struct Look {
    std::string_view weight{}; ///< "1" bold, "2" dim, "7" reversed, or empty
    std::string_view colour{}; ///< or empty
};

[[nodiscard]] std::string drawn(std::string_view text, Look look, Styling styling);

[[nodiscard]] std::string_view colourOf(StatusItemPresentation::Tone tone);

/// The tone of a session's own level; `muted` where it needs no colour.
[[nodiscard]] StatusItemPresentation::Tone toneOf(SessionLevel level);

// The signs that stand for the item's symbols

[[nodiscard]] std::string_view signOf(std::string_view symbolName);
[[nodiscard]] std::string_view signOf(SessionLevel level);

/// Who decided on icon-only mode: the variable's name, "stored" or "built in".
[[nodiscard]] std::string_view originOf(CompactSetting::Source source);

/// The blanks that `text` lacks to take that many columns.
[[nodiscard]] std::string padding(std::string_view text, std::size_t columns);

/// The lines, each with its line feed.
[[nodiscard]] std::string textOf(const std::vector<std::string>& lines);

/// `text` safe to draw, cut to the columns where the style cuts.
[[nodiscard]] std::string fitted(std::string_view text, const TextStyle& style);

} // namespace menubar::ctl
