#pragma once

#include <string>

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace menubar::e2e {

/// How often a file has been opened since this was made.
class OpenCounter {
public:
    explicit OpenCounter(const std::string& path) : m_queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        EXPECT_GE(::inotify_add_watch(m_queue, path.c_str(), IN_OPEN | IN_CLOSE_NOWRITE), 0);
    }

    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    ~OpenCounter() { ::close(m_queue); }

    int count() {
        inotify_event event{};
        // The events of a watched file have no name, so each has the bare size. Equal neighbours are merged before they
        // are read; the closings keep the openings apart.
        while (::read(m_queue, &event, sizeof event) == static_cast<ssize_t>(sizeof event)) {
            m_count += (event.mask & IN_OPEN) != 0 ? 1 : 0;
        }
        return m_count;
    }

private:
    int m_queue;
    int m_count = 0;
};

} // namespace menubar::e2e
