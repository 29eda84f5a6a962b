#include "MenubarCore/Settings/SettingsSchema.h"

#include "MenubarCore/Settings/SettingsSchemaFields.h"

#include "tests/support/RecordRows.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::testing_support::expectRowsHold;

namespace {

using Kind = SettingControl::Kind;

SettingsSchema decoded(std::string_view document) {
    auto schema = SettingsSchema::decode(document);
    EXPECT_TRUE(schema) << (schema ? "" : describe(schema.error())) << "\n" << document;
    return std::move(schema).value_or(SettingsSchema{});
}

/// The error's text, or "decodes".
std::string refusal(std::string_view document) {
    const auto schema = SettingsSchema::decode(document);
    return schema ? "decodes" : describe(schema.error());
}

/// The one setting "a" of a schema, with these members of its setting object and of its property object.
SettingSpec spec(const std::string& meta, const std::string& property = "") {
    const std::string properties = property.empty() ? "{}" : R"({"a":{)" + property + "}}";
    const SettingsSchema schema =
        decoded(R"({"properties":)" + properties + R"(,"x-groups":[{"id":"g","settings":[{"name":"a")" +
                (meta.empty() ? "" : "," + meta) + "}]}]}");
    const SettingSpec* found = schema.setting("a");
    EXPECT_NE(found, nullptr);
    return found == nullptr ? SettingSpec{} : *found;
}

std::vector<std::string> names(const std::vector<SettingSpec>& specs) {
    std::vector<std::string> result;
    for (const SettingSpec& each : specs) {
        result.push_back(each.name);
    }
    return result;
}

template <typename T>
std::vector<std::string> keys() {
    std::vector<std::string> result;
    for (const FieldRow& row : recordRows<T>) {
        result.emplace_back(row.key);
    }
    return result;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(SettingsSchema, theWireFormatsKeysArePinned) {
    EXPECT_EQ(keys<SchemaDocument::Document>(), (Texts{"properties", "x-settings-version", "x-groups"}));
    EXPECT_EQ(keys<SchemaDocument::Property>(),
              (Texts{"type", "default", "minimum", "maximum", "pattern", "enum", "items"}));
    EXPECT_EQ(keys<SchemaDocument::Items>(), (Texts{"pattern", "enum"}));
    EXPECT_EQ(keys<SchemaDocument::GroupEntry>(), (Texts{"id", "title", "settings"}));
    EXPECT_EQ(keys<SchemaDocument::Meta>(),
              (Texts{"name", "group", "control", "help", "restart", "min", "max", "integer", "values", "multiple",
                     "multiline", "requiredPrefix", "itemPattern"}));
}

TEST(SettingsSchema, anEmptyObjectIsVersionOneWithoutGroups) {
    EXPECT_EQ(decoded("{}"), SettingsSchema{});
    EXPECT_EQ(decoded("{}").version, 1);
    EXPECT_TRUE(decoded("{}").groups.empty());
}

TEST(SettingsSchema, everyHintOfASettingIsRead) {
    const SettingSpec all = spec(
        R"("group":"g2","control":"list","help":"h","restart":false,"min":1,"max":2.5,"integer":true,"values":["x"],
           "multiple":true,"multiline":true,"requiredPrefix":"--","itemPattern":"i")",
        R"("type":"array","default":["d"],"pattern":"p")");
    EXPECT_EQ(all, (SettingSpec{.name = "a",
                                .group = "g2",
                                .control = Kind::list,
                                .help = "h",
                                .restart = false,
                                .min = 1,
                                .max = 2.5,
                                .integer = true,
                                .values = {"x"},
                                .multiple = true,
                                .multiline = true,
                                .requiredPrefix = "--",
                                .itemPattern = "i",
                                .pattern = "p",
                                .type = "array",
                                .defaultValue = JSONValue::Array{"d"}}));
}

TEST(SettingsSchema, aSettingWithoutHintsOrPropertyIsKeptWithDefaults) {
    EXPECT_EQ(spec(""), (SettingSpec{.name = "a", .control = {}}));
    EXPECT_TRUE(spec("").restart);
    EXPECT_FALSE(spec("").control.isKnown());
    EXPECT_EQ(spec("").control.rawValue(), "");
}

TEST(SettingsSchema, thePropertySaysWhatTheSettingLeavesOut) {
    const SettingSpec fromProperty =
        spec("", R"("type":"integer","minimum":1,"maximum":2,"enum":["e"],"items":{"pattern":"i","enum":["ie"]})");
    EXPECT_EQ(fromProperty.min, 1);
    EXPECT_EQ(fromProperty.max, 2);
    EXPECT_TRUE(fromProperty.integer);
    EXPECT_EQ(fromProperty.values, Texts{"e"});
    EXPECT_EQ(fromProperty.itemPattern, "i");
    EXPECT_EQ(fromProperty.type, "integer");
}

TEST(SettingsSchema, theSettingsOwnHintsComeFirst) {
    const SettingSpec own = spec(R"("min":3,"max":4,"values":["v"],"itemPattern":"own")",
                                 R"("minimum":1,"maximum":2,"enum":["e"],"items":{"pattern":"i","enum":["ie"]})");
    EXPECT_EQ(own.min, 3);
    EXPECT_EQ(own.max, 4);
    EXPECT_EQ(own.values, Texts{"v"});
    EXPECT_EQ(own.itemPattern, "own");
}

TEST(SettingsSchema, theElementsAllowedValuesAreTheLastResort) {
    EXPECT_EQ(spec("", R"("items":{"enum":["ie"]})").values, Texts{"ie"});
    EXPECT_EQ(spec("", R"("enum":[],"items":{"enum":["ie"]})").values, Texts{});
}

TEST(SettingsSchema, theSettingsListOfValuesWinsEvenWhenEmpty) {
    EXPECT_EQ(spec(R"("values":[])", R"("enum":["e"])").values, Texts{});
}

TEST(SettingsSchema, integerFalseOverridesAnIntegerType) {
    EXPECT_FALSE(spec(R"("integer":false)", R"("type":"integer")").integer);
    EXPECT_TRUE(spec(R"("integer":true)", R"("type":"number")").integer);
    EXPECT_FALSE(spec("", R"("type":"Integer")").integer);
    EXPECT_FALSE(spec("").integer);
}

TEST(SettingsSchema, theTextPatternComesFromThePropertyOnly) {
    EXPECT_EQ(spec(R"("pattern":"ignored")").pattern, std::nullopt);
    EXPECT_EQ(spec("", R"("pattern":"p")").pattern, "p");
    EXPECT_EQ(spec("", R"("pattern":"p")").itemPattern, std::nullopt);
}

TEST(SettingsSchema, defaultsOfEveryKindAreKeptAsTheyStand) {
    EXPECT_EQ(spec("", R"("default":false)").defaultValue, JSONValue(false));
    EXPECT_EQ(spec("", R"("default":1.5)").defaultValue, JSONValue(1.5));
    EXPECT_EQ(spec("", R"("default":{"k":[null]})").defaultValue,
              JSONValue(JSONValue::Object{{"k", JSONValue::Array{nullptr}}}));
}

TEST(SettingsSchema, aGroupWithoutTitleTakesItsId) {
    const SettingsSchema schema = decoded(R"({"x-groups":[{"id":"one"},{"id":"two","title":"Two"},
                                              {"id":"three","title":""}]})");
    ASSERT_EQ(schema.groups.size(), 3);
    EXPECT_EQ(schema.groups[0], (SettingsGroup{.id = "one", .title = "one", .settings = {}}));
    EXPECT_EQ(schema.groups[1].title, "Two");
    EXPECT_EQ(schema.groups[2].title, "");
}

TEST(SettingsSchema, theEnclosingGroupsIdIsNotCopiedToItsSettings) {
    EXPECT_EQ(spec("").group, "");
}

TEST(SettingsSchema, settingsGoGroupByGroupAndRepeatedNamesAreKept) {
    const SettingsSchema schema = decoded(R"({"x-groups":[
        {"id":"one","settings":[{"name":"b","help":"first"},{"name":"a"}]},
        {"id":"two","settings":[{"name":"b","help":"second"}]}]})");
    EXPECT_EQ(names(schema.settings()), (Texts{"b", "a", "b"}));
    ASSERT_NE(schema.setting("b"), nullptr);
    EXPECT_EQ(schema.setting("b")->help, "first");
    EXPECT_EQ(schema.setting("B"), nullptr);
    EXPECT_EQ(schema.setting(""), nullptr);
}

TEST(SettingsSchema, propertiesThatNoSettingNamesAreIgnored) {
    EXPECT_EQ(decoded(R"({"properties":{"lonely":{"type":"string"}}})"), SettingsSchema{});
}

TEST(SettingsSchema, unknownKeysAreIgnoredAtEveryDepth) {
    const SettingsSchema schema = decoded(R"({"$schema":"https://x","title":[],"properties":{"a":{"format":1}},
        "x-settings-version":7,"x-groups":[{"id":"g","icon":{},"settings":[{"name":"a","colour":[1]}]}]})");
    EXPECT_EQ(schema.version, 7);
    EXPECT_EQ(names(schema.settings()), Texts{"a"});
}

TEST(SettingsSchema, nullCountsAsAbsentButNotForWhatIsRequired) {
    EXPECT_EQ(decoded(R"({"properties":null,"x-settings-version":null,"x-groups":null})"), SettingsSchema{});
    EXPECT_EQ(spec(R"("control":null,"min":null,"values":null)", R"("default":null,"enum":null,"items":null)"),
              spec(""));
    EXPECT_EQ(refusal(R"({"x-groups":[{"id":null}]})"), "missing value (String) at x-groups.Index 0.id");
    EXPECT_EQ(refusal(R"({"x-groups":[null]})"), "missing value (Dictionary<String, Any>) at x-groups.Index 0");
    EXPECT_EQ(refusal(R"({"properties":{"a":{"enum":[null]}}})"),
              "missing value (String) at properties.a.enum.Index 0");
}

TEST(SettingsSchema, everythingElseThatHasTheWrongTypeFailsTheWholeSchema) {
    expectRowsHold<SchemaDocument::Document>();
    expectRowsHold<SchemaDocument::Property>();
    expectRowsHold<SchemaDocument::Items>();
    expectRowsHold<SchemaDocument::GroupEntry>();
    expectRowsHold<SchemaDocument::Meta>();
    EXPECT_EQ(refusal("[]"), "type mismatch (Dictionary<String, Any>) at ");
    EXPECT_EQ(refusal(R"({"properties":{"a":{"items":{"enum":[{}]}}}})"),
              "type mismatch (String) at properties.a.items.enum.Index 0");
    EXPECT_EQ(refusal(R"({"x-groups":[{}]})"), "missing key id");
    EXPECT_EQ(refusal(R"({"x-groups":[{"id":"g","settings":[{}]}]})"), "missing key name");
}

TEST(SettingsSchema, whatIsNotJSONIsRefused) {
    for (const char* document : {"", "ostrel: command not found", "{", "{}}", "{\"a\":}", "\xEF\xBB\xBF{}"}) {
        EXPECT_NE(refusal(document), "decodes") << document;
    }
}

TEST(SettingsSchema, aControlThatIsNotKnownIsNoError) {
    EXPECT_EQ(spec(R"("control":"Toggle")").control.kind(), Kind::unknown);
    EXPECT_EQ(spec(R"("control":"Toggle")").control.rawValue(), "Toggle");
    EXPECT_EQ(spec(R"("control":"")").control, SettingControl());
    EXPECT_EQ(spec(R"("control":"enum")").control, SettingControl(Kind::enumeration));
}

TEST(SettingsSchema, aSteppersStepIsOne) {
    EXPECT_EQ(SettingSpec::step, 1.0);
}

TEST(SettingsSchema, aLabelIsTheNameWithBlanksAndItsFirstCharacterInUpperCase) {
    struct Case {
        const char* name;
        const char* label;
    };

    const Case cases[] = {
        {"cache-warn-after", "Cache warn after"},
        {"poll-interval", "Poll interval"},
        {"a", "A"},
        {"-x-", "X"},
        {"a--b", "A b"},
        {"", ""},
        {"-", "-"},
        {"---", "---"},
        {"maxURL-size", "MaxURL size"},
        {"Two words-three", "Two words three"},
        {"\u00DFa", "SSa"},
        {"\u00E9t\u00E9", "\u00C9t\u00E9"},
        {"e\u0301a", "E\u0301a"},
        {"1st", "1st"},
        {"\U0001F600-x", "\U0001F600 x"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(SettingSpec{.name = each.name}.label(), each.label) << each.name;
    }
}
