// The fuzz target's dictionary follows the schema's tables and controls, or the fuzzer would hardly ever find a new
// one.

#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Settings/SettingsSchemaFields.h"

#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

using Kind = SettingControl::Kind;

void collect(const Shape& shape, std::set<std::string>& texts) {
    if (shape.element != nullptr) {
        collect(*shape.element, texts);
    }
    if (shape.record != nullptr) {
        for (const FieldRow& row : shape.record->rows) {
            texts.emplace(row.key);
            collect(*row.shape, texts);
        }
    }
}

/// One entry a line: each text as a JSON string.
std::string dictionary() {
    std::set<std::string> texts;
    collect(shapeOf<SchemaDocument::Document>, texts);
    for (const Kind kind : {Kind::toggle, Kind::number, Kind::percent, Kind::duration, Kind::text, Kind::list,
                            Kind::enumeration, Kind::path}) {
        texts.emplace(SettingControl(kind).rawValue());
    }
    std::string result = "# Every key and every control of the settings schema, as JSON strings.\n";
    for (const std::string& text : texts) {
        result += "\"\\\"" + text + "\\\"\"\n";
    }
    return result;
}

} // namespace

TEST(SettingsDictionary, holdsEveryKeyAndEveryControl) {
    std::ifstream file(MENUBAR_FUZZ_DICTIONARY);
    ASSERT_TRUE(file.is_open()) << MENUBAR_FUZZ_DICTIONARY;
    const std::string contents(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(contents, dictionary()) << "replace " << MENUBAR_FUZZ_DICTIONARY << " by the second of these texts";
}
