#pragma once

#include "MenubarCore/Status/StatusFile.h"

#include <string>
#include <variant>

namespace menubar {

/// The outcome of one read of the status file. Compared by value.
class StatusSnapshot {
public:
    /// The file exists but could not be read or decoded; `reason` is one line that says why.
    struct Unreadable {
        std::string reason;
        bool operator==(const Unreadable&) const = default;
    };

    struct Loaded {
        StatusFile file;
        bool operator==(const Loaded&) const = default;
    };

    /// No file at the path.
    struct Missing {
        bool operator==(const Missing&) const = default;
    };

    using Storage = std::variant<Unreadable, Loaded, Missing>;

    StatusSnapshot() : m_storage(Missing{}) {}

    [[nodiscard]] static StatusSnapshot unreadable(std::string reason) {
        return StatusSnapshot(Unreadable{std::move(reason)});
    }

    [[nodiscard]] static StatusSnapshot loaded(StatusFile file) { return StatusSnapshot(Loaded{std::move(file)}); }

    [[nodiscard]] static StatusSnapshot missing() { return {}; }

    /// The decoded file of `loaded`, null otherwise. Points into this snapshot.
    [[nodiscard]] const StatusFile* file() const& {
        const auto* loaded = std::get_if<Loaded>(&m_storage);
        return loaded == nullptr ? nullptr : &loaded->file;
    }

    const StatusFile* file() && = delete;

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    bool operator==(const StatusSnapshot&) const = default;

private:
    explicit StatusSnapshot(Storage storage) : m_storage(std::move(storage)) {}

    Storage m_storage;
};

} // namespace menubar
