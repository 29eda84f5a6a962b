#include "MenubarCtl/Screen.h"

#include "MenubarCtl/Terminal.h"

#include <cstddef>
#include <string_view>

#include <unistd.h>

namespace menubar::ctl {

namespace {

// Alternate screen, no line wrapping, no cursor; and the reverse.
constexpr std::string_view takeOver = "\x1b[?1049h\x1b[?7l\x1b[?25l";
constexpr std::string_view giveBack = "\x1b[?25h\x1b[?7h\x1b[?1049l";

constexpr std::string_view home = "\x1b[H";
constexpr std::string_view clearToEndOfLine = "\x1b[K";
constexpr std::string_view clearToEndOfScreen = "\x1b[J";

} // namespace

Screen::~Screen() {
    leave();
}

std::expected<void, int> Screen::enter() {
    m_isEntered = true;
    silenceKeyboard();
    return writeAll(m_output, takeOver);
}

/// A job in the background must not touch the keyboard: it would be stopped for it.
void Screen::silenceKeyboard() {
    termios settings{};
    if (::tcgetpgrp(m_input) != ::getpgrp() || ::tcgetattr(m_input, &settings) != 0) {
        return;
    }
    const termios saved = settings;
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    if (::tcsetattr(m_input, TCSANOW, &settings) == 0) {
        m_savedKeyboard = saved;
    }
}

void Screen::leave() {
    if (!m_isEntered) {
        return;
    }
    m_isEntered = false;
    // A terminal that has gone needs nothing given back.
    [[maybe_unused]] const auto written = writeAll(m_output, giveBack);
    if (m_savedKeyboard) {
        ::tcsetattr(m_input, TCSANOW, &*m_savedKeyboard);
        m_savedKeyboard.reset();
    }
}

std::expected<void, int> Screen::draw(std::span<const std::string> lines) const {
    std::string frame(home);
    // What was there is erased before a line is written: with wrapping off, a line that fills the row leaves the cursor
    // on its last column, and erasing from there would take that character away.
    for (std::size_t i = 0; i < lines.size(); ++i) {
        frame += i == 0 ? "" : "\r\n";
        frame += i + 1 == lines.size() ? clearToEndOfScreen : clearToEndOfLine;
        frame += lines[i];
    }
    frame += lines.empty() ? clearToEndOfScreen : "";
    return writeAll(m_output, frame);
}

} // namespace menubar::ctl
