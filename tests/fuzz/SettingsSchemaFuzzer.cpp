// Feeds any bytes to the schema's reader, and makes a form of every schema that it takes: the form's rules hold for any
// settings.

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsForm.h"
#include "MenubarCore/Settings/SettingsSchema.h"

#include "tests/fuzz/Require.h"

#include <cstdint>
#include <string_view>

using namespace menubar;
using menubar::fuzz::require;

namespace {

void checkSpec(const SettingSpec& spec, const SettingsSchema& schema) {
    require(schema.setting(spec.name) != nullptr, "a setting is found by its name");
    require(SettingControl::fromRawValue(spec.control.rawValue()) == spec.control, "a control goes back to its text");
    require(spec.label().empty() == spec.name.empty(), "only the empty name has an empty label");
    const SettingValue value = SettingField::defaultValue(spec);
    require(SettingValue::from(value.json(spec), spec).has_value(), "a default fits its control");
}

/// Sets every field to something, which the form must survive and write.
void edit(SettingsForm& form) {
    for (const SettingSpec& spec : form.schema().settings()) {
        form.setEditableText(spec.name, spec.help);
        form.set(spec.name, SettingField::defaultValue(spec));
        const SettingField* field = form.field(spec.name);
        require(field->error == (field->isSet ? SettingsForm::validate(field->spec, field->value) : std::nullopt),
                "an edit is checked by the rules");
    }
    require(form.serializedData().has_value(), "what came from JSON can be written");
    form.markSaved();
    require(!form.isDirty(), "what was saved is not edited");
    for (const SettingField& field : form.fields()) {
        require(field.source == (field.isSet ? ValueSource::file : ValueSource::default_), "a save settles the source");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const auto schema = SettingsSchema::decode(document);
    if (!schema) {
        require(!describe(schema.error()).empty(), "an error has a text");
        return 0;
    }
    require(JSONValue::decode(document).has_value(), "a schema is JSON");
    for (const SettingSpec& spec : schema->settings()) {
        checkSpec(spec, *schema);
    }
    SettingsForm form(*schema, {});
    require(form.fields().size() == schema->settings().size(), "each setting has a field");
    require(form.isValid() && !form.isDirty(), "without a file nothing is wrong or edited");
    require(form.serialized() == JSONValue(JSONValue::Object{}), "without a file nothing is written");
    edit(form);
    return 0;
}
