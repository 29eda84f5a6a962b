#include "MenubarCore/Menu/Formatting.h"

#include "Records.h"
#include "tests/support/GraphemeCount.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::records;

namespace {

const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";

OstrelEvent warning(std::string text) {
    OstrelEvent result = event(now, EventLevel::warn, std::move(text));
    result.dirName = "api";
    return result;
}

OstrelEvent handoffEvent(std::string text) {
    OstrelEvent result = warning(std::move(text));
    result.kind = EventKind::handoff;
    return result;
}

std::string line(const OstrelEvent& event) {
    return Formatting::eventLine(event, TimeZone());
}

/// What stands before the text in the line of a `warning`.
const std::string prefix = "14:03 [warn] api: ";

std::string repeated(const std::string& text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

} // namespace

TEST(EventLine, itTellsTimeLevelWhoAndWhat) {
    OstrelEvent event = warning("context at 81%");
    event.provider = "acme";
    EXPECT_EQ(line(event), "14:03 [warn] acme api: context at 81%");
}

TEST(EventLine, theTimeFollowsTheZoneAndAMissingOneIsAPlaceholder) {
    OstrelEvent event = warning("x");
    EXPECT_EQ(Formatting::eventLine(event, kathmandu), "19:48 [warn] api: x");
    event.at.reset();
    EXPECT_EQ(line(event), "--:-- [warn] api: x");
}

TEST(EventLine, theNameIsTheDirectoryElseTheShortIdElseSession) {
    OstrelEvent event = warning("x");
    event.shortId = "ab12";
    EXPECT_EQ(line(event), "14:03 [warn] api: x");
    event.dirName.reset();
    EXPECT_EQ(line(event), "14:03 [warn] ab12: x");
    event.shortId.reset();
    EXPECT_EQ(line(event), "14:03 [warn] session: x");
}

TEST(EventLine, anEmptyDirectoryNameIsAName) {
    OstrelEvent event = warning("x");
    event.dirName = "";
    event.shortId = "ab12";
    EXPECT_EQ(line(event), "14:03 [warn] : x");
    event.provider = "";
    EXPECT_EQ(line(event), "14:03 [warn]  : x");
}

TEST(EventLine, everyLevelIsATag) {
    const std::pair<EventLevel, const char*> tags[] = {{EventLevel::ok, "ok"},
                                                       {EventLevel::info, "info"},
                                                       {EventLevel::warn, "warn"},
                                                       {EventLevel::critical, "critical"},
                                                       {EventLevel::unknown, "unknown"}};
    for (const auto& [level, tag] : tags) {
        OstrelEvent event = warning("x");
        event.level = level;
        EXPECT_EQ(line(event), "14:03 [" + std::string(tag) + "] api: x");
    }
}

TEST(EventLine, withoutATextTheKindIsToldAndAnEmptyTextIsAText) {
    const std::pair<EventKind, const char*> lines[] = {{EventKind::notify, "14:03 [warn] api: notify"},
                                                       {EventKind::inject, "14:03 [warn] api: inject"},
                                                       {EventKind::handoff, "14:03 [handoff] api: handoff"},
                                                       {EventKind::unknown, "14:03 [warn] api: unknown"}};
    for (const auto& [kind, expected] : lines) {
        OstrelEvent event = warning("");
        event.kind = kind;
        event.text.reset();
        EXPECT_EQ(line(event), expected);
    }
    EXPECT_EQ(line(warning("")), "14:03 [warn] api: ");
}

TEST(EventLine, aHandoffTextShowsTheNameOnce) {
    EXPECT_EQ(line(handoffEvent("api: wrote HANDOFF.md")), "14:03 [handoff] api: wrote HANDOFF.md");
    EXPECT_EQ(line(handoffEvent("wrote HANDOFF.md")), "14:03 [handoff] api: wrote HANDOFF.md");
    EXPECT_EQ(line(handoffEvent("api: api: twice")), "14:03 [handoff] api: api: twice");
    EXPECT_EQ(line(handoffEvent("api:wrote")), "14:03 [handoff] api: api:wrote");
    EXPECT_EQ(line(handoffEvent("api:\nwrote")), "14:03 [handoff] api: wrote") << "a line feed is a blank by then";
    EXPECT_EQ(line(handoffEvent("api: ")), "14:03 [handoff] api: ");
}

TEST(EventLine, onlyHandoffTextsLoseTheName) {
    EXPECT_EQ(line(warning("api: context at 81%")), "14:03 [warn] api: api: context at 81%");
}

TEST(EventLine, theNameThatAHandoffTextLosesIsTheOneInTheLine) {
    OstrelEvent event = handoffEvent("session: wrote it");
    event.dirName.reset();
    EXPECT_EQ(line(event), "14:03 [handoff] session: wrote it");
    event.shortId = "ab12";
    EXPECT_EQ(line(event), "14:03 [handoff] ab12: session: wrote it");
    event.dirName = "";
    event.text = ": wrote it";
    EXPECT_EQ(line(event), "14:03 [handoff] : wrote it");
}

TEST(EventLine, lineFeedsBecomeBlanksAndOtherControlsStay) {
    EXPECT_EQ(line(warning("a\nb\n\nc\n")), prefix + "a b  c ");
    EXPECT_EQ(line(warning("a\r\nb\tc\x1B[0m\u202E")), prefix + "a\r b\tc\x1B[0m\u202E");
}

TEST(EventLine, seventyCharactersAreLeftWholeAndSeventyOneAreCut) {
    const std::size_t room = 70 - prefix.size();
    EXPECT_EQ(line(warning(std::string(room - 1, 'x'))), prefix + std::string(room - 1, 'x'));
    EXPECT_EQ(line(warning(std::string(room, 'x'))), prefix + std::string(room, 'x'));
    EXPECT_EQ(line(warning(std::string(room + 1, 'x'))), prefix + std::string(room - 1, 'x') + "…");
    EXPECT_EQ(graphemeCount(line(warning(std::string(100000, 'x')))), 70U);
}

TEST(EventLine, aBlankBeforeTheCutStays) {
    const std::string whole = std::string(68 - prefix.size(), 'x') + " ";
    EXPECT_EQ(line(warning(whole + "yy")), prefix + whole + "…");
}

TEST(EventLine, charactersAreCountedAsAReaderCountsThem) {
    const std::size_t room = 70 - prefix.size();
    EXPECT_EQ(line(warning(repeated(family, room))), prefix + repeated(family, room));
    EXPECT_EQ(line(warning(repeated(family, room + 1))), prefix + repeated(family, room - 1) + "…");
}

TEST(EventLine, aCarriageReturnAndALineFeedAreTwoOnceTheLineFeedIsABlank) {
    const std::size_t room = 70 - prefix.size();
    const std::string breaks = repeated("\r\n", room / 2);
    EXPECT_EQ(line(warning(breaks)), prefix + repeated("\r ", room / 2));
    EXPECT_EQ(line(warning(breaks + "xx")), prefix + repeated("\r ", room / 2 - 1) + "\r…");
}

TEST(EventLine, aMarkAfterTheSeventiethCharacterBelongsToIt) {
    const std::string text = std::string(70 - prefix.size(), 'x') + "\u0301";
    EXPECT_EQ(line(warning(text)), prefix + text);
}

TEST(EventLine, theCutMayFallInsideTheName) {
    OstrelEvent event = warning("never seen");
    event.dirName = std::string(100, 'n');
    EXPECT_EQ(line(event), "14:03 [warn] " + std::string(56, 'n') + "…");
}

TEST(EventLine, theDryRunMarkFollowsTheCutAndIsNeverCut) {
    const std::size_t room = 70 - prefix.size();
    OstrelEvent event = warning("x");
    event.dryRun = true;
    EXPECT_EQ(line(event), prefix + "x (dry-run)");
    event.text = std::string(room, 'x');
    EXPECT_EQ(line(event), prefix + std::string(room, 'x') + " (dry-run)");
    event.text = std::string(room + 1, 'x');
    EXPECT_EQ(line(event), prefix + std::string(room - 1, 'x') + "… (dry-run)");
    EXPECT_EQ(graphemeCount(line(event)), 80U);
    event.dryRun = false;
    EXPECT_EQ(line(event), prefix + std::string(room - 1, 'x') + "…");
}
