#pragma once

#import <GNUstepGUI/GSTheme.h>

/// Draws GNUstep's own controls as those of a light desktop: buttons, steppers, scrollers, borders, the spinning wheel
/// and what shows the focus. Main thread.
@interface ControlTheme : GSTheme
@end
