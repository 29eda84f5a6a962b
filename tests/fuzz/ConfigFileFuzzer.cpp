// Feeds any bytes to the config file's reader, under a schema with every kind of control: nothing of the file may get
// lost, whatever it holds.

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingsForm.h"

#include "tests/fuzz/Require.h"

#include <cstdint>
#include <string>
#include <string_view>

using namespace menubar;
using menubar::fuzz::require;

namespace {

constexpr std::string_view schemaDocument = R"({
    "properties": {"d": {"pattern": "^[0-9]+[smh]$"}, "n": {"minimum": 1, "maximum": 10, "type": "integer"},
                   "l": {"items": {"pattern": "^[a-z]+$"}}, "e": {"enum": ["x", "y"]}, "p": {"default": "/"}},
    "x-groups": [{"id": "g", "settings": [
        {"name": "t", "control": "toggle"}, {"name": "n", "control": "number"}, {"name": "c", "control": "percent"},
        {"name": "d", "control": "duration"}, {"name": "s", "control": "text", "requiredPrefix": "--"},
        {"name": "l", "control": "list"}, {"name": "e", "control": "enum"},
        {"name": "m", "control": "enum", "multiple": true, "values": ["x", "y"]}, {"name": "p", "control": "path"},
        {"name": "u", "control": "colour"}]}]})";

/// The one liberty that loading takes: a number written as text becomes one, and so does the JSON in a text of an
/// unknown control.
bool mayBeRewritten(const SettingField& field, const JSONValue& value) {
    const auto kind = field.spec.control.kind();
    const bool isText = value.stringValue() != nullptr;
    return isText && (kind == SettingControl::Kind::number || kind == SettingControl::Kind::percent ||
                      kind == SettingControl::Kind::unknown);
}

void checkLoaded(const SettingsForm& form, const JSONValue::Object& file) {
    const JSONValue serialized = form.serialized();
    const JSONValue::Object& written = *serialized.objectValue();
    require(written.size() == file.size(), "an unedited form writes as many keys as it read");
    for (const auto& [key, value] : file) {
        const auto found = written.find(key);
        require(found != written.end(), "every key survives");
        const SettingField* field = form.field(key);
        require(found->second == value || (field != nullptr && mayBeRewritten(*field, value)), "every value survives");
        require((field == nullptr) == form.passthrough().contains(key), "what is no setting is passed through");
    }
    for (const SettingField& field : form.fields()) {
        require(field.isSet == file.contains(field.name()), "what is in the file is set");
        require(!field.unreadableFileValue || field.error, "what was not understood is said");
    }
    require(!form.isDirty(), "loading is no edit");
}

/// Reads back what a form wrote.
SettingsForm reloaded(const SettingsForm& form) {
    const auto bytes = form.serializedData();
    require(bytes && bytes->ends_with("}\n"), "the bytes end with one line feed");
    auto object = SettingsForm::parseFile(*bytes);
    require(object.has_value(), "what was written can be read");
    return {form.schema(), *std::move(object)};
}

void checkEdits(SettingsForm form, std::string_view text) {
    for (const SettingSpec& spec : form.schema().settings()) {
        form.setEditableText(spec.name, text);
        require(!form.field(spec.name)->unreadableFileValue, "an edit replaces what was not understood");
    }
    static_cast<void>(reloaded(form));
    for (const SettingSpec& spec : form.schema().settings()) {
        form.reset(spec.name);
    }
    require(form.isValid(), "a reset field has no error");
    require(form.serialized() == JSONValue(form.passthrough()), "a reset form writes only what it does not know");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const SettingsSchema schema = SettingsSchema::decode(schemaDocument).value();
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const auto file = SettingsForm::parseFile(document);
    if (!file) {
        require(!describe(file.error()).empty(), "an error has a text");
        return 0;
    }
    const SettingsForm form(schema, *file);
    checkLoaded(form, *file);
    const SettingsForm again = reloaded(form);
    require(again.fields().size() == form.fields().size(), "the settings are those of the schema");
    for (const SettingField& field : form.fields()) {
        const SettingField& other = *again.field(field.name());
        const bool isUnknown = !field.spec.control.isKnown(); // whose text may be JSON of a text that is JSON
        require(isUnknown || (other.value == field.value && other.error == field.error), "what was written reads back");
    }
    checkEdits(form, document.substr(0, document.size() / 2));
    return 0;
}
