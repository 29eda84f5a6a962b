#pragma once

#include "MenubarApp/View/Geometry.h"
#include "MenubarApp/View/ViewHost.h"

namespace menubar {

/// Gives every view of the tree its `frame` (and every scroll view its `contentSize`) so that the root fills `size`.
///
/// - A stack gives each view its ideal size. Room that is left goes to what can grow (fields, editors, scroll views,
///   what fills), and to spacers where nothing else can. Where room is short, what can grow gives way first, then texts
///   (which wrap), the widest first; buttons, switches and the like keep their size.
/// - A scroll view's content is as wide as the scroll view and as high as it needs.
/// - What does not fit even at its smallest overflows to the right and below.
/// - Frames are whole points.
///
/// Linear in the number of views. Sizes found are kept in the views: `measurer` is asked again only about a view after
/// `forgetSizes`, and about a text whose width changed while it wraps. A view's `forgetSizes` goes with that of all
/// views around it.
void layOut(View& root, Size size, Measurer& measurer);

} // namespace menubar
