#include "demo/ConfigCommand.h"

#include "MenubarApp/Platform/PosixFileManager.h"

#include "demo/ConfigSchema.h"
#include "demo/ConfigValidation.h"

#include <cstdio>
#include <string_view>

namespace menubar::demo {

namespace {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

int validate(const std::string& path, bool asJSON) {
    const auto file = readConfig(path, PosixFileManager());
    const auto issues =
        file ? configIssues(*file) : std::vector<ValidationIssue>{{.options = {}, .message = file.error()}};
    if (asJSON) {
        print(validationDocument(issues).encode(JSONLayout::compact).value_or("") + "\n");
    } else {
        for (const ValidationIssue& issue : issues) {
            std::string line;
            for (const std::string& option : issue.options) {
                line += option + ": ";
            }
            print(line + issue.message + "\n");
        }
    }
    return issues.empty() ? 0 : 1;
}

} // namespace

std::optional<int> config(std::span<const std::string> arguments) {
    if (arguments.size() == 1 && arguments[0] == "schema") {
        print(configSchemaDocument());
        return 0;
    }
    const bool asJSON = arguments.size() == 3 && arguments[2] == "--json";
    if ((arguments.size() == 2 || asJSON) && arguments[0] == "validate") {
        return validate(arguments[1], asJSON);
    }
    return std::nullopt;
}

} // namespace menubar::demo
