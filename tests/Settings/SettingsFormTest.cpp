#include "MenubarCore/Settings/SettingsForm.h"

#include "tests/Settings/SampleSettings.h"

#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::sample::field;
using menubar::sample::form;
using menubar::sample::json;
using menubar::sample::spec;

namespace {

using Kind = SettingControl::Kind;
using List = SettingValue::List;
using Texts = std::vector<std::string>;

SettingSpec number(std::optional<double> min, std::optional<double> max) {
    SettingSpec result = spec(Kind::number);
    result.min = min;
    result.max = max;
    return result;
}

SettingSpec whole(SettingSpec setting) {
    setting.integer = true;
    return setting;
}

SettingSpec choice(std::vector<std::string> values, bool multiple = false) {
    SettingSpec result = spec(Kind::enumeration);
    result.values = std::move(values);
    result.multiple = multiple;
    return result;
}

SettingSpec duration(std::optional<std::string> pattern) {
    SettingSpec result = spec(Kind::duration);
    result.pattern = std::move(pattern);
    return result;
}

SettingSpec list(std::optional<std::string> itemPattern) {
    SettingSpec result = spec(Kind::list);
    result.itemPattern = std::move(itemPattern);
    return result;
}

SettingSpec prefixed(std::string prefix) {
    SettingSpec result = spec(Kind::text);
    result.requiredPrefix = std::move(prefix);
    return result;
}

SettingSpec withDefault(SettingSpec setting, JSONValue value) {
    setting.defaultValue = std::move(value);
    return setting;
}

const SettingSpec unknown = spec(SettingControl::fromRawValue("colour"));

/// The message of a value, or "" when it passes.
std::string message(const SettingSpec& setting, const SettingValue& value) {
    return SettingsForm::validate(setting, value).value_or("");
}

/// The field of a file {"a": value}.
SettingField loaded(const SettingSpec& setting, const std::string& value) {
    return field(form({setting}, R"({"a":)" + value + "}"));
}

std::string serialized(const SettingsForm& edited) {
    return edited.serialized().compactText();
}

} // namespace

TEST(SettingsForm, aFileMustHoldOneJSONObject) {
    EXPECT_EQ(SettingsForm::parseFile(R"({"a":1})"), (JSONValue::Object{{"a", 1}}));
    EXPECT_EQ(SettingsForm::parseFile("{}"), JSONValue::Object{});
    for (const char* document : {"[]", "1", "\"x\"", "null", "true"}) {
        const auto result = SettingsForm::parseFile(document);
        ASSERT_FALSE(result) << document;
        EXPECT_EQ(describe(result.error()), "The config file must hold one JSON object");
    }
}

TEST(SettingsForm, aFileThatIsNotJSONFailsWithTheReadersError) {
    const auto result = SettingsForm::parseFile("{");
    ASSERT_FALSE(result);
    const auto* error = std::get_if<DecodingError>(&result.error());
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(describe(result.error()), describe(*error));
    EXPECT_FALSE(SettingsForm::parseFile(""));
    EXPECT_FALSE(SettingsForm::parseFile(R"({"a":1,})"));
}

// Defaults

TEST(SettingsForm, theDefaultOfASettingIsTheSchemasWhereItFitsTheControl) {
    EXPECT_EQ(SettingField::defaultValue(withDefault(spec(Kind::toggle), true)), SettingValue(true));
    EXPECT_EQ(SettingField::defaultValue(withDefault(number(1, 10), 5)), SettingValue(5));
    EXPECT_EQ(SettingField::defaultValue(withDefault(number(1, 10), "6")), SettingValue(6));
    EXPECT_EQ(SettingField::defaultValue(withDefault(number(1, 10), 50)), SettingValue(50))
        << "rules are not its matter";
    EXPECT_EQ(SettingField::defaultValue(withDefault(unknown, JSONValue::Array{1})), SettingValue("[1]"));
    EXPECT_EQ(SettingField::defaultValue(withDefault(list({}), JSONValue::Array{"x"})), SettingValue(List{"x"}));
}

TEST(SettingsForm, aSchemaDefaultThatDoesNotFitIsPassedOver) {
    EXPECT_EQ(SettingField::defaultValue(withDefault(spec(Kind::toggle), 1)), SettingValue(false));
    EXPECT_EQ(SettingField::defaultValue(withDefault(number(1, 10), "many")), SettingValue(1));
    EXPECT_EQ(SettingField::defaultValue(withDefault(choice({"b", "a"}), 3)), SettingValue("b"));
    EXPECT_EQ(SettingField::defaultValue(withDefault(list({}), JSONValue::Array{1})), SettingValue(List{}));
}

TEST(SettingsForm, withoutASchemaDefaultEachControlHasItsOwn) {
    EXPECT_EQ(SettingField::defaultValue(spec(Kind::toggle)), SettingValue(false));
    EXPECT_EQ(SettingField::defaultValue(spec(Kind::number)), SettingValue(0));
    EXPECT_EQ(SettingField::defaultValue(number(3, {})), SettingValue(3));
    EXPECT_EQ(SettingField::defaultValue(number({}, 3)), SettingValue(0));
    EXPECT_EQ(SettingField::defaultValue(spec(Kind::percent)), SettingValue(0));
    EXPECT_EQ(SettingField::defaultValue(choice({"b", "a"})), SettingValue("b"));
    EXPECT_EQ(SettingField::defaultValue(choice({})), SettingValue(""));
    EXPECT_EQ(SettingField::defaultValue(choice({"b", "a"}, true)), SettingValue(List{}));
    EXPECT_EQ(SettingField::defaultValue(spec(Kind::list)), SettingValue(List{}));
    for (const Kind kind : {Kind::duration, Kind::text, Kind::path, Kind::unknown}) {
        EXPECT_EQ(SettingField::defaultValue(spec(kind)), SettingValue(""));
    }
}

TEST(SettingsForm, theDefaultsTextIsTheSchemasValueOnOneLine) {
    EXPECT_EQ(field(form({spec(Kind::text)})).defaultText(), std::nullopt);
    EXPECT_EQ(field(form({withDefault(spec(Kind::text), "")})).defaultText(), "");
    EXPECT_EQ(field(form({withDefault(spec(Kind::number), 30.0)})).defaultText(), "30");
    EXPECT_EQ(field(form({withDefault(spec(Kind::list), JSONValue::Array{"a", "b"})})).defaultText(), R"(["a","b"])");
}

// Loading

TEST(SettingsForm, aKeyThatTheFileLacksIsUnsetAndShowsTheDefault) {
    const SettingField unset = field(form({withDefault(spec(Kind::number), 4)}));
    EXPECT_EQ(unset.value, SettingValue(4));
    EXPECT_FALSE(unset.isSet);
    EXPECT_EQ(unset.source, ValueSource::default_);
    EXPECT_EQ(unset.error, std::nullopt);
    EXPECT_EQ(unset.unreadableFileValue, std::nullopt);
    EXPECT_FALSE(unset.isLockedByFlag);
    EXPECT_EQ(unset.loadedValue, SettingValue(4));
    EXPECT_FALSE(unset.loadedIsSet);
    EXPECT_FALSE(unset.isDirty());
    EXPECT_EQ(unset.serializedValue(), std::nullopt);
}

TEST(SettingsForm, aKeyThatFitsIsSetFromTheFile) {
    const SettingField set = loaded(spec(Kind::number), "5");
    EXPECT_EQ(set.value, SettingValue(5));
    EXPECT_TRUE(set.isSet);
    EXPECT_EQ(set.source, ValueSource::file);
    EXPECT_EQ(set.error, std::nullopt);
    EXPECT_EQ(set.loadedValue, SettingValue(5));
    EXPECT_TRUE(set.loadedIsSet);
    EXPECT_FALSE(set.isDirty());
    EXPECT_EQ(set.serializedValue(), JSONValue(5));
}

TEST(SettingsForm, aFileValueThatBreaksARuleIsLoadedAndFlagged) {
    const SettingField tooBig = loaded(number({}, 3), "5");
    EXPECT_TRUE(tooBig.isSet);
    EXPECT_EQ(tooBig.value, SettingValue(5));
    EXPECT_EQ(tooBig.error, "Must be at most 3");
    EXPECT_EQ(tooBig.unreadableFileValue, std::nullopt);
}

TEST(SettingsForm, aFileValueThatDoesNotFitIsKeptAndWrittenBack) {
    SettingsForm read = form({withDefault(spec(Kind::list), JSONValue::Array{"d"})}, R"({"a":[1,2]})");
    EXPECT_EQ(field(read).value, SettingValue(List{"d"}));
    EXPECT_TRUE(field(read).isSet);
    EXPECT_EQ(field(read).source, ValueSource::file);
    EXPECT_EQ(field(read).unreadableFileValue, json("[1,2]"));
    EXPECT_EQ(field(read).error, "The file holds [1,2], which is not a list of strings");
    EXPECT_FALSE(read.isValid());
    EXPECT_FALSE(read.isDirty());
    EXPECT_EQ(serialized(read), R"({"a":[1,2]})");
    read.reset("a");
    EXPECT_EQ(serialized(read), "{}");
    EXPECT_TRUE(read.isValid());
    EXPECT_TRUE(read.isDirty());
}

TEST(SettingsForm, whatAFileHoldsInsteadIsNamedByTheControl) {
    struct Case {
        SettingSpec spec;
        const char* value;
        const char* error;
    };

    const Case cases[] = {
        {spec(Kind::toggle), "1", "The file holds 1, which is not a boolean"},
        {spec(Kind::number), "\"x\"", "The file holds x, which is not a number"},
        {spec(Kind::percent), "true", "The file holds true, which is not a number"},
        {spec(Kind::duration), "30", "The file holds 30, which is not a duration string"},
        {spec(Kind::text), "null", "The file holds null, which is not a string"},
        {spec(Kind::path), "{\"p\":1}", "The file holds {\"p\":1}, which is not a string"},
        {spec(Kind::list), "\"a\"", "The file holds a, which is not a list of strings"},
        {choice({"a"}, true), "\"a\"", "The file holds a, which is not a list of values"},
        {choice({"a"}), "[\"a\"]", "The file holds [\"a\"], which is not a value"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(loaded(each.spec, each.value).error, each.error) << each.value;
    }
}

TEST(SettingsForm, aSettingListedTwiceHasTwoFieldsOfTheSameFileValue) {
    SettingsForm twice = form({spec(Kind::number), spec(Kind::text), spec(Kind::number, "b")}, R"({"a":5,"b":1})");
    ASSERT_EQ(twice.fields().size(), 3);
    EXPECT_EQ(twice.fields()[0].value, SettingValue(5));
    EXPECT_EQ(twice.fields()[1].unreadableFileValue, JSONValue(5));
    EXPECT_EQ(twice.field("a"), &twice.fields()[0]);
    twice.set("a", 6);
    EXPECT_EQ(twice.fields()[0].value, SettingValue(6));
    EXPECT_EQ(twice.fields()[1].unreadableFileValue, JSONValue(5)) << "only the first is touched";
    EXPECT_EQ(serialized(twice), R"({"a":5,"b":1})") << "the later field overwrites";
    EXPECT_EQ(twice.errors().at("a"), "The file holds 5, which is not a string");
}

// Lookup

TEST(SettingsForm, aFieldIsFoundByItsExactName) {
    const SettingsForm some = form({spec(Kind::text, "b"), spec(Kind::text, "a"), spec(Kind::text, "c")});
    EXPECT_EQ(some.field("a"), &some.fields()[1]);
    EXPECT_EQ(some.field("A"), nullptr);
    EXPECT_EQ(some.field(""), nullptr);
    const SettingsForm none = form({});
    EXPECT_EQ(none.field("a"), nullptr);
}

TEST(SettingsForm, aGroupsFieldsComeInTheFormsOrder) {
    SettingsSchema schema;
    schema.groups.push_back({.id = "1", .settings = {spec(Kind::text, "b"), spec(Kind::text, "a")}});
    schema.groups.push_back({.id = "2", .settings = {spec(Kind::text, "c"), spec(Kind::number, "a")}});
    const SettingsForm both(schema, {});
    const auto names = [](const std::vector<const SettingField*>& fields) {
        std::string text;
        for (const SettingField* each : fields) {
            text += each->name() + std::string(each->spec.control.rawValue()).substr(0, 1) + " ";
        }
        return text;
    };
    EXPECT_EQ(names(both.fields(schema.groups[0])), "bt at an ") << "every field whose name occurs in the group";
    EXPECT_EQ(names(both.fields(schema.groups[1])), "at ct an ");
    EXPECT_EQ(names(both.fields(SettingsGroup{.id = "none", .settings = {spec(Kind::text, "x")}})), "");
}

// Validation

TEST(SettingsForm, aToggleIsOnOrOff) {
    EXPECT_EQ(message(spec(Kind::toggle), true), "");
    EXPECT_EQ(message(spec(Kind::toggle), 1), "Must be on or off");
    EXPECT_EQ(message(spec(Kind::toggle), "true"), "Must be on or off");
}

TEST(SettingsForm, aNumberKeepsItsBoundsInclusively) {
    struct Case {
        SettingSpec spec;
        SettingValue value;
        const char* message;
    };

    const Case cases[] = {
        {number({}, {}), 1e300, ""},
        {number({}, {}), "1", "Must be a number"},
        {number({}, {}), List{}, "Must be a number"},
        {number(1, 10), 1, ""},
        {number(1, 10), 10, ""},
        {number(1, 10), 0, "Must be between 1 and 10"},
        {number(1, 10), 10.5, "Must be between 1 and 10"},
        {number(1, 10), 0.999, "Must be between 1 and 10"},
        {number(1, {}), 1, ""},
        {number(1, {}), 0, "Must be at least 1"},
        {number({}, 3), 3, ""},
        {number({}, 3), 3.0001, "Must be at most 3"},
        {number(30.0, 2.5), 3, "Must be between 30 and 2.5"},
        {number(1e15, {}), 0, "Must be at least 1e+15"},
        {whole(number({}, {})), 2, ""},
        {whole(number({}, {})), -2, ""},
        {whole(number({}, {})), 1e300, ""},
        {whole(number({}, {})), 2.5, "Must be a whole number"},
        {whole(number(1, 10)), 0.5, "Must be a whole number"},
        {whole(number(1, 10)), 0, "Must be between 1 and 10"},
        {number(1, 10), std::numeric_limits<double>::quiet_NaN(), "Must be between 1 and 10"},
        {number(1, {}), std::numeric_limits<double>::infinity(), ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(message(each.spec, each.value), each.message);
        SettingSpec percent = each.spec;
        percent.control = Kind::percent;
        EXPECT_EQ(message(percent, each.value), each.message);
    }
}

TEST(SettingsForm, aDurationMatchesItsPatternSomewhere) {
    constexpr const char* refused = "Use a duration such as 30s, 10m, or 1h";
    EXPECT_EQ(message(duration({}), "anything"), "");
    EXPECT_EQ(message(duration({}), 30), "Must be a duration");
    EXPECT_EQ(message(duration("^[0-9]+[smh]$"), "30s"), "");
    EXPECT_EQ(message(duration("^[0-9]+[smh]$"), "30"), refused);
    EXPECT_EQ(message(duration("^[0-9]+[smh]$"), " 30s"), refused);
    EXPECT_EQ(message(duration("[0-9]"), "about 3 days"), "") << "the pattern carries its own anchors";
    EXPECT_EQ(message(duration("["), "anything"), "") << "a pattern that does not compile accepts";
    EXPECT_EQ(message(duration("(a+)+$"), std::string(60, 'a') + "b"), "") << "so does one that never ends";
}

TEST(SettingsForm, aTextStartsWithItsPrefixAndIgnoresThePattern) {
    EXPECT_EQ(message(spec(Kind::text), ""), "");
    EXPECT_EQ(message(spec(Kind::text), true), "Must be text");
    EXPECT_EQ(message(prefixed("--"), "-- x"), "");
    EXPECT_EQ(message(prefixed("--"), "--"), "");
    EXPECT_EQ(message(prefixed("--"), "- x"), "Must start with --");
    EXPECT_EQ(message(prefixed("Ab"), "ab"), "Must start with Ab");
    EXPECT_EQ(message(prefixed(""), "x"), "") << "the empty prefix is one of every text";
    SettingSpec patterned = spec(Kind::text);
    patterned.pattern = "^[0-9]+$";
    EXPECT_EQ(message(patterned, "letters"), "");
}

TEST(SettingsForm, aListsItemsAreCheckedInOrder) {
    EXPECT_EQ(message(list({}), "x"), "Must be a list");
    EXPECT_EQ(message(list("^[a-z]+$"), List{}), "");
    EXPECT_EQ(message(list({}), List{"a", ""}), "Item 2 is empty");
    EXPECT_EQ(message(list("^[a-z]+$"), List{"a", "B"}), "Item 2 must match ^[a-z]+$");
    EXPECT_EQ(message(list("^[a-z]+$"), List{"a", "B", ""}), "Item 2 must match ^[a-z]+$");
    EXPECT_EQ(message(list("^[a-z]+$"), List{"", "B"}), "Item 1 is empty");
    EXPECT_EQ(message(list("["), List{"a", "B"}), "");
    EXPECT_EQ(message(list("["), List{"a", ""}), "Item 2 is empty");
}

TEST(SettingsForm, anEnumerationHoldsOneOfItsValues) {
    EXPECT_EQ(message(choice({"a", "b"}), "b"), "");
    EXPECT_EQ(message(choice({"a", "b"}), "B"), "Unknown value B (allowed: a, b)");
    EXPECT_EQ(message(choice({"a", "b"}), List{"a"}), "Must be one of: a, b");
    EXPECT_EQ(message(choice({}), "a"), "Unknown value a (allowed: )");
    EXPECT_EQ(message(choice({"", "a"}), "b"), "Unknown value b (allowed: , a)");
}

TEST(SettingsForm, anEnumerationOfManyHoldsEachValueOnce) {
    EXPECT_EQ(message(choice({"a", "b"}, true), List{}), "");
    EXPECT_EQ(message(choice({"a", "b"}, true), List{"b", "a"}), "");
    EXPECT_EQ(message(choice({"a", "b"}, true), "a"), "Must be a list of: a, b");
    EXPECT_EQ(message(choice({"a", "b"}, true), List{"a", "a"}), "Each value may appear once");
    EXPECT_EQ(message(choice({"a", "b"}, true), List{"c", "c"}), "Each value may appear once") << "before membership";
    EXPECT_EQ(message(choice({"a", "b"}, true), List{"a", "d", "c"}), "Unknown value d (allowed: a, b)");
}

TEST(SettingsForm, aPathIsAnyText) {
    EXPECT_EQ(message(spec(Kind::path), "no/such"), "");
    EXPECT_EQ(message(spec(Kind::path), 1), "Must be a path");
}

TEST(SettingsForm, anUnknownControlHasNoRules) {
    for (const SettingValue& value : {SettingValue(true), SettingValue(1), SettingValue("["), SettingValue(List{""})}) {
        EXPECT_EQ(message(unknown, value), "");
    }
}

// Editing

TEST(SettingsForm, anEditStoresTheValueAndChecksIt) {
    SettingsForm edited = form({number(1, 10)});
    edited.set("a", 5);
    EXPECT_EQ(field(edited).value, SettingValue(5));
    EXPECT_TRUE(field(edited).isSet);
    EXPECT_EQ(field(edited).error, std::nullopt);
    EXPECT_EQ(field(edited).source, ValueSource::default_) << "the source is that of the last load or save";
    edited.set("a", 50);
    EXPECT_EQ(field(edited).error, "Must be between 1 and 10");
    EXPECT_EQ(edited.errors(), (std::map<std::string, std::string>{{"a", "Must be between 1 and 10"}}));
}

TEST(SettingsForm, typedTextThatIsNoNumberIsAnErrorAboutTheValueFromBefore) {
    SettingsForm edited = form({number(0, 100)}, R"({"a":7})");
    edited.typeNumber("a", "1");
    EXPECT_EQ(field(edited).value, SettingValue(1));
    for (const char* typed : {"1,", "1,5", "", "-", "1e", "0x1"}) {
        edited.typeNumber("a", typed);
        EXPECT_EQ(field(edited).value, SettingValue(7)) << typed;
        EXPECT_EQ(field(edited).error, "Must be a number") << typed;
        EXPECT_FALSE(field(edited).isDirty()) << typed;
        EXPECT_TRUE(edited.isEdited()) << typed;
    }
    edited.typeNumber("a", "1.5");
    EXPECT_EQ(field(edited).value, SettingValue(1.5));
    EXPECT_TRUE(edited.isValid());
    EXPECT_FALSE(edited.endTyping("a"));
    EXPECT_EQ(field(edited).value, SettingValue(1.5));
}

TEST(SettingsForm, typingThatEndsWithoutANumberLeavesAllAsItWas) {
    SettingsForm edited = form({number(1, 10)}, R"({"a":[1]})");
    const SettingsForm before = edited;
    edited.typeNumber("a", "2");
    edited.typeNumber("a", "2,");
    EXPECT_TRUE(edited.endTyping("a"));
    EXPECT_EQ(edited, before) << "what the file holds and what is wrong with it included";
    EXPECT_FALSE(edited.isEdited());
    EXPECT_FALSE(edited.endTyping("a")) << "it has ended";
}

TEST(SettingsForm, anotherEditOfTheFieldEndsItsTyping) {
    SettingsForm edited = form({number(1, 10)}, R"({"a":7})");
    edited.typeNumber("a", "x");
    edited.set("a", 8);
    EXPECT_FALSE(edited.endTyping("a"));
    EXPECT_EQ(field(edited).value, SettingValue(8));
    edited.typeNumber("a", "x");
    edited.reset("a");
    EXPECT_FALSE(edited.endTyping("a"));
    EXPECT_EQ(field(edited).error, std::nullopt);
    EXPECT_FALSE(field(edited).isSet);
}

TEST(SettingsForm, aFieldThatBecomesLockedKeepsNoErrorButTheSchemasOwn) {
    SettingsForm edited = form({number(1, 10), spec(Kind::text, "b"), spec(Kind::number, "c")}, R"({"a":50,"b":"x"})");
    edited.applyErrors({{"b", "the daemon says no"}});
    edited.typeNumber("c", "x");
    edited.applySources({{"a", ConfigSource::cli}, {"b", ConfigSource::cli}, {"c", ConfigSource::cli}});
    EXPECT_EQ(edited.errors(), (std::map<std::string, std::string>{{"a", "Must be between 1 and 10"}}));
}

TEST(SettingsForm, booleansAndNumbersAreAlwaysSet) {
    SettingsForm edited = form({spec(Kind::toggle)});
    edited.set("a", false);
    EXPECT_TRUE(field(edited).isSet);
    SettingsForm numbers = form({spec(Kind::number)});
    numbers.set("a", 0);
    EXPECT_TRUE(field(numbers).isSet);
}

TEST(SettingsForm, anEmptyTextOrListUnsetsTheKeyUnchecked) {
    SettingsForm texts = form({prefixed("--")}, R"({"a":"x"})");
    EXPECT_NE(field(texts).error, std::nullopt);
    texts.set("a", "");
    EXPECT_FALSE(field(texts).isSet);
    EXPECT_EQ(field(texts).value, SettingValue(""));
    EXPECT_EQ(field(texts).error, std::nullopt);
    EXPECT_EQ(serialized(texts), "{}");
    SettingsForm lists = form({list({})}, R"({"a":["x"]})");
    lists.set("a", List{});
    EXPECT_FALSE(field(lists).isSet);
    SettingsForm wrong = form({spec(Kind::number)}, R"({"a":1})");
    wrong.set("a", "");
    EXPECT_EQ(field(wrong).error, std::nullopt) << "even where the kind is wrong";
    wrong.set("a", "x");
    EXPECT_EQ(field(wrong).error, "Must be a number");
}

TEST(SettingsForm, anEditDropsTheUnreadableFileValue) {
    SettingsForm edited = form({spec(Kind::number)}, R"({"a":[]})");
    edited.set("a", 5);
    EXPECT_EQ(field(edited).unreadableFileValue, std::nullopt);
    EXPECT_EQ(serialized(edited), R"({"a":5})");
}

TEST(SettingsForm, editsOfUnknownNamesDoNothing) {
    SettingsForm edited = form({spec(Kind::text)}, R"({"b":1})");
    const SettingsForm before = edited;
    edited.set("b", 2);
    edited.setEditableText("b", "x");
    edited.reset("b");
    EXPECT_EQ(edited, before);
}

TEST(SettingsForm, resettingBringsTheDefaultBackAndClearsTheError) {
    SettingsForm edited = form({withDefault(number(1, 10), 4)}, R"({"a":50})");
    edited.reset("a");
    EXPECT_EQ(field(edited).value, SettingValue(4));
    EXPECT_FALSE(field(edited).isSet);
    EXPECT_EQ(field(edited).error, std::nullopt);
    EXPECT_EQ(field(edited).source, ValueSource::file);
    EXPECT_TRUE(edited.isDirty());
}

TEST(SettingsForm, typedTextIsStoredBehindItsPrefix) {
    SettingsForm edited = form({prefixed("--")});
    edited.setEditableText("a", "x");
    EXPECT_EQ(field(edited).value, SettingValue("-- x"));
    edited.setEditableText("a", "  x ");
    EXPECT_EQ(field(edited).value, SettingValue("--   x ")) << "what was typed is not trimmed";
    edited.setEditableText("a", " \t\n\u00A0");
    EXPECT_EQ(field(edited).value, SettingValue(""));
    EXPECT_FALSE(field(edited).isSet);
    SettingsForm plain = form({spec(Kind::text)});
    plain.setEditableText("a", " ");
    EXPECT_EQ(field(plain).value, SettingValue(" ")) << "without a prefix it is stored as it is";
    EXPECT_TRUE(field(plain).isSet);
}

TEST(SettingsForm, theEditableTextLeavesThePrefixOut) {
    EXPECT_EQ(loaded(prefixed("--"), R"("-- x")").editableText(), "x");
    EXPECT_EQ(loaded(prefixed("--"), R"("--x")").editableText(), "x");
    EXPECT_EQ(loaded(prefixed("--"), R"("--  x")").editableText(), " x") << "one blank belongs to the prefix";
    EXPECT_EQ(loaded(prefixed("--"), R"("x")").editableText(), "x");
    EXPECT_EQ(loaded(prefixed("--"), R"("--")").editableText(), "");
    EXPECT_EQ(loaded(spec(Kind::text), R"("-- x")").editableText(), "-- x");
    EXPECT_EQ(loaded(spec(Kind::number), "5").editableText(), "");
    EXPECT_EQ(loaded(list({}), R"(["x"])").editableText(), "");
    EXPECT_EQ(loaded(unknown, "[1]").editableText(), "[1]");
}

// Sources and errors

TEST(SettingsForm, onlyACommandLineFlagLocksAField) {
    SettingsForm some = form({spec(Kind::text, "a"), spec(Kind::text, "b"), spec(Kind::text, "c"),
                              spec(Kind::text, "d"), spec(Kind::text, "e")});
    some.applySources({{"a", ConfigSource::cli},
                       {"b", ConfigSource::file},
                       {"c", ConfigSource::default_},
                       {"d", ConfigSource::unknown},
                       {"x", ConfigSource::cli}});
    EXPECT_TRUE(field(some, "a").isLockedByFlag);
    for (const char* name : {"b", "c", "d", "e"}) {
        EXPECT_FALSE(field(some, name).isLockedByFlag) << name;
    }
    some.applySources({});
    EXPECT_FALSE(field(some, "a").isLockedByFlag);
}

TEST(SettingsForm, foundErrorsAreAttachedByNameAndTheOthersKept) {
    SettingsForm some = form({number({}, 1), spec(Kind::text, "b")}, R"({"a":5})");
    some.applyErrors({{"b", "no good"}, {"x", "nowhere"}});
    EXPECT_EQ(some.errors(), (std::map<std::string, std::string>{{"a", "Must be at most 1"}, {"b", "no good"}}));
    some.applyErrors({{"a", "worse"}});
    EXPECT_EQ(field(some).error, "worse");
    some.set("b", "y");
    EXPECT_EQ(field(some, "b").error, std::nullopt) << "an edit clears what was found before it";
}

// Dirtiness

TEST(SettingsForm, aFieldIsEditedWhenTheFileWouldSaySomethingElse) {
    SettingsForm edited = form({number({}, {})}, R"({"a":5})");
    EXPECT_FALSE(edited.isDirty());
    edited.set("a", 6);
    EXPECT_TRUE(edited.isDirty());
    edited.set("a", 5.0);
    EXPECT_FALSE(edited.isDirty());
    edited.reset("a");
    EXPECT_TRUE(edited.isDirty());
}

TEST(SettingsForm, settingAKeyToItsDefaultIsAnEdit) {
    SettingsForm edited = form({withDefault(spec(Kind::number), 4)});
    edited.set("a", 4);
    EXPECT_TRUE(edited.isDirty());
}

TEST(SettingsForm, twoUnsetStatesAreNeverDifferent) {
    SettingsForm edited = form({withDefault(spec(Kind::text), "d")});
    edited.set("a", "");
    EXPECT_NE(field(edited).value, field(edited).loadedValue);
    EXPECT_FALSE(edited.isDirty());
}

TEST(SettingsForm, afterASaveThePresentStateIsTheBaseline) {
    SettingsForm edited =
        form({spec(Kind::text, "a"), spec(Kind::text, "b"), spec(Kind::number, "c")}, R"({"b":"y","c":[]})");
    edited.set("a", "x");
    edited.reset("b");
    edited.markSaved();
    EXPECT_FALSE(edited.isDirty());
    EXPECT_EQ(field(edited, "a").source, ValueSource::file);
    EXPECT_EQ(field(edited, "b").source, ValueSource::default_);
    EXPECT_EQ(field(edited, "c").source, ValueSource::file) << "its unreadable value was written back";
    edited.set("a", "");
    EXPECT_TRUE(edited.isDirty());
}

TEST(SettingsForm, whatWasEditedWhileASaveRanStaysEdited) {
    SettingsForm edited = form({spec(Kind::text, "a"), spec(Kind::text, "b")});
    edited.set("a", "written");
    const SettingsForm written = edited;
    edited.set("b", "too late");
    edited.markSaved(written);
    EXPECT_FALSE(field(edited, "a").isDirty());
    EXPECT_EQ(field(edited, "a").source, ValueSource::file);
    EXPECT_TRUE(field(edited, "b").isDirty());
    EXPECT_EQ(field(edited, "b").source, ValueSource::default_);
}

// Serialisation

TEST(SettingsForm, keysOfNoSettingSurviveAndAreNamed) {
    SettingsForm some = form({spec(Kind::text)}, R"({"$schema":"s","z":{"deep":[null]},"extra":1,"a":"x"})");
    EXPECT_EQ(some.unknownKeys(), (Texts{"extra", "z"}));
    EXPECT_EQ(some.passthrough().size(), 3);
    some.reset("a");
    EXPECT_EQ(serialized(some), R"({"$schema":"s","extra":1,"z":{"deep":[null]}})");
}

TEST(SettingsForm, aSchemaKeyAloneIsNoUnknownKey) {
    EXPECT_EQ(form({}, R"({"$schema":"s","extra":1})").unknownKeys(), Texts{"extra"});
    EXPECT_EQ(form({}, R"({"$schema":"s"})").unknownKeys(), Texts{});
}

TEST(SettingsForm, theBytesAreSortedIndentedAndEndWithOneLineFeed) {
    SettingsForm some = form({spec(Kind::path, "path"), spec(Kind::list, "list")}, R"({"z":1,"path":"/x"})");
    some.set("list", List{"b", "a"});
    EXPECT_EQ(some.serializedData(), "{\n"
                                     "  \"list\" : [\n"
                                     "    \"b\",\n"
                                     "    \"a\"\n"
                                     "  ],\n"
                                     "  \"path\" : \"\\/x\",\n"
                                     "  \"z\" : 1\n"
                                     "}\n");
    EXPECT_EQ(form({}).serializedData(), "{}\n");
}

TEST(SettingsForm, theNoteOnLockedFieldsIsFixed) {
    EXPECT_EQ(SettingsForm::lockedByFlagNote,
              "Set by a command-line flag in the launch agent; reinstall the daemon to manage it here.");
    EXPECT_EQ(SettingsForm::schemaKey, "$schema");
}
