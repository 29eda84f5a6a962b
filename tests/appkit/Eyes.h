#pragma once

#import <AppKit/AppKit.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A person's eyes: what is on the screen, which is what has been drawn so far. Nothing is drawn in order to be looked
/// at, so that what nobody marked as out of date is seen as it is.
namespace menubar::driver {

/// Pixels of the screen, row by row from above: 0xRRGGBB, with whatever is above that.
struct Picture {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint32_t> pixels;

    bool operator==(const Picture&) const = default;

    /// What is in the area, which is measured in points from the lower left corner.
    [[nodiscard]] Picture inside(NSRect area) const;
    /// The whole with the area blanked.
    [[nodiscard]] Picture outside(NSRect area) const;
    /// How many different colours there are.
    [[nodiscard]] std::size_t colors() const;
};

/// The window with its frame, as it is on the screen at this moment. Each platform has its own: it must ask the window
/// server, for the view's own drawing methods draw before they answer.
[[nodiscard]] Picture look(NSWindow* window);

/// After how many looks that are all the same nothing moves any more. More than it takes until what was drawn is on the
/// screen.
extern const int looksAtRest;

/// The same once the main loop has drawn what was marked, and nothing moves any more.
[[nodiscard]] Picture lookAtRest(NSWindow* window);

/// The same once it is another than before; that it never is fails the test.
[[nodiscard]] Picture lookForNews(NSWindow* window, const Picture& before);

/// Where the view is in the picture of its window.
[[nodiscard]] NSRect placeInPicture(NSView* view);

/// What `change` changes is seen inside the area and nowhere else, and `undo` brings the first picture back.
void expectSeen(NSWindow* window, NSRect area, const std::function<void()>& change, const std::function<void()>& undo);

/// Drawing everything anew changes nothing: nothing that was is still to be seen.
void expectUpToDate(NSWindow* window);

/// Writes a PNG file.
void save(const Picture& picture, const std::string& path);

} // namespace menubar::driver
