#include "tests/support/RecordingViewHost.h"

#include "MenubarApp/View/View.h"
#include "MenubarCore/JSON/JSONValue.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace menubar::recording {

namespace {

struct Face {
    double advance;
    double lineHeight;
};

Face face(Font font) {
    switch (font) {
    case Font::body: return {7.0, 16.0};
    case Font::headline: return {8.0, 18.0};
    case Font::caption: return {6.0, 13.0};
    case Font::monospaced: return {8.0, 16.0};
    }
    return {};
}

double lineWidth(const std::string& text, Font font) {
    return static_cast<double>(text.size()) * face(font).advance;
}

struct Measure {
    double width;

    Measured operator()(const Text& text) const {
        const Face f = face(text.font);
        std::istringstream in(text.text);
        double lines = 0.0;
        double widest = 0.0;
        for (std::string line; std::getline(in, line);) {
            const double natural = lineWidth(line, text.font);
            const double perLine = std::max(f.advance, std::floor(width / f.advance) * f.advance);
            lines += std::max(1.0, std::isinf(width) ? 1.0 : std::ceil(natural / perLine));
            widest = std::max(widest, std::min(natural, perLine));
        }
        lines = std::max(lines, 1.0);
        if (text.lineLimit > 0) {
            lines = std::min(lines, static_cast<double>(text.lineLimit));
        }
        return {widest, lines * f.lineHeight, std::round(f.lineHeight * 0.75)};
    }

    Measured operator()(const Symbol& symbol) const {
        const double side = face(symbol.font).lineHeight;
        return {side, side, std::round(side * 0.75)};
    }

    Measured operator()(const Button& button) const {
        const double symbol = button.symbol.empty() ? 0.0 : 18.0;
        switch (button.style) {
        case ButtonStyle::bordered: return {lineWidth(button.title, Font::body) + symbol + 24.0, 24.0, 17.0};
        case ButtonStyle::borderless: return {lineWidth(button.title, Font::body) + symbol, 16.0, 12.0};
        case ButtonStyle::small: return {lineWidth(button.title, Font::caption) + symbol + 12.0, 18.0, 13.0};
        }
        return {};
    }

    Measured operator()(const Toggle&) const { return {38.0, 22.0, 16.0}; }

    Measured operator()(const Checkbox& checkbox) const {
        return {lineWidth(checkbox.title, Font::body) + 20.0, 18.0, 14.0};
    }

    Measured operator()(const TextField&) const { return {100.0, 22.0, 16.0}; }

    Measured operator()(const TextEditor&) const { return {100.0, 40.0, 14.0}; }

    Measured operator()(const Stepper&) const { return {15.0, 22.0, 16.0}; }

    Measured operator()(const Picker& picker) const {
        double widest = 0.0;
        for (const std::string& option : picker.options) {
            widest = std::max(widest, lineWidth(option, Font::body));
        }
        return {widest + 40.0, 24.0, 17.0};
    }

    Measured operator()(const Spinner&) const { return {32.0, 32.0, 32.0}; }

    // Never asked.
    template <class Content>
    Measured operator()(const Content&) const {
        return {-1.0, -1.0, -1.0};
    }
};

std::string describe(const Rect& frame) {
    constexpr auto format = JSONValue::format;
    return "(" + format(frame.x) + "," + format(frame.y) + " " + format(frame.width) + "x" + format(frame.height) + ")";
}

/// What a host has to do with a view.
View nativeLook(const View& view) {
    return {.content = view.content, .tooltip = view.tooltip, .accessibility = view.accessibility};
}

bool canHoldViews(const View& view) {
    return std::holds_alternative<ScrollView>(view.content) || std::holds_alternative<Box>(view.content);
}

std::string line(const View& view) {
    std::string text = menubar::dump(nativeLook(view));
    text.pop_back();
    return text;
}

std::string label(ControlId id) {
    return " " + std::to_string(id);
}

} // namespace

Measured TypewriterMeasurer::measure(ControlId /*id*/, const View& control, double width) {
    ++measurements;
    return std::visit(Measure{width}, control.content);
}

// The port

void RecordingViewHost::setEvents(std::weak_ptr<ViewEvents> events) {
    m_events = std::move(events);
    send([this](ViewEvents& e) { e.resized(size); });
}

bool RecordingViewHost::check(bool isTrue, std::string_view fault) {
    if (!isTrue) {
        faults.emplace_back(fault);
    }
    return isTrue;
}

void RecordingViewHost::create(ControlId id, ControlId parent, const View& made) {
    log.push_back("create" + label(id) + " in" + label(parent) + ": " + line(made));
    const bool canHold =
        parent == windowContent || (m_controls.contains(parent) && canHoldViews(m_controls[parent].control));
    if (check(canHold, "created in what holds nothing") && check(!m_controls.contains(id), "created twice")) {
        m_controls[id] = {
            .parent = parent, .control = nativeLook(made), .frame = {}, .contentSize = {}, .children = {}};
        childrenOf(parent).push_back(id);
    }
}

void RecordingViewHost::update(ControlId id, const View& now, const View& before) {
    log.push_back("update" + label(id) + ": " + line(now));
    if (check(m_controls.contains(id), "updated what is not there") &&
        check(now.content.index() == before.content.index(), "updated to another kind") &&
        check(!looksAlike(now, before), "updated without a change") &&
        check(looksAlike(m_controls[id].control, before), "updated from what is not shown")) {
        m_controls[id].control = nativeLook(now);
    }
}

void RecordingViewHost::place(ControlId id, const Rect& frame) {
    log.push_back("place" + label(id) + " " + recording::describe(frame));
    if (check(m_controls.contains(id), "placed what is not there")) {
        m_controls[id].frame = frame;
    }
}

void RecordingViewHost::setContentSize(ControlId scrollView, Size content) {
    log.push_back("content" + label(scrollView) + " " + recording::describe(Rect{0, 0, content.width, content.height}));
    if (check(m_controls.contains(scrollView), "sized what is not there")) {
        m_controls[scrollView].contentSize = content;
    }
}

void RecordingViewHost::arrange(ControlId parent, std::span<const ControlId> order) {
    log.push_back("arrange" + label(parent));
    if (check(std::ranges::is_permutation(order, childrenOf(parent)), "arranged others than there are") &&
        check(!std::ranges::equal(order, childrenOf(parent)), "arranged as before")) {
        childrenOf(parent).assign(order.begin(), order.end());
    }
}

void RecordingViewHost::setTabOrder(std::span<const ControlId> order) {
    log.emplace_back("tab order");
    tabOrder.assign(order.begin(), order.end());
}

void RecordingViewHost::destroy(ControlId id) {
    log.push_back("destroy" + label(id));
    if (check(m_controls.contains(id), "destroyed what is not there") &&
        check(m_controls[id].children.empty(), "destroyed with something in it")) {
        std::erase(childrenOf(m_controls[id].parent), id);
        m_controls.erase(id);
        if (focused == id) {
            blur(); // as a toolkit does when the focused control goes
        }
    }
}

void RecordingViewHost::commitEditing() {
    log.emplace_back("commit");
    if (focused && m_composed) {
        const std::string composed = *std::exchange(m_composed, std::nullopt);
        *shownText(*focused) = composed;
        send([&](ViewEvents& e) { e.textChanged(*focused, composed); });
    }
}

void RecordingViewHost::scrollBy(ControlId scrollView, double length) {
    log.push_back("scroll" + label(scrollView) + " by " + JSONValue::format(length));
    (void)check(m_controls.contains(scrollView), "scrolled what is not there");
}

void RecordingViewHost::scrollToVisible(ControlId scrollView, const Rect& area) {
    log.push_back("scroll" + label(scrollView) + " to " + recording::describe(area));
    (void)check(m_controls.contains(scrollView), "scrolled what is not there");
}

Measured RecordingViewHost::measure(ControlId id, const View& shown, double width) {
    (void)check(m_controls.contains(id) && looksAlike(m_controls[id].control, shown), "measured what is not shown");
    const Measured measured = typewriter.measure(id, shown, width);
    (void)check(measured.width >= 0.0, "measured what has no size");
    return measured;
}

// What a person sees

std::vector<ControlId>& RecordingViewHost::childrenOf(ControlId id) {
    return id == windowContent ? m_content : m_controls.at(id).children;
}

const std::vector<ControlId>& RecordingViewHost::childrenOf(ControlId id) const {
    return id == windowContent ? m_content : m_controls.at(id).children;
}

void RecordingViewHost::append(std::string& out, ControlId id, std::size_t depth, bool withFrames) const {
    for (const ControlId child : childrenOf(id)) {
        const Native& native = m_controls.at(child);
        out.append(depth * 2, ' ');
        out += line(native.control);
        if (withFrames) {
            out += " " + recording::describe(native.frame);
            if (native.contentSize != Size{}) {
                out += " content=" + JSONValue::format(native.contentSize.height);
            }
        }
        out += '\n';
        append(out, child, depth + 1, withFrames);
    }
}

std::string RecordingViewHost::dump() const {
    std::string out;
    append(out, windowContent, 0, true);
    return out;
}

std::string RecordingViewHost::outline() const {
    std::string out;
    append(out, windowContent, 0, false);
    return out;
}

ControlId RecordingViewHost::findIn(ControlId parent, const std::function<bool(const View&)>& matches) const {
    for (const ControlId id : childrenOf(parent)) {
        if (matches(m_controls.at(id).control)) {
            return id;
        }
        if (const ControlId found = findIn(id, matches); found != windowContent) {
            return found;
        }
    }
    return windowContent;
}

ControlId RecordingViewHost::find(std::string_view beginning) const {
    return findIn(windowContent, [&](const View& c) { return line(c).starts_with(beginning); });
}

ControlId RecordingViewHost::find(std::string_view beginning, std::string_view label) const {
    return findIn(windowContent,
                  [&](const View& c) { return c.accessibility.label == label && line(c).starts_with(beginning); });
}

const View& RecordingViewHost::control(ControlId id) const {
    return m_controls.at(id).control;
}

Rect RecordingViewHost::frame(ControlId id) const {
    return m_controls.at(id).frame;
}

std::string* RecordingViewHost::shownText(ControlId id) {
    auto& content = m_controls.at(id).control.content;
    if (auto* field = std::get_if<TextField>(&content)) {
        return &field->text;
    }
    return &std::get<TextEditor>(content).text;
}

std::string RecordingViewHost::text(ControlId id) const {
    const auto& content = m_controls.at(id).control.content;
    const auto* field = std::get_if<TextField>(&content);
    return field != nullptr ? field->text : std::get<TextEditor>(content).text;
}

// What a person does

void RecordingViewHost::send(const std::function<void(ViewEvents&)>& event) const {
    if (const auto events = m_events.lock()) {
        event(*events);
    }
}

void RecordingViewHost::resize(Size newSize) {
    size = newSize;
    send([&](ViewEvents& e) { e.resized(size); });
}

bool RecordingViewHost::press(std::string_view title) {
    const ControlId id = findIn(windowContent, [&](const View& c) {
        const auto* button = std::get_if<Button>(&c.content);
        return button != nullptr && button->enabled && button->title == title;
    });
    if (id == windowContent) {
        return false;
    }
    press(id);
    return true;
}

void RecordingViewHost::press(ControlId id) {
    send([&](ViewEvents& e) { e.pressed(id); });
}

void RecordingViewHost::toggle(ControlId id, bool isOn) {
    auto& content = m_controls.at(id).control.content;
    if (auto* toggle = std::get_if<Toggle>(&content)) {
        toggle->isOn = isOn;
    } else {
        std::get<Checkbox>(content).isOn = isOn;
    }
    send([&](ViewEvents& e) { e.toggled(id, isOn); });
}

void RecordingViewHost::step(ControlId id, StepDirection direction) {
    send([&](ViewEvents& e) { e.stepped(id, direction); });
}

void RecordingViewHost::pick(ControlId id, std::size_t option) {
    std::get<Picker>(m_controls.at(id).control.content).selection = option;
    send([&](ViewEvents& e) { e.picked(id, option); });
}

void RecordingViewHost::focus(ControlId id) {
    if (focused != id) {
        blur();
        focused = id;
        send([&](ViewEvents& e) { e.editingBegan(id); });
    }
}

void RecordingViewHost::blur() {
    if (const auto id = std::exchange(focused, std::nullopt)) {
        m_composed.reset();
        send([&](ViewEvents& e) { e.editingEnded(*id); });
    }
}

void RecordingViewHost::type(ControlId id, const std::string& typed) {
    focus(id);
    *shownText(id) = typed;
    send([&](ViewEvents& e) { e.textChanged(id, typed); });
}

void RecordingViewHost::compose(ControlId id, const std::string& typed) {
    focus(id);
    m_composed = typed;
}

std::vector<std::string> RecordingViewHost::takeLog() {
    return std::exchange(log, {});
}

} // namespace menubar::recording
