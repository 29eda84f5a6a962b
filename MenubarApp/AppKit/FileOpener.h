#pragma once

#include "MenubarCore/System/Interface.h"

#include <string>

namespace menubar {

/// Hands files to the desktop. Returns at once, whatever the desktop does with them. Main thread.
class FileOpener : public Interface {
public:
    /// A file in its default application, a directory in the file viewer.
    virtual void open(const std::string& path) = 0;

    /// A file, selected in the file viewer.
    virtual void reveal(const std::string& path) = 0;
};

} // namespace menubar
