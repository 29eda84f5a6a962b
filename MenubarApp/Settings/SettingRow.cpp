#include "MenubarApp/Settings/SettingRow.h"

#include "MenubarApp/Settings/ListControl.h"
#include "MenubarApp/Settings/Stepping.h"
#include "MenubarCore/JSON/JSONValue.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace menubar {

namespace {

using Kind = SettingControl::Kind;

constexpr double rowSpacing = 6.0;
constexpr double checkboxSpacing = 4.0;
constexpr double numberWidth = 140.0;
/// By this much a small button is higher than its line of text, above and below, or a little more. It reaches out of
/// the line: when it comes with the first keystroke, the field under the person's hands stays where it is.
constexpr Insets resetPadding = Insets::symmetric(-3.0, 0.0);

View caption(std::string text, TextColor color = TextColor::secondary) {
    return view(Text{.text = std::move(text), .font = Font::caption, .color = color});
}

View captionLabel(std::string symbol, std::string description, std::string text, TextColor color) {
    return label(
        {.name = std::move(symbol), .description = std::move(description), .font = Font::caption, .color = color},
        {.text = std::move(text), .font = Font::caption, .color = color});
}

} // namespace

View SettingRow::body() const {
    std::vector<View> lines;
    lines.push_back(titleLine());
    if (!field.spec.help.empty()) {
        lines.push_back(caption(field.spec.help).withId("help"));
    }
    lines.push_back(control().withId("control"));
    if (liveValue) {
        lines.push_back(caption("Daemon is running with: " + *liveValue).withId("live"));
    }
    if (field.error) {
        lines.push_back(captionLabel("xmark.octagon", "Error", *field.error, TextColor::red).withId("error"));
    }
    return viewOf(VStack{.spacing = rowSpacing}, std::move(lines)).withId(identity(field.name()));
}

std::string SettingRow::identity(std::string_view name) {
    return "setting " + std::string(name);
}

std::string SettingRow::sourceBadge(const SettingField& field) {
    if (field.isLockedByFlag) {
        return "set by a flag";
    }
    switch (field.source) {
    case ValueSource::default_: return "default";
    case ValueSource::file: return "from file";
    }
    return {};
}

View SettingRow::titleLine() const {
    std::vector<View> parts;
    parts.push_back(view(Text{.text = field.spec.label()}));
    if (field.isDirty()) {
        parts.push_back(caption("edited", TextColor::orange).withId("edited"));
    }
    parts.push_back(caption(sourceBadge(field)).withId("source"));
    parts.push_back(view(Spacer{}));
    if (field.isSet && !field.isLockedByFlag) {
        const auto defaultText = field.defaultText();
        auto reset = [edit = actions.edit, name = field.name()] {
            edit([&](SettingsForm& form) { form.reset(name); });
        };
        parts.push_back(
            view(Button{.title = "Reset to default", .style = ButtonStyle::small, .onPress = std::move(reset)})
                .withTooltip(defaultText ? "Remove the key from the file; the daemon then uses " + *defaultText
                                         : "Remove the key from the file")
                .withAccessibility("Reset " + field.spec.label() + " to default")
                .withPadding(resetPadding));
    }
    return viewOf(HStack{.alignment = VerticalAlignment::firstBaseline}, std::move(parts)).withId("title");
}

View SettingRow::control() const {
    if (field.isLockedByFlag) {
        return captionLabel("lock", "Locked", std::string(SettingsForm::lockedByFlagNote), TextColor::secondary);
    }
    switch (field.spec.control.kind()) {
    case Kind::toggle: return toggle();
    case Kind::number:
    case Kind::percent: return number();
    case Kind::duration: return duration();
    case Kind::text: return text();
    case Kind::list: return list();
    case Kind::enumeration: return field.spec.multiple ? checkboxes() : picker();
    case Kind::path: return path();
    case Kind::unknown: return rawJSON();
    }
    return view(VStack{});
}

// The controls

View SettingRow::toggle() const {
    auto change = [set = setter()](bool isOn) { set(isOn); };
    return view(HStack{},
                labelled(view(Toggle{.isOn = field.value.bool_().value_or(false), .onChange = std::move(change)})));
}

View SettingRow::number() const {
    const double value = field.value.number().value_or(0.0);
    auto edit = [edit = actions.edit, name = field.name()](const std::string& typed) {
        edit([&](SettingsForm& form) { form.typeNumber(name, typed); });
    };
    auto end = [endTyping = actions.endTyping, name = field.name()] { endTyping(name); };
    auto step = [set = setter(), spec = field.spec, value](StepDirection direction) {
        if (const double next = steppedNumber(value, spec, direction); next != value) {
            set(next);
        }
    };
    return view(
        HStack{},
        labelled(view(TextField{.text = JSONValue::format(value), .onEdit = std::move(edit), .onEnd = std::move(end)}))
            .withWidth(numberWidth),
        labelled(view(stepper(value, std::move(step)))));
}

View SettingRow::duration() const {
    const std::string value = field.value.text() == nullptr ? std::string() : *field.value.text();
    const auto number = leadingNumber(value);
    auto edit = [set = setter()](const std::string& typed) { set(typed); };
    auto step = [set = setter(), spec = field.spec, value](StepDirection direction) {
        if (const auto next = steppedDuration(value, spec, direction); next && *next != value) {
            set(*next);
        }
    };
    Stepper arrows = stepper(number.value_or(0.0), std::move(step));
    arrows.min = std::max(0.0, arrows.min.value_or(0.0));
    arrows.enabled = number.has_value();
    return view(
        HStack{},
        labelled(view(TextField{.text = value, .prompt = field.defaultText().value_or(""), .onEdit = std::move(edit)}))
            .withWidth(numberWidth),
        labelled(view(std::move(arrows))));
}

View SettingRow::text() const {
    std::vector<View> line;
    if (field.spec.requiredPrefix) {
        line.push_back(
            view(Text{.text = *field.spec.requiredPrefix, .font = Font::monospaced, .color = TextColor::secondary})
                .withTooltip("Every message starts with this prefix; it is added for you."));
    }
    if (field.spec.multiline) {
        auto edit = [edit = actions.edit, name = field.name()](const std::string& typed) {
            edit([&](SettingsForm& form) { form.setEditableText(name, typed); });
        };
        line.push_back(labelled(view(TextEditor{.text = field.editableText(), .onEdit = std::move(edit)})));
    } else {
        line.push_back(textField({}));
    }
    std::vector<View> lines;
    lines.push_back(viewOf(HStack{.alignment = VerticalAlignment::firstBaseline}, std::move(line)));
    if (const auto defaultText = field.defaultText()) {
        lines.push_back(caption("Default: " + *defaultText));
    }
    return viewOf(VStack{.spacing = rowSpacing}, std::move(lines));
}

View SettingRow::list() const {
    auto change = [set = setter()](std::vector<std::string> items) { set(std::move(items)); };
    return ListControl{
        .items = field.value.list() == nullptr ? std::vector<std::string>() : *field.value.list(),
        .name = field.name() + (ordinal == 0 ? "" : " " + std::to_string(ordinal)),
        .label = field.spec.label(),
        .description = field.error.value_or(""),
        .ids = listIds,
        .onChange = std::move(change),
        .focus = actions.focus,
    }
        .body();
}

View SettingRow::picker() const {
    const std::vector<std::string>& values = field.spec.values;
    std::optional<std::size_t> selection;
    if (const std::string* value = field.value.text()) {
        if (const auto found = std::ranges::find(values, *value); found != values.end()) {
            selection = static_cast<std::size_t>(found - values.begin());
        }
    }
    auto pick = [set = setter(), values](std::size_t option) { set(values.at(option)); };
    return view(HStack{}, labelled(view(Picker{.options = values, .selection = selection, .onPick = std::move(pick)})));
}

View SettingRow::checkboxes() const {
    const std::vector<std::string> chosen =
        field.value.list() == nullptr ? std::vector<std::string>() : *field.value.list();
    const auto members = std::make_shared<const std::vector<std::string>>(chosen);
    std::vector<View> boxes;
    boxes.reserve(field.spec.values.size());
    for (const std::string& value : field.spec.values) {
        auto change = [set = setter(), members, value](bool isOn) {
            auto changed = *members;
            std::erase(changed, value);
            if (isOn) {
                changed.push_back(value);
            }
            set(std::move(changed));
        };
        const bool isOn = std::ranges::find(*members, value) != members->end();
        boxes.push_back(
            labelled(view(Checkbox{.title = value, .isOn = isOn, .onChange = std::move(change)}).withId(value), value));
    }
    return viewOf(VStack{.spacing = checkboxSpacing}, std::move(boxes));
}

View SettingRow::path() const {
    auto edit = [set = setter()](const std::string& typed) { set(typed); };
    auto choose = [choosePath = actions.choosePath, spec = field.spec] { choosePath(spec); };
    return view(HStack{},
                labelled(view(TextField{.text = field.value.text() == nullptr ? std::string() : *field.value.text(),
                                        .prompt = "Leave empty for the default",
                                        .onEdit = std::move(edit)})),
                view(Button{.title = "Choose...", .onPress = std::move(choose)})
                    .withAccessibility("Choose " + field.spec.label()));
}

View SettingRow::rawJSON() const {
    return view(VStack{.spacing = rowSpacing},
                caption("This app does not know the control kind " + std::string(field.spec.control.rawValue()) +
                        "; the value is edited as raw JSON."),
                textField("Raw JSON"));
}

// Their parts

View SettingRow::textField(std::string prompt) const {
    auto edit = [edit = actions.edit, name = field.name()](const std::string& typed) {
        edit([&](SettingsForm& form) { form.setEditableText(name, typed); });
    };
    return labelled(
        view(TextField{.text = field.editableText(), .prompt = std::move(prompt), .onEdit = std::move(edit)}));
}

Stepper SettingRow::stepper(double value, std::function<void(StepDirection)> onStep) const {
    return {.value = value,
            .min = field.spec.min,
            .max = field.spec.max,
            .step = SettingSpec::step,
            .onStep = std::move(onStep)};
}

View SettingRow::labelled(View control, const std::string& detail) const {
    control.accessibility = {.label = field.spec.label() + (detail.empty() ? "" : ", " + detail),
                             .description = field.error.value_or("")};
    return control;
}

std::function<void(SettingValue)> SettingRow::setter() const {
    return [edit = actions.edit, name = field.name()](SettingValue value) {
        edit([&](SettingsForm& form) { form.set(name, std::move(value)); });
    };
}

} // namespace menubar
