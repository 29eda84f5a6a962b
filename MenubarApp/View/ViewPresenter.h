#pragma once

#include "MenubarApp/View/Reconciler.h"
#include "MenubarApp/View/View.h"
#include "MenubarApp/View/ViewHost.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace menubar {

/// Shows a view in a window and keeps it true: asks for the view again when the model has changed, routes what a person
/// does to the handlers of the view as it is now, and shows afterwards what the model made of it.
///
/// - A control that a person changed goes back to what the view says if the model did not take the change.
/// - A text that is being edited is the person's until editing ends (see Reconciler); then it is the view's.
/// - A line break that gets into a field of one line becomes a blank.
/// - Before a button acts, pending text is committed: what an input method composes is reported, and a text that the
///   model did not take is put back.
///
/// Main thread. After `close` it calls neither host nor handlers.
class ViewPresenter final : public ViewEvents, public std::enable_shared_from_this<ViewPresenter> {
public:
    /// Writes the view from the model.
    using Body = std::function<View()>;
    /// Runs an action in a later turn of the main loop.
    using Later = std::function<void(std::function<void()>)>;

    /// Shows the view and answers the host's events. The host outlives the presenter or the call of `close`.
    [[nodiscard]] static std::shared_ptr<ViewPresenter> create(ViewHost& host, Body body, Later later);

    // Events from the shell

    void resized(Size size) override;
    void pressed(ControlId id) override;
    void toggled(ControlId id, bool isOn) override;
    void stepped(ControlId id, StepDirection direction) override;
    void picked(ControlId id, std::size_t option) override;
    void editingBegan(ControlId id) override;
    void textChanged(ControlId id, const std::string& text) override;
    void editingEnded(ControlId id) override;
    /// The window is gone.
    void close();

    // Calls by the model's owner

    /// The model has changed: the view is written again in the next turn of the main loop, once for all changes until
    /// then.
    void setNeedsRender();

    /// Takes pending text over now, as before a button acts.
    void commitEditing();

    /// Writes the view again, then puts the insertion point into the first text field or editor of what has this
    /// identity, and shows it. Nothing happens where there is none.
    void focus(std::string_view viewId);

    /// Writes the view again, then scrolls to what has this identity. False when there is none in a scroll view.
    bool scrollToVisible(std::string_view viewId);

private:
    ViewPresenter(ViewHost& host, Body body, Later later);

    void render();
    /// Calls the handler, then shows what the model made of it.
    template <class... Arguments>
    void act(Handler<Arguments...> handler, std::type_identity_t<Arguments>... arguments);
    void tellEnd(ControlId id);
    /// The content of the control as the view has it now, if it is one of these and answers events; null otherwise.
    template <class Content>
    [[nodiscard]] const Content* enabled(ControlId id) const;

    ViewHost& m_host;
    Body m_body;
    Later m_later;
    Reconciler m_reconciler;
    Size m_size;
    bool m_needsRender = false;
    bool m_isRendering = false;
    bool m_isClosed = false;
};

} // namespace menubar
