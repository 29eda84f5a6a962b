#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace menubar {

/// Owns one reference to an Objective-C object, or to none. The sources are compiled without automatic reference
/// counting, which the Debian runtime does not have: every reference that outlives a function is held by one of these,
/// in C++ objects and in Objective-C ones.
template <typename T>
class ObjCPointer {
public:
    ObjCPointer() = default;

    /// Takes over the reference that the caller owns: of an `alloc`, `new` or `copy`.
    [[nodiscard]] static ObjCPointer adopt(T* owned) { return ObjCPointer(owned); }

    /// Adds a reference: of anything else.
    [[nodiscard]] static ObjCPointer retain(T* object) { return ObjCPointer([object retain]); }

    ObjCPointer(const ObjCPointer& other) : m_object([other.m_object retain]) {}

    ObjCPointer(ObjCPointer&& other) noexcept : m_object(std::exchange(other.m_object, nil)) {}

    ObjCPointer& operator=(ObjCPointer other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }

    ~ObjCPointer() { [m_object release]; }

    /// Good as long as this pointer, or another owner, is.
    [[nodiscard]] T* get() const { return m_object; }

    explicit operator bool() const { return m_object != nil; }

private:
    explicit ObjCPointer(T* owned) : m_object(owned) {}

    T* m_object = nil;
};

} // namespace menubar
