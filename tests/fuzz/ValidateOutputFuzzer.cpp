// Feeds any bytes to the reader of what `config validate` prints: it understands or refuses, and no message gets lost.

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/ValidateOutput.h"

#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace menubar;
using menubar::fuzz::require;

namespace {

const ValidateOutput::Options known{"a", "warn-context", "dry-run"};

bool isShown(const ValidationIssue& issue, const ValidateOutput::Messages& messages) {
    const bool isGeneral = std::ranges::find(messages.general, issue.message) != messages.general.end();
    return isGeneral || std::ranges::any_of(issue.options, [&](const std::string& option) {
               return messages.fields.contains(option); // its own message, or that of an earlier issue
           });
}

void checkMessages(const std::vector<ValidationIssue>& issues) {
    const auto messages = ValidateOutput::mapped(issues, known);
    require(messages.fields.size() + messages.general.size() <= issues.size() * known.size() + issues.size(),
            "messages come from issues");
    for (const auto& [option, message] : messages.fields) {
        require(known.contains(option), "only known options have a message");
        const auto first = std::ranges::find_if(issues, [&](const ValidationIssue& issue) {
            return std::ranges::find(issue.options, option) != issue.options.end();
        });
        require(first != issues.end() && first->message == message, "the first issue that names an option wins");
    }
    for (const ValidationIssue& issue : issues) {
        require(isShown(issue, messages), "every issue is shown somewhere");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto output = ValidateOutput::parse(text);
    const auto value = JSONValue::decode(text);
    if (!output) {
        require((output.error() == ValidateOutput::ParseError::notJSON) == !value, "what is not JSON is called so");
        return 0;
    }
    require(value.has_value(), "what was understood is JSON");
    require(ValidateOutput::parse(value->encode(JSONLayout::compact).value()) == output, "layout makes no difference");
    if (const auto* invalid = output->invalid()) {
        checkMessages(invalid->issues);
    }
    return 0;
}
