#pragma once

#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCtl/KeyReader.h"
#include "MenubarCtl/Look.h"
#include "MenubarCtl/Terminal.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace menubar::ctl {

/// The menu on a whole terminal, as a value: which item is selected, which part is in view, what is drawn.
///
/// At the top the item as the menu bar shows it, at the bottom a line about the keys (or a message); between them as
/// much of the menu as there is room for. Nothing is selected at first. The selection follows its item when the menu is
/// made anew; where the item has gone, it stays near its place.
class MenuScreen {
public:
    /// Shows another menu, or the same one made anew.
    void setMenu(StatusMenu menu);

    void setPresentation(StatusItemPresentation presentation) { m_presentation = std::move(presentation); }

    /// Takes the place of the line about the keys, until the next key; empty for none.
    void setMessage(std::string message) { m_message = std::move(message); }

    void resize(TerminalSize size);

    /// Moves the selection by one of the keys that move it. One press scrolls no further than one screenful: whatever
    /// lies between two items that can be chosen comes into view.
    void move(Key key);

    /// The item that is selected and in view; null when there is none. One out of view is brought into view instead,
    /// for nobody chooses what is not seen. Valid until the menu changes.
    [[nodiscard]] const MenuItem* choose();

    /// As many lines as the terminal has rows, or fewer, none wider than it.
    [[nodiscard]] std::vector<std::string> lines(Styling styling) const;

private:
    /// What an item is called while the menu around it changes.
    [[nodiscard]] std::string identity(const MenuItem& item) const;
    [[nodiscard]] bool canChoose(std::size_t index) const;
    [[nodiscard]] std::size_t windowRows() const;
    [[nodiscard]] std::size_t headRows() const;
    [[nodiscard]] std::optional<std::size_t> nextChoice(std::size_t from, bool isDown) const;
    [[nodiscard]] bool isInView(std::size_t index) const;
    void step(bool isDown);
    void page(bool isDown);
    void select(std::size_t index);
    void scrollTo(std::size_t index);
    void clampTop();

    StatusMenu m_menu;
    StatusItemPresentation m_presentation;
    std::string m_message;
    TerminalSize m_size;
    std::size_t m_top = 0; // the first item in view
    std::optional<std::size_t> m_selected;
};

} // namespace menubar::ctl
