// The fuzz target's dictionary follows the schema's tables and controls, or the fuzzer would hardly ever find a new
// one.

#include "MenubarCore/Settings/SettingsSchema.h"
#include "MenubarCore/Settings/SettingsSchemaFields.h"

#include "tests/support/FuzzDictionary.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using Kind = SettingControl::Kind;

TEST(SettingsDictionary, holdsEveryKeyAndEveryControl) {
    std::set<std::string> texts;
    testing_support::collectTexts(shapeOf<SchemaDocument::Document>, texts);
    for (const Kind kind : {Kind::toggle, Kind::number, Kind::percent, Kind::duration, Kind::text, Kind::list,
                            Kind::enumeration, Kind::path}) {
        texts.emplace(SettingControl(kind).rawValue());
    }
    testing_support::expectDictionary(MENUBAR_FUZZ_DICTIONARY,
                                      "Every key and every control of the settings schema, as JSON strings.", texts);
}
