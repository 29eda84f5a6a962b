#include "demo/Simulation.h"

#include "MenubarCore/Menu/Selection.h"
#include "MenubarCore/Status/StatusDecoder.h"
#include "MenubarCore/Text/Timestamp.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::demo;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

const Date start = parseTimestamp("2025-03-04T10:15:30Z").value_or(Date{});

Simulation simulation(std::uint32_t seed = 0) {
    return Simulation({.startedAt = start,
                       .daemonPid = 4711,
                       .intervalMs = 1000,
                       .handoffsDirectory = "/state/handoffs",
                       .homeDirectory = "/home/demo",
                       .seed = seed});
}

StatusFile read(const Simulation::Frame& frame) {
    const auto text = JSONValue(frame.status).encode(JSONLayout::compact);
    EXPECT_TRUE(text);
    auto file = StatusDecoder::decode(text.value_or(""));
    EXPECT_TRUE(file) << describe(file.error());
    return file.value_or(StatusFile{});
}

/// Everything that happened in a stretch of made-up time, polled once a second.
struct Chronicle {
    std::set<SessionLevel> levels;
    std::set<SessionLifecycle> lifecycles;
    std::set<std::string> eventTexts;
    std::set<EventKind> eventKinds;
    std::set<std::string> handoffPaths;
    bool cacheRenewed = false;
    bool cacheExpired = false;
    bool providerFailed = false;
    std::size_t mostEvents = 0;
};

Chronicle chronicleOf(Simulation world, std::chrono::seconds length) {
    Chronicle chronicle;
    StatusFile before;
    for (auto at = 0s; at <= length; at += 1s) {
        const Simulation::Frame frame = world.poll(start + at);
        StatusFile file = read(frame);
        for (const auto& handoff : frame.handoffs) {
            chronicle.handoffPaths.insert(handoff.path);
        }
        for (std::size_t i = 0; i < file.sessions.size(); ++i) {
            const SessionStatus& session = file.sessions[i];
            chronicle.levels.insert(session.level);
            chronicle.lifecycles.insert(session.lifecycle);
            chronicle.cacheExpired |= session.cacheExpiresAt < file.at;
            chronicle.cacheRenewed |=
                at > 0s && before.sessions[i].cacheExpiresAt < before.at && session.cacheExpiresAt > file.at;
        }
        for (const OstrelEvent& event : file.events) {
            chronicle.eventTexts.insert(event.text.value_or(""));
            chronicle.eventKinds.insert(event.kind);
        }
        chronicle.providerFailed |= !file.providerFailures.empty();
        chronicle.mostEvents = std::max(chronicle.mostEvents, file.events.size());
        before = std::move(file);
    }
    return chronicle;
}

} // namespace

TEST(Simulation, theFirstPollAlreadyShowsEveryLevelAndADozenThings) {
    Simulation world = simulation();
    const Simulation::Frame frame = world.poll(start);
    const StatusFile file = read(frame);
    ASSERT_EQ(file.sessions.size(), 6U);
    std::set<SessionLevel> levels;
    for (const SessionStatus& session : file.sessions) {
        levels.insert(session.level);
    }
    EXPECT_THAT(levels, ElementsAre(SessionLevel::ok, SessionLevel::warn, SessionLevel::critical));
    EXPECT_EQ(Selection::worst(file.sessions)->level, SessionLevel::critical);
    EXPECT_GE(file.events.size(), 5U);
    EXPECT_EQ(std::count_if(file.events.begin(), file.events.end(), [](const auto& e) { return e.dryRun == true; }), 1);
    EXPECT_EQ(file.daemonPid, 4711);
    EXPECT_EQ(file.at, start);
    EXPECT_FALSE(file.stoppedAt);
    EXPECT_EQ(frame.handoffs.size(), 2U);
}

TEST(Simulation, tenMinutesShowEverythingThatASessionCanDo) {
    const Chronicle chronicle = chronicleOf(simulation(), 600s);
    EXPECT_THAT(chronicle.levels,
                ElementsAre(SessionLevel::ok, SessionLevel::warn, SessionLevel::critical, SessionLevel::unknown));
    EXPECT_THAT(chronicle.lifecycles,
                ElementsAre(SessionLifecycle::running, SessionLifecycle::idle, SessionLifecycle::needsInput));
    EXPECT_THAT(chronicle.eventKinds, ElementsAre(EventKind::notify, EventKind::inject, EventKind::handoff));
    EXPECT_TRUE(chronicle.cacheExpired);
    EXPECT_TRUE(chronicle.cacheRenewed);
    EXPECT_TRUE(chronicle.providerFailed);
    EXPECT_GE(chronicle.handoffPaths.size(), 3U);
    EXPECT_EQ(chronicle.mostEvents, Simulation::eventLimit);
}

TEST(Simulation, theSameTimesGiveTheSameFramesAndASeedOthers) {
    Simulation first = simulation();
    Simulation second = simulation();
    Simulation other = simulation(7);
    bool differs = false;
    for (auto at = 0s; at < 120s; at += 7s) {
        const auto frame = first.poll(start + at);
        EXPECT_EQ(JSONValue(frame.status), JSONValue(second.poll(start + at).status));
        differs |= JSONValue(frame.status) != JSONValue(other.poll(start + at).status);
    }
    EXPECT_TRUE(differs);
}

TEST(Simulation, carriesTheConfigurationWithItsSources) {
    Simulation world({.startedAt = start,
                      .handoffsDirectory = "/state/handoffs",
                      .homeDirectory = "/home/demo",
                      .config = DemoConfig({{"warn-context", 45}}, {{"poll-interval", "1s"}})});
    const StatusFile file = read(world.poll(start));
    ASSERT_TRUE(file.config);
    EXPECT_EQ(file.config->warnContextPct, 45);
    EXPECT_EQ(file.config->criticalContextPct, 90);
    EXPECT_EQ(file.config->cacheLeadMs, 60000);
    ASSERT_NE(file.config->setting("cache-warn-before"), nullptr);
    EXPECT_EQ(*file.config->setting("cache-warn-before"), JSONValue(60000));
    EXPECT_THAT(file.flagLockedSettings(), ElementsAre("poll-interval"));
    ASSERT_TRUE(file.configSources);
    EXPECT_EQ(file.configSources->at("warn-context"), ConfigSource::file);
    for (const auto& [key, source] : *file.configSources) {
        EXPECT_NE(file.config->setting(key), nullptr) << key;
    }
}

TEST(Simulation, levelsFollowTheConfiguredThresholds) {
    const auto levels = [](const DemoConfig& config) {
        Simulation world({.startedAt = start,
                          .handoffsDirectory = "/state/handoffs",
                          .homeDirectory = "/home/demo",
                          .config = config});
        std::multiset<SessionLevel> found;
        for (const SessionStatus& session : read(world.poll(start)).sessions) {
            found.insert(session.level);
        }
        return found;
    };
    EXPECT_EQ(levels(DemoConfig()).count(SessionLevel::critical), 1U);
    EXPECT_EQ(levels(DemoConfig({{"warn-context", 1}, {"critical-context", 2}}, {})).count(SessionLevel::critical), 6U);
    EXPECT_EQ(levels(DemoConfig({{"warn-context", 99}, {"critical-context", 100}}, {})).count(SessionLevel::ok), 6U);
}
