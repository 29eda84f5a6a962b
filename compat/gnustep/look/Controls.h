#pragma once

#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSTheme.h>

/// Draws a wrapping text, cut with an ellipsis where it has more lines than it may. GNUstep's own cell measures no
/// wrapped text and cuts none. Main thread.
@interface LabelCell : NSTextFieldCell {
    NSInteger _maximumNumberOfLines;
}

/// 0 for no limit.
- (void)setMaximumNumberOfLines:(NSInteger)lines;

/// What is drawn in a cell of that size.
- (NSString*)textShownIn:(NSSize)size;

@end

/// Draws one line of text in a rounded border, with its placeholder and the focus. Main thread.
@interface FieldCell : NSTextFieldCell
@end

/// Draws a pop-up button: the chosen title, cut with an ellipsis, and two arrows. Main thread.
@interface PickerCell : NSPopUpButtonCell
@end

/// Draws GNUstep's own controls as those of a light desktop, what shows the focus, and windows. Main thread.
@interface ControlTheme : GSTheme
@end

/// A scroll view whose one scroller lies over its content, at the right. Nothing in it is opaque, so that the scroller
/// is drawn again with whatever is drawn below it. Main thread.
@interface OverlayScrollView : NSScrollView
@end
