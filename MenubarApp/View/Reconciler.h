#pragma once

#include "MenubarApp/View/View.h"
#include "MenubarApp/View/ViewHost.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// Keeps a host's controls equal to a view that is written afresh again and again. A control lives on as long as the
/// view has one of its identity and kind in its place; only what differs is told to the host, and nothing at all when
/// nothing differs. After any sequence of views the host holds what it would hold had it been shown the last one alone,
/// but for text that is being edited.
///
/// The text of the control that is being edited belongs to the person: it is replaced only when the view's text
/// changes to something that the last keystroke did not bring about. Main thread.
class Reconciler {
public:
    /// The host outlives this object. Its controls are not destroyed with this object: they go with their window.
    explicit Reconciler(ViewHost& host) : m_host(host) {}

    /// Creates, updates, arranges and destroys controls. New ones have no frame until `layOut`.
    void show(View view);

    /// Places the controls within `size`. The control that is being edited stays where it is on the screen, as far as
    /// its scroll view can scroll; when a keystroke has made its row (what lies directly in a Box around it) grow, all
    /// of that is shown.
    void layOut(Size size);

    /// The control as the host shows it; null when it is gone.
    [[nodiscard]] const View* control(ControlId id) const;

    /// The host's control already shows this, by a person's hand. False when it is gone or showed it anyway.
    template <class Content, class Value>
    [[nodiscard]] bool note(ControlId id, Value Content::* member, std::type_identity_t<Value> value) {
        View* node = find(id);
        auto* content = node == nullptr ? nullptr : std::get_if<Content>(&node->content);
        return content != nullptr && std::exchange(content->*member, value) != value;
    }

    /// The same for a text, which is the control that is being edited from now on.
    /// The text of the next view shown is then what this keystroke brought about, until `settle`.
    /// `taken` is what is made of the text, and shown from now on.
    [[nodiscard]] bool noteTyped(ControlId id, const std::string& text, const std::string& taken);

    void settle() { m_typedIn.reset(); }

    /// From here on the control's text is the person's.
    void beginEditing(ControlId id) { m_editing = id; }

    /// The control's text is the view's again.
    void endEditing(ControlId id);

    /// The control whose text is the person's.
    [[nodiscard]] std::optional<ControlId> editing() const { return m_editing; }

    /// Shows the view's text again in the control that is being edited, which stays the person's.
    void reapplyEditedText();

    /// Where the view with this identity lies inside the nearest scroll view around it, as of the last layout.
    struct Place {
        ControlId scrollView = windowContent;
        double room = 0.0; ///< the scroll view's height
        Rect area;
    };

    [[nodiscard]] std::optional<Place> placeOf(std::string_view viewId) const;

    /// The first TextField or TextEditor in the view with this identity.
    [[nodiscard]] std::optional<ControlId> firstField(std::string_view viewId) const;

    /// The window's one view as laid out. Only once something was shown.
    [[nodiscard]] const View& view() const { return m_root.children.front(); }

private:
    void create(View& node, ControlId parent);
    void destroy(const View& node);
    /// Whether the node needs another size than before.
    [[nodiscard]] bool update(View& node, View& fresh, ControlId parent);
    void keepEditedText(View& node, View& fresh) const;
    [[nodiscard]] bool updateChildren(View& node, View& fresh, ControlId parent);
    void arrange(View& container, ControlId id);
    void updateTabOrder();
    void place(View& node);
    void reapply(ControlId id);
    void showText(View& node, const std::string& text);
    [[nodiscard]] View* find(ControlId id);

    ViewHost& m_host;
    View m_root{.content = VStack{}}; ///< holds the window's one view
    ControlId m_lastId = windowContent;
    bool m_structureChanged = false;
    std::vector<ControlId> m_tabOrder;
    std::optional<ControlId> m_editing;
    std::optional<ControlId> m_typedIn;
};

} // namespace menubar
