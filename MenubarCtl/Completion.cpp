#include "MenubarCtl/Completion.h"

#include "MenubarCore/Text/DisplayText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace menubar::ctl {

namespace {

// The word under the cursor reaches the tool without its quotes, and what comes back is quoted again: a session's name
// comes from outside, and a command line must not run it. Old versions of bash (macOS has 3.2) know no compopt.
constexpr std::string_view bashScript = R"script(# bash completion for ostrel-menubarctl
_ostrel_menubarctl() {
  local word=${COMP_WORDS[COMP_CWORD]} line
  word=${word#[\"\']}
  word=${word//\\/}
  COMPREPLY=()
  while IFS= read -r line; do
    if [ "$line" = :files ]; then
      compopt -o filenames 2>/dev/null
      while IFS= read -r line; do COMPREPLY+=("$line"); done < <(compgen -f -- "$word")
      return
    fi
    COMPREPLY+=("$(printf %q "${line%%$'\t'*}")")
  done < <(ostrel-menubarctl complete -- "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$word" 2>/dev/null)
}

complete -F _ostrel_menubarctl ostrel-menubarctl
)script";

constexpr std::string_view zshScript = R"script(# zsh completion for ostrel-menubarctl
_ostrel_menubarctl() {
  local line
  local -a names shown
  while IFS= read -r line; do
    if [[ $line == :files ]]; then
      _files
      return
    fi
    names+=("${line%%$'\t'*}")
    if [[ $line == *$'\t'?* ]]; then
      shown+=("${line%%$'\t'*}  -- ${line#*$'\t'}")
    else
      shown+=("${line%%$'\t'*}")
    fi
  done < <(ostrel-menubarctl complete -- "${(Q)words[2,CURRENT-1][@]}" "${(Q)PREFIX}" 2>/dev/null)
  compadd -l -d shown -a names
}
if (( $+functions[compdef] )); then
  compdef _ostrel_menubarctl ostrel-menubarctl
fi
)script";

constexpr std::string_view fishScript = R"script(# fish completion for ostrel-menubarctl
function __ostrel_menubarctl
    set -l words (commandline -opc)
    set -l lines (ostrel-menubarctl complete -- $words[2..-1] (commandline -ct) 2>/dev/null)
    if test "$lines" = :files
        __fish_complete_path (commandline -ct)
    else
        printf '%s\n' $lines
    end
end
complete -c ostrel-menubarctl -f -a '(__ostrel_menubarctl)'
)script";

bool isSafe(std::string_view text) {
    return !text.empty() && displayText(text) == text;
}

class Completer {
public:
    Completer(std::span<const std::string> words, const CompletionSources& sources)
        : m_sources(sources), m_current(words.empty() ? "" : words.back()) {
        readWords(words.empty() ? words : words.first(words.size() - 1));
    }

    Completions complete() && {
        if (m_pending != nullptr) {
            addValues(*m_pending);
        } else if (!m_optionsEnded && m_current.starts_with('-')) {
            addOptions();
        } else {
            addOperands();
        }
        return std::move(m_result);
    }

private:
    void readWords(std::span<const std::string> words) {
        for (const std::string& word : words) {
            if (std::exchange(m_pending, nullptr) != nullptr) {
                continue; // an option's value
            }
            if (m_optionsEnded || word.size() < 2 || word.front() != '-') {
                m_words.push_back(word);
            } else if (word == "--") {
                m_optionsEnded = true;
            } else if (const OptionSpec* option = optionNamed(word); option != nullptr && !option->value.empty()) {
                m_pending = option;
            }
        }
        if (const CommandSpec* spec = commandOf(m_words); spec != nullptr && !spec->summary.empty()) {
            m_spec = spec;
            m_operands = m_words.size() - (spec->words.contains(' ') ? 2 : 1);
        }
    }

    void add(std::string_view text, std::string_view description = {}) {
        if (text.starts_with(m_current) && isSafe(text)) {
            m_result.candidates.push_back({.text = std::string(text), .description = displayTitle(description)});
        }
    }

    using Names = std::span<const std::string_view>;

    template <typename Texts>
    void addAll(const Texts& names) {
        for (const auto& name : names) {
            add(name);
        }
    }

    void addValues(const OptionSpec& option) {
        if (option.option == Option::statusFile) {
            m_result.areFiles = true;
        } else if (option.option == Option::color) {
            addAll(enumTexts<ColorChoice>);
        }
    }

    void addOptions() {
        for (const OptionSpec& option : optionTable()) {
            if (isCommon(option.option) || (m_spec != nullptr && m_spec->options.contains(option.option))) {
                std::string summary(option.summary.substr(0, option.summary.size() - 1));
                std::ranges::replace(summary, '\n', ' ');
                add(option.name, summary);
            }
        }
    }

    void addCommandWords() {
        const bool isSecond = !m_words.empty();
        for (const std::string_view word : isSecond ? secondWords(m_words[0]) : firstWords()) {
            const std::string words = isSecond ? m_words[0] + " " + std::string(word) : std::string(word);
            const auto spec = std::ranges::find(commandTable(), words, &CommandSpec::words);
            const auto group = std::ranges::find(commandGroups(), words, &CommandGroup::word);
            add(word, spec != commandTable().end()     ? spec->summary
                      : group != commandGroups().end() ? group->summary
                                                       : std::string_view());
        }
    }

    void addOperands() {
        if (m_spec == nullptr) {
            if (m_words.size() < 2) {
                addCommandWords();
            }
            return;
        }
        switch (m_spec->operands) {
        case Operands::none:
        case Operands::words: return;
        case Operands::session:
            if (m_operands == 0) {
                for (const Candidate& session : m_sources.sessions()) {
                    add(session.text, session.description);
                }
            }
            return;
        case Operands::setting:
        case Operands::settingAndValues: addSettings(); return;
        case Operands::barFormat:
        case Operands::shell:
            if (m_operands == 0) {
                addAll(m_spec->operands == Operands::shell ? Names(enumTexts<Shell>) : enumTexts<BarFormat>);
            }
            return;
        case Operands::topic:
            m_words.erase(m_words.begin());
            if (m_words.size() < 2) {
                addCommandWords();
            }
            return;
        }
    }

    void addSettings() {
        const bool takesValues = m_spec->operands == Operands::settingAndValues;
        if (m_operands > 0 && !takesValues) {
            return;
        }
        for (const SettingCandidate& each : m_sources.settings()) {
            if (m_operands == 0) {
                add(each.setting.text, each.setting.description);
            } else if (each.setting.text == m_words[2]) {
                addAll(each.values);
            }
        }
    }

    const CompletionSources& m_sources;
    std::string m_current;
    std::vector<std::string> m_words;
    const OptionSpec* m_pending = nullptr; // an option that waits for its value
    const CommandSpec* m_spec = nullptr;
    std::size_t m_operands = 0;
    bool m_optionsEnded = false;
    Completions m_result;
};

} // namespace

Completions completionsOf(std::span<const std::string> words, const CompletionSources& sources) {
    return Completer(words, sources).complete();
}

std::string completionLines(const Completions& completions) {
    if (completions.areFiles) {
        return ":files\n";
    }
    std::string text;
    for (const Candidate& candidate : completions.candidates) {
        text += candidate.text + "\t" + candidate.description + "\n";
    }
    return text;
}

std::string_view completionScript(Shell shell) {
    switch (shell) {
    case Shell::bash: return bashScript;
    case Shell::zsh: return zshScript;
    case Shell::fish: return fishScript;
    }
    return "";
}

} // namespace menubar::ctl
