#import "MenubarApp/AppKit/Controls/TextField.h"

#import "MenubarApp/AppKit/Controls/KeyControls.h"

#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

#include <utility>

@implementation MenubarTextField

- (void)setSession:(std::shared_ptr<menubar::TextSession>)session {
    _session = std::move(session);
    [self setDelegate:self];
}

- (NSTextView*)editor {
    id editor = [self currentEditor];
    return [editor isKindOfClass:[NSTextView class]] ? editor : nil;
}

- (void)showText:(const std::string&)text {
    if (NSTextView* editor = [self editor]) {
        menubar::replaceText(editor, text);
    } else {
        [self setStringValue:menubar::toNSString(text)];
    }
}

- (void)commit {
    const auto session = _session;
    if (NSTextView* editor = [self editor]; editor != nil && session) {
        [[self retain] autorelease];
        session->commit(editor);
    }
}

- (void)beginSession {
    NSTextView* editor = [self editor];
    if (editor == nil) {
        return;
    }
    menubar::NativeLook::keepTextPlain(editor);
    [editor setAllowsUndo:YES];
    if (const auto session = _session) {
        session->begin();
    }
}

- (BOOL)becomeFirstResponder {
    [[self retain] autorelease];
    const BOOL becomes = [super becomeFirstResponder];
    if (becomes) {
        [self setNeedsDisplay:YES]; // the focus may be drawn within its bounds
        menubar::revealFocused(self);
        [self beginSession];
    }
    return becomes;
}

- (void)textDidChange:(NSNotification*)notification {
    [[self retain] autorelease];
    [super textDidChange:notification];
    const auto session = _session;
    if (NSTextView* editor = [self editor]; editor != nil && session) {
        session->changed(editor);
    }
}

- (void)textDidEndEditing:(NSNotification*)notification {
    [[self retain] autorelease];
    [super textDidEndEditing:notification];
    [self setNeedsDisplay:YES];
    if (const auto session = _session) {
        session->forgetHistory(); // the next field has the same editor
        session->end();
    }
}

- (NSUndoManager*)undoManagerForTextView:(NSTextView*)view {
    return _session ? _session->undoManager() : nil;
}

- (BOOL)control:(NSControl*)control textView:(NSTextView*)view doCommandBySelector:(SEL)command {
    if (menubar::isEscape(command)) {
        menubar::passToButtons(self);
        return YES;
    }
    if (sel_isEqual(command, @selector(insertNewline:))) {
        [[self retain] autorelease];
        if (!menubar::passToButtons(self)) {
            [self endAndBeginAnew];
        }
        return YES;
    }
    return NO;
}

/// What Return does: the text is the model's for a moment, which may put it in another form.
- (void)endAndBeginAnew {
    const auto session = _session;
    session->commit([self editor]);
    session->end();
    if (NSTextView* editor = [self editor]) {
        [editor selectAll:nil];
        session->begin();
    }
}

@end

namespace menubar {

namespace {

class TextFieldAdapter final : public AdapterFor<TextField, MenubarTextField> {
public:
    explicit TextFieldAdapter(const Reporter& reporter)
        : AdapterFor([[MenubarTextField alloc] initWithFrame:NSZeroRect]),
          m_session(std::make_shared<TextSession>(reporter)) {
        MenubarTextField* field = native();
        NativeLook::dressField(field);
        [field setFont:Look::font(Font::body)];
        [field setEditable:YES];
        [field setSelectable:YES];
        [[field cell] setScrollable:YES];
        [[field cell] setWraps:NO];
        [field setSession:m_session];
    }

    void commitEditing() override { [native() commit]; }

    void disconnect() override { m_session->disconnect(); }

protected:
    void apply(const Change<TextField>& change) override {
        if (change.in(&TextField::prompt)) {
            [native() setPlaceholderString:toNSString(change.now.prompt)];
        }
        if (change.in(&TextField::text)) {
            [native() showText:change.now.text];
        }
    }

private:
    std::shared_ptr<TextSession> m_session;
};

} // namespace

AdapterPointer makeAdapter(const TextField&, const Reporter& reporter) {
    return std::make_unique<TextFieldAdapter>(reporter);
}

} // namespace menubar
