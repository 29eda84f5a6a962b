#pragma once

namespace menubar {

/// The base of what others implement: a class of pure virtual functions. An implementation is never copied.
class Interface {
public:
    Interface() = default;
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;
    virtual ~Interface() = default;
};

} // namespace menubar
