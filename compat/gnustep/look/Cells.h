#pragma once

#import <AppKit/AppKit.h>

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
