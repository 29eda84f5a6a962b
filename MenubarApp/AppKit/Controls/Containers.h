#pragma once

#import <AppKit/AppKit.h>

/// A plain view in which y grows downwards. Main thread.
@interface MenubarFlippedView : NSView
@end

/// The rounded background of a section. It follows the system's appearance: its colours are looked up as it is drawn.
@interface MenubarBoxView : MenubarFlippedView
@end

/// A line as wide or as high as its frame.
@interface MenubarDividerView : NSView
@end
