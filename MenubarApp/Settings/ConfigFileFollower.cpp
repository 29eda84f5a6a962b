#include "MenubarApp/Settings/ConfigFileFollower.h"

#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarCore/System/FileManager.h"

#include <utility>

namespace menubar {

ConfigFileFollower::ConfigFileFollower(MainLoop& mainLoop, const FileManager& files)
    : m_mainLoop(mainLoop), m_files(files) {}

void ConfigFileFollower::remember(Content content) {
    forgetLooks();
    m_content = std::move(content);
}

void ConfigFileFollower::look(const std::string& path, std::function<void(const Content&)> found) {
    if (m_look) {
        return;
    }
    m_look = std::make_shared<int>();
    // In the queues it is held weakly: whether it still counts is this object's to say.
    m_mainLoop.runInBackground(
        [this, look = std::weak_ptr(m_look), &mainLoop = m_mainLoop, &files = m_files, path, found = std::move(found)] {
            const bool exists = files.exists(path);
            const auto read = exists ? files.contents(path) : std::string();
            mainLoop.post([this, look, exists, read, found] {
                if (look.expired()) {
                    return;
                }
                forgetLooks();
                if (read) { // what cannot be read now may be so the next time
                    found(exists ? Content(*read) : Content());
                }
            });
        });
}

} // namespace menubar
