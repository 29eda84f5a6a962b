#include "MenubarApp/Settings/SettingRow.h"

#include "MenubarApp/Settings/ListControl.h"

#include "tests/Settings/SampleSettings.h"
#include "tests/support/RecordingViewHost.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::LaterQueue;
using recording::RecordingViewHost;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Kind = SettingControl::Kind;
using List = SettingValue::List;

/// One setting's row in a window, over a real form.
class SettingRowTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_THAT(m_host.faults, IsEmpty()); }

    /// The form of one setting and a config file.
    void use(const SettingSpec& spec, const std::string& file = "{}") {
        m_form = std::make_unique<SettingsForm>(sample::form({spec}, file));
    }

    void show(const SettingSpec& spec, const std::string& file = "{}") {
        use(spec, file);
        m_presenter = ViewPresenter::create(m_host, [this] { return body(); }, m_later.later());
    }

    [[nodiscard]] const SettingField& field() const { return m_form->fields().front(); }

    [[nodiscard]] const SettingValue& value() const { return field().value; }

    View body() {
        return SettingRow{.field = field(), .liveValue = m_liveValue, .actions = m_actions, .listIds = m_ids}.body();
    }

    /// The dump of the row without its title line.
    std::string control() {
        View row = body();
        row.children.erase(row.children.begin());
        std::string result;
        for (const View& line : row.children) {
            result += dump(line);
        }
        return result;
    }

    std::string titleLine() { return dump(body().children.front()); }

    std::unique_ptr<SettingsForm> m_form;
    std::optional<std::string> m_liveValue;
    std::vector<std::string> m_chosen;
    int m_edits = 0;
    SettingRowActions m_actions{.edit =
                                    [this](const std::function<void(SettingsForm&)>& change) {
                                        ++m_edits;
                                        change(*m_form);
                                    },
                                .endTyping = [this](const std::string& name) { m_form->endTyping(name); },
                                .choosePath = [this](const SettingSpec& spec) { m_chosen.push_back(spec.name); },
                                .focus = [this](const std::string& viewId) { m_presenter->focus(viewId); }};
    std::shared_ptr<ListItemIds> m_ids = std::make_shared<ListItemIds>();
    RecordingViewHost m_host;
    LaterQueue m_later;
    std::shared_ptr<ViewPresenter> m_presenter;
};

// The row

TEST_F(SettingRowTest, aDefaultValueHasItsLabelAndBadgeAndNothingToReset) {
    use({.name = "cache-warn-after", .control = Kind::toggle});
    EXPECT_EQ(dump(body()), "VStack spacing=6 #setting cache-warn-after\n"
                            "  HStack spacing=8 baseline #title\n"
                            "    Text \"Cache warn after\"\n"
                            "    Text \"default\" caption secondary #source\n"
                            "    Spacer\n"
                            "  HStack spacing=8 #control\n"
                            "    Toggle off label=\"Cache warn after\"\n");
}

TEST_F(SettingRowTest, aValueOfTheFileSaysSoAndCanBeReset) {
    use({.name = "a", .control = Kind::toggle, .defaultValue = JSONValue(true)}, R"({"a":false})");
    EXPECT_EQ(titleLine(), "HStack spacing=8 baseline #title\n"
                           "  Text \"A\"\n"
                           "  Text \"from file\" caption secondary #source\n"
                           "  Spacer\n"
                           "  Button \"Reset to default\" small padding=-3,0,-3,0 help=\"Remove the key from the file; "
                           "the daemon then uses "
                           "true\" label=\"Reset A to default\"\n");
}

TEST_F(SettingRowTest, withoutADefaultTheResetOnlyRemovesTheKey) {
    use({.name = "a", .control = Kind::text}, R"({"a":"x"})");
    EXPECT_THAT(
        titleLine(),
        HasSubstr("Button \"Reset to default\" small padding=-3,0,-3,0 help=\"Remove the key from the file\" "));
}

TEST_F(SettingRowTest, anEditIsMarkedUntilItIsTakenBack) {
    use({.name = "a", .control = Kind::toggle});
    m_form->set("a", true);
    EXPECT_THAT(titleLine(), HasSubstr("  Text \"edited\" caption orange #edited\n"
                                       "  Text \"default\" caption secondary #source\n"));
    m_form->reset("a");
    EXPECT_THAT(titleLine(), Not(HasSubstr("edited\"")));
}

TEST_F(SettingRowTest, aResetFieldShowsItsDefaultAgain) {
    show({.name = "a", .control = Kind::number, .defaultValue = JSONValue(30)}, R"({"a":5})");
    EXPECT_TRUE(m_host.press("Reset to default"));
    EXPECT_EQ(value(), SettingValue(30));
    EXPECT_FALSE(field().isSet);
    EXPECT_NE(m_host.find("TextField \"30\""), windowContent);
    EXPECT_FALSE(m_host.press("Reset to default"));
}

TEST_F(SettingRowTest, helpStandsBelowTheLabel) {
    use({.name = "a", .control = Kind::toggle, .help = "Warn when the cache is about to expire."});
    EXPECT_THAT(control(),
                testing::StartsWith("Text \"Warn when the cache is about to expire.\" caption secondary #help\n"));
}

TEST_F(SettingRowTest, aLockedFieldShowsTheNoteInsteadOfAControlAndNoReset) {
    use({.name = "a", .control = Kind::text}, R"({"a":"x"})");
    m_form->applySources({{"a", ConfigSource::cli}});
    EXPECT_EQ(
        dump(body()),
        "VStack spacing=6 #setting a\n"
        "  HStack spacing=8 baseline #title\n"
        "    Text \"A\"\n"
        "    Text \"set by a flag\" caption secondary #source\n"
        "    Spacer\n"
        "  HStack spacing=6 baseline #control\n"
        "    Symbol lock described=\"Locked\" caption secondary\n"
        "    Text \"Set by a command-line flag in the launch agent; reinstall the daemon to manage it here.\" caption "
        "secondary\n");
}

TEST_F(SettingRowTest, theRunningDaemonsValueStandsBelowTheControl) {
    use({.name = "a", .control = Kind::toggle});
    m_liveValue = "on";
    EXPECT_THAT(control(), HasSubstr("Text \"Daemon is running with: on\" caption secondary #live\n"));
}

TEST_F(SettingRowTest, anErrorStandsBelowInRedAndDescribesTheControl) {
    use({.name = "a", .control = Kind::number, .max = 3}, R"({"a":5})");
    EXPECT_EQ(control(), "HStack spacing=8 #control\n"
                         "  TextField \"5\" width=140 label=\"A\" description=\"Must be at most 3\"\n"
                         "  Stepper 5 max=3 label=\"A\" description=\"Must be at most 3\"\n"
                         "HStack spacing=6 baseline #error\n"
                         "  Symbol xmark.octagon described=\"Error\" caption red\n"
                         "  Text \"Must be at most 3\" caption red\n");
}

TEST_F(SettingRowTest, anUnreadableFileValueIsAnErrorAboutTheDefault) {
    use({.name = "a", .control = Kind::list}, R"({"a":[1,2]})");
    EXPECT_THAT(control(), HasSubstr("Text \"Empty\" caption secondary\n"));
    EXPECT_THAT(control(), HasSubstr("Text \"The file holds [1,2], which is not a list of strings\" caption red"));
    EXPECT_THAT(titleLine(), HasSubstr("Reset to default"));
}

// Toggle

TEST_F(SettingRowTest, aToggleIsASwitch) {
    show({.name = "a", .control = Kind::toggle}, R"({"a":true})");
    EXPECT_EQ(control(), "HStack spacing=8 #control\n  Toggle on label=\"A\"\n");
    m_host.toggle(m_host.find("Toggle"), false);
    EXPECT_EQ(value(), SettingValue(false));
    EXPECT_NE(m_host.find("Toggle off"), windowContent);
}

// Numbers

TEST_F(SettingRowTest, numbersAndPercentagesHaveAFieldAndAStepper) {
    for (const Kind kind : {Kind::number, Kind::percent}) {
        use({.name = "a", .control = kind, .min = 0, .max = 100}, R"({"a":1234.5})");
        EXPECT_THAT(control(), testing::StartsWith("HStack spacing=8 #control\n"
                                                   "  TextField \"1234.5\" width=140 label=\"A\" description"));
        EXPECT_THAT(control(), HasSubstr("  Stepper 1234.5 min=0 max=100 label=\"A\""));
    }
}

TEST_F(SettingRowTest, textThatIsANumberGoesIntoTheFormWithEachKeystroke) {
    show({.name = "a", .control = Kind::number});
    const ControlId input = m_host.find("TextField");
    for (const auto& [typed, number] : std::vector<std::pair<std::string, double>>{
             {"4", 4}, {"45", 45}, {"45.", 45}, {"45.5", 45.5}, {" 7 ", 7}, {"-3", -3}, {"1e3", 1000}}) {
        m_host.type(input, typed);
        EXPECT_EQ(value(), SettingValue(number)) << typed;
        EXPECT_EQ(m_host.text(input), typed);
    }
}

TEST_F(SettingRowTest, textThatIsNoNumberYetIsAnErrorAndIsPutBack) {
    show({.name = "a", .control = Kind::number}, R"({"a":30})");
    const ControlId input = m_host.find("TextField");
    for (const std::string typed : {"", "-", "3x", "1,000", "inf", "nan", "0x10", "1e", "."}) {
        m_host.type(input, typed);
        EXPECT_EQ(value(), SettingValue(30)) << typed;
        EXPECT_EQ(m_host.text(input), typed);
        EXPECT_NE(m_host.find("Text \"Must be a number\" caption red"), windowContent) << typed;
        m_host.blur();
        m_later.run();
        EXPECT_EQ(m_host.text(input), "30");
        EXPECT_EQ(m_host.find("Text \"Must be a number\""), windowContent) << typed;
    }
}

TEST_F(SettingRowTest, leavingANumberThatWasNotTouchedChangesNothing) {
    show({.name = "a", .control = Kind::number}, R"({"a":30})");
    m_host.focus(m_host.find("TextField"));
    m_host.blur();
    EXPECT_EQ(m_edits, 0);
    EXPECT_TRUE(m_form->isValid());
}

TEST_F(SettingRowTest, aNumberThatBreaksARuleIsTakenAndFlagged) {
    show({.name = "a", .control = Kind::number, .min = 1, .max = 10, .integer = true});
    m_host.type(m_host.find("TextField"), "11");
    EXPECT_NE(m_host.find("Text \"Must be between 1 and 10\" caption red"), windowContent);
    m_host.type(m_host.find("TextField"), "1.5");
    EXPECT_NE(m_host.find("Text \"Must be a whole number\" caption red"), windowContent);
    m_host.type(m_host.find("TextField"), "2");
    EXPECT_EQ(m_host.find("Text \"Must be"), windowContent);
}

TEST_F(SettingRowTest, theStepperStepsTheNumberWithinItsBounds) {
    show({.name = "a", .control = Kind::number, .min = 0, .max = 2}, R"({"a":1})");
    const ControlId arrows = m_host.find("Stepper");
    m_host.step(arrows, StepDirection::up);
    EXPECT_EQ(value(), SettingValue(2));
    EXPECT_EQ(m_host.text(m_host.find("TextField")), "2");
    m_edits = 0;
    m_host.step(arrows, StepDirection::up);
    EXPECT_EQ(m_edits, 0);
    m_host.step(arrows, StepDirection::down);
    m_host.step(arrows, StepDirection::down);
    m_host.step(arrows, StepDirection::down);
    EXPECT_EQ(value(), SettingValue(0));
}

// Durations

TEST_F(SettingRowTest, aDurationIsATextWithAStepper) {
    use({.name = "a", .control = Kind::duration, .defaultValue = JSONValue("5m")}, R"({"a":"10m"})");
    EXPECT_EQ(control(), "HStack spacing=8 #control\n"
                         "  TextField \"10m\" prompt=\"5m\" width=140 label=\"A\"\n"
                         "  Stepper 10 min=0 label=\"A\"\n");
}

TEST_F(SettingRowTest, aDurationsFieldEditsTheText) {
    show({.name = "a", .control = Kind::duration, .pattern = "^[0-9]+[smh]$"}, R"({"a":"10m"})");
    const ControlId input = m_host.find("TextField");
    m_host.type(input, "10");
    EXPECT_EQ(value(), SettingValue("10"));
    EXPECT_NE(m_host.find("Text \"Use a duration such as 30s, 10m, or 1h\" caption red"), windowContent);
    m_host.type(input, "10s");
    EXPECT_EQ(m_host.find("Text \"Use a duration"), windowContent);
    m_host.type(input, "");
    EXPECT_FALSE(field().isSet);
}

TEST_F(SettingRowTest, aDurationsStepperKeepsTheUnit) {
    show({.name = "a", .control = Kind::duration}, R"({"a":"10m"})");
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    EXPECT_EQ(value(), SettingValue("11m"));
    EXPECT_EQ(m_host.text(m_host.find("TextField")), "11m");
    m_host.step(m_host.find("Stepper"), StepDirection::down);
    EXPECT_EQ(value(), SettingValue("10m"));
}

TEST_F(SettingRowTest, aDurationWithoutALeadingNumberCannotBeStepped) {
    show({.name = "a", .control = Kind::duration}, R"({"a":"soon"})");
    EXPECT_NE(m_host.find("Stepper 0 min=0 disabled"), windowContent);
    m_host.step(m_host.find("Stepper"), StepDirection::up);
    EXPECT_EQ(value(), SettingValue("soon"));
}

// Texts

TEST_F(SettingRowTest, aTextIsAFieldWithItsDefaultBelow) {
    use({.name = "a", .control = Kind::text, .defaultValue = JSONValue("hello")});
    EXPECT_EQ(control(), "VStack spacing=6 #control\n"
                         "  HStack spacing=8 baseline\n"
                         "    TextField \"hello\" label=\"A\"\n"
                         "  Text \"Default: hello\" caption secondary\n");
}

TEST_F(SettingRowTest, aTextWithoutADefaultHasNoSuchLine) {
    use({.name = "a", .control = Kind::text});
    EXPECT_EQ(control(), "VStack spacing=6 #control\n"
                         "  HStack spacing=8 baseline\n"
                         "    TextField \"\" label=\"A\"\n");
}

TEST_F(SettingRowTest, aMultilineTextIsAnEditor) {
    show({.name = "a", .control = Kind::text, .multiline = true}, R"({"a":"one\ntwo"})");
    EXPECT_EQ(control(), "VStack spacing=6 #control\n"
                         "  HStack spacing=8 baseline\n"
                         "    TextEditor \"one\\ntwo\" label=\"A\"\n");
    m_host.type(m_host.find("TextEditor"), "one\ntwo\nthree");
    EXPECT_EQ(value(), SettingValue("one\ntwo\nthree"));
}

TEST_F(SettingRowTest, aRequiredPrefixStandsBeforeTheFieldAndIsAdded) {
    show({.name = "a", .control = Kind::text, .requiredPrefix = "--"}, R"({"a":"-- x"})");
    EXPECT_EQ(control(),
              "VStack spacing=6 #control\n"
              "  HStack spacing=8 baseline\n"
              "    Text \"--\" monospaced secondary help=\"Every message starts with this prefix; it is added "
              "for you.\"\n"
              "    TextField \"x\" label=\"A\"\n");
    m_host.type(m_host.find("TextField"), "y");
    EXPECT_EQ(value(), SettingValue("-- y"));
    m_host.type(m_host.find("TextField"), "  ");
    EXPECT_FALSE(field().isSet);
    EXPECT_EQ(m_host.text(m_host.find("TextField")), "  ");
    m_host.blur();
    EXPECT_EQ(m_host.text(m_host.find("TextField")), "");
}

// Lists

TEST_F(SettingRowTest, aListWritesEveryChangeIntoTheForm) {
    show({.name = "a", .control = Kind::list});
    EXPECT_EQ(control(), "VStack spacing=4 #control\n"
                         "  Text \"Empty\" caption secondary\n"
                         "  Button \"Add\" plus.circle borderless #add label=\"Add an item to A\"\n");
    m_host.press("Add");
    EXPECT_EQ(value(), SettingValue(List{""}));
    EXPECT_NE(m_host.find("Text \"Item 1 is empty\" caption red"), windowContent);
    m_host.type(m_host.find("TextField \"\" prompt=\"Item 1\""), "x");
    EXPECT_EQ(value(), SettingValue(List{"x"}));
    m_host.press(m_host.find("Button", "Remove Item 1 of A"));
    EXPECT_EQ(value(), SettingValue(List{}));
    EXPECT_FALSE(field().isSet);
}

// Enumerations

TEST_F(SettingRowTest, anEnumerationIsAPickerOverItsValues) {
    show({.name = "a", .control = Kind::enumeration, .values = {"x", "y"}}, R"({"a":"y"})");
    EXPECT_EQ(control(), "HStack spacing=8 #control\n  Picker \"x\" *\"y\" label=\"A\"\n");
    m_host.pick(m_host.find("Picker"), 0);
    EXPECT_EQ(value(), SettingValue("x"));
}

TEST_F(SettingRowTest, aValueThatIsNotAllowedSelectsNothing) {
    use({.name = "a", .control = Kind::enumeration, .values = {"x", "y"}}, R"({"a":"z"})");
    EXPECT_THAT(control(), testing::StartsWith("HStack spacing=8 #control\n  Picker \"x\" \"y\" label"));
    EXPECT_THAT(control(), HasSubstr("Unknown value z (allowed: x, y)"));
}

TEST_F(SettingRowTest, aMultipleEnumerationHasACheckboxForEachValue) {
    show({.name = "a", .control = Kind::enumeration, .values = {"x", "y", "z"}, .multiple = true}, R"({"a":["z"]})");
    EXPECT_EQ(control(), "VStack spacing=4 #control\n"
                         "  Checkbox \"x\" off #x label=\"A, x\"\n"
                         "  Checkbox \"y\" off #y label=\"A, y\"\n"
                         "  Checkbox \"z\" on #z label=\"A, z\"\n");
    m_host.toggle(m_host.find("Checkbox \"x\""), true);
    EXPECT_EQ(value(), SettingValue(List({"z", "x"})));
    m_host.toggle(m_host.find("Checkbox \"z\""), false);
    EXPECT_EQ(value(), SettingValue(List{"x"}));
}

TEST_F(SettingRowTest, uncheckingRemovesAValueHoweverOftenItIsThere) {
    show({.name = "a", .control = Kind::enumeration, .values = {"x", "y"}, .multiple = true}, R"({"a":["x","y","x"]})");
    m_host.toggle(m_host.find("Checkbox \"x\""), false);
    EXPECT_EQ(value(), SettingValue(List{"y"}));
}

// Paths, unknown kinds

TEST_F(SettingRowTest, aPathIsAFieldAndAButtonThatChooses) {
    show({.name = "log-file", .control = Kind::path}, R"({"log-file":"/tmp/x"})");
    EXPECT_EQ(control(), "HStack spacing=8 #control\n"
                         "  TextField \"/tmp/x\" prompt=\"Leave empty for the default\" label=\"Log file\"\n"
                         "  Button \"Choose...\" label=\"Choose Log file\"\n");
    m_host.type(m_host.find("TextField"), "/tmp/y");
    EXPECT_EQ(value(), SettingValue("/tmp/y"));
    m_host.press("Choose...");
    EXPECT_THAT(m_chosen, ElementsAre("log-file"));
}

TEST_F(SettingRowTest, anUnknownKindIsEditedAsRawJSON) {
    show({.name = "a", .control = SettingControl::fromRawValue("knob")}, R"({"a":{"k":[1]}})");
    EXPECT_EQ(control(),
              "VStack spacing=6 #control\n"
              "  Text \"This app does not know the control kind knob; the value is edited as raw JSON.\" caption "
              "secondary\n"
              "  TextField \"{\\\"k\\\":[1]}\" prompt=\"Raw JSON\" label=\"A\"\n");
    m_host.type(m_host.find("TextField"), "[2]");
    EXPECT_EQ(m_form->serialized(), sample::json(R"({"a":[2]})"));
}

} // namespace
} // namespace menubar
