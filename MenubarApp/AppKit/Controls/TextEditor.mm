#import "MenubarApp/AppKit/Controls/TextEditor.h"

#import "MenubarApp/AppKit/Controls/KeyControls.h"

#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

#include <cmath>
#include <utility>

@implementation MenubarTextEditor

- (void)setSession:(std::shared_ptr<menubar::TextSession>)session {
    _session = std::move(session);
    [self setDelegate:_session ? self : nil];
}

- (BOOL)becomeFirstResponder {
    [[self retain] autorelease];
    const BOOL becomes = [super becomeFirstResponder];
    if (becomes) {
        [[self enclosingScrollView] setNeedsDisplay:YES]; // the focus is drawn around it
        menubar::revealFocused([self enclosingScrollView]);
        if (const auto session = _session) {
            session->begin();
        }
    }
    return becomes;
}

- (BOOL)resignFirstResponder {
    [[self retain] autorelease];
    const BOOL resigns = [super resignFirstResponder];
    if (resigns) {
        [[self enclosingScrollView] setNeedsDisplay:YES];
        if (const auto session = _session) {
            session->end();
        }
    }
    return resigns;
}

- (void)textDidChange:(NSNotification*)notification {
    [[self retain] autorelease];
    if (const auto session = _session) {
        session->changed(self);
    }
}

- (NSUndoManager*)undoManagerForTextView:(NSTextView*)view {
    return _session ? _session->undoManager() : nil;
}

- (BOOL)textView:(NSTextView*)view doCommandBySelector:(SEL)command {
    if (menubar::isEscape(command)) {
        menubar::passToButtons(self);
        return YES;
    }
    if (sel_isEqual(command, @selector(insertTab:))) {
        [[self window] selectKeyViewFollowingView:self];
        return YES;
    }
    if (sel_isEqual(command, @selector(insertBacktab:))) {
        [[self window] selectKeyViewPrecedingView:self];
        return YES;
    }
    return NO;
}

@end

namespace menubar {

namespace {

constexpr CGFloat unlimited = 1e7;

class TextEditorAdapter final : public AdapterFor<TextEditor, NSScrollView> {
public:
    /// Takes over the caller's reference to `text`.
    TextEditorAdapter(MenubarTextEditor* text, const Reporter& reporter)
        : AdapterFor(NativeLook::newEditorScrollView(text)), m_text(ObjCPointer<MenubarTextEditor>::adopt(text)),
          m_session(std::make_shared<TextSession>(reporter)) {
        setUpText();
        [native() setHasVerticalScroller:YES];
        [native() setHasHorizontalScroller:NO];
        [native() setAutohidesScrollers:YES];
        [native() setDocumentView:text];
        [text setSession:m_session];
    }

    [[nodiscard]] NSView* keyView() const override { return m_text.get(); }

    [[nodiscard]] Measured measure(const View::Content&, double) const override {
        NSFont* font = Look::font(Font::body);
        const double inset = [m_text.get() textContainerInset].height;
        return {
            .width = 100.0, .height = 60.0, .baseline = std::round(1.0 + inset + [font ascender])}; // below the border
    }

    void commitEditing() override {
        const auto session = m_session;
        const auto text = m_text;
        session->commit(text.get());
    }

    void disconnect() override {
        m_session->disconnect();
        [m_text.get()
            setSession:nullptr]; // GNUstep's text view frees the members of its subclasses without destroying them
    }

protected:
    void apply(const Change<TextEditor>& change) override {
        if (change.in(&TextEditor::text)) {
            showText(change.now.text);
        }
        if (change.in(&TextEditor::enabled)) {
            [m_text.get() setEditable:change.now.enabled];
            [m_text.get() setTextColor:change.now.enabled ? [NSColor textColor] : [NSColor disabledControlTextColor]];
        }
    }

private:
    void setUpText() {
        MenubarTextEditor* text = m_text.get();
        [text setRichText:NO];
        [text setImportsGraphics:NO];
        [text setUsesFontPanel:NO];
        [text setAllowsUndo:YES];
        [text setFont:Look::font(Font::body)];
        NativeLook::keepTextPlain(text);
        [text setVerticallyResizable:YES];
        [text setHorizontallyResizable:NO];
        [text setMinSize:NSZeroSize];
        [text setMaxSize:NSMakeSize(unlimited, unlimited)];
        [text setAutoresizingMask:NSViewWidthSizable];
        [[text textContainer] setWidthTracksTextView:YES];
        // Long texts are laid out where they are looked at.
        [[text layoutManager] setAllowsNonContiguousLayout:YES];
    }

    /// A text that nobody is editing has no history that could be kept.
    void showText(const std::string& now) {
        MenubarTextEditor* text = m_text.get();
        if ([[text window] firstResponder] == text) {
            replaceText(text, now);
        } else {
            [text setString:toNSString(now)];
            m_session->forgetHistory();
        }
    }

    ObjCPointer<MenubarTextEditor> m_text;
    std::shared_ptr<TextSession> m_session;
};

} // namespace

AdapterPointer makeAdapter(const TextEditor&, const Reporter& reporter) {
    return std::make_unique<TextEditorAdapter>([[MenubarTextEditor alloc] initWithFrame:NSMakeRect(0, 0, 100, 60)],
                                               reporter);
}

} // namespace menubar
