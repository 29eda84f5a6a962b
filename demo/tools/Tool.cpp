#include "demo/tools/Tool.h"

#include "MenubarCore/JSON/JSONValue.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace menubar::demo {

Tool::Tool(std::string_view name, int argc, char** argv)
    : m_name(name), m_arguments(argv + (argc > 0 ? 1 : 0), argv + argc) {}

bool Tool::record() const {
    const char* const path = std::getenv("OSTREL_DEMO_RECORD");
    if (path == nullptr) {
        return true;
    }
    JSONValue::Array words;
    for (const std::string& argument : m_arguments) {
        words.emplace_back(argument);
    }
    const char* const quiet = std::getenv("CMUX_QUIET");
    const JSONValue call = JSONValue::Object{{"arguments", std::move(words)},
                                             {"quiet", quiet == nullptr ? JSONValue() : JSONValue(quiet)},
                                             {"tool", m_name}};
    const std::string line = call.compactText() + "\n";
    const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const bool written = file >= 0 && ::write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size());
    if (!written) {
        std::fprintf(stderr, "%s: %s: %s\n", m_name.c_str(), path, std::strerror(errno));
    }
    if (file >= 0) {
        ::close(file);
    }
    return written;
}

bool Tool::isToldToFail() const {
    const char* const told = std::getenv("OSTREL_DEMO_FAIL");
    return told != nullptr && !m_arguments.empty() && m_arguments.front() == told;
}

int Tool::fail(int status, std::string_view reason) const {
    std::fprintf(stderr, "%s: %.*s\n", m_name.c_str(), static_cast<int>(reason.size()), reason.data());
    return status;
}

} // namespace menubar::demo
