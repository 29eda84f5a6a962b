#pragma once

#include "MenubarApp/View/ViewHost.h"
#include "MenubarApp/View/ViewNode.h"

#include <optional>
#include <string>
#include <string_view>
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

    /// Places the controls within `size`.
    void layOut(Size size);

    /// The control as the host shows it; null when it is gone.
    [[nodiscard]] const Control* control(ControlId id) const;

    /// The host's control already shows this, by a person's hand. False when the control is gone or shows it anyway.
    [[nodiscard]] bool noteToggled(ControlId id, bool isOn);
    [[nodiscard]] bool notePicked(ControlId id, std::size_t option);
    /// The text of the next view shown is then what this keystroke brought about, until `settle`.
    [[nodiscard]] bool noteTyped(ControlId id, const std::string& text);

    void settle() { m_typedIn.reset(); }

    /// From here on the control's text is the person's.
    void beginEditing(ControlId id) { m_editing = id; }

    /// The control's text is the view's again.
    void endEditing(ControlId id);

    /// Shows the view's text in the control that is being edited, which stays the person's.
    void putBackEditedText();

    /// Where the view with this identity lies inside the nearest scroll view around it, as of the last layout.
    struct Place {
        ControlId scrollView = windowContent;
        Rect area;
    };

    [[nodiscard]] std::optional<Place> placeOf(std::string_view viewId) const;

    /// The tree as laid out, for tests and debugging.
    [[nodiscard]] std::string dump() const;

private:
    void create(ViewNode& node, ControlId parent);
    void destroy(const ViewNode& node);
    /// Whether the node needs another size than before.
    [[nodiscard]] bool update(ViewNode& node, ViewNode& fresh, ControlId parent);
    [[nodiscard]] bool updateControl(ViewNode& node, Control now);
    [[nodiscard]] bool updateChildren(ViewNode& node, ViewNode& fresh, ControlId parent);
    void arrange(ViewNode& container, ControlId id);
    void updateTabOrder();
    void place(ViewNode& node);
    void putBack(ViewNode& node);
    [[nodiscard]] ViewNode* find(ControlId id);

    ViewHost& m_host;
    ViewNode m_root; ///< holds the window's one view
    ControlId m_lastId = windowContent;
    bool m_structureChanged = false;
    std::vector<ControlId> m_tabOrder;
    std::optional<ControlId> m_editing;
    std::optional<ControlId> m_typedIn;
};

} // namespace menubar
