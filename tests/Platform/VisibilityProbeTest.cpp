#include "MenubarApp/Platform/VisibilityProbe.h"

#include <gtest/gtest.h>

using namespace menubar;

TEST(VisibilityProbe, aWholeReadingIsDescribedWithWholePoints) {
    EXPECT_EQ(describe({.occlusionVisible = false, .onscreen = false, .x = 1412.0, .width = 0.0}),
              "window x=1412 width=0 onscreen=no occlusion=occluded");
    EXPECT_EQ(describe({.occlusionVisible = true, .onscreen = true, .x = -3.6, .width = 61.4}),
              "window x=-4 width=61 onscreen=yes occlusion=visible");
}

TEST(VisibilityProbe, whatTheWindowServerDidNotTellIsAQuestionMark) {
    EXPECT_EQ(describe(VisibilityProbe{}), "window x=? width=? onscreen=? occlusion=?");
}
