#include "MenubarCore/Menu/ConfigNotices.h"

#include "Records.h"

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

const DaemonState running = DaemonState::Running{3};
const DaemonState stale = DaemonState::Stale{90};

StatusFile withError(std::optional<std::string> message, std::optional<std::string> path = std::nullopt) {
    StatusFile file;
    file.configError = ConfigError{.message = std::move(message), .path = std::move(path), .at = std::nullopt};
    return file;
}

StatusFile withChange(std::optional<bool> changed) {
    StatusFile file;
    file.configFile = ConfigFileStatus{.path = "/c.json", .loadedAt = std::nullopt, .changedSinceLoad = changed};
    return file;
}

} // namespace

TEST(ConfigNotices, aConfigErrorComesBeforeTheRestart) {
    StatusFile file = withError("bad number", "/c.json");
    file.configFile = withChange(true).configFile;
    EXPECT_EQ(ConfigNotices::notices(&file, running),
              (std::vector<ConfigNotice>{{ConfigNotice::Error{"bad number", "/c.json"}}, {}}));
}

TEST(ConfigNotices, aStaleDaemonTellsOfItsErrorButNotOfARestart) {
    StatusFile file = withError("bad number");
    file.configFile = withChange(true).configFile;
    EXPECT_EQ(ConfigNotices::notices(&file, stale),
              (std::vector<ConfigNotice>{{ConfigNotice::Error{"bad number", std::nullopt}}}));
    EXPECT_FALSE(ConfigNotices::restartNeeded(&file, stale));
}

TEST(ConfigNotices, aDaemonThatIsNotThereTellsNothing) {
    StatusFile file = withError("bad number");
    file.configFile = withChange(true).configFile;
    for (const DaemonState& state : {DaemonState(DaemonState::Stopped{now}), DaemonState(DaemonState::Unreadable{"x"}),
                                     DaemonState(DaemonState::Missing{})}) {
        EXPECT_TRUE(ConfigNotices::notices(&file, state).empty());
        EXPECT_FALSE(ConfigNotices::restartNeeded(&file, state));
        EXPECT_EQ(ConfigNotices::configError(&file, state), std::nullopt);
    }
}

TEST(ConfigNotices, withoutAFileThereAreNone) {
    EXPECT_TRUE(ConfigNotices::notices(nullptr, running).empty());
    EXPECT_FALSE(ConfigNotices::restartNeeded(nullptr, running));
    EXPECT_EQ(ConfigNotices::configError(nullptr, running), std::nullopt);
}

TEST(ConfigNotices, anErrorWithoutAMessageIsNoNotice) {
    for (const auto& message : {std::optional<std::string>(), std::optional<std::string>("")}) {
        const StatusFile file = withError(message, "/c.json");
        EXPECT_TRUE(ConfigNotices::notices(&file, running).empty());
        EXPECT_EQ(ConfigNotices::configError(&file, running), std::nullopt);
    }
}

TEST(ConfigNotices, onlyAFlagThatIsTrueAsksForARestart) {
    for (const auto& [changed, needed] :
         {std::pair{std::optional(true), true}, {std::optional(false), false}, {std::optional<bool>(), false}}) {
        const StatusFile file = withChange(changed);
        EXPECT_EQ(ConfigNotices::restartNeeded(&file, running), needed);
    }
    const StatusFile nothing;
    EXPECT_FALSE(ConfigNotices::restartNeeded(&nothing, running));
}

TEST(ConfigNotices, theConfigErrorIsToldWithItsPath) {
    StatusFile file = withError("bad number", "/c.json");
    EXPECT_EQ(ConfigNotices::configError(&file, stale), (ConfigNotice::Error{"bad number", "/c.json"}));
    EXPECT_FALSE(ConfigNotices::restartNeeded(&file, running));
}

TEST(ConfigNotice, eachHasItsMenuLine) {
    EXPECT_EQ(ConfigNotice{ConfigNotice::Error({"bad number", "/c.json"})}.menuLine(),
              "Config file ignored: bad number");
    EXPECT_EQ(ConfigNotice().menuLine(), "Restart daemon to apply settings");
    EXPECT_EQ(ConfigNotices::restartNeededLine, "Restart daemon to apply settings");
}
