#include "MenubarCtl/TextWatch.h"

#include "MenubarApp/StatusMenu/StatusMenuController.h"
#include "MenubarCtl/Terminal.h"
#include "MenubarCtl/TerminalLoop.h"

#include <optional>
#include <string_view>

#include <unistd.h>

namespace menubar::ctl {

ExitStatus watchText(const std::function<Frame()>& next, std::string_view between) {
    const auto loop = TerminalLoop::create();
    if (!loop) {
        return fail("cannot create a pipe");
    }
    std::optional<std::string> last;
    std::expected<void, int> written;
    const auto step = [&] {
        Frame frame = next();
        if (last == frame.whatCounts) {
            return;
        }
        written = writeAll(STDOUT_FILENO, (last ? std::string(between) : "") + frame.text);
        last = std::move(frame.whatCounts);
        if (!written) {
            loop->stop();
        }
    };
    step();
    const auto timer = loop->repeat(StatusMenuController::pollInterval, {}, step);
    loop->run({}, {});
    return finishWriting(written);
}

} // namespace menubar::ctl
