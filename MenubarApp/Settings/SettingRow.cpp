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

View captionLabel(std::string symbol, std::string description, std::string text, TextColor color) {
    return label(
        {.name = std::move(symbol), .description = std::move(description), .font = Font::caption, .color = color},
        {.text = std::move(text), .font = Font::caption, .color = color});
}

/// What a row is made of.
struct Row : SettingRow {
    View whole() const {
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

    /// A handler that does this to the field.
    template <class... Values>
    auto edits(void (SettingsForm::*change)(std::string_view, Values...)) const {
        return [edit = actions.edit, name = field.name(), change](const Values&... values) {
            edit([&](SettingsForm& form) { (form.*change)(name, values...); });
        };
    }

    View titleLine() const {
        std::vector<View> parts;
        parts.push_back(view(Text{.text = field.spec.label()}));
        if (field.isDirty()) {
            parts.push_back(caption("edited", TextColor::orange).withId("edited"));
        }
        parts.push_back(caption(sourceBadge(field)).withId("source"));
        parts.push_back(view(Spacer{}));
        if (field.isSet && !field.isLockedByFlag) {
            const auto defaultText = field.defaultText();
            parts.push_back(view(Button{.title = "Reset to default",
                                        .style = ButtonStyle::small,
                                        .onPress = edits(&SettingsForm::reset)})
                                .withTooltip(defaultText
                                                 ? "Remove the key from the file; the daemon then uses " + *defaultText
                                                 : "Remove the key from the file")
                                .withAccessibility("Reset " + field.spec.label() + " to default")
                                .withPadding(resetPadding));
        }
        return viewOf(HStack{.alignment = VerticalAlignment::firstBaseline}, std::move(parts)).withId("title");
    }

    View control() const {
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

    View toggle() const {
        return view(HStack{}, labelled(view(Toggle{.isOn = field.value.bool_().value_or(false),
                                                   .onChange = edits(&SettingsForm::set)})));
    }

    View number() const {
        const double value = field.value.number().value_or(0.0);
        auto end = [endTyping = actions.endTyping, name = field.name()] { endTyping(name); };
        auto step = [set = edits(&SettingsForm::set), spec = field.spec, value](StepDirection direction) {
            if (const double next = steppedNumber(value, spec, direction); next != value) {
                set(next);
            }
        };
        return view(HStack{},
                    labelled(view(TextField{.text = JSONValue::format(value),
                                            .onEdit = edits(&SettingsForm::typeNumber),
                                            .onEnd = std::move(end)}))
                        .withWidth(numberWidth),
                    labelled(view(stepper(value, std::move(step)))));
    }

    View duration() const {
        const std::string value = field.value.text() == nullptr ? std::string() : *field.value.text();
        const auto number = leadingNumber(value);
        auto step = [set = edits(&SettingsForm::set), spec = field.spec, value](StepDirection direction) {
            if (const auto next = steppedDuration(value, spec, direction); next && *next != value) {
                set(*next);
            }
        };
        Stepper arrows = stepper(number.value_or(0.0), std::move(step));
        arrows.min = std::max(0.0, arrows.min.value_or(0.0));
        arrows.enabled = number.has_value();
        return view(HStack{},
                    labelled(view(TextField{.text = value,
                                            .prompt = field.defaultText().value_or(""),
                                            .onEdit = edits(&SettingsForm::set)}))
                        .withWidth(numberWidth),
                    labelled(view(std::move(arrows))));
    }

    View text() const {
        std::vector<View> line;
        if (field.spec.requiredPrefix) {
            line.push_back(
                view(Text{.text = *field.spec.requiredPrefix, .font = Font::monospaced, .color = TextColor::secondary})
                    .withTooltip("Every message starts with this prefix; it is added for you."));
        }
        if (field.spec.multiline) {
            line.push_back(labelled(
                view(TextEditor{.text = field.editableText(), .onEdit = edits(&SettingsForm::setEditableText)})));
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

    View list() const {
        return ListControl{
            .items = field.value.list() == nullptr ? std::vector<std::string>() : *field.value.list(),
            .name = field.name() + (ordinal == 0 ? "" : " " + std::to_string(ordinal)),
            .label = field.spec.label(),
            .description = field.error.value_or(""),
            .ids = listIds,
            .onChange = edits(&SettingsForm::set),
            .focus = actions.focus,
        }
            .body();
    }

    View picker() const {
        const std::vector<std::string>& values = field.spec.values;
        std::optional<std::size_t> selection;
        if (const std::string* value = field.value.text()) {
            if (const auto found = std::ranges::find(values, *value); found != values.end()) {
                selection = static_cast<std::size_t>(found - values.begin());
            }
        }
        auto pick = [set = edits(&SettingsForm::set), values](std::size_t option) { set(values.at(option)); };
        return view(HStack{},
                    labelled(view(Picker{.options = values, .selection = selection, .onPick = std::move(pick)})));
    }

    View checkboxes() const {
        const std::vector<std::string> chosen =
            field.value.list() == nullptr ? std::vector<std::string>() : *field.value.list();
        const auto members = std::make_shared<const std::vector<std::string>>(chosen);
        std::vector<View> boxes;
        boxes.reserve(field.spec.values.size());
        for (const std::string& value : field.spec.values) {
            auto change = [set = edits(&SettingsForm::set), members, value](bool isOn) {
                auto changed = *members;
                std::erase(changed, value);
                if (isOn) {
                    changed.push_back(value);
                }
                set(std::move(changed));
            };
            const bool isOn = std::ranges::find(*members, value) != members->end();
            boxes.push_back(labelled(
                view(Checkbox{.title = value, .isOn = isOn, .onChange = std::move(change)}).withId(value), value));
        }
        return viewOf(VStack{.spacing = checkboxSpacing}, std::move(boxes));
    }

    View path() const {
        auto choose = [choosePath = actions.choosePath, spec = field.spec] { choosePath(spec); };
        return view(HStack{},
                    labelled(view(TextField{.text = field.value.text() == nullptr ? std::string() : *field.value.text(),
                                            .prompt = "Leave empty for the default",
                                            .onEdit = edits(&SettingsForm::set)})),
                    view(Button{.title = "Choose...", .onPress = std::move(choose)})
                        .withAccessibility("Choose " + field.spec.label()));
    }

    View rawJSON() const {
        return view(VStack{.spacing = rowSpacing},
                    caption("This app does not know the control kind " + std::string(field.spec.control.rawValue()) +
                            "; the value is edited as raw JSON."),
                    textField("Raw JSON"));
    }

    // Their parts

    View textField(std::string prompt) const {
        return labelled(view(TextField{.text = field.editableText(),
                                       .prompt = std::move(prompt),
                                       .onEdit = edits(&SettingsForm::setEditableText)}));
    }

    Stepper stepper(double value, std::function<void(StepDirection)> onStep) const {
        return {.value = value,
                .min = field.spec.min,
                .max = field.spec.max,
                .step = SettingSpec::step,
                .onStep = std::move(onStep)};
    }

    /// Labelled by the setting and described by what is wrong with it.
    View labelled(View control, const std::string& detail = {}) const {
        control.accessibility = {.label = field.spec.label() + (detail.empty() ? "" : ", " + detail),
                                 .description = field.error.value_or("")};
        return control;
    }
};

} // namespace

View SettingRow::body() const {
    return Row{*this}.whole();
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

} // namespace menubar
