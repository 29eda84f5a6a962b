#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Settings/SettingField.h"
#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Status/StatusFile.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace menubar {

enum class SettingsFormError {
    notAnObject, ///< the config file holds JSON of another kind than an object
};

/// Why a config file's bytes could not be read as settings.
using ConfigFileError = std::variant<SettingsFormError, DecodingError>;

/// One line for people.
[[nodiscard]] std::string_view describe(SettingsFormError error);
[[nodiscard]] std::string describe(const ConfigFileError& error);

/// The daemon's config file as it is edited, seen through the daemon's schema: one field for each setting, in the
/// schema's order, and every other key of the file kept untouched. Each edit is checked by the rules that the schema
/// states; problems are reported through the fields' errors, in texts for people. A value type without input or output.
///
/// A name that the schema lists twice has two fields, which both start from the file's one value; edits reach the
/// first, and the last that is set is what a save writes.
class SettingsForm {
public:
    /// A key that belongs to editors and to no setting; kept, and not counted among the unknown ones.
    static constexpr std::string_view schemaKey = "$schema";
    static constexpr std::string_view lockedByFlagNote =
        "Set by a command-line flag in the launch agent; reinstall the daemon to manage it here.";

    /// The config file's top-level keys.
    [[nodiscard]] static std::expected<JSONValue::Object, ConfigFileError> parseFile(std::string_view document);

    /// `file` is empty when there is no config file. Linear in the number of settings.
    SettingsForm(SettingsSchema schema, const JSONValue::Object& file);

    [[nodiscard]] const SettingsSchema& schema() const& { return m_schema; }

    /// One for each of `schema().settings()`, in that order.
    [[nodiscard]] const std::vector<SettingField>& fields() const& { return m_fields; }

    /// The keys of the file that no setting names.
    [[nodiscard]] const JSONValue::Object& passthrough() const& { return m_passthrough; }

    const SettingsSchema& schema() && = delete;
    const std::vector<SettingField>& fields() && = delete;
    const JSONValue::Object& passthrough() && = delete;

    /// The first field of that name; null when there is none. Valid until the form changes or goes.
    [[nodiscard]] const SettingField* field(std::string_view name) const&;
    const SettingField* field(std::string_view name) && = delete;

    /// The fields whose names occur in the group, in the form's order. Valid until the form changes or goes.
    [[nodiscard]] std::vector<const SettingField*> fields(const SettingsGroup& group) const&;
    std::vector<const SettingField*> fields(const SettingsGroup& group) && = delete;

    /// Stores a value; an empty text or list unsets the key. Touches the first field of that name, nothing when there
    /// is none; so do the next two.
    void set(std::string_view name, SettingValue value);

    /// Stores what was typed into a text box: behind the required prefix, where there is one and the text is not blank.
    void setEditableText(std::string_view name, std::string_view text);

    /// Stores what was typed into the text box of a number. While it is no number the field has an error and the value
    /// from before the typing began.
    void typeNumber(std::string_view name, std::string_view text);

    /// The typing in that text box is over: text that is no number is given up, its error too. Whether there was any.
    bool endTyping(std::string_view name);

    /// Back to the default: the key is left out of the file.
    void reset(std::string_view name);

    /// Marks the fields whose source is a command-line flag, and only those. A field that becomes locked keeps no error
    /// but the schema's own, for nobody can edit it.
    void applySources(const std::map<std::string, ConfigSource>& sources);

    /// Attaches messages to the fields they name; the others keep theirs.
    void applyErrors(const std::map<std::string, std::string>& errors);

    /// Makes the present state what "edited" is measured against.
    void markSaved() { markSaved(*this); }

    /// The same for a save that wrote `written`, an earlier state of this form: what was edited since stays edited.
    void markSaved(const SettingsForm& written);

    /// The rules of the schema: a message for people, or nothing when the value passes.
    [[nodiscard]] static std::optional<std::string> validate(const SettingSpec& spec, const SettingValue& value);

    /// By name; of fields with the same name the last one's.
    [[nodiscard]] std::map<std::string, std::string> errors() const;
    [[nodiscard]] bool isValid() const;
    [[nodiscard]] bool isDirty() const;

    /// Whether a person would lose something: the form is dirty, or a text that is no number is being typed.
    [[nodiscard]] bool isEdited() const;

    /// The keys that neither the schema nor an editor explains, ascending.
    [[nodiscard]] std::vector<std::string> unknownKeys() const;

    /// The file to write: an object; and its bytes, which end with one line feed.
    [[nodiscard]] JSONValue serialized() const;
    [[nodiscard]] std::expected<std::string, EncodingError> serializedData() const;

    friend bool operator==(const SettingsForm& left, const SettingsForm& right) {
        return left.m_schema == right.m_schema && left.m_fields == right.m_fields &&
               left.m_passthrough == right.m_passthrough;
    }

private:
    [[nodiscard]] std::span<const std::size_t> positions(std::string_view name) const;
    [[nodiscard]] SettingField* mutableField(std::string_view name);
    static void store(SettingField& field, SettingValue value);

    /// A number whose text box is being typed into.
    struct Typing {
        SettingField before;
        bool isNumber = true; ///< of the text at present
    };

    SettingsSchema m_schema;
    std::vector<SettingField> m_fields;
    JSONValue::Object m_passthrough;
    std::map<std::string, Typing, std::less<>> m_typing;
    std::vector<std::size_t> m_byName; ///< positions of the fields, ordered by name, then by position
};

} // namespace menubar
