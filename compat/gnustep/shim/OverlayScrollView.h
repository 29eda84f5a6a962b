#pragma once

#import <AppKit/AppKit.h>

/// A scroll view whose one scroller lies over its content, at the right. Nothing in it is opaque, so that the scroller
/// is drawn again with whatever is drawn below it. Main thread.
@interface OverlayScrollView : NSScrollView
@end
