#pragma once

namespace menubar {

/// An alert that is up on a window. Destroying it takes it away without an answer; once it is answered that does
/// nothing. Main thread.
class AlertSheet {
public:
    AlertSheet() = default;
    AlertSheet(const AlertSheet&) = delete;
    AlertSheet& operator=(const AlertSheet&) = delete;
    virtual ~AlertSheet() = default;
};

} // namespace menubar
