// Stands in for the system's script runner: records the call.

#include "demo/tools/Tool.h"

int main(int argc, char** argv) {
    const menubar::demo::Tool tool("osascript", argc, argv);
    if (!tool.record()) {
        return 74;
    }
    return tool.isToldToFail() ? tool.fail(1, "told to fail") : 0;
}
