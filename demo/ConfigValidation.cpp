#include "demo/ConfigValidation.h"

#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Text/Digits.h"

#include "demo/ConfigSchema.h"
#include "demo/DemoConfig.h"

#include <optional>
#include <utility>

namespace menubar::demo {

namespace {

using Kind = SettingControl::Kind;
using Issues = std::vector<ValidationIssue>;

bool isTime(const JSONValue& value) {
    const std::string* text = value.stringValue();
    if (text == nullptr || text->size() != 5 || (*text)[2] != ':') {
        return false;
    }
    const auto isBelow = [&](std::string_view limit, std::size_t at) {
        std::string_view part = std::string_view(*text).substr(at, 2);
        const std::string_view digits = takeDigits(part);
        return digits.size() == 2 && digits < limit;
    };
    return isBelow("24", 0) && isBelow("60", 3);
}

/// {"from": "22:00", "to": "07:00"}, or null.
std::optional<std::string> quietHoursFault(const JSONValue& value) {
    const JSONValue::Object* object = value.objectValue();
    if (value.isNull()) {
        return std::nullopt;
    }
    const bool hasBoth = object != nullptr && object->size() == 2 && object->contains("from") && object->contains("to");
    if (!hasBoth || !isTime(object->at("from")) || !isTime(object->at("to"))) {
        return "must be null or an object with \"from\" and \"to\", each a time such as 22:00";
    }
    return object->at("from") == object->at("to") ? std::optional("begins when it ends") : std::nullopt;
}

std::optional<std::string> pathFault(const SettingValue& value) {
    const std::string* path = value.text();
    const bool isUsable = path == nullptr || path->empty() || path->starts_with('/') || path->starts_with("~/");
    return isUsable ? std::nullopt : std::optional("must be an absolute path or begin with ~/");
}

std::optional<std::string> fault(const SettingSpec& spec, const JSONValue& value) {
    if (spec.name == "quiet-hours") {
        return quietHoursFault(value);
    }
    const bool isNumber = spec.control.kind() == Kind::number || spec.control.kind() == Kind::percent;
    const auto converted = SettingValue::from(value, spec);
    // The app understands a number in quotes; the daemon insists on a number.
    if (!converted || (isNumber && value.stringValue() != nullptr)) {
        return "has a value of the wrong type: " + value.compactText();
    }
    if (auto message = SettingsForm::validate(spec, *converted)) {
        return message;
    }
    return spec.control.kind() == Kind::path ? pathFault(*converted) : std::nullopt;
}

/// The settings that each are right may contradict one another.
void findContradictions(const DemoConfig& config, Issues& issues) {
    if (config.number("warn-context") >= config.number("critical-context")) {
        issues.push_back({.options = {"warn-context", "critical-context"},
                          .message = "warn-context must be below critical-context"});
    }
    if (config.number("poll-interval") >= config.number("stale-after")) {
        issues.push_back(
            {.options = {"poll-interval", "stale-after"}, .message = "poll-interval must be shorter than stale-after"});
    }
    const std::string* location = config.settings().at("handoff-location").stringValue();
    if (location != nullptr && *location == "external" && config.settings().at("handoff-directory").isNull()) {
        issues.push_back({.options = {"handoff-directory"},
                          .message = "handoff-location is external, so handoff-directory must be set"});
    }
}

} // namespace

std::expected<JSONValue::Object, std::string> readConfig(const std::string& path, const FileManager& files) {
    const auto contents = files.contents(path);
    if (!contents) {
        return std::unexpected(contents.error().message);
    }
    auto object = SettingsForm::parseFile(*contents);
    if (!object) {
        return std::unexpected(describe(object.error()));
    }
    return *std::move(object);
}

std::vector<ValidationIssue> configIssues(const JSONValue::Object& config) {
    Issues issues;
    for (const auto& [name, value] : config) {
        if (name == SettingsForm::schemaKey) {
            continue;
        }
        const SettingSpec* spec = configSchema().setting(name);
        if (spec == nullptr) {
            issues.push_back({.options = {name}, .message = "unknown option \"" + name + "\""});
        } else if (const auto found = fault(*spec, value)) {
            issues.push_back({.options = {name}, .message = *found});
        }
    }
    if (issues.empty()) {
        findContradictions(DemoConfig(config, {}), issues);
    }
    return issues;
}

JSONValue validationDocument(const std::vector<ValidationIssue>& issues) {
    if (issues.empty()) {
        return JSONValue::Object{{"ok", true}};
    }
    JSONValue::Array errors;
    for (const ValidationIssue& issue : issues) {
        errors.emplace_back(JSONValue::Object{
            {"message", issue.message}, {"options", JSONValue::Array(issue.options.begin(), issue.options.end())}});
    }
    return JSONValue::Object{{"ok", false}, {"errors", std::move(errors)}};
}

} // namespace menubar::demo
