#pragma once

#include "MenubarCore/Settings/SettingsForm.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace menubar::sample {

inline JSONValue json(std::string_view document) {
    auto value = JSONValue::decode(document);
    EXPECT_TRUE(value) << document;
    return std::move(value).value_or(JSONValue());
}

inline SettingSpec spec(SettingControl control, std::string name = "a") {
    return {.name = std::move(name), .control = std::move(control)};
}

/// One group "g" of these settings.
inline SettingsSchema schema(std::vector<SettingSpec> settings) {
    SettingsSchema result;
    result.groups.push_back({.id = "g", .title = "G", .settings = std::move(settings)});
    return result;
}

/// A form over these settings and a config file with these bytes.
inline SettingsForm form(std::vector<SettingSpec> settings, std::string_view file = "{}") {
    auto object = SettingsForm::parseFile(file);
    EXPECT_TRUE(object) << file;
    return {schema(std::move(settings)), std::move(object).value_or(JSONValue::Object{})};
}

/// The form's one field of that name.
inline SettingField field(const SettingsForm& form, std::string_view name = "a") {
    const SettingField* found = form.field(name);
    EXPECT_NE(found, nullptr) << name;
    return found == nullptr ? SettingField{} : *found;
}

} // namespace menubar::sample
