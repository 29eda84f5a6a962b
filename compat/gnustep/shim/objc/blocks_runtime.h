#pragma once

// -fblocks asks the GCC runtime's headers for this file; Debian keeps its contents under another name.
#include <Block.h>
