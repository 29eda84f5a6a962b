#include "MenubarCore/Text/Tilde.h"

#include <string>

#include <gtest/gtest.h>

using menubar::expandTilde;

TEST(Tilde, aloneOrBeforeASlashItIsTheHomeDirectory) {
    EXPECT_EQ(expandTilde("~", "/home/ann"), "/home/ann");
    EXPECT_EQ(expandTilde("~/", "/home/ann"), "/home/ann/");
    EXPECT_EQ(expandTilde("~/bin/ostrel", "/home/ann"), "/home/ann/bin/ostrel");
    EXPECT_EQ(expandTilde("~/~/x", "/home/ann"), "/home/ann/~/x");
}

TEST(Tilde, aHomeThatEndsInASlashKeepsIt) {
    EXPECT_EQ(expandTilde("~/x", "/home/ann/"), "/home/ann//x");
}

TEST(Tilde, anythingElseStaysAsItIs) {
    for (const std::string path : {"", "~ann/x", "~~", "/~/x", "x/~", " ~/x", "/home/bob", "relative/path"}) {
        EXPECT_EQ(expandTilde(path, "/home/ann"), path) << path;
    }
}
