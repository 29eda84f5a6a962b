#include "MenubarApp/View/ViewPresenter.h"

#include <utility>

namespace menubar {

namespace {

/// Each line break as one blank.
std::string inOneLine(std::string text) {
    for (const std::string_view lineBreak : {"\r\n", "\n", "\r", "\u2028", "\u2029"}) {
        for (std::size_t at = 0; (at = text.find(lineBreak, at)) != std::string::npos; ++at) {
            text.replace(at, lineBreak.size(), " ");
        }
    }
    return text;
}

} // namespace

std::shared_ptr<ViewPresenter> ViewPresenter::create(ViewHost& host, Body body, Later later) {
    // The constructor is private, which rules out make_shared.
    const std::shared_ptr<ViewPresenter> presenter(new ViewPresenter(host, std::move(body), std::move(later)));
    presenter->m_isRendering = true; // the host tells its size before there is anything to place
    host.setEvents(presenter);
    presenter->m_isRendering = false;
    presenter->render();
    return presenter;
}

ViewPresenter::ViewPresenter(ViewHost& host, Body body, Later later)
    : m_host(host), m_body(std::move(body)), m_later(std::move(later)), m_reconciler(host) {}

void ViewPresenter::render() {
    m_needsRender = false;
    if (m_isClosed || m_isRendering) {
        return;
    }
    View view = m_body();
    m_isRendering = true;
    m_reconciler.show(std::move(view));
    m_reconciler.layOut(m_size);
    m_isRendering = false;
}

void ViewPresenter::setNeedsRender() {
    if (m_needsRender || m_isClosed) {
        return;
    }
    m_needsRender = true;
    m_later([weak = weak_from_this()] {
        if (const auto presenter = weak.lock(); presenter && presenter->m_needsRender) {
            presenter->render();
        }
    });
}

void ViewPresenter::close() {
    m_isClosed = true;
}

template <class Content>
const Content* ViewPresenter::enabled(ControlId id) const {
    if (m_isClosed || m_isRendering) {
        return nullptr;
    }
    const View* control = m_reconciler.control(id);
    const Content* content = control == nullptr ? nullptr : std::get_if<Content>(&control->content);
    return content != nullptr && content->enabled ? content : nullptr;
}

/// The handler is a copy: the view that holds it is written again in the course of the call.
template <class... Arguments>
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ViewPresenter::act(Handler<Arguments...> handler, std::type_identity_t<Arguments>... arguments) {
    const auto self = shared_from_this();
    handler(arguments...);
    render();
}

void ViewPresenter::resized(Size size) {
    m_size = size;
    if (!m_isClosed && !m_isRendering) {
        m_isRendering = true;
        m_reconciler.layOut(m_size);
        m_isRendering = false;
    }
}

void ViewPresenter::pressed(ControlId id) {
    const auto self = shared_from_this();
    if (enabled<Button>(id) == nullptr) {
        return;
    }
    commitEditing();
    // What was committed may have taken the button away.
    if (const auto* button = enabled<Button>(id)) {
        act(button->onPress);
    }
}

void ViewPresenter::toggled(ControlId id, bool isOn) {
    const auto* toggle = enabled<Toggle>(id);
    const auto* checkbox = enabled<Checkbox>(id);
    if (toggle != nullptr && m_reconciler.note(id, &Toggle::isOn, isOn)) {
        act(toggle->onChange, isOn);
    } else if (checkbox != nullptr && m_reconciler.note(id, &Checkbox::isOn, isOn)) {
        act(checkbox->onChange, isOn);
    }
}

void ViewPresenter::stepped(ControlId id, StepDirection direction) {
    if (const auto* stepper = enabled<Stepper>(id)) {
        act(stepper->onStep, direction);
    }
}

void ViewPresenter::picked(ControlId id, std::size_t option) {
    const auto* picker = enabled<Picker>(id);
    if (picker != nullptr && option < picker->options.size() && m_reconciler.note(id, &Picker::selection, option)) {
        act(picker->onPick, option);
    }
}

void ViewPresenter::editingBegan(ControlId id) {
    if (enabled<TextField>(id) != nullptr || enabled<TextEditor>(id) != nullptr) {
        m_reconciler.beginEditing(id);
    }
}

void ViewPresenter::textChanged(ControlId id, const std::string& text) {
    const auto self = shared_from_this();
    const auto* field = enabled<TextField>(id);
    const auto* editor = enabled<TextEditor>(id);
    const std::string taken = field != nullptr ? inOneLine(text) : text;
    if ((field != nullptr || editor != nullptr) && m_reconciler.noteTyped(id, text, taken)) {
        act(field != nullptr ? field->onEdit : editor->onEdit, taken);
        m_reconciler.settle();
    }
}

void ViewPresenter::editingEnded(ControlId id) {
    if (m_isClosed || m_isRendering) {
        return;
    }
    const auto self = shared_from_this();
    m_reconciler.endEditing(id);
    tellEnd(id);
}

void ViewPresenter::commitEditing() {
    if (m_isClosed || m_isRendering) {
        return;
    }
    const auto self = shared_from_this();
    m_host.commitEditing();
    if (const auto editing = m_reconciler.editing(); editing && !m_isClosed) {
        m_reconciler.reapplyEditedText();
        tellEnd(*editing);
    }
}

void ViewPresenter::tellEnd(ControlId id) {
    if (const auto* field = enabled<TextField>(id)) {
        const auto handler = field->onEnd;
        handler();
        setNeedsRender(); // not at once: a toolkit moves the focus in the middle of a press
    }
}

void ViewPresenter::focus(std::string_view viewId) {
    (void)scrollToVisible(viewId); // the window itself needs no scrolling
    const auto field = m_reconciler.firstField(viewId);
    if (field && !m_isClosed && !m_isRendering) {
        m_host.focus(*field);
    }
}

bool ViewPresenter::scrollToVisible(std::string_view viewId) {
    render();
    if (m_isClosed || m_isRendering) {
        return false;
    }
    const auto place = m_reconciler.placeOf(viewId);
    if (!place) {
        return false;
    }
    m_host.scrollToVisible(place->scrollView, place->area);
    return true;
}

} // namespace menubar
