// Stands in for the terminal program: takes the calls that the app makes, and does nothing but record them.

#include "demo/tools/Tool.h"

#include <algorithm>
#include <array>
#include <string_view>

int main(int argc, char** argv) {
    const menubar::demo::Tool tool("cmux", argc, argv);
    if (!tool.record()) {
        return 74;
    }
    constexpr std::array<std::string_view, 3> known{"select-workspace", "focus-panel", "notify"};
    if (tool.arguments().empty() || std::ranges::find(known, tool.arguments().front()) == known.end()) {
        return tool.fail(64, "unknown command");
    }
    return tool.isToldToFail() ? tool.fail(1, "told to fail") : 0;
}
