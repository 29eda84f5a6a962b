#include "MenubarCore/Status/StatusFile.h"

#include <gtest/gtest.h>

using namespace menubar;

TEST(SessionLevel, ranksUnknownAboveOkAndBelowWarn) {
    EXPECT_EQ(rank(SessionLevel::ok), 0);
    EXPECT_EQ(rank(SessionLevel::unknown), 1);
    EXPECT_EQ(rank(SessionLevel::warn), 2);
    EXPECT_EQ(rank(SessionLevel::critical), 3);
}

TEST(SessionLifecycle, hasWordsForPeople) {
    EXPECT_EQ(label(SessionLifecycle::running), "running");
    EXPECT_EQ(label(SessionLifecycle::idle), "idle");
    EXPECT_EQ(label(SessionLifecycle::needsInput), "needs input");
    EXPECT_EQ(label(SessionLifecycle::unknown), "unknown");
}

TEST(SessionStatus, isNamedAfterItsDirectoryElseItsShortId) {
    const SessionStatus both{.shortId = "ab12", .dirName = "work"};
    EXPECT_EQ(both.displayName(), "work");
    const SessionStatus emptyDirectory{.shortId = "ab12", .dirName = ""};
    EXPECT_EQ(emptyDirectory.displayName(), "ab12");
    const SessionStatus shortIdOnly{.shortId = "ab12"};
    EXPECT_EQ(shortIdOnly.displayName(), "ab12");
}

TEST(SessionStatus, withoutANameIsASession) {
    const SessionStatus neither;
    EXPECT_EQ(neither.displayName(), "session");
    const SessionStatus bothEmpty{.shortId = "", .dirName = ""};
    EXPECT_EQ(bothEmpty.displayName(), "session");
}

TEST(StatusFile, theSettingsOfFlagsAreLocked) {
    StatusFile file;
    EXPECT_TRUE(file.flagLockedSettings().empty());
    file.configSources = {{"warnContextPct", ConfigSource::cli},
                          {"dryRun", ConfigSource::file},
                          {"a", ConfigSource::default_},
                          {"b", ConfigSource::unknown}};
    EXPECT_EQ(file.flagLockedSettings(), std::set<std::string>{"warnContextPct"});
}

TEST(StatusFile, theConfigChangedOnlyWhenItsRecordSaysSo) {
    StatusFile file;
    EXPECT_FALSE(file.configChangedSinceLoad());
    file.configFile.emplace();
    EXPECT_FALSE(file.configChangedSinceLoad());
    file.configFile->changedSinceLoad = false;
    EXPECT_FALSE(file.configChangedSinceLoad());
    file.configFile->changedSinceLoad = true;
    EXPECT_TRUE(file.configChangedSinceLoad());
}

TEST(OstrelConfig, aSettingIsFoundByItsKey) {
    OstrelConfig config;
    EXPECT_EQ(config.setting("a"), nullptr);
    config.settings.emplace();
    EXPECT_EQ(config.setting("a"), nullptr);
    (*config.settings)["a"] = 5;
    ASSERT_NE(config.setting("a"), nullptr);
    EXPECT_EQ(*config.setting("a"), JSONValue(5));
    EXPECT_EQ(config.setting("b"), nullptr);
}

TEST(StatusFile, thePollIntervalIsHalfAMinuteUnlessTheFileSaysOtherwise) {
    EXPECT_EQ(StatusFile::defaultIntervalMs, 30000);
}
