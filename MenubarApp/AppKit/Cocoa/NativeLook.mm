#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

/// Its scroller lies over the content, whatever is preferred elsewhere: the content is laid out in the full width.
@interface MenubarOverlayScrollView : NSScrollView
@end

@implementation MenubarOverlayScrollView

// AppKit calls this too, when the preference changes.
- (void)setScrollerStyle:(NSScrollerStyle)style {
    [super setScrollerStyle:NSScrollerStyleOverlay];
}

@end

namespace menubar {

void NativeLook::dressLabel(NSTextField* label) {
    [label setLineBreakStrategy:NSLineBreakStrategyStandard];
}

void NativeLook::dressField(NSTextField* field) {
    [field setBezeled:YES];
    [field setBezelStyle:NSTextFieldRoundedBezel];
    [[field cell] setUsesSingleLineMode:YES];
    [[field cell] setLineBreakMode:NSLineBreakByClipping];
}

void NativeLook::dressButton(NSButton* button, ButtonStyle style) {
    const bool isSmall = style == ButtonStyle::small;
    [button setBezelStyle:NSBezelStyleRounded];
    [button setBordered:style != ButtonStyle::borderless];
    [button setControlSize:isSmall ? NSControlSizeSmall : NSControlSizeRegular];
    [button setFont:[NSFont systemFontOfSize:isSmall ? [NSFont smallSystemFontSize] : [NSFont systemFontSize]]];
    [button setContentTintColor:style == ButtonStyle::borderless ? [NSColor secondaryLabelColor] : nil];
}

void NativeLook::dressCheckbox(NSButton* checkbox) {
    [[checkbox cell] setLineBreakMode:NSLineBreakByTruncatingTail];
}

void NativeLook::dressPicker(NSPopUpButton* picker) {
    [[picker cell] setLineBreakMode:NSLineBreakByTruncatingTail];
}

NSScrollView* NativeLook::newEditorScrollView(NSTextView* text) {
    NSScrollView* scrollView = [[NSScrollView alloc] initWithFrame:[text frame]];
    [scrollView setBorderType:NSBezelBorder];
    [scrollView setFocusRingType:NSFocusRingTypeExterior];
    [text setTextContainerInset:NSMakeSize(0.0, 4.0)];
    return scrollView;
}

NSScrollView* NativeLook::newScrollView() {
    NSScrollView* scrollView = [[MenubarOverlayScrollView alloc] initWithFrame:NSZeroRect];
    [scrollView setScrollerStyle:NSScrollerStyleOverlay];
    [scrollView setHorizontalScrollElasticity:NSScrollElasticityNone];
    [scrollView setAutomaticallyAdjustsContentInsets:NO];
    return scrollView;
}

NSImageView* NativeLook::newSymbolView() {
    return [[NSImageView alloc] initWithFrame:NSZeroRect];
}

NSImage* NativeLook::symbol(const std::string& name, const std::string& description, NSFont* font) {
    NSImage* image = [NSImage imageWithSystemSymbolName:toNSString(name)
                               accessibilityDescription:description.empty() ? nil : toNSString(description)];
    const bool isBold = ([[font fontDescriptor] symbolicTraits] & NSFontDescriptorTraitBold) != 0;
    return [image
        imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                         configurationWithPointSize:[font pointSize]
                                                             weight:isBold ? NSFontWeightBold : NSFontWeightRegular]];
}

void NativeLook::describe(NSView* view, const Accessibility& accessibility) {
    [view setAccessibilityLabel:accessibility.label.empty() ? nil : toNSString(accessibility.label)];
    [view setAccessibilityHelp:accessibility.description.empty() ? nil : toNSString(accessibility.description)];
}

void NativeLook::describeValue(NSView* view, double value) {
    [view setAccessibilityValue:[NSNumber numberWithDouble:value]];
}

void NativeLook::keepTextPlain(NSTextView* text) {
    [text setAutomaticQuoteSubstitutionEnabled:NO];
    [text setAutomaticDashSubstitutionEnabled:NO];
    [text setAutomaticTextReplacementEnabled:NO];
    [text setAutomaticSpellingCorrectionEnabled:NO];
    [text setAutomaticLinkDetectionEnabled:NO];
    [text setAutomaticDataDetectionEnabled:NO];
    [text setAutomaticTextCompletionEnabled:NO];
    [text setContinuousSpellCheckingEnabled:NO];
    [text setGrammarCheckingEnabled:NO];
    [text setSmartInsertDeleteEnabled:NO];
    if (@available(macOS 14.0, *)) {
        [text setInlinePredictionType:NSTextInputTraitTypeNo];
    }
}

} // namespace menubar
