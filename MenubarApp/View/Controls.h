#pragma once

#include "MenubarApp/View/Handler.h"

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace menubar {

/// What a view can be: a stack that only places others, or one native control. All are plain values: what is shown, and
/// what to call when a person presses or edits it. Equality is about looks; handlers do not count.

enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom, firstBaseline };

/// Views below each other.
struct VStack {
    double spacing = 8.0;
    HorizontalAlignment alignment = HorizontalAlignment::leading;

    bool operator==(const VStack&) const = default;
};

/// Views beside each other. What is too wide gives way: first what can grow, then texts, the longest first.
struct HStack {
    double spacing = 8.0;
    VerticalAlignment alignment = VerticalAlignment::center;

    bool operator==(const HStack&) const = default;
};

/// Takes the room that nothing else in its stack wants.
struct Spacer {
    double minLength = 0.0;

    bool operator==(const Spacer&) const = default;
};

enum class Font { body, headline, caption, monospaced };

/// Colours by role, so that they follow the system's light or dark appearance.
enum class TextColor { primary, secondary, red, orange };

/// A text. It wraps at word boundaries when it is wider than its room.
struct Text {
    std::string text{};
    Font font = Font::body;
    TextColor color = TextColor::primary;
    bool selectable = false;
    int lineLimit = 0; ///< 0 for none; what does not fit is cut with an ellipsis

    bool operator==(const Text&) const = default;
};

/// A system symbol, as large as a text of `font`.
struct Symbol {
    std::string name{};
    std::string description{}; ///< for those who cannot see it
    Font font = Font::body;
    TextColor color = TextColor::primary;

    bool operator==(const Symbol&) const = default;
};

/// A hairline across the width of what holds it.
struct Divider : std::monostate {};

enum class ButtonStyle { bordered, borderless, small };

/// The key that presses a button from anywhere in the window, also while text is being edited.
enum class KeyShortcut {
    none,
    defaultAction, ///< Return
    cancelAction,  ///< Escape
    commandS,
};

struct Button {
    std::string title{};
    std::string symbol{}; ///< a system symbol before the title; none when empty
    ButtonStyle style = ButtonStyle::bordered;
    KeyShortcut shortcut = KeyShortcut::none;
    bool enabled = true;
    Handler<> onPress{};

    bool operator==(const Button&) const = default;
};

/// A switch without a title of its own.
struct Toggle {
    bool isOn = false;
    bool enabled = true;
    Handler<bool> onChange{};

    bool operator==(const Toggle&) const = default;
};

struct Checkbox {
    std::string title{};
    bool isOn = false;
    bool enabled = true;
    Handler<bool> onChange{};

    bool operator==(const Checkbox&) const = default;
};

/// One line of text with a rounded border. `text` is what the model holds; while a person edits the field it may show
/// something else (see ViewPresenter).
struct TextField {
    std::string text{};
    std::string prompt{}; ///< shown in grey while the text is empty
    bool enabled = true;
    Handler<const std::string&> onEdit{}; ///< never gets a line break: each becomes a blank
    Handler<> onEnd{};                    ///< the person has left the field, or a button is about to act

    bool operator==(const TextField&) const = default;
};

/// Several lines of text that scroll inside their frame. `text` as in TextField.
struct TextEditor {
    std::string text{};
    bool enabled = true;
    Handler<const std::string&> onEdit{};

    bool operator==(const TextEditor&) const = default;
};

enum class StepDirection { down, up };

/// Two arrows that step a number. What a step means is the handler's affair; the value and its bounds are there to be
/// read out and to grey the arrow that leads nowhere.
struct Stepper {
    double value = 0.0;
    std::optional<double> min{};
    std::optional<double> max{};
    double step = 1.0;
    bool enabled = true;
    Handler<StepDirection> onStep{};

    bool operator==(const Stepper&) const = default;
};

/// A pop-up menu of options.
struct Picker {
    std::vector<std::string> options{};
    std::optional<std::size_t> selection{}; ///< below the number of options; absent when none of them is the value
    bool enabled = true;
    Handler<std::size_t> onPick{};

    bool operator==(const Picker&) const = default;
};

/// A spinning wheel.
struct Spinner : std::monostate {};

/// Scrolls its content vertically.
struct ScrollView {
    double spacing = 8.0; ///< between the views in it

    bool operator==(const ScrollView&) const = default;
};

/// A rounded background with a column of views on it.
struct Box {
    double spacing = 10.0; ///< between the views in it

    bool operator==(const Box&) const = default;
};

/// What assistive technology is told beyond what the control itself says. Empty texts are left to the control.
struct Accessibility {
    std::string label{};
    std::string description{}; ///< read after the label and the value

    bool operator==(const Accessibility&) const = default;
};

/// What a person does something with can be disabled; the others have nothing to disable.
template <class Content>
inline constexpr bool takesKeys = requires(Content content) { content.enabled; };

/// What a host shows as a native control; stacks and spacers only place others.
template <class Content>
inline constexpr bool isNative =
    !std::is_same_v<Content, VStack> && !std::is_same_v<Content, HStack> && !std::is_same_v<Content, Spacer>;

} // namespace menubar
