#include "MenubarApp/Settings/ListControl.h"

#include "tests/support/RecordingViewHost.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::LaterQueue;
using recording::RecordingViewHost;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Items = std::vector<std::string>;

/// A list in a window.
class ListControlTest : public ::testing::Test {
protected:
    void show(Items items) {
        m_items = std::move(items);
        m_presenter = ViewPresenter::create(m_host, [this] { return control().body(); }, m_later.later());
    }

    void TearDown() override { EXPECT_THAT(m_host.faults, IsEmpty()); }

    ListControl control() {
        return {.items = m_items,
                .name = "words",
                .label = "Words",
                .description = m_error,
                .ids = m_ids,
                .onChange = [this](Items items) { m_items = std::move(items); },
                .focus = [this](const std::string& viewId) { m_presenter->focus(viewId); }};
    }

    [[nodiscard]] ControlId item(int position) const {
        return m_host.find("TextField", "Words, Item " + std::to_string(position));
    }

    void remove(int position) {
        m_host.press(m_host.find("Button", "Remove Item " + std::to_string(position) + " of Words"));
    }

    Items m_items;
    std::string m_error;
    std::shared_ptr<ListItemIds> m_ids = std::make_shared<ListItemIds>();
    RecordingViewHost m_host;
    LaterQueue m_later;
    std::shared_ptr<ViewPresenter> m_presenter;
};

TEST_F(ListControlTest, anEmptyListSaysSoAndOffersToAdd) {
    EXPECT_EQ(dump(control().body()), "VStack spacing=4\n"
                                      "  Text \"Empty\" caption secondary\n"
                                      "  Button \"Add\" plus.circle borderless #add label=\"Add an item to Words\"\n");
}

TEST_F(ListControlTest, eachItemHasAFieldAndAButtonThatRemovesIt) {
    m_items = {"a", ""};
    m_error = "Item 2 is empty";
    EXPECT_EQ(dump(control().body()),
              "VStack spacing=4\n"
              "  HStack spacing=8 #item 1\n"
              "    TextField \"a\" prompt=\"Item 1\" label=\"Words, Item 1\" description=\"Item 2 is empty\"\n"
              "    Button \"\" minus.circle borderless help=\"Remove this item\" label=\"Remove Item 1 of Words\"\n"
              "  HStack spacing=8 #item 2\n"
              "    TextField \"\" prompt=\"Item 2\" label=\"Words, Item 2\" description=\"Item 2 is empty\"\n"
              "    Button \"\" minus.circle borderless help=\"Remove this item\" label=\"Remove Item 2 of Words\"\n"
              "  Button \"Add\" plus.circle borderless #add label=\"Add an item to Words\"\n");
}

TEST_F(ListControlTest, addAppendsAnEmptyItem) {
    show({});
    m_host.press("Add");
    EXPECT_THAT(m_items, ElementsAre(""));
    EXPECT_NE(m_host.find("TextField \"\" prompt=\"Item 1\""), windowContent);
    EXPECT_EQ(m_host.find("Text \"Empty\""), windowContent);
    m_host.press("Add");
    EXPECT_THAT(m_items, ElementsAre("", ""));
}

TEST_F(ListControlTest, addPutsTheInsertionPointIntoTheNewItem) {
    show({"a", "b"});
    m_host.press("Add");
    EXPECT_EQ(m_host.focused, item(3));
    m_host.press("Add");
    EXPECT_EQ(m_host.focused, item(4));
}

TEST_F(ListControlTest, typingReplacesThatItem) {
    show({"a", "b", "c"});
    m_host.type(item(2), "bee");
    EXPECT_THAT(m_items, ElementsAre("a", "bee", "c"));
    m_host.type(item(2), "");
    EXPECT_THAT(m_items, ElementsAre("a", "", "c"));
}

TEST_F(ListControlTest, removeTakesExactlyThatItem) {
    show({"same", "same", "other"});
    remove(1);
    EXPECT_THAT(m_items, ElementsAre("same", "other"));
    remove(2);
    EXPECT_THAT(m_items, ElementsAre("same"));
    remove(1);
    EXPECT_THAT(m_items, IsEmpty());
    EXPECT_NE(m_host.find("Text \"Empty\""), windowContent);
}

TEST_F(ListControlTest, removingAnotherItemLeavesTheInsertionPointInItsField) {
    show({"a", "b", "c"});
    const ControlId third = item(3);
    m_host.type(third, "cc");
    remove(1);
    EXPECT_THAT(m_items, ElementsAre("b", "cc"));
    EXPECT_EQ(item(2), third);
    EXPECT_EQ(m_host.focused, third);
    EXPECT_EQ(m_host.text(third), "cc");
}

TEST_F(ListControlTest, twoHundredItemsTouchOnlyWhatChanges) {
    show(Items(200, "x"));
    m_host.log.clear();
    m_host.type(item(100), "y");
    EXPECT_EQ(m_items[99], "y");
    EXPECT_THAT(m_host.log, IsEmpty());
    remove(200);
    EXPECT_EQ(m_items.size(), 199U);
    EXPECT_LT(m_host.log.size(), 8U); // the row's two controls, the button below, the Tab order
}

} // namespace
} // namespace menubar
