#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace menubar::testing_support {

/// A variable of this process for as long as this object lives; what it was before is put back. One thread.
class ScopedVariable {
public:
    /// Without a value there is no such variable.
    ScopedVariable(std::string name, const std::optional<std::string>& value) : m_name(std::move(name)) {
        if (const char* before = std::getenv(m_name.c_str())) {
            m_before = before;
        }
        set(value);
    }

    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

    ~ScopedVariable() { set(m_before); }

private:
    void set(const std::optional<std::string>& value) const {
        if (value) {
            ::setenv(m_name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(m_name.c_str());
        }
    }

    std::string m_name;
    std::optional<std::string> m_before;
};

} // namespace menubar::testing_support
