#include "MenubarApp/Settings/SettingsView.h"

#include "MenubarApp/Settings/ListControl.h"

#include "tests/Settings/SampleSettings.h"
#include "tests/support/RecordingViewHost.h"

#include <algorithm>
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
using ::testing::StartsWith;
using Kind = SettingControl::Kind;

/// The whole view of a state that the test sets; what is pressed is written down.
class SettingsViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_state.configPath = "/home/ann/.config/ostrel/config.json";
        m_state.configFileExists = true;
        m_state.isDaemonInstalled = true;
    }

    void load(std::vector<SettingSpec> settings, const std::string& file = "{}") {
        m_form = std::make_unique<SettingsForm>(sample::form(std::move(settings), file));
        m_state.phase = SettingsModel::Loaded{};
        m_state.form = m_form.get();
    }

    [[nodiscard]] SettingsView window() const { return {.state = m_state, .actions = m_actions, .listIds = m_ids}; }

    /// The part of the window above the footer.
    [[nodiscard]] std::string content() const { return dump(window().body().children.at(0)); }

    [[nodiscard]] std::string footer() const { return dump(window().body().children.at(2)); }

    /// What a press on the button with this title asks for; empty when there is no such enabled button.
    std::vector<std::string> pressing(const std::string& title) {
        RecordingViewHost host;
        LaterQueue later;
        const auto presenter = ViewPresenter::create(host, [this] { return window().body(); }, later.later());
        m_asked.clear();
        host.press(title);
        return m_asked;
    }

    std::function<void()> asks(const std::string& what) {
        return [this, what] { m_asked.push_back(what); };
    }

    /// Shows the window on the screen.
    void present(Size size = {.width = 680.0, .height = 760.0}) {
        m_host.size = size;
        m_presenter = ViewPresenter::create(m_host, [this] { return window().body(); }, m_later.later());
    }

    void render() {
        m_presenter->setNeedsRender();
        m_later.run();
    }

    std::unique_ptr<SettingsForm> m_form;
    SettingsViewState m_state;
    std::vector<std::string> m_asked;
    SettingsViewActions m_actions{.close = asks("close"),
                                  .save = asks("save"),
                                  .restart = asks("restart"),
                                  .tryAgain = asks("try again"),
                                  .load = asks("load"),
                                  .keepEdits = asks("keep edits"),
                                  .row = {.edit = [](const std::function<void(SettingsForm&)>&) {},
                                          .endTyping = [](const std::string&) {},
                                          .choosePath = [](const SettingSpec&) {},
                                          .focus = [](const std::string&) {}}};
    std::shared_ptr<ListItemIds> m_ids = std::make_shared<ListItemIds>();
    RecordingViewHost m_host;
    LaterQueue m_later;
    std::shared_ptr<ViewPresenter> m_presenter;
};

TEST_F(SettingsViewTest, isTheContentAboveALineAboveTheFooter) {
    load({{.name = "a", .control = Kind::toggle}});
    EXPECT_EQ(
        dump(window().body()),
        "VStack spacing=0\n"
        "  ScrollView spacing=20 #form padding=20,20,20,20\n"
        "    VStack spacing=8 #group g fill-width\n"
        "      Text \"G\" headline\n"
        "      Box fill-width padding=10,12,10,12\n"
        "        VStack spacing=6 #setting a\n"
        "          HStack spacing=8 baseline #title\n"
        "            Text \"A\"\n"
        "            Text \"default\" caption secondary #source\n"
        "            Spacer\n"
        "          HStack spacing=8 #control\n"
        "            Toggle off label=\"A\"\n"
        "  Divider\n"
        "  VStack spacing=4 #footer fill-width padding=12,20,12,20\n"
        "    Text \"Save validates the file through the daemon, then offers to restart it.\" caption secondary "
        "selectable lines=2 #status\n"
        "    Text \"Editing /home/ann/.config/ostrel/config.json\" caption secondary selectable #file\n"
        "    HStack spacing=8 #buttons padding=8,0,0,0\n"
        "      Spacer\n"
        "      Button \"Cancel\" key=escape\n"
        "      Button \"Restart daemon\" help=\"Run launchctl kickstart on the daemon so it reads the config file "
        "again\"\n"
        "      Button \"Save\" key=cmd-s disabled help=\"Validate through the daemon and write the config file "
        "(Cmd-S)\"\n");
}

// Phases

TEST_F(SettingsViewTest, whileLoadingAProgressIndicatorIsInTheMiddle) {
    EXPECT_EQ(content(), "VStack spacing=8 center #loading fill-width padding=20,20,20,20\n"
                         "  Spacer\n"
                         "  VStack spacing=8 center\n"
                         "    Spinner label=\"Loading settings from the daemon\"\n"
                         "    Text \"Loading settings from the daemon\"\n"
                         "  Spacer\n");
}

TEST_F(SettingsViewTest, whileLoadingItSaysWhatItWaitsFor) {
    m_state.waitingFor = {"/opt/ostrel config schema"};
    EXPECT_THAT(content(), HasSubstr("Text \"Waiting for: /opt/ostrel config schema\" caption secondary selectable\n"));
}

TEST_F(SettingsViewTest, aFailureShowsItsTextsAndOffersToTryAgain) {
    m_state.phase =
        SettingsLoadFailure{.title = "Could not load the settings schema", .detail = "ostrel config schema\nboom"};
    EXPECT_EQ(content(), "ScrollView spacing=12 #failed padding=20,20,20,20\n"
                         "  Spacer\n"
                         "  VStack spacing=12 center fill-width\n"
                         "    HStack spacing=6 baseline\n"
                         "      Symbol exclamationmark.triangle described=\"Error\" headline orange\n"
                         "      Text \"Could not load the settings schema\" headline selectable\n"
                         "    Text \"ostrel config schema\\nboom\" selectable\n"
                         "    Button \"Try again\"\n"
                         "  Spacer\n");
    EXPECT_THAT(pressing("Try again"), ElementsAre("try again"));
}

TEST_F(SettingsViewTest, aSectionForEachGroupInOrderWithARowForEachField) {
    SettingsSchema schema;
    schema.groups = {
        {.id = "one", .title = "First", .settings = {sample::spec(Kind::toggle, "a"), sample::spec(Kind::toggle, "b")}},
        {.id = "two", .title = "Second", .settings = {}},
        {.id = "three", .title = "Third", .settings = {sample::spec(Kind::toggle, "c")}}};
    const SettingsForm form(schema, {});
    m_state.phase = SettingsModel::Loaded{};
    m_state.form = &form;
    std::vector<std::size_t> places;
    for (const char* text : {"\"First\"", "#setting a", "#setting b", "\"Second\"", "\"Third\"", "#setting c"}) {
        places.push_back(content().find(text));
    }
    EXPECT_TRUE(std::ranges::is_sorted(places));
    EXPECT_NE(places.back(), std::string::npos);
}

TEST_F(SettingsViewTest, groupsOfOneIdStayApartAndOneWithoutSettingsIsOnlyItsTitle) {
    SettingsSchema schema;
    schema.groups = {{.id = "one", .title = "First", .settings = {sample::spec(Kind::text, "a")}},
                     {.id = "one", .title = "Second", .settings = {}},
                     {.id = "one", .title = "Third", .settings = {sample::spec(Kind::text, "b")}}};
    SettingsForm form(schema, {});
    m_state.phase = SettingsModel::Loaded{};
    m_state.form = &form;
    present();
    const std::string before = m_host.outline();
    EXPECT_THAT(before, HasSubstr("Text \"Second\" headline\n  Text \"Third\" headline\n  Box\n"));
    m_host.log.clear();
    form.set("b", std::string("x"));
    render();
    EXPECT_THAT(m_host.faults, IsEmpty());
    for (const std::string& call : m_host.log) {
        EXPECT_FALSE(call.starts_with("destroy")) << call;
    }
}

TEST_F(SettingsViewTest, aSettingListedTwiceHasTwoRowsThatStayApart) {
    load({sample::spec(Kind::list, "a"), sample::spec(Kind::list, "a")}, R"({"a":["x"]})");
    present();
    m_form->set("a", SettingValue::List{"x", "y"});
    render();
    EXPECT_THAT(m_host.faults, IsEmpty());
    std::size_t fields = 0;
    for (std::size_t at = 0; (at = m_host.outline().find("TextField", at)) != std::string::npos; ++at) {
        ++fields;
    }
    // Each group shows the fields of that name: both, in the one group that there is.
    EXPECT_EQ(fields, 3U);
}

TEST_F(SettingsViewTest, theValueInTheRunningDaemonReachesItsRow) {
    load({sample::spec(Kind::toggle, "a"), sample::spec(Kind::toggle, "b")});
    m_state.liveValue = [](const SettingField& field) {
        return field.name() == "b" ? std::optional<std::string>("on") : std::nullopt;
    };
    EXPECT_THAT(content(), HasSubstr("Toggle off label=\"B\"\n        Text \"Daemon is running with: on\""));
    EXPECT_THAT(content(), Not(HasSubstr("Toggle off label=\"A\"\n        Text \"Daemon")));
}

// Banners

TEST_F(SettingsViewTest, thereIsNoBannerSectionWithoutABanner) {
    load({});
    EXPECT_THAT(content(), Not(HasSubstr("#banners")));
}

TEST_F(SettingsViewTest, aConfigErrorShowsItsMessageAndPath) {
    load({});
    m_state.configErrorNotice = ConfigNotice::Error{.message = "bad key", .path = "/etc/ostrel.json"};
    EXPECT_THAT(content(), StartsWith("ScrollView spacing=20 #form padding=20,20,20,20\n"
                                      "  VStack spacing=8 #banners fill-width\n"
                                      "    Box fill-width padding=10,12,10,12\n"
                                      "      VStack spacing=4 #config error\n"
                                      "        HStack spacing=6 baseline\n"
                                      "          Symbol xmark.octagon described=\"Error\" headline red\n"
                                      "          Text \"The daemon ignored the config file and is running on flags and "
                                      "defaults\" headline selectable\n"
                                      "        Text \"bad key\" caption secondary selectable\n"
                                      "        Text \"/etc/ostrel.json\" caption secondary selectable\n"
                                      "  VStack spacing=8 #group g fill-width\n"));
    m_state.configErrorNotice->path.reset();
    EXPECT_THAT(content(), Not(HasSubstr("/etc/ostrel.json")));
}

TEST_F(SettingsViewTest, aNeededRestartIsOfferedUnlessOneRuns) {
    load({});
    m_state.isDaemonInstalled = false; // leaves the banner's button as the only enabled one
    m_state.restartNeeded = true;
    EXPECT_THAT(content(),
                HasSubstr("      HStack spacing=8 #restart needed\n"
                          "        HStack spacing=6 baseline\n"
                          "          Symbol arrow.clockwise described=\"Restart needed\" headline orange\n"
                          "          Text \"The config file changed after the daemon read it. Restart the daemon "
                          "to apply the change.\" headline selectable\n"
                          "        Spacer\n"
                          "        Button \"Restart daemon\"\n"));
    EXPECT_THAT(pressing("Restart daemon"), ElementsAre("restart"));
    m_state.saveState = SettingsModel::Restarting{};
    EXPECT_THAT(content(), HasSubstr("        Button \"Restart daemon\" disabled\n"));
    EXPECT_THAT(pressing("Restart daemon"), IsEmpty());
}

TEST_F(SettingsViewTest, unknownKeysAreNamed) {
    load({}, R"({"zeta":1,"alpha":2,"$schema":"x"})");
    EXPECT_THAT(content(),
                HasSubstr("Symbol exclamationmark.triangle described=\"Warning\" headline orange\n"
                          "          Text \"The config file has keys the daemon does not know: alpha, zeta. They are "
                          "kept as they are, and the daemon will reject the file until they are removed.\""));
}

TEST_F(SettingsViewTest, anUnknownKeyWithoutANameIsListedToo) {
    load({}, R"({"":1,"alpha":2})");
    EXPECT_THAT(content(), HasSubstr("the daemon does not know: , alpha. They are kept"));
}

TEST_F(SettingsViewTest, aFileThatAnotherProgramChangedOffersBothWaysOut) {
    load({sample::spec(Kind::toggle, "a")});
    m_form->set("a", true);
    m_state.fileChangedOnDisk = true;
    EXPECT_THAT(content(), HasSubstr("Another program has changed the config file since it was loaded."));
    EXPECT_THAT(pressing("Reload"), ElementsAre("load"));
    EXPECT_THAT(pressing("Keep my edits"), ElementsAre("keep edits"));
}

TEST_F(SettingsViewTest, whereThereAreNoEditsNoneAreSpokenOf) {
    load({sample::spec(Kind::number, "a")});
    m_state.fileChangedOnDisk = true;
    EXPECT_THAT(content(), HasSubstr("Text \"Reload shows what it holds now.\""));
    EXPECT_THAT(content(), Not(HasSubstr("edits")));
    EXPECT_THAT(pressing("Reload"), ElementsAre("load"));
    m_form->typeNumber("a", "x");
    EXPECT_THAT(content(), HasSubstr("Keep my edits")) << "half a number is an edit too";
}

TEST_F(SettingsViewTest, bannersStandInOneSectionInAFixedOrder) {
    load({}, R"({"extra":1})");
    m_state.fileChangedOnDisk = true;
    m_state.configErrorNotice = ConfigNotice::Error{.message = "m", .path = {}};
    m_state.restartNeeded = true;
    const View body = window().body();
    std::vector<std::string> ids;
    for (const View& banner : body.children[0].children[0].children[0].children) {
        if (!banner.id.empty()) { // the hairlines between them have none
            ids.push_back(banner.id);
        }
    }
    EXPECT_THAT(ids, ElementsAre("file changed", "config error", "restart needed", "unknown keys"));
}

// Footer

TEST_F(SettingsViewTest, theStatusLineFollowsTheStateOfSaving) {
    m_state.saveState = SettingsModel::Saved{Date(std::chrono::seconds(1741096980))};
    EXPECT_EQ(window().statusLine(), "Saved at 14:03. Restart the daemon to apply.");
    m_state.saveState = SettingsModel::SaveFailed{"Fix the highlighted fields first."};
    EXPECT_EQ(window().statusLine(), "Fix the highlighted fields first.");
    m_state.saveState = SettingsModel::Saving{};
    EXPECT_EQ(window().statusLine(), "Validating with the daemon...");
    m_state.saveState = SettingsModel::Restarting{};
    EXPECT_EQ(window().statusLine(), "Restarting the daemon...");
    m_state.saveState = SettingsModel::Idle{};
    EXPECT_EQ(window().statusLine(), "Save validates the file through the daemon, then offers to restart it.");
    m_state.isDaemonInstalled = false;
    EXPECT_EQ(window().statusLine(),
              "Daemon not installed (run: ostrel install); a daemon started by hand reads the file on "
              "its next start.");
    m_state.restartNeeded = true;
    EXPECT_EQ(window().statusLine(), "Restart the daemon to apply the saved settings.");
}

TEST_F(SettingsViewTest, theStatusLineHelpsWithWhatItsTwoLinesCannotHold) {
    EXPECT_THAT(footer(), Not(HasSubstr("#status help")));
    m_state.saveState = SettingsModel::SaveFailed{"Could not run config validate: boom"};
    EXPECT_THAT(footer(), HasSubstr("#status help=\"Could not run config validate: boom\""));
    m_state.saveState = SettingsModel::Saving{};
    m_state.waitingFor = {"ostrel config validate"};
    EXPECT_THAT(footer(), HasSubstr("#status help=\"Waiting for: ostrel config validate\""));
}

TEST_F(SettingsViewTest, theFileLineComesOnceItIsKnownWhetherThereIsAFile) {
    EXPECT_THAT(footer(), Not(HasSubstr("#file")));
    m_state.configFileExists = false;
    EXPECT_THAT(footer(), Not(HasSubstr("#file")));
    m_state.phase = SettingsLoadFailure{.title = "t", .detail = "d"};
    EXPECT_THAT(footer(), Not(HasSubstr("#file")));
    m_state.configFileExists = true;
    EXPECT_THAT(footer(), HasSubstr("Text \"Editing /home/ann/.config/ostrel/config.json\""));
}

TEST_F(SettingsViewTest, theFileLineSaysWhereASaveGoes) {
    load({});
    EXPECT_THAT(footer(), HasSubstr("Text \"Editing /home/ann/.config/ostrel/config.json\" caption secondary"));
    m_state.configFileExists = false;
    EXPECT_THAT(footer(), HasSubstr("Text \"No config file yet; defaults shown. It will be written to "
                                    "/home/ann/.config/ostrel/config.json\" caption secondary"));
}

TEST_F(SettingsViewTest, generalErrorsAreListedInRed) {
    m_state.generalErrors = {"unknown key x", "no"};
    EXPECT_THAT(footer(), HasSubstr("  ScrollView spacing=2 #errors max-height=96\n"
                                    "    Text \"unknown key x\" caption red selectable\n"
                                    "    Text \"no\" caption red selectable\n"
                                    "  HStack spacing=8 #buttons"));
}

TEST_F(SettingsViewTest, anyNumberOfGeneralErrorsLeavesTheButtonsInTheWindow) {
    load({sample::spec(Kind::toggle, "a")});
    m_state.generalErrors.assign(500, std::string(300, 'e'));
    present({520, 420});
    const Rect save = m_host.frame(m_host.find("Button \"Save\""));
    EXPECT_LE(save.y + save.height, 420);
    EXPECT_LE(save.x + save.width, 520);
    EXPECT_GT(m_host.frame(m_host.find("ScrollView spacing=20")).height, 100);
}

TEST_F(SettingsViewTest, eachFooterButtonAsksForItsOwn) {
    m_state.canSave = true;
    EXPECT_THAT(pressing("Cancel"), ElementsAre("close"));
    EXPECT_THAT(pressing("Restart daemon"), ElementsAre("restart"));
    EXPECT_THAT(pressing("Save"), ElementsAre("save"));
}

TEST_F(SettingsViewTest, saveIsEnabledWhenThereIsSomethingToSave) {
    EXPECT_THAT(pressing("Save"), IsEmpty());
    m_state.canSave = true;
    EXPECT_THAT(footer(), HasSubstr("Button \"Save\" key=cmd-s help="));
}

TEST_F(SettingsViewTest, theDaemonCanBeRestartedUnlessThatOrASaveIsUnderWay) {
    for (const SettingsModel::SaveState& busy :
         {SettingsModel::SaveState(SettingsModel::Saving{}), SettingsModel::SaveState(SettingsModel::Restarting{})}) {
        m_state.saveState = busy;
        EXPECT_THAT(pressing("Restart daemon"), IsEmpty());
    }
    for (const SettingsModel::SaveState& free :
         {SettingsModel::SaveState(SettingsModel::Idle{}), SettingsModel::SaveState(SettingsModel::SaveFailed{"m"}),
          SettingsModel::SaveState(SettingsModel::Saved{})}) {
        m_state.saveState = free;
        EXPECT_THAT(pressing("Restart daemon"), ElementsAre("restart"));
    }
}

TEST_F(SettingsViewTest, aDaemonThatIsNotInstalledCannotBeRestarted) {
    m_state.isDaemonInstalled = false;
    EXPECT_THAT(pressing("Restart daemon"), IsEmpty());
    EXPECT_THAT(footer(),
                HasSubstr("Button \"Restart daemon\" disabled help=\"Daemon not installed (run: ostrel install)\""));
}

// Extremes

std::vector<SettingSpec> manySettings(std::size_t count) {
    std::vector<SettingSpec> settings;
    const Kind kinds[] = {Kind::toggle, Kind::number, Kind::percent, Kind::duration,   Kind::text,
                          Kind::list,   Kind::path,   Kind::unknown, Kind::enumeration};
    for (std::size_t i = 0; i < count; ++i) {
        settings.push_back({.name = "setting-" + std::to_string(i),
                            .control = kinds[i % std::size(kinds)],
                            .help = "What it is for, in a sentence that is long enough to wrap in a narrow window.",
                            .values = {"a", "b", "c"}});
    }
    return settings;
}

TEST_F(SettingsViewTest, threeHundredSettingsFitEachOtherAndAreTouchedOneAtATime) {
    load(manySettings(300));
    present();
    EXPECT_THAT(m_host.faults, IsEmpty());
    m_host.log.clear();
    m_host.typewriter.measurements = 0;
    m_form->set("setting-0", true);
    render();
    EXPECT_THAT(m_host.log, Not(IsEmpty()));
    EXPECT_LT(m_host.typewriter.measurements, 8); // the badge "edited" and the reset button
    for (const std::string& call : m_host.log) {
        EXPECT_FALSE(call.starts_with("destroy")) << call;
    }
}

TEST_F(SettingsViewTest, aLabelOfTwoHundredCharactersLeavesTheResetButtonInItsRow) {
    load({{.name = std::string(200, 'n'), .control = Kind::toggle}}, R"({")" + std::string(200, 'n') + R"(":true})");
    present({520, 420});
    const Rect reset = m_host.frame(m_host.find("Button \"Reset to default\""));
    const Rect box = m_host.frame(m_host.find("Box"));
    EXPECT_LE(reset.x + reset.width, box.width - 12);
    EXPECT_GE(reset.x, 12);
}

TEST_F(SettingsViewTest, theResetButtonThatTheFirstKeystrokeBringsMovesNothing) {
    load({{.name = "name", .control = Kind::text}, {.name = "other", .control = Kind::toggle}});
    present();
    const Rect label = m_host.frame(m_host.find("Text \"Name\""));
    const Rect field = m_host.frame(m_host.find("TextField"));
    const Rect toggle = m_host.frame(m_host.find("Toggle"));
    m_form->set("name", std::string("a"));
    render();
    const Rect reset = m_host.frame(m_host.find("Button \"Reset to default\""));
    EXPECT_GT(reset.height, label.height) << "it stands out of its line";
    EXPECT_EQ(m_host.frame(m_host.find("Text \"Name\"")), label);
    EXPECT_EQ(m_host.frame(m_host.find("TextField")), field);
    EXPECT_EQ(m_host.frame(m_host.find("Toggle")), toggle);
    EXPECT_GE(reset.y, 0.0);
    EXPECT_LE(reset.y + reset.height, field.y);
}

TEST_F(SettingsViewTest, anEnumerationOfAHundredValuesAndATextOfTenThousandLinesAreShownWhole) {
    std::vector<std::string> values;
    for (int i = 0; i < 100; ++i) {
        values.push_back("value " + std::to_string(i));
    }
    std::string text;
    for (int i = 0; i < 10'000; ++i) {
        text += "line " + std::to_string(i) + "\n";
    }
    load({{.name = "many", .control = Kind::enumeration, .values = values, .multiple = true},
          {.name = "one", .control = Kind::enumeration, .values = values},
          {.name = "long", .control = Kind::text, .multiline = true}});
    m_form->set("long", text);
    present();
    EXPECT_NE(m_host.find("Checkbox \"value 99\""), windowContent);
    EXPECT_EQ(m_host.text(m_host.find("TextEditor")), text);
    EXPECT_EQ(m_host.frame(m_host.find("TextEditor")).height, 96);
}

TEST_F(SettingsViewTest, theWindowKeepsItsShapeFromNarrowToWide) {
    load(manySettings(9));
    present();
    for (const Size size : {Size{520, 420}, Size{680, 760}, Size{1600, 1000}}) {
        m_host.resize(size);
        const Rect form = m_host.frame(m_host.find("ScrollView"));
        const Rect box = m_host.frame(m_host.find("Box"));
        const Rect save = m_host.frame(m_host.find("Button \"Save\""));
        EXPECT_EQ(form.width, size.width);
        EXPECT_EQ(box.width, size.width - 40);
        EXPECT_EQ(save.x + save.width, size.width - 20);
        EXPECT_EQ(save.y + save.height, size.height - 12);
    }
}

TEST_F(SettingsViewTest, everyControlIsLabelledByItsSetting) {
    load(manySettings(9));
    m_form->set("setting-5", SettingValue::List{"x"});
    present();
    for (const ControlId id : m_host.tabOrder) {
        const View& control = m_host.control(id);
        const auto* button = std::get_if<Button>(&control.content);
        const bool isFooter = button != nullptr && (button->title == "Cancel" || button->title == "Save" ||
                                                    button->title == "Restart daemon");
        EXPECT_EQ(control.accessibility.label.find("etting ") == std::string::npos, isFooter) << dump(control);
    }
}

} // namespace
} // namespace menubar
