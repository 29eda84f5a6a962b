#pragma once

#include "MenubarCore/System/Interface.h"

namespace menubar {

/// An alert that is up on a window. Destroying it takes it away without an answer; once it is answered that does
/// nothing. Main thread.
class AlertSheet : public Interface {};

} // namespace menubar
