#pragma once

#include "tests/e2e/Eventually.h"

#include <array>
#include <ctime>
#include <fstream>
#include <string>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace menubar::e2e {

/// Tells whether a file has been read since it was marked, by its time of access. A file system may keep few of those;
/// the first one after a change is among them, so a mark is a time of access before that of the last change.
class ReadMark {
public:
    explicit ReadMark(std::string path) : m_path(std::move(path)) {
        set();
        EXPECT_GT(std::ifstream(m_path).get(), 0) << m_path;
        m_isKept = wasRead();
        set();
    }

    /// Whether the file's place keeps times of access at all; it may be mounted without. Then nothing else here holds.
    [[nodiscard]] bool isKept() const { return m_isKept; }

    static constexpr const char* whyNot = "times of access are not kept here (noatime)";

    /// Marks it anew.
    void set() const {
        const std::array<timespec, 2> times{{{.tv_sec = 0, .tv_nsec = 0}, {.tv_sec = 0, .tv_nsec = UTIME_NOW}}};
        EXPECT_EQ(::utimensat(AT_FDCWD, m_path.c_str(), times.data(), 0), 0) << m_path;
    }

    [[nodiscard]] bool wasRead() const {
        struct stat info{};
        EXPECT_EQ(::stat(m_path.c_str(), &info), 0) << m_path;
        return info.st_atime >= info.st_mtime;
    }

    /// Whether it is read that often from now on, while a test has patience.
    [[nodiscard]] bool waitForReads(int count) const {
        for (; count > 0; --count) {
            set();
            if (!eventually([this] { return wasRead(); })) {
                return false;
            }
        }
        return true;
    }

private:
    std::string m_path;
    bool m_isKept = false;
};

} // namespace menubar::e2e
