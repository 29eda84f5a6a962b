#pragma once

#include <string>
#include <string_view>

/// The compiled zone database that the C library reads. Any thread, not while another one changes the environment.
namespace menubar::ZoneDatabase {

/// `TZDIR` where it is set and not empty, else where systems keep it. It may hold nothing, or not exist.
[[nodiscard]] std::string directory();

/// Whether it has a zone of exactly this IANA name. Reads the directories on the way and one small file.
[[nodiscard]] bool holds(std::string_view name);

} // namespace menubar::ZoneDatabase
