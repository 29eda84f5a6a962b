#pragma once

#import <AppKit/AppKit.h>

/// Draws a pop-up button: the chosen title, cut with an ellipsis, and two arrows. Main thread.
@interface PickerCell : NSPopUpButtonCell
@end
