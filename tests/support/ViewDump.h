#pragma once

#include "MenubarApp/View/View.h"

#include <string>

namespace menubar {

/// A stable text of the tree, one line a view and two blanks a level: kind, texts, what differs from the default.
[[nodiscard]] std::string dump(const View& view);

/// The same of a laid-out tree with the frames, "(x,y width x height)", in place of how they came about.
[[nodiscard]] std::string dumpFrames(const View& root);

} // namespace menubar
