#import "tests/appkit/MenuDriver.h"

#import "compat/gnustep/desktop/MenuPanel.h"
#import "compat/gnustep/desktop/MenuView.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/AppKit/ObjCPointer.h"

#include <utility>

/// Takes the steps from a timer that runs only while a menu is tracked.
@interface StepTaker : NSObject {
    std::vector<menubar::driver::Step> _steps;
    std::size_t _next;
    BOOL _isTurnForEvent;
    BOOL _hadToClose;
}
- (instancetype)initWithSteps:(std::vector<menubar::driver::Step>)steps;
- (void)takeStep:(NSTimer*)timer;
- (BOOL)hadToClose;
@end

@implementation StepTaker

- (instancetype)initWithSteps:(std::vector<menubar::driver::Step>)steps {
    self = [super init];
    if (self != nil) {
        _steps = std::move(steps);
        _next = 0;
        _isTurnForEvent = YES;
        _hadToClose = NO;
    }
    return self;
}

- (void)takeStep:(NSTimer*)timer {
    // Every other turn is for the event of the step before.
    _isTurnForEvent = !_isTurnForEvent;
    if (_isTurnForEvent) {
        return;
    }
    if (_next < _steps.size()) {
        _steps[_next++]();
    } else if (_next++ > _steps.size() + 1) {
        _hadToClose = YES;
        [[MenuPanel current] cancel];
    }
}

- (BOOL)hadToClose {
    return _hadToClose;
}

@end

namespace menubar::driver {

namespace {

constexpr NSTimeInterval stepInterval = 0.012;

MenuView* openView() {
    return [[MenuPanel current] view];
}

NSInteger indexOf(const std::string& title) {
    MenuView* view = openView();
    for (NSInteger index = 0; index < static_cast<NSInteger>([view numberOfItems]); ++index) {
        if (toString([[view itemAtIndex:index] title]) == title) {
            return index;
        }
    }
    return [MenuView none];
}

void postMouse(NSEventType type, NSPoint place, NSInteger windowNumber) {
    NSEvent* event = [NSEvent mouseEventWithType:type
                                        location:place
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:windowNumber
                                         context:nil
                                     eventNumber:0
                                      clickCount:1
                                        pressure:0];
    [NSApp postEvent:event atStart:NO];
}

/// In the middle of the item's row, in the coordinates of the open menu's window.
NSPoint middleOf(const std::string& title) {
    MenuView* view = openView();
    const NSRect row = [view rectOfItem:indexOf(title)];
    return [view convertPoint:NSMakePoint(NSMidX(row), NSMidY(row)) toView:nil];
}

NSInteger windowNumber() {
    return [[[MenuPanel current] window] windowNumber];
}

} // namespace

bool openMenu(AppKitStatusItem& item, std::vector<Step> steps) {
    return trackMenu([&item] { [[item.nativeItem() button] performClick:nil]; }, std::move(steps));
}

bool trackMenu(const std::function<void()>& open, std::vector<Step> steps) {
    const auto taker = ObjCPointer<StepTaker>::adopt([[StepTaker alloc] initWithSteps:std::move(steps)]);
    NSTimer* timer = [NSTimer timerWithTimeInterval:stepInterval
                                             target:taker.get()
                                           selector:@selector(takeStep:)
                                           userInfo:nil
                                            repeats:YES];
    [[NSRunLoop mainRunLoop] addTimer:timer forMode:NSEventTrackingRunLoopMode];
    @autoreleasepool {
        open();
    }
    [timer invalidate];
    return [taker.get() hadToClose];
}

Step click(const std::string& title) {
    return [title] {
        if (indexOf(title) == [MenuView none]) {
            return;
        }
        postMouse(NSLeftMouseDown, middleOf(title), windowNumber());
        postMouse(NSLeftMouseUp, middleOf(title), windowNumber());
    };
}

Step hover(const std::string& title) {
    return [title] { postMouse(NSMouseMoved, middleOf(title), windowNumber()); };
}

Step clickFarAway() {
    return [] {
        postMouse(NSLeftMouseDown, NSMakePoint(-500, -5), windowNumber());
        postMouse(NSLeftMouseUp, NSMakePoint(-500, -5), windowNumber());
    };
}

Step key(unichar character, NSUInteger modifiers) {
    return [character, modifiers] {
        NSString* text = [NSString stringWithCharacters:&character length:1];
        [NSApp postEvent:[NSEvent keyEventWithType:NSKeyDown
                                                location:NSZeroPoint
                                           modifierFlags:modifiers
                                               timestamp:0
                                            windowNumber:windowNumber()
                                                 context:nil
                                              characters:text
                             charactersIgnoringModifiers:text
                                               isARepeat:NO
                                                 keyCode:0]
                 atStart:NO];
    };
}

Step wheel(double notches) {
    return [notches] {
        NSEvent* event = [NSEvent mouseEventWithType:NSScrollWheel
                                            location:NSMakePoint(50, 50)
                                       modifierFlags:0
                                           timestamp:0
                                        windowNumber:windowNumber()
                                             context:nil
                                         eventNumber:0
                                          clickCount:0
                                            pressure:0
                                        buttonNumber:0
                                              deltaX:0
                                              deltaY:notches
                                              deltaZ:0];
        [NSApp postEvent:event atStart:NO];
    };
}

Step wait() {
    return [] {};
}

bool isMenuOpen() {
    return [MenuPanel current] != nil;
}

std::vector<std::string> openTitles() {
    std::vector<std::string> titles;
    MenuView* view = openView();
    for (NSInteger index = 0; index < static_cast<NSInteger>([view numberOfItems]); ++index) {
        NSMenuItem* item = [view itemAtIndex:index];
        titles.push_back([item isSeparatorItem] ? "-" : toString([item title]));
    }
    return titles;
}

std::string highlightedTitle() {
    return toString([[openView() itemAtIndex:[openView() highlighted]] title]);
}

} // namespace menubar::driver
