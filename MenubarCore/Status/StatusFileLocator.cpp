#include "MenubarCore/Status/StatusFileLocator.h"

#include "MenubarCore/Status/StatusDecoder.h"
#include "MenubarCore/Text/Tilde.h"

namespace menubar::StatusFileLocator {

std::string path(const Environment& environment, std::string_view home) {
    const std::string_view named = variable(environment, environmentKey);
    return named.empty() ? std::string(home) + "/.local/state/ostrel/status.json" : expandTilde(named, home);
}

StatusSnapshot load(const std::string& path, const FileManager& fileManager) {
    if (!fileManager.exists(path)) {
        return StatusSnapshot::missing();
    }
    const auto contents = fileManager.contents(path);
    if (!contents) {
        return StatusSnapshot::unreadable(StatusFileLocator::describe(contents.error()));
    }
    auto file = StatusDecoder::decode(*contents);
    return file ? StatusSnapshot::loaded(std::move(*file))
                : StatusSnapshot::unreadable(StatusFileLocator::describe(file.error()));
}

std::string describe(const DecodingError& error) {
    return menubar::describe(error);
}

std::string describe(const FileError& error) {
    return error.message;
}

} // namespace menubar::StatusFileLocator
