#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>

#include <termios.h>

namespace menubar::ctl {

/// A terminal taken over to be drawn on: its alternate screen, without a cursor, without line wrapping, and without the
/// echo of typed keys. Everything is given back by `leave` or when this object is destroyed. Main thread.
class Screen {
public:
    /// Nothing happens before `enter`. Keys are read from `input` where that is this terminal too.
    Screen(int output, int input) : m_output(output), m_input(input) {}

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    [[nodiscard]] std::expected<void, int> enter();
    void leave();

    /// Replaces what is shown, in place and in one write. There are no more lines than rows.
    [[nodiscard]] std::expected<void, int> draw(std::span<const std::string> lines) const;

    /// Whether typed keys arrive one by one, unechoed.
    [[nodiscard]] bool readsKeys() const { return m_savedKeyboard.has_value(); }

private:
    void silenceKeyboard();

    int m_output;
    int m_input;
    bool m_isEntered = false;
    std::optional<termios> m_savedKeyboard;
};

} // namespace menubar::ctl
