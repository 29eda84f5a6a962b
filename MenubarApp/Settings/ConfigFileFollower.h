#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace menubar {

class FileManager;
class MainLoop;

/// Knows what the form on the screen was read from, and looks, in the background, whether the config file still is
/// that. Main thread.
class ConfigFileFollower {
public:
    /// A file's content; nothing where there is no file.
    using Content = std::optional<std::string>;

    /// Both outlive this object and every look.
    ConfigFileFollower(MainLoop& mainLoop, const FileManager& files);

    // Events from the model

    /// The form or the file is about to become another: a look under way no longer counts.
    void forgetLooks() { m_look.reset(); }

    /// The form is what `content` says.
    void remember(Content content);

    /// Tells `found` what the file holds now; never when it cannot be read or `forgetLooks` came first. Nothing happens
    /// while another look is under way.
    void look(const std::string& path, std::function<void(const Content&)> found);

    // State for the model

    [[nodiscard]] const Content& content() const { return m_content; }

private:
    MainLoop& m_mainLoop;
    const FileManager& m_files;
    Content m_content;
    std::shared_ptr<int> m_look; ///< lives as long as the look under way counts
};

} // namespace menubar
