// Implements what shim/AppKit/AppKit.h declares, apart from what belongs to one class of ours.
#import <AppKit/AppKit.h>

#import "compat/gnustep/desktop/MenuPanel.h"
#import "compat/gnustep/look/SymbolImage.h"

namespace {

NSApplicationActivationPolicy activationPolicy = NSApplicationActivationPolicyRegular;

} // namespace

@implementation NSApplication (MenubarShim)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    activationPolicy = policy;
    return YES;
}

- (NSApplicationActivationPolicy)activationPolicy {
    return activationPolicy;
}

@end

@implementation NSFont (MenubarShim)

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    const CGFloat halfWay = (NSFontWeightRegular + NSFontWeightBold) / 2;
    return weight > halfWay ? [NSFont boldSystemFontOfSize:size] : [NSFont systemFontOfSize:size];
}

+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return [NSFont userFixedPitchFontOfSize:size];
}

@end

@implementation NSImage (MenubarShim)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
    return [SymbolImage symbolNamed:name accessibilityDescription:description];
}

@end

@implementation NSMenu (MenubarShim)

- (void)setItemArray:(NSArray*)items {
    for (NSInteger last = [self numberOfItems] - 1; last >= 0; --last) {
        [self removeItemAtIndex:last];
    }
    for (NSMenuItem* item in items) {
        [self addItem:item];
    }
}

- (void)cancelTracking {
    [MenuPanel cancelTracking:self];
}

@end

@implementation NSTimer (MenubarShim)

- (void)setTolerance:(NSTimeInterval)tolerance {
}

@end
