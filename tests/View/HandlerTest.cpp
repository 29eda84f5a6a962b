#include "MenubarApp/View/Handler.h"

#include <string>

#include <gtest/gtest.h>

namespace menubar {
namespace {

TEST(Handler, callsWhatItHolds) {
    int sum = 0;
    const Handler<int, int> add = [&](int a, int b) { sum += a + b; };
    add(2, 3);
    EXPECT_EQ(sum, 5);
}

TEST(Handler, passesReferencesOnWithoutACopy) {
    const std::string* seen = nullptr;
    const Handler<const std::string&> look = [&](const std::string& text) { seen = &text; };
    const std::string text = "hello";
    look(text);
    EXPECT_EQ(seen, &text);
}

TEST(Handler, isSilentWhenEmpty) {
    const Handler<int> empty;
    empty(1);
    SUCCEED();
}

TEST(Handler, doesNotCountInComparisons) {
    EXPECT_EQ(Handler<>([] {}), Handler<>());
}

} // namespace
} // namespace menubar
