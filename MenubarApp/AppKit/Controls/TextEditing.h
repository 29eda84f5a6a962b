#pragma once

#import <AppKit/AppKit.h>

#include "MenubarApp/AppKit/Controls/ControlAdapter.h"

#include <string>
#include <utility>

namespace menubar {

/// The undo history and the reports of one text that a person edits, in a field or in an editor. Main thread.
class TextSession {
public:
    explicit TextSession(Reporter reporter)
        : m_reporter(std::move(reporter)), m_undo(ObjCPointer<NSUndoManager>::adopt([[NSUndoManager alloc] init])) {}

    [[nodiscard]] NSUndoManager* undoManager() const { return m_undo.get(); }

    /// The control is about to go.
    void disconnect() {
        m_isConnected = false;
        m_reporter.sink->forget(m_reporter.id);
    }

    void begin();

    void end();

    /// Drops every undo step. For a text that was replaced or that another control edits: the steps' positions are of
    /// the old one.
    void forgetHistory() { [m_undo.get() removeAllActions]; }

    /// The text in `editor` has changed; what is being composed is kept for later.
    void changed(NSTextView* editor);

    /// Ends the composing and reports what was kept.
    void commit(NSTextView* editor);

private:
    Reporter m_reporter;
    ObjCPointer<NSUndoManager> m_undo;
    bool m_isConnected = true;
    bool m_hasUnreported = false;
};

/// Shows `text` instead of what the view holds, as an edit that can be undone. Only the part that differs is
/// replaced, so that insertion point and selection stay with the text around them.
void replaceText(NSTextView* view, const std::string& text);

/// Passes a key that is bound to no text command on to the window's buttons. Whether one of them took it.
bool passToButtons(NSView* view);

/// Whether the command is what Escape stands for in a text, and it was Escape that brought it about.
[[nodiscard]] bool isEscape(SEL command);

} // namespace menubar
