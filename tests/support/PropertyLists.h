#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Property lists for tests, byte by byte.
namespace menubar::testing_support {

inline std::string xmlPropertyList(std::string_view value) {
    std::string list = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                       "<plist version=\"1.0\">";
    list += value;
    list += "</plist>\n";
    return list;
}

/// A launch agent's list with these program arguments, which hold no markup.
inline std::string launchAgentPlist(const std::vector<std::string>& words) {
    std::string value = "<dict><key>Label</key><string>dev.ostrel.daemon</string><key>ProgramArguments</key><array>";
    for (const std::string& word : words) {
        value += "<string>" + word + "</string>";
    }
    return xmlPropertyList(value + "</array><key>RunAtLoad</key><true/></dict>");
}

/// A binary property list of these objects; the first is the top one. Offsets take 4 bytes, references 2.
inline std::string binaryPropertyList(const std::vector<std::string>& objects) {
    const auto big = [](std::uint64_t value, int size) {
        std::string bytes;
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
            bytes += static_cast<char>(value >> shift & 0xFF);
        }
        return bytes;
    };
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += big(list.size(), 4);
        list += object;
    }
    const std::size_t table = list.size();
    list += offsets + std::string(6, '\0') + "\x04\x02";
    return list + big(objects.size(), 8) + big(0, 8) + big(table, 8);
}

namespace binary {

/// A container object: at most 14 references (an even number, keys first, for a dictionary).
inline std::string container(unsigned marker, std::size_t count, std::initializer_list<unsigned> references) {
    std::string object(1, static_cast<char>(marker << 4 | count));
    for (const unsigned reference : references) {
        object += static_cast<char>(reference >> 8);
        object += static_cast<char>(reference & 0xFF);
    }
    return object;
}

inline std::string array(std::initializer_list<unsigned> references) {
    return container(0xA, references.size(), references);
}

inline std::string dictionary(std::initializer_list<unsigned> references) {
    return container(0xD, references.size() / 2, references);
}

/// At most 14 ASCII characters.
inline std::string string(std::string_view text) {
    return static_cast<char>(0x50 | text.size()) + std::string(text);
}

} // namespace binary

} // namespace menubar::testing_support
