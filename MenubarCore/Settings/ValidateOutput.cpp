#include "MenubarCore/Settings/ValidateOutput.h"

#include "MenubarCore/JSON/JSONValue.h"

#include <optional>

namespace menubar {

namespace {

const JSONValue* member(const JSONValue::Object& object, std::string_view key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &found->second;
}

const JSONValue::Array* arrayMember(const JSONValue::Object& object, std::string_view key) {
    const JSONValue* value = member(object, key);
    return value == nullptr ? nullptr : value->arrayValue();
}

std::optional<ValidationIssue> issue(const JSONValue& element) {
    const JSONValue::Object* object = element.objectValue();
    const JSONValue* message = object == nullptr ? nullptr : member(*object, "message");
    if (message == nullptr || message->stringValue() == nullptr) {
        return std::nullopt;
    }
    ValidationIssue result{.options = {}, .message = *message->stringValue()};
    if (const JSONValue::Array* options = arrayMember(*object, "options")) {
        for (const JSONValue& option : *options) {
            if (const std::string* name = option.stringValue()) {
                result.options.push_back(*name);
            }
        }
    }
    return result;
}

} // namespace

std::string_view describe(ValidateOutput::ParseError error) {
    switch (error) {
    case ValidateOutput::ParseError::notJSON: return "config validate printed something other than JSON";
    case ValidateOutput::ParseError::unexpectedShape: return "config validate printed JSON of an unexpected shape";
    }
    return {};
}

std::expected<ValidateOutput, ValidateOutput::ParseError> ValidateOutput::parse(std::string_view standardOutput) {
    const auto document = JSONValue::decode(standardOutput);
    if (!document) {
        return std::unexpected(ParseError::notJSON);
    }
    const JSONValue::Object* object = document->objectValue();
    const JSONValue* ok = object == nullptr ? nullptr : member(*object, "ok");
    const std::optional<bool> isOk = ok == nullptr ? std::nullopt : ok->boolValue();
    if (!isOk) {
        return std::unexpected(ParseError::unexpectedShape);
    }
    if (*isOk) {
        return Ok{};
    }
    Invalid result;
    if (const JSONValue::Array* errors = arrayMember(*object, "errors")) {
        for (const JSONValue& element : *errors) {
            if (auto found = issue(element)) {
                result.issues.push_back(*std::move(found));
            }
        }
    }
    return result;
}

ValidateOutput::Messages ValidateOutput::mapped(const std::vector<ValidationIssue>& issues,
                                                const Options& knownOptions) {
    Messages messages;
    for (const ValidationIssue& issue : issues) {
        bool concernsAField = false;
        for (const std::string& option : issue.options) {
            if (knownOptions.contains(option)) {
                messages.fields.emplace(option, issue.message);
                concernsAField = true;
            }
        }
        if (!concernsAField) {
            messages.general.push_back(issue.message);
        }
    }
    return messages;
}

} // namespace menubar
