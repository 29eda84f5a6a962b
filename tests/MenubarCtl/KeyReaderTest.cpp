#include "MenubarCtl/KeyReader.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar::ctl;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(KeyReader, knowsEveryKeyInTheFormsThatTerminalsSend) {
    KeyReader reader;
    EXPECT_THAT(reader.read("\x1b[A\x1bOA"
                            "k"),
                ElementsAre(Key::up, Key::up, Key::up));
    EXPECT_THAT(reader.read("\x1b[B\x1bOBj"), ElementsAre(Key::down, Key::down, Key::down));
    EXPECT_THAT(reader.read("\x1b[5~\x1b[6~"), ElementsAre(Key::pageUp, Key::pageDown));
    EXPECT_THAT(reader.read("\x1b[H\x1bOH\x1b[1~\x1b[7~"), testing::Each(Key::home));
    EXPECT_THAT(reader.read("\x1b[F\x1bOF\x1b[4~\x1b[8~"), testing::Each(Key::end));
    EXPECT_THAT(reader.read("\r\nq"), ElementsAre(Key::choose, Key::choose, Key::quit));
}

TEST(KeyReader, aKeyMayComeInPieces) {
    KeyReader reader;
    EXPECT_THAT(reader.read("\x1b"), IsEmpty());
    EXPECT_THAT(reader.read("["), IsEmpty());
    EXPECT_THAT(reader.read("6"), IsEmpty());
    EXPECT_THAT(reader.read("~"), ElementsAre(Key::pageDown));
}

TEST(KeyReader, whatStandsForNoKeyIsDropped) {
    KeyReader reader;
    EXPECT_THAT(reader.read("xQ\t\x01\u65e5"), IsEmpty());
    EXPECT_THAT(reader.read("\x1b[1;5A\x1b[200~\x1b[M"), IsEmpty());
    EXPECT_THAT(reader.read("\x1b["), IsEmpty());
    EXPECT_THAT(reader.read(std::string(10'000, ';')), IsEmpty());
    EXPECT_THAT(reader.read("mq"), testing::Contains(Key::quit));
}

TEST(KeyReader, theEscapeKeyBeginsNothingOfTheNextKey) {
    KeyReader reader;
    EXPECT_THAT(reader.read("\x1b"), IsEmpty());
    EXPECT_THAT(reader.read("q"), ElementsAre(Key::quit));
    EXPECT_THAT(reader.read("\x1b\x1b[A"), ElementsAre(Key::up));
}
