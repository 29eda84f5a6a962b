#include "MenubarCtl/MenuScreen.h"

#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCtl/TextOutput.h"

#include <algorithm>
#include <utility>

namespace menubar::ctl {

namespace {

/// What only a desktop can do. There it does something, here it is dimmed.
bool needsADesktop(const MenuItem& item) {
    return item.action == MenuAction::openSettings || item.action == MenuAction::quit;
}

/// As much as fits: how to end it is said in any case.
std::string keysLine(std::size_t linesBelow, std::size_t columns) {
    const std::string keys = "↑↓ move · Return chooses · q ends";
    const std::string all = linesBelow == 0 ? keys : std::to_string(linesBelow) + " more lines · " + keys;
    for (const std::string& text : {all, keys}) {
        if (displayColumns(text) + 2 <= columns) {
            return text;
        }
    }
    return "q ends";
}

} // namespace

std::string MenuScreen::identity(const MenuItem& item) const {
    if (const SessionStatus* session = m_menu.sessionByTag(item.tag)) {
        return "session " + session->sessionId.value_or(session->shortId.value_or(item.title));
    }
    return item.path ? "file " + *item.path : std::string(rawText(item.action)) + " " + item.title;
}

void MenuScreen::setMenu(StatusMenu menu) {
    const std::string selected = m_selected ? identity(m_menu.items[*m_selected]) : "";
    m_menu = std::move(menu);
    for (MenuItem& item : m_menu.items) {
        if (needsADesktop(item)) {
            item.enabled = false;
            item.keyEquivalent.clear();
        }
    }
    if (m_selected) {
        const std::size_t before = *m_selected;
        m_selected.reset();
        for (std::size_t i = 0; i < m_menu.items.size() && !m_selected; ++i) {
            m_selected = canChoose(i) && identity(m_menu.items[i]) == selected ? std::optional(i) : std::nullopt;
        }
        if (!m_selected && !m_menu.items.empty()) {
            const std::size_t near = std::min(before, m_menu.items.size() - 1);
            m_selected = canChoose(near) ? near : nextChoice(near, true);
            m_selected = m_selected ? m_selected : nextChoice(near, false);
        } else if (m_selected && *m_selected != before && isInView(before)) {
            scrollTo(*m_selected);
        }
    }
    clampTop();
}

void MenuScreen::resize(TerminalSize size) {
    m_size = size;
    clampTop();
    if (m_selected) {
        scrollTo(*m_selected);
    }
}

bool MenuScreen::canChoose(std::size_t index) const {
    const MenuItem& item = m_menu.items[index];
    return item.kind == MenuItem::Kind::item && item.enabled && item.action != MenuAction::none;
}

/// On a low terminal the rows are better spent on the menu.
std::size_t MenuScreen::headRows() const {
    constexpr std::size_t lowest = 6;
    return m_size.rows < lowest ? 0 : 2;
}

std::size_t MenuScreen::windowRows() const {
    const std::size_t others = headRows() + (m_size.rows > 1 ? 1 : 0);
    return std::max<std::size_t>(1, m_size.rows - others);
}

/// The nearest item that can be chosen, beyond `from`.
std::optional<std::size_t> MenuScreen::nextChoice(std::size_t from, bool isDown) const {
    while (isDown ? from + 1 < m_menu.items.size() : from > 0) {
        from = isDown ? from + 1 : from - 1;
        if (canChoose(from)) {
            return from;
        }
    }
    return std::nullopt;
}

bool MenuScreen::isInView(std::size_t index) const {
    return index >= m_top && index < m_top + windowRows();
}

void MenuScreen::clampTop() {
    const std::size_t rows = windowRows();
    m_top = std::min(m_top, m_menu.items.size() > rows ? m_menu.items.size() - rows : 0);
}

void MenuScreen::scrollTo(std::size_t index) {
    const std::size_t rows = windowRows();
    m_top = std::clamp(m_top, index + 1 > rows ? index + 1 - rows : 0, index);
    clampTop();
}

/// Selects it; at the first and the last item that can be chosen, what lies beyond comes into view as far as it fits.
void MenuScreen::select(std::size_t index) {
    m_selected = index;
    if (!nextChoice(index, false) && index < windowRows()) {
        m_top = 0;
    }
    if (!nextChoice(index, true) && m_menu.items.size() - index <= windowRows()) {
        m_top = m_menu.items.size(); // clamped below
    }
    clampTop();
    scrollTo(index);
}

void MenuScreen::step(bool isDown) {
    const std::size_t rows = windowRows();
    std::optional<std::size_t> next;
    if (!m_selected) {
        next = !isDown ? std::nullopt : canChoose(0) ? std::optional<std::size_t>(0) : nextChoice(0, true);
    } else if (isInView(*m_selected) || (*m_selected > m_top) != isDown) {
        next = nextChoice(*m_selected, isDown);
    } else {
        next = m_selected; // it was scrolled out of view, and this is the way back to it
    }
    const bool isNear = next && (isDown ? *next < m_top + (2 * rows) - 1 : *next + rows > m_top);
    if (next && isNear) {
        select(*next);
    } else if (isDown) {
        m_top += std::max<std::size_t>(1, rows - 1);
        clampTop();
    } else {
        m_top -= std::min(m_top, std::max<std::size_t>(1, rows - 1));
    }
}

void MenuScreen::page(bool isDown) {
    const std::size_t rows = windowRows();
    const std::size_t distance = std::max<std::size_t>(1, rows - 1);
    const std::size_t from = m_selected && isInView(*m_selected) ? *m_selected : m_top;
    m_top = isDown ? m_top + distance : m_top - std::min(m_top, distance);
    clampTop();
    // The selection keeps its row as far as there is something to choose near it.
    const std::size_t target =
        isDown ? std::min(from + distance, m_menu.items.size()) : from - std::min(from, distance);
    std::optional<std::size_t> best;
    for (std::size_t i = m_top; i < std::min(m_top + rows, m_menu.items.size()); ++i) {
        const auto away = [&](std::size_t index) { return index > target ? index - target : target - index; };
        if (canChoose(i) && (!best || away(i) < away(*best))) {
            best = i;
        }
    }
    m_selected = best ? best : m_selected;
}

void MenuScreen::move(Key key) {
    m_message.clear();
    if (m_menu.items.empty()) {
        return;
    }
    switch (key) {
    case Key::up: step(false); return;
    case Key::down: step(true); return;
    case Key::pageUp: page(false); return;
    case Key::pageDown: page(true); return;
    case Key::home:
        m_top = 0;
        m_selected.reset();
        if (const auto first = canChoose(0) ? std::optional<std::size_t>(0) : nextChoice(0, true)) {
            m_selected = *first < windowRows() ? first : std::nullopt;
        }
        return;
    case Key::end:
        m_top = m_menu.items.size();
        clampTop();
        if (const auto last = nextChoice(m_menu.items.size(), false); last && isInView(*last)) {
            m_selected = last;
        }
        return;
    case Key::choose:
    case Key::quit: return;
    }
}

const MenuItem* MenuScreen::choose() {
    m_message.clear();
    if (!m_selected) {
        return nullptr;
    }
    if (!isInView(*m_selected)) {
        scrollTo(*m_selected);
        return nullptr;
    }
    return canChoose(*m_selected) ? &m_menu.items[*m_selected] : nullptr;
}

std::vector<std::string> MenuScreen::lines(Styling styling) const {
    const TextStyle style{.columns = m_size.columns, .styling = styling};
    std::vector<std::string> lines;
    if (headRows() > 0) {
        lines = headLines(m_presentation, style);
    }
    const std::size_t rows = windowRows();
    const std::size_t end = std::min(m_top + rows, m_menu.items.size());
    for (std::size_t i = m_top; i < end; ++i) {
        if (i != m_selected) {
            lines.push_back(menuItemLine(m_menu.items[i], m_menu, style));
            continue;
        }
        // One look for the whole row, so that it is a bar.
        std::string line = menuItemLine(m_menu.items[i], m_menu, {.columns = m_size.columns});
        line += padding(line, m_size.columns);
        lines.push_back(drawn(line, {.weight = "7"}, styling));
    }
    if (m_size.rows > 1) {
        const std::string last = m_message.empty() ? keysLine(m_menu.items.size() - end, m_size.columns) : m_message;
        lines.push_back(drawn(fitted("  " + last, style), {.weight = "2"}, styling));
    }
    return lines;
}

} // namespace menubar::ctl
