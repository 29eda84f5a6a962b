#include "MenubarCore/Settings/SettingsForm.h"

#include "MenubarCore/Settings/SettingValidation.h"
#include "MenubarCore/Text/Case.h"
#include "MenubarCore/Text/Regex.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace menubar {

namespace {

/// What an edit changes, as it was; not what was loaded or saved since.
void putBack(SettingField& field, const SettingField& before) {
    field.value = before.value;
    field.isSet = before.isSet;
    field.error = before.error;
    field.unreadableFileValue = before.unreadableFileValue;
}

} // namespace

std::string_view describe(SettingsFormError error) {
    switch (error) {
    case SettingsFormError::notAnObject: return "The config file must hold one JSON object";
    }
    return {};
}

std::string describe(const ConfigFileError& error) {
    return std::visit([](const auto& cause) { return std::string(describe(cause)); }, error);
}

std::expected<JSONValue::Object, ConfigFileError> SettingsForm::parseFile(std::string_view document) {
    const auto value = JSONValue::decode(document);
    if (!value) {
        return std::unexpected(value.error());
    }
    if (const JSONValue::Object* object = value->objectValue()) {
        return *object;
    }
    return std::unexpected(SettingsFormError::notAnObject);
}

SettingsForm::SettingsForm(SettingsSchema schema, const JSONValue::Object& file) : m_schema(std::move(schema)) {
    PatternChecker patterns; // one for all fields, so that they are bounded together
    for (SettingSpec& spec : m_schema.settings()) {
        const auto found = file.find(spec.name);
        const JSONValue* fileValue = found == file.end() ? nullptr : &found->second;
        m_fields.push_back(SettingField::load(std::move(spec), fileValue, patterns));
    }
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        m_byName.push_back(i);
    }
    std::ranges::sort(m_byName, [this](std::size_t a, std::size_t b) {
        return std::tie(m_fields[a].name(), a) < std::tie(m_fields[b].name(), b);
    });
    for (const auto& [key, value] : file) {
        if (positions(key).empty()) {
            m_passthrough[key] = value;
        }
    }
}

std::span<const std::size_t> SettingsForm::positions(std::string_view name) const {
    const auto nameAt = [this](std::size_t i) { return std::string_view(m_fields[i].name()); };
    const auto range = std::ranges::equal_range(m_byName, name, {}, nameAt);
    return {range.begin(), range.end()};
}

const SettingField* SettingsForm::field(std::string_view name) const& {
    const auto found = positions(name);
    return found.empty() ? nullptr : &m_fields[found.front()];
}

SettingField* SettingsForm::mutableField(std::string_view name) {
    const auto found = positions(name);
    return found.empty() ? nullptr : &m_fields[found.front()];
}

std::vector<const SettingField*> SettingsForm::fields(const SettingsGroup& group) const& {
    std::vector<std::size_t> found;
    for (const SettingSpec& spec : group.settings) {
        std::ranges::copy(positions(spec.name), std::back_inserter(found));
    }
    std::ranges::sort(found);
    const auto repeated = std::ranges::unique(found);
    found.erase(repeated.begin(), repeated.end());
    std::vector<const SettingField*> result;
    std::ranges::transform(found, std::back_inserter(result), [this](std::size_t i) { return &m_fields[i]; });
    return result;
}

void SettingsForm::store(SettingField& field, SettingValue value) {
    field.unreadableFileValue.reset();
    field.value = std::move(value);
    field.isSet = !field.value.isEmpty();
    field.error = field.isSet ? validate(field.spec, field.value) : std::nullopt;
}

void SettingsForm::set(std::string_view name, SettingValue value) {
    if (SettingField* const field = mutableField(name)) {
        m_typing.erase(field->name());
        store(*field, std::move(value));
    }
}

void SettingsForm::typeNumber(std::string_view name, std::string_view text) {
    SettingField* const field = mutableField(name);
    if (field == nullptr) {
        return;
    }
    Typing& typing = m_typing.try_emplace(field->name(), Typing{.before = *field}).first->second;
    auto number = SettingValue::from(JSONValue(text), field->spec);
    typing.isNumber = number.has_value();
    if (number) {
        store(*field, *std::move(number));
    } else {
        putBack(*field, typing.before);
        field->error = wrongKindError(field->spec);
    }
}

bool SettingsForm::endTyping(std::string_view name) {
    const auto found = m_typing.find(name);
    if (found == m_typing.end()) {
        return false;
    }
    const Typing typing = std::move(found->second);
    m_typing.erase(found);
    SettingField* const field = mutableField(name);
    if (typing.isNumber || field == nullptr) {
        return false;
    }
    putBack(*field, typing.before);
    return true;
}

void SettingsForm::setEditableText(std::string_view name, std::string_view text) {
    const SettingField* const field = mutableField(name);
    if (field == nullptr) {
        return;
    }
    const std::optional<std::string>& prefix = field->spec.requiredPrefix;
    if (!prefix) {
        set(name, text);
    } else if (trimmed(text).empty()) {
        set(name, "");
    } else {
        set(name, *prefix + " " + std::string(text));
    }
}

void SettingsForm::reset(std::string_view name) {
    SettingField* const field = mutableField(name);
    if (field == nullptr) {
        return;
    }
    m_typing.erase(field->name());
    field->unreadableFileValue.reset();
    field->value = SettingField::defaultValue(field->spec);
    field->isSet = false;
    field->error.reset();
}

void SettingsForm::applySources(const std::map<std::string, ConfigSource>& sources) {
    for (SettingField& field : m_fields) {
        const auto source = sources.find(field.name());
        const bool isLocked = source != sources.end() && source->second == ConfigSource::cli;
        if (isLocked && !field.isLockedByFlag) {
            endTyping(field.name());
            if (!field.unreadableFileValue) {
                field.error = field.isSet ? validate(field.spec, field.value) : std::nullopt;
            }
        }
        field.isLockedByFlag = isLocked;
    }
}

void SettingsForm::applyErrors(const std::map<std::string, std::string>& errors) {
    for (SettingField& field : m_fields) {
        if (const auto found = errors.find(field.name()); found != errors.end()) {
            field.error = found->second;
        }
    }
}

void SettingsForm::markSaved(const SettingsForm& written) {
    const std::size_t count = std::min(m_fields.size(), written.m_fields.size());
    for (std::size_t i = 0; i < count; ++i) {
        const SettingField& saved = written.m_fields[i];
        m_fields[i].loadedValue = saved.value;
        m_fields[i].loadedIsSet = saved.isSet;
        const bool isInFile = saved.isSet || saved.unreadableFileValue;
        m_fields[i].source = isInFile ? ValueSource::file : ValueSource::default_;
    }
}

std::optional<std::string> SettingsForm::validate(const SettingSpec& spec, const SettingValue& value) {
    PatternChecker patterns;
    return validationError(spec, value, patterns);
}

std::map<std::string, std::string> SettingsForm::errors() const {
    std::map<std::string, std::string> result;
    for (const SettingField& field : m_fields) {
        if (field.error) {
            result[field.name()] = *field.error;
        }
    }
    return result;
}

bool SettingsForm::isValid() const {
    return std::ranges::none_of(m_fields, [](const SettingField& field) { return field.error.has_value(); });
}

bool SettingsForm::isDirty() const {
    return std::ranges::any_of(m_fields, &SettingField::isDirty);
}

bool SettingsForm::isEdited() const {
    return isDirty() || std::ranges::any_of(m_typing, [](const auto& entry) { return !entry.second.isNumber; });
}

std::vector<std::string> SettingsForm::unknownKeys() const {
    std::vector<std::string> keys;
    for (const auto& [key, value] : m_passthrough) {
        if (key != schemaKey) {
            keys.push_back(key);
        }
    }
    return keys;
}

JSONValue SettingsForm::serialized() const {
    JSONValue::Object object = m_passthrough;
    for (const std::size_t i : m_byName) {
        if (auto value = m_fields[i].serializedValue()) {
            object[m_fields[i].name()] = *std::move(value);
        }
    }
    return object;
}

std::expected<std::string, EncodingError> SettingsForm::serializedData() const {
    auto bytes = serialized().encode(JSONLayout::pretty);
    if (bytes) {
        *bytes += '\n';
    }
    return bytes;
}

} // namespace menubar
