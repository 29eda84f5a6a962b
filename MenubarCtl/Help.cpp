#include "MenubarCtl/Help.h"

#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCtl/CommandTable.h"

#include <algorithm>

// The build names the version; a compiler run by hand knows none.
#if !defined(MENUBAR_VERSION)
#define MENUBAR_VERSION "unversioned"
#endif

namespace menubar::ctl {

const std::string_view programVersion = MENUBAR_VERSION;

namespace {

constexpr std::size_t column = 22;

/// A name, and beside it, or below it where it is too long, what it means; each further line of that in the column.
void addEntry(std::string& text, const std::string& name, std::string_view meaning) {
    std::string line = "  " + name;
    if (line.size() + 2 > column) {
        text += line + "\n";
        line.clear();
    }
    while (!meaning.empty()) {
        const std::size_t end = std::min(meaning.find('\n'), meaning.size());
        line.append(column - line.size(), ' ').append(meaning.substr(0, end));
        text += line + "\n";
        line.clear();
        meaning.remove_prefix(std::min(end + 1, meaning.size()));
    }
}

void addOption(std::string& text, const OptionSpec& spec) {
    std::string name(spec.letter);
    name += name.empty() ? "" : ", ";
    name += spec.name;
    name += spec.value.empty() ? "" : " " + std::string(spec.value);
    addEntry(text, name, spec.summary);
}

void addOptions(std::string& text, const CommandSpec* spec) {
    std::string own;
    std::string common;
    for (const OptionSpec& option : optionTable()) {
        if (isCommon(option.option)) {
            addOption(common, option);
        } else if (spec != nullptr && spec->options.contains(option.option)) {
            addOption(own, option);
        }
    }
    addEntry(common, "--", "what follows are no options\n");
    text += own.empty() ? "" : "\nOptions:\n" + own;
    text += "\nOptions of every command:\n" + common;
}

std::string page(const CommandSpec& spec) {
    const std::string summary(spec.summary);
    std::string text =
        "usage: " + synopsis(spec) + "\n\n" + uppercased(summary.substr(0, 1)) + summary.substr(1) + ".\n";
    text += spec.details.empty() ? "" : "\n" + std::string(spec.details);
    addOptions(text, &spec);
    return text;
}

std::string groupPage(const CommandGroup& group) {
    std::string text;
    std::string entries;
    for (const CommandSpec& spec : commandTable()) {
        if (spec.words.starts_with(std::string(group.word) + " ")) {
            text += (text.empty() ? "usage: " : "       ") + synopsis(spec) + "\n";
            addEntry(entries, std::string(spec.words), std::string(spec.summary) + "\n");
        }
    }
    return text + "\n" + entries + "\n\"ostrel-menubarctl help COMMAND\" tells all about one of them.\n";
}

std::string overview() {
    std::string text = "usage: ostrel-menubarctl COMMAND [OPTIONS]\n\n"
                       "Shows and does in a terminal what the ostrel-menubar item does with a mouse.\n\n"
                       "Commands:\n";
    for (const std::string_view word : firstWords()) {
        const auto group = std::ranges::find(commandGroups(), word, &CommandGroup::word);
        if (group != commandGroups().end()) {
            addEntry(text, std::string(word) + " " + joined(secondWords(word), "|"), group->summary);
        } else {
            addEntry(text, std::string(word), std::ranges::find(commandTable(), word, &CommandSpec::words)->summary);
        }
    }
    addOptions(text, nullptr);
    return text + "\n\"ostrel-menubarctl help COMMAND\" tells all about one command.\n"
                  "Exit status: 0 done, 1 what was asked for failed, 2 the command line is wrong.\n";
}

} // namespace

std::string helpText(std::string_view topic) {
    for (const CommandSpec& spec : commandTable()) {
        if (!topic.empty() && spec.words == topic) {
            return page(spec);
        }
    }
    const auto group = std::ranges::find(commandGroups(), topic, &CommandGroup::word);
    return group == commandGroups().end() ? overview() : groupPage(*group);
}

} // namespace menubar::ctl
