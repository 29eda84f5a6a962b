#include "MenubarCore/Text/ZoneFile.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace menubar {

namespace {

using std::chrono::seconds;

/// Reads big-endian numbers from the start of some bytes. Past their end everything is 0 and `isWhole` is false.
class Reader {
public:
    explicit Reader(std::string_view bytes) : m_rest(bytes) {}

    std::string_view bytes(std::size_t count) {
        m_isWhole = m_isWhole && count <= m_rest.size();
        const std::string_view result = m_isWhole ? m_rest.substr(0, count) : std::string_view();
        m_rest.remove_prefix(result.size());
        return result;
    }

    std::uint64_t number(std::size_t size) {
        std::uint64_t value = 0;
        for (const char c : bytes(size)) {
            value = value << 8 | static_cast<unsigned char>(c);
        }
        return value;
    }

    /// What stands before the next line feed, which is read too.
    std::string_view line() {
        const std::size_t end = m_rest.find('\n');
        m_isWhole = m_isWhole && end != std::string_view::npos;
        const std::string_view result = bytes(end);
        static_cast<void>(bytes(1));
        return result;
    }

    std::int64_t signed64() { return static_cast<std::int64_t>(number(8)); }

    std::int32_t signed32() { return static_cast<std::int32_t>(static_cast<std::uint32_t>(number(4))); }

    [[nodiscard]] bool isWhole() const { return m_isWhole; }

private:
    std::string_view m_rest;
    bool m_isWhole = true;
};

/// What stands before a block of data. The counts are 32 bits wide, so that no product below overflows.
struct Header {
    bool isValid = false;
    char version = 0;
    std::size_t utcIndicators = 0;
    std::size_t standardIndicators = 0;
    std::size_t leapSeconds = 0;
    std::size_t changes = 0;
    std::size_t types = 0;
    std::size_t abbreviationBytes = 0;

    explicit Header(Reader& reader) {
        constexpr std::size_t reserved = 15;
        const std::string_view magic = reader.bytes(4);
        version = static_cast<char>(reader.number(1));
        static_cast<void>(reader.bytes(reserved));
        for (std::size_t* const count :
             {&utcIndicators, &standardIndicators, &leapSeconds, &changes, &types, &abbreviationBytes}) {
            *count = reader.number(4);
        }
        isValid = reader.isWhole() && magic == "TZif";
    }

    /// How many bytes of data follow, with times of this many bytes.
    [[nodiscard]] std::size_t dataSize(std::size_t timeSize) const {
        return (changes * (timeSize + 1)) + (types * 6) + abbreviationBytes + (leapSeconds * (timeSize + 4)) +
               standardIndicators + utcIndicators;
    }
};

/// The offsets of the types of local time, in the file's order; empty when one of them is out of all bounds.
std::vector<seconds> readOffsets(Reader& reader, std::size_t count) {
    constexpr seconds most = std::chrono::hours(26);
    std::vector<seconds> offsets;
    for (std::size_t index = 0; index < count && reader.isWhole(); ++index) {
        offsets.emplace_back(reader.signed32());
        static_cast<void>(reader.bytes(2)); // whether it is daylight saving, and what it is called
        if (offsets.back() < -most || offsets.back() > most) {
            return {};
        }
    }
    return offsets;
}

} // namespace

std::optional<ZoneFile> ZoneFile::parse(std::string_view bytes) {
    Reader reader(bytes);
    const Header oldHeader(reader); // of the first version's data, which reach only from 1901 to 2038
    static_cast<void>(reader.bytes(oldHeader.dataSize(4)));
    const Header header(reader);
    if (!oldHeader.isValid || oldHeader.version < '2' || !header.isValid || header.leapSeconds > 0 ||
        header.dataSize(8) > bytes.size()) {
        return std::nullopt;
    }
    std::vector<seconds> times(header.changes);
    std::ranges::generate(times, [&reader] { return seconds(reader.signed64()); });
    const std::string_view types = reader.bytes(header.changes);
    const std::vector<seconds> offsets = readOffsets(reader, header.types);
    static_cast<void>(reader.bytes(header.abbreviationBytes + header.standardIndicators + header.utcIndicators));
    static_cast<void>(reader.line()); // an empty one before the rule
    const std::string_view ruleText = reader.line();
    const std::optional<DaylightRule> rule = DaylightRule::parse(ruleText);
    if (!reader.isWhole() || offsets.empty() || !std::ranges::is_sorted(times) || (!rule && !ruleText.empty())) {
        return std::nullopt;
    }
    ZoneFile result;
    result.m_firstOffset = offsets.front();
    result.m_rule = rule;
    for (std::size_t index = 0; index < times.size(); ++index) {
        const auto type = static_cast<unsigned char>(types[index]);
        if (type >= offsets.size()) {
            return std::nullopt;
        }
        result.m_changes.push_back({times[index], offsets[type]});
    }
    return result;
}

seconds ZoneFile::utcOffset(seconds sinceEpoch) const {
    const auto next = std::ranges::upper_bound(m_changes, sinceEpoch, {}, &Change::at);
    if (next == m_changes.end() && m_rule) {
        return m_rule->utcOffset(sinceEpoch);
    }
    return next == m_changes.begin() ? m_firstOffset : std::prev(next)->offset;
}

} // namespace menubar
