#pragma once

#include "MenubarCtl/CommandTable.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace menubar::ctl {

/// What a word may become, and half a line about it; the latter may be empty.
struct Candidate {
    std::string text;
    std::string description;

    bool operator==(const Candidate&) const = default;
};

/// A setting, and what its VALUE may be where that is a choice.
struct SettingCandidate {
    Candidate setting;
    std::vector<std::string> values;
};

/// Where the names come from that no table holds. Asked only when they are wanted.
struct CompletionSources {
    std::function<std::vector<Candidate>()> sessions;
    std::function<std::vector<SettingCandidate>()> settings;
};

struct Completions {
    std::vector<Candidate> candidates;
    bool areFiles = false; ///< the shell knows better: any file

    bool operator==(const Completions&) const = default;
};

/// What the last of the words may become, given those before it: the command line after the program's name. Candidates
/// are single lines that hold nothing a terminal would obey. Pure but for the sources.
[[nodiscard]] Completions completionsOf(std::span<const std::string> words, const CompletionSources& sources);

/// The lines that the scripts read: a candidate, a tab and its description; or one line ":files".
[[nodiscard]] std::string completionLines(const Completions& completions);

/// The script for a shell. It asks `ostrel-menubarctl complete -- WORD...`, so that nothing is written twice.
[[nodiscard]] std::string_view completionScript(Shell shell);

} // namespace menubar::ctl
