#include "MenubarCtl/SettingsOutput.h"

#include "MenubarApp/Settings/SettingRow.h"
#include "MenubarCore/Text/DisplayColumns.h"
#include "MenubarCore/Text/DisplayText.h"
#include "MenubarCore/Text/Join.h"
#include "MenubarCtl/JSONOutput.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace menubar::ctl {

namespace {

JSONValue texts(const std::vector<std::string>& values) {
    JSONValue::Array array;
    for (const std::string& value : values) {
        array.push_back(text(value));
    }
    return array;
}

struct ToDocument {
    JSONValue operator()(bool value) const { return value; }

    JSONValue operator()(double value) const { return value; }

    JSONValue operator()(const std::string& value) const { return text(value); }

    JSONValue operator()(const SettingValue::List& value) const { return texts(value); }
};

JSONValue fieldValue(const SettingField& field, const std::optional<std::string>& live) {
    return JSONValue::Object{
        {"control", text(field.spec.control.rawValue())},
        {"default", textOrNull(field.defaultText())},
        {"editableText", text(field.editableText())},
        {"error", textOrNull(field.error)},
        {"group", text(field.spec.group)},
        {"isSet", field.isSet},
        {"label", text(field.spec.label())},
        {"live", textOrNull(live)},
        {"locked", field.isLockedByFlag},
        {"name", text(field.name())},
        {"serialized", field.serializedValue().value_or(JSONValue())},
        {"source", rawText(field.source)},
        {"unreadable", field.unreadableFileValue.value_or(JSONValue())},
        {"value", std::visit(ToDocument{}, field.value.storage())},
    };
}

JSONValue groupValue(const SettingsGroup& group) {
    JSONValue::Array names;
    for (const SettingSpec& spec : group.settings) {
        names.push_back(text(spec.name));
    }
    return JSONValue::Object{{"id", text(group.id)}, {"settings", std::move(names)}, {"title", text(group.title)}};
}

std::string shownValue(const SettingField& field) {
    if (field.unreadableFileValue) {
        return displayTitle(field.unreadableFileValue->compactText());
    }
    const SettingValue::List* list = field.value.list();
    std::string value = list != nullptr ? joined(*list, ", ") : valueText(field);
    if (list == nullptr) {
        value.pop_back(); // the line feed
    }
    return value.empty() ? "-" : displayTitle(value);
}

struct Columns {
    std::size_t name = 0;
    std::size_t value = 0;
};

Columns columnsOf(const SettingsForm& form, const TextStyle& style) {
    constexpr std::size_t widestValue = 40; // one long value does not push all badges off the screen
    constexpr std::size_t leastValue = 6;
    Columns columns;
    std::size_t badge = 0;
    for (const SettingField& field : form.fields()) {
        columns.name = std::max(columns.name, displayColumns(displayTitle(field.name())));
        columns.value = std::max(columns.value, std::min(widestValue, displayColumns(shownValue(field))));
        badge = std::max(badge, displayColumns(SettingRow::sourceBadge(field)));
    }
    if (const std::size_t others = 2 + columns.name + 2 + 2 + badge; style.cuts) {
        const std::size_t room = style.columns > others + leastValue ? style.columns - others : leastValue;
        columns.value = std::min(columns.value, room);
    }
    return columns;
}

std::string fieldLines(const SettingField& field, const std::optional<std::string>& live, const Columns& columns,
                       const TextStyle& style) {
    const std::string name = displayTitle(field.name());
    const std::string value = style.cuts ? fittedToColumns(shownValue(field), columns.value) : shownValue(field);
    std::string line = "  " + name + padding(name, columns.name) + "  " + value + padding(value, columns.value) + "  " +
                       SettingRow::sourceBadge(field);
    if (live) {
        line += ", daemon is running with: " + displayTitle(*live);
    }
    line = (style.cuts ? fittedToColumns(line, style.columns) : line) + "\n";
    if (field.error) {
        line += "    " + displayText(*field.error) + "\n";
    }
    return line;
}

} // namespace

JSONValue settingsDocument(const SettingsModel& model) {
    const SettingsForm& form = *model.form();
    JSONValue::Array fields;
    for (const SettingField& field : form.fields()) {
        fields.push_back(fieldValue(field, model.liveValue(field)));
    }
    JSONValue::Array groups;
    std::ranges::transform(form.schema().groups, std::back_inserter(groups), groupValue);
    return JSONValue::Object{
        {"command", text(model.commandDescription())},
        {"configFileExists", model.state().configFileExists},
        {"configPath", text(model.state().configPath)},
        {"fields", std::move(fields)},
        {"groups", std::move(groups)},
        {"unknownKeys", texts(form.unknownKeys())},
        {"version", static_cast<double>(form.schema().version)},
    };
}

std::string settingsText(const SettingsModel& model, const TextStyle& style) {
    const SettingsForm& form = *model.form();
    const Columns columns = columnsOf(form, style);
    std::string result;
    for (const SettingsGroup& group : form.schema().groups) {
        result += (result.empty() ? "" : "\n") + displayTitle(group.title) + "\n";
        for (const SettingField* field : form.fields(group)) {
            result += fieldLines(*field, model.liveValue(*field), columns, style);
        }
    }
    result += result.empty() ? "" : "\n";
    if (const auto unknown = form.unknownKeys(); !unknown.empty()) {
        result += "The config file has keys the daemon does not know: " + displayText(joined(unknown, ", ")) + ".\n";
    }
    result +=
        model.state().configFileExists ? "Config file: " : "No config file yet; defaults shown. It will be written to ";
    return result + displayText(model.state().configPath) + "\n";
}

std::string valueText(const SettingField& field) {
    struct ToLines {
        const SettingField& field;

        std::string operator()(bool value) const { return value ? "true\n" : "false\n"; }

        std::string operator()(double value) const { return JSONValue::format(value) + "\n"; }

        std::string operator()(const std::string&) const { return field.editableText() + "\n"; }

        std::string operator()(const SettingValue::List& value) const {
            return joined(value, "\n") + (value.empty() ? "" : "\n");
        }
    };

    return std::visit(ToLines{field}, field.value.storage());
}

std::string failureText(const std::string& message, const SaveOutcome& outcome) {
    std::string lines = message + "\n";
    const auto* local = std::get_if<SaveOutcome::InvalidLocally>(&outcome.storage());
    const auto* rejected = outcome.rejected();
    if (local != nullptr || rejected != nullptr) {
        for (const auto& [name, problem] : local != nullptr ? local->errors : rejected->fields) {
            lines.append(name).append(": ").append(problem).append("\n");
        }
    }
    if (rejected != nullptr) {
        for (const std::string& problem : rejected->general) {
            lines += problem + "\n";
        }
    }
    return lines;
}

} // namespace menubar::ctl
