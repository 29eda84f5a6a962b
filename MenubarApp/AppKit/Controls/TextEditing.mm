#import "MenubarApp/AppKit/Controls/TextEditing.h"

#include "MenubarApp/AppKit/Conversions.h"

#include <algorithm>

namespace menubar {

namespace {

constexpr unichar escape = 0x1b;

/// The length of what both texts begin with, or end with, in whole characters.
NSUInteger commonPrefix(NSString* a, NSString* b) {
    return [[a commonPrefixWithString:b options:NSLiteralSearch] length];
}

NSUInteger commonSuffix(NSString* a, NSString* b, NSUInteger most) {
    NSUInteger length = 0;
    while (length < most &&
           [a characterAtIndex:[a length] - length - 1] == [b characterAtIndex:[b length] - length - 1]) {
        ++length;
    }
    if (length == 0 || length == [a length]) {
        return length;
    }
    // Not from the middle of a character on.
    const NSUInteger start = [a length] - length;
    const NSRange first = [a rangeOfComposedCharacterSequenceAtIndex:start];
    return first.location == start ? length : [a length] - NSMaxRange(first);
}

/// Where a place in the old text lies once `range` was replaced by `length` units.
NSUInteger moved(NSUInteger place, NSRange range, NSUInteger length) {
    if (place <= range.location) {
        return place;
    }
    return place >= NSMaxRange(range) ? place - range.length + length : range.location + length;
}

} // namespace

void TextSession::begin() {
    if (m_isConnected) {
        m_reporter.sink->beginEditing(m_reporter.id);
    }
}

void TextSession::end() {
    m_hasUnreported = false;
    if (m_isConnected) {
        const auto sink = m_reporter.sink; // the owner may be destroyed in the course of the call
        sink->endEditing(m_reporter.id);
    }
}

void TextSession::changed(NSTextView* editor) {
    if (!m_isConnected) {
        return;
    }
    if ([editor hasMarkedText]) {
        m_hasUnreported = true;
        return;
    }
    m_hasUnreported = false;
    m_reporter.tell(&ViewEvents::textChanged, toString([editor string]));
}

void TextSession::commit(NSTextView* editor) {
    if ([editor hasMarkedText]) {
        m_hasUnreported = true;
        [editor unmarkText];
        [[editor inputContext] discardMarkedText];
    }
    // Unless that was a change by itself.
    if (m_hasUnreported) {
        changed(editor);
    }
}

void replaceText(NSTextView* view, const std::string& text) {
    if ([view hasMarkedText]) {
        [view unmarkText];
        [[view inputContext] discardMarkedText];
    }
    NSString* before = [[[view string] copy] autorelease];
    NSString* now = toNSString(text);
    const NSUInteger prefix = commonPrefix(before, now);
    const NSUInteger suffix = commonSuffix(before, now, std::min([before length], [now length]) - prefix);
    const NSRange range = NSMakeRange(prefix, [before length] - suffix - prefix);
    NSString* inserted = [now substringWithRange:NSMakeRange(prefix, [now length] - suffix - prefix)];
    if (range.length == 0 && [inserted length] == 0) {
        return;
    }
    const NSRange selection = [view selectedRange];
    const bool isAll = selection.length > 0 && selection.length == [before length];
    [view breakUndoCoalescing];
    if (![view shouldChangeTextInRange:range replacementString:inserted]) {
        return;
    }
    [[view textStorage] replaceCharactersInRange:range withString:inserted];
    [view didChangeText];
    [view breakUndoCoalescing];
    const NSUInteger start = isAll ? 0 : moved(selection.location, range, [inserted length]);
    const NSUInteger end = isAll ? [now length] : moved(NSMaxRange(selection), range, [inserted length]);
    [view setSelectedRange:NSMakeRange(start, end - start)];
}

bool passToButtons(NSView* view) {
    NSEvent* event = [NSApp currentEvent];
    return [event type] == NSEventTypeKeyDown && [[view window] performKeyEquivalent:event];
}

bool isEscape(SEL command) {
    if (!sel_isEqual(command, @selector(cancelOperation:)) && !sel_isEqual(command, @selector(complete:))) {
        return false;
    }
    NSEvent* event = [NSApp currentEvent];
    NSString* characters = [event type] == NSEventTypeKeyDown ? [event charactersIgnoringModifiers] : @"";
    return [characters length] > 0 && [characters characterAtIndex:0] == escape;
}

} // namespace menubar
