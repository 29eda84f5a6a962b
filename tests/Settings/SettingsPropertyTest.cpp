// What holds for any schema, any file and any edits. The random worlds are the same in every run.

#include "MenubarCore/Settings/SettingsForm.h"

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

using Kind = SettingControl::Kind;

class RandomWorld {
public:
    explicit RandomWorld(unsigned seed) : m_engine(seed) {}

    [[nodiscard]] int below(int limit) { return static_cast<int>(m_engine() % static_cast<unsigned>(limit)); }

    [[nodiscard]] bool chance(int percent) { return below(100) < percent; }

    [[nodiscard]] double number() {
        const double values[] = {0, -0.0, 1, 2.5, 5, 10, 100, -7, 1e15, 0.1, 1e-7, 12345.678, 9007199254740993.0};
        return values[below(std::size(values))];
    }

    [[nodiscard]] std::string text() {
        const char* const values[] = {"",     "x",   "y",    "-- x",     "--x",          "30s",  "a b",
                                      "7",    "/p",  " 7 ",  "\u00DF\n", "\"quoted\"",   "[1]",  "null",
                                      "true", "\\/", "\x01", "value z",  "\U0001F600 é", "1e3x", "zz"};
        return values[below(std::size(values))];
    }

    [[nodiscard]] std::vector<std::string> texts() {
        std::vector<std::string> result(static_cast<std::size_t>(below(4)));
        std::ranges::generate(result, [this] { return text(); });
        return result;
    }

    [[nodiscard]] JSONValue json(int depth = 2) {
        switch (below(depth > 0 ? 7 : 5)) {
        case 0: return chance(50);
        case 1: return number();
        case 2:
        case 3: return text();
        case 4: return nullptr;
        case 5: {
            JSONValue::Array array;
            for (int i = below(4); i > 0; --i) {
                array.push_back(chance(60) ? JSONValue(text()) : json(depth - 1));
            }
            return array;
        }
        default: {
            JSONValue::Object object;
            for (int i = below(4); i > 0; --i) {
                object[text()] = json(depth - 1);
            }
            return object;
        }
        }
    }

    [[nodiscard]] SettingSpec spec(int number) {
        static constexpr Kind kinds[] = {Kind::toggle, Kind::number,      Kind::percent, Kind::duration, Kind::text,
                                         Kind::list,   Kind::enumeration, Kind::path,    Kind::unknown};
        const char* const patterns[] = {"^[0-9]+[smh]$", "[", ".", "^$", "^(a+)+$"};
        SettingSpec result;
        result.name = "s" + std::to_string(number);
        result.control = kinds[below(std::size(kinds))];
        result.multiple = chance(30);
        result.integer = chance(30);
        result.values = {"x", "y", "value z"};
        if (chance(30)) {
            result.min = below(10);
        }
        if (chance(30)) {
            result.max = below(20);
        }
        if (chance(20)) {
            result.requiredPrefix = chance(80) ? "--" : "";
        }
        if (chance(30)) {
            result.pattern = patterns[below(std::size(patterns))];
            result.itemPattern = result.pattern;
        }
        if (chance(40)) {
            result.defaultValue = json();
        }
        return result;
    }

    [[nodiscard]] SettingsSchema schema() {
        SettingsSchema result;
        int number = 0;
        for (int groups = below(4); groups > 0; --groups) {
            SettingsGroup group{.id = "g" + std::to_string(groups)};
            for (int settings = below(8); settings > 0; --settings) {
                group.settings.push_back(spec(number++));
            }
            result.groups.push_back(std::move(group));
        }
        return result;
    }

    /// Some settings' keys and some that no setting has.
    [[nodiscard]] JSONValue::Object file(const SettingsSchema& schema) {
        JSONValue::Object object;
        for (const SettingSpec& each : schema.settings()) {
            if (chance(60)) {
                object[each.name] = chance(50) ? fitting(each).json(each) : json();
            }
        }
        for (int i = below(4); i > 0; --i) {
            object["unknown" + std::to_string(i)] = json();
        }
        if (chance(20)) {
            object["$schema"] = text();
        }
        return object;
    }

    /// A value of the control's kind.
    [[nodiscard]] SettingValue fitting(const SettingSpec& each) {
        switch (each.control.kind()) {
        case Kind::toggle: return chance(50);
        case Kind::number:
        case Kind::percent: return number();
        case Kind::list: return texts();
        case Kind::enumeration: return each.multiple ? SettingValue(texts()) : SettingValue(text());
        case Kind::duration:
        case Kind::text:
        case Kind::path: return text();
        case Kind::unknown: return json().compactText();
        }
        return {};
    }

private:
    std::mt19937 m_engine;
};

/// A number written as text becomes a number, and a text of an unknown control the JSON that it is.
bool mayBeRewritten(const SettingField* field, const JSONValue& value) {
    if (field == nullptr || value.stringValue() == nullptr) {
        return false;
    }
    const Kind kind = field->spec.control.kind();
    return kind == Kind::number || kind == Kind::percent || kind == Kind::unknown;
}

SettingsForm reloaded(const SettingsForm& form) {
    const auto bytes = form.serializedData();
    EXPECT_TRUE(bytes);
    auto object = SettingsForm::parseFile(bytes.value_or(""));
    EXPECT_TRUE(object);
    return {form.schema(), std::move(object).value_or(JSONValue::Object{})};
}

constexpr unsigned worlds = 2000;

} // namespace

TEST(SettingsProperties, anUneditedFormWritesWhatItRead) {
    for (unsigned seed = 0; seed < worlds; ++seed) {
        RandomWorld world(seed);
        const SettingsSchema schema = world.schema();
        const JSONValue::Object file = world.file(schema);
        const SettingsForm form(schema, file);
        EXPECT_FALSE(form.isDirty());
        const JSONValue written = form.serialized();
        ASSERT_EQ(written.objectValue()->size(), file.size()) << "seed " << seed;
        for (const auto& [key, value] : file) {
            const auto found = written.objectValue()->find(key);
            ASSERT_NE(found, written.objectValue()->end()) << "seed " << seed << " " << key;
            EXPECT_TRUE(found->second == value || mayBeRewritten(form.field(key), value))
                << "seed " << seed << " " << key;
        }
    }
}

TEST(SettingsProperties, whatIsWrittenReadsBackToTheSameValues) {
    for (unsigned seed = 0; seed < worlds; ++seed) {
        RandomWorld world(seed);
        const SettingsSchema schema = world.schema();
        SettingsForm form(schema, world.file(schema));
        for (const SettingSpec& spec : schema.settings()) {
            if (world.chance(70)) {
                form.set(spec.name, world.fitting(spec));
            } else if (world.chance(50)) {
                form.reset(spec.name);
            }
        }
        const SettingsForm again = reloaded(form);
        for (const SettingField& field : form.fields()) {
            const SettingField& other = *again.field(field.name());
            EXPECT_EQ(other.isSet, field.isSet) << "seed " << seed << " " << field.name();
            EXPECT_EQ(other.unreadableFileValue, field.unreadableFileValue);
            if (field.isSet && field.spec.control.isKnown()) {
                EXPECT_EQ(other.value, field.value) << "seed " << seed << " " << field.name();
                EXPECT_EQ(other.error, field.error) << "seed " << seed << " " << field.name();
            }
        }
    }
}

TEST(SettingsProperties, unknownKeysSurviveAnyEdits) {
    for (unsigned seed = 0; seed < worlds; ++seed) {
        RandomWorld world(seed);
        const SettingsSchema schema = world.schema();
        const JSONValue::Object file = world.file(schema);
        SettingsForm form(schema, file);
        const auto settings = schema.settings();
        for (int i = 0; i < 20 && !settings.empty(); ++i) {
            const SettingSpec& spec =
                settings[static_cast<std::size_t>(world.below(static_cast<int>(settings.size())))];
            switch (world.below(3)) {
            case 0: form.setEditableText(spec.name, world.text()); break;
            case 1: form.reset(spec.name); break;
            default: form.set(spec.name, world.fitting(spec)); break;
            }
        }
        const JSONValue written = form.serialized();
        for (const auto& [key, value] : file) {
            if (form.field(key) == nullptr) {
                ASSERT_TRUE(written.objectValue()->contains(key)) << "seed " << seed;
                EXPECT_EQ(written.objectValue()->at(key), value) << "seed " << seed << " " << key;
            }
        }
    }
}

TEST(SettingsProperties, aFormIsEditedExactlyWhenItDiffersFromWhatWasSaved) {
    for (unsigned seed = 0; seed < worlds; ++seed) {
        RandomWorld world(seed);
        const SettingsSchema schema = world.schema();
        SettingsForm form(schema, world.file(schema));
        form.markSaved();
        const SettingsForm saved = form;
        for (const SettingField& field : saved.fields()) {
            form.set(field.name(), world.fitting(field.spec));
            const SettingField& now = *form.field(field.name());
            const bool differs = now.isSet != field.isSet || (now.isSet && now.value != field.value);
            EXPECT_EQ(now.isDirty(), differs) << "seed " << seed << " " << field.name();
        }
        form.markSaved();
        EXPECT_FALSE(form.isDirty());
    }
}
