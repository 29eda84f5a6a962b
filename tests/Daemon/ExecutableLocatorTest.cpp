#include "MenubarCore/Daemon/ExecutableLocator.h"

#include <array>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::array<std::string_view, 2> candidates{"/opt/bin/tool", "/usr/local/bin/tool"};

/// What was found among `existing`, and every path that was asked for.
struct Search {
    explicit Search(std::set<std::string> existing) : m_existing(std::move(existing)) {}

    std::optional<std::string> operator()(std::optional<std::string_view> path) {
        return ExecutableLocator::resolve("tool", candidates, path, [this](const std::string& asked) {
            asks.push_back(asked);
            return m_existing.contains(asked);
        });
    }

    std::vector<std::string> asks;

private:
    std::set<std::string> m_existing;
};

} // namespace

TEST(ExecutableLocator, triesCandidatesInOrderThenTheDirectoriesOfPath) {
    Search search({});
    EXPECT_EQ(search("/a:/b"), std::nullopt);
    EXPECT_THAT(search.asks, ElementsAre("/opt/bin/tool", "/usr/local/bin/tool", "/a/tool", "/b/tool"));
}

TEST(ExecutableLocator, aCandidateWinsOverPath) {
    EXPECT_EQ(Search({"/opt/bin/tool", "/a/tool"})("/a"), "/opt/bin/tool");
    EXPECT_EQ(Search({"/usr/local/bin/tool", "/opt/bin/tool"})("/a"), "/opt/bin/tool");
}

TEST(ExecutableLocator, asksNoFurtherThanTheFirstThatExists) {
    Search search({"/usr/local/bin/tool"});
    EXPECT_EQ(search("/a"), "/usr/local/bin/tool");
    EXPECT_THAT(search.asks, ElementsAre("/opt/bin/tool", "/usr/local/bin/tool"));
}

TEST(ExecutableLocator, emptyPiecesOfPathAreSkippedAndNothingIsNormalised) {
    Search search({"/b//tool"});
    EXPECT_EQ(search("/a::/b/"), "/b//tool");
    EXPECT_THAT(search.asks, ElementsAre("/opt/bin/tool", "/usr/local/bin/tool", "/a/tool", "/b//tool"));
    Search relative({});
    EXPECT_EQ(relative(":.:../x:"), std::nullopt);
    EXPECT_THAT(relative.asks, ElementsAre("/opt/bin/tool", "/usr/local/bin/tool", "./tool", "../x/tool"));
}

TEST(ExecutableLocator, withoutPathOnlyTheCandidatesAreTried) {
    for (const std::optional<std::string_view> path : {std::optional<std::string_view>(), {""}, {":"}, {":::"}}) {
        Search search({});
        EXPECT_EQ(search(path), std::nullopt);
        EXPECT_THAT(search.asks, ElementsAre("/opt/bin/tool", "/usr/local/bin/tool"));
    }
}

TEST(ExecutableLocator, mayHaveNoCandidates) {
    std::vector<std::string> asks;
    const auto found = ExecutableLocator::resolve("tool", {}, "/a", [&](const std::string& asked) {
        asks.push_back(asked);
        return true;
    });
    EXPECT_EQ(found, "/a/tool");
    EXPECT_THAT(asks, ElementsAre("/a/tool"));
}
