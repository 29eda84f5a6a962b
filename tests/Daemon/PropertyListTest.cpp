#include "MenubarCore/Daemon/PropertyList.h"

#include "MenubarCore/Text/CodePoints.h"

#include "tests/support/PropertyLists.h"

#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar;
using namespace menubar::testing_support;
using testing::AnyOf;
using testing::ElementsAre;
using testing::Optional;

namespace {

/// The strings at "k", which must be a list of strings in a list that can be read.
std::vector<std::string> stringsOf(const std::string& bytes) {
    const auto list = PropertyList::read(bytes);
    const auto strings = list ? list->strings("k") : std::nullopt;
    return strings.value_or(std::vector<std::string>{"there is no such list"});
}

std::string failure(const std::string& bytes) {
    const auto list = PropertyList::read(bytes);
    return list ? "it was read" : list.error().message;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

/// `levels` arrays, each holding the next one `width` times.
std::string tower(std::size_t levels, int width) {
    std::vector<std::string> objects;
    for (unsigned i = 1; i <= levels; ++i) {
        objects.push_back(width == 1 ? binary::array({i}) : binary::array({i, i}));
    }
    objects.push_back(binary::string("a"));
    return binaryPropertyList(objects);
}

const char* const notAList = "the bytes are neither an XML nor a binary property list";
const char* const badBinary = "the binary property list is malformed or unfolds to too many values";

} // namespace

TEST(PropertyList, readsXml) {
    EXPECT_THAT(stringsOf(xmlPropertyList("<dict><key>k</key><array><string>a &amp; b</string><string/>"
                                          "<string><![CDATA[<c>]]></string><string>&#252;ber</string></array></dict>")),
                ElementsAre("a & b", "", "<c>", "\u00FCber"));
}

TEST(PropertyList, readsXmlInTheEncodingThatItNames) {
    const std::string value =
        "<plist><dict><key>k</key><array><string>/\u00FCber/\u263A</string></array></dict></plist>";
    const auto wide = [&value](bool bigEndian) {
        std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
        for (std::size_t at = 0; at < value.size();) {
            const auto unit = static_cast<unsigned>(nextCodePoint(value, at));
            const std::array<char, 2> pair{static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
            bytes += pair[bigEndian ? 0 : 1];
            bytes += pair[bigEndian ? 1 : 0];
        }
        return bytes;
    };
    for (const std::string& bytes :
         {value, "\xEF\xBB\xBF" + value, wide(true), wide(false), "<?xml version='1.0' encoding='utf-8'?>" + value}) {
        EXPECT_THAT(stringsOf(bytes), ElementsAre("/\u00FCber/\u263A"));
    }
    EXPECT_THAT(stringsOf("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                          "<plist><dict><key>k</key><array><string>/\xFC\x62\x65r</string></array></dict></plist>"),
                ElementsAre("/\u00FC\x62\x65r"));
}

TEST(PropertyList, bytesThatAreWrongInTheirEncodingAreRefused) {
    const std::string list = "<plist><dict><key>k</key><array><string>\xFC</string></array></dict></plist>";
    const auto naming = [&list](const std::string& encoding) {
        return "<?xml version='1.0' encoding='" + encoding + "'?>" + list;
    };
    for (const std::string& bytes : {list, naming("US-ASCII"), naming("Nonesuch"), naming(""),
                                     naming(std::string(1000, 'x')), std::string("\xFF\xFE<")}) {
        EXPECT_EQ(failure(bytes), "the property list is not text in its encoding") << bytes;
    }
    EXPECT_EQ(failure(naming("ISO-8859-1")), "it was read");
}

TEST(PropertyList, whatFollowsTheListIsNotLookedAt) {
    EXPECT_THAT(stringsOf(xmlPropertyList("<dict><key>k</key><array><string>a</string></array></dict>") + "garbage"),
                ElementsAre("a"));
}

TEST(PropertyList, readsBinary) {
    EXPECT_THAT(stringsOf(binaryPropertyList({binary::dictionary({1, 2}), binary::string("k"), binary::array({3, 4, 3}),
                                              binary::string("/x/ostrel"), binary::string("")})),
                ElementsAre("/x/ostrel", "", "/x/ostrel"));
}

TEST(PropertyList, readsUtf16InBinary) {
    const std::string wide("\x62\x00\xFC\x26\x3A", 5);
    EXPECT_THAT(
        stringsOf(binaryPropertyList({binary::dictionary({1, 2}), binary::string("k"), binary::array({3}), wide})),
        ElementsAre("\u00FC\u263A"));
}

TEST(PropertyList, onlyAListOfStringsIsOne) {
    const auto strings = [](const std::string& value) {
        const auto list = PropertyList::read(xmlPropertyList(value));
        EXPECT_TRUE(list) << value;
        return list ? list->strings("k") : std::nullopt;
    };
    EXPECT_THAT(strings("<dict><key>k</key><array/></dict>"), Optional(std::vector<std::string>{}));
    EXPECT_EQ(strings("<dict/>"), std::nullopt);
    EXPECT_EQ(strings("<dict><key>K</key><array/></dict>"), std::nullopt);
    EXPECT_EQ(strings("<dict><key>k</key><string>a</string></dict>"), std::nullopt);
    EXPECT_EQ(strings("<dict><key>k</key><dict/></dict>"), std::nullopt);
    EXPECT_EQ(strings("<dict><key>k</key><array><string>a</string><integer>1</integer></array></dict>"), std::nullopt);
    EXPECT_EQ(strings("<array><string>k</string></array>"), std::nullopt);
}

TEST(PropertyList, bytesThatAreNoListHaveAReason) {
    const std::string whole = xmlPropertyList("<dict><key>k</key><string>a</string></dict>");
    for (const std::string& bytes :
         {std::string(), std::string("hello"), std::string("{\"k\": []}"), std::string("<html></html>"),
          std::string("{ k = (a, b); }"), std::string("( a, b )"), whole.substr(0, whole.find("</string>")),
          xmlPropertyList("<dict><key>k</key><string>a</array></dict>"),
          xmlPropertyList("<dict><key>k</key><string>&unknown;</string></dict>")}) {
        EXPECT_EQ(failure(bytes), notAList) << bytes;
    }
}

TEST(PropertyList, entitiesThatMultiplyAreRefused) {
    std::string list = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\">";
    for (char name = 'b'; name <= 'm'; ++name) {
        const std::string before = std::string("&") + static_cast<char>(name - 1) + ";";
        list += std::string("<!ENTITY ") + name + " \"" + repeated(before, 10) + "\">";
    }
    EXPECT_EQ(failure(list + "]><plist><dict><key>k</key><array><string>&m;</string></array></dict></plist>"),
              notAList);
}

TEST(PropertyList, sizeIsLimited) {
    const auto padded = [](std::size_t size) {
        const std::string list = xmlPropertyList("<dict><key>k</key><array><string>a</string></array></dict>");
        return list + std::string(size - list.size(), '\n');
    };
    EXPECT_THAT(stringsOf(padded(PropertyList::maximumSize)), ElementsAre("a"));
    EXPECT_EQ(failure(padded(PropertyList::maximumSize + 1)), "the property list is larger than 64 KB");
    EXPECT_EQ(failure(std::string(100'000'000, 'x')), "the property list is larger than 64 KB");
    EXPECT_EQ(failure("bplist00" + std::string(100'000'000, '\0')), "the property list is larger than 64 KB");
}

TEST(PropertyList, xmlOfThatSizeIsSafeHoweverItNests) {
    const std::size_t room = PropertyList::maximumSize - xmlPropertyList("").size();
    const std::size_t depth = room / std::string_view("<array></array>").size();
    EXPECT_THAT(failure(xmlPropertyList(repeated("<array>", depth) + repeated("</array>", depth))),
                AnyOf("it was read", notAList))
        << "newer versions of the library have a limit of their own";
    EXPECT_EQ(failure(xmlPropertyList(repeated("<array>", room / 7))), notAList);
    EXPECT_EQ(failure(xmlPropertyList("<array>" + repeated("<true/>", 9000) + "</array>")), "it was read");
}

TEST(PropertyList, aBinaryListThatContainsItselfIsRefused) {
    EXPECT_EQ(failure(binaryPropertyList({binary::array({0})})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({binary::array({1}), binary::array({0})})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({binary::dictionary({1, 0}), binary::string("k")})), badBinary);
}

TEST(PropertyList, aBinaryListThatDoublesWithEveryLevelIsRefused) {
    EXPECT_EQ(failure(tower(9, 2)), "it was read"); // 1023 values
    EXPECT_EQ(failure(tower(10, 2)), badBinary);
    EXPECT_EQ(failure(tower(60, 2)), badBinary);
}

TEST(PropertyList, aBinaryTowerIsLimited) {
    EXPECT_EQ(failure(tower(500, 1)), "it was read");
    EXPECT_EQ(failure(tower(PropertyList::maximumValues, 1)), badBinary);
    EXPECT_EQ(failure(tower(9000, 1)), badBinary);
}

TEST(PropertyList, aBinaryListCutOffAnywhereIsRefused) {
    const std::string whole = binaryPropertyList(
        {binary::dictionary({1, 2}), binary::string("k"), binary::array({3}), binary::string("abc")});
    ASSERT_THAT(stringsOf(whole), ElementsAre("abc"));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(failure(whole.substr(0, length)), "it was read") << length;
    }
}

TEST(PropertyList, aBinaryListThatPointsBeyondItsEndIsRefused) {
    EXPECT_EQ(failure(binaryPropertyList({binary::array({1})})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({binary::array({0xFFFF})})), badBinary);
    // A count that follows as an integer: of 8 bytes, of 16, of none.
    EXPECT_EQ(failure(binaryPropertyList({"\xAF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({"\xAF\x14" + std::string(16, '\x01')})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({"\xAF\x51"})), badBinary);
    EXPECT_EQ(failure(binaryPropertyList({"\xDF\x11\xFF\xFF"})), badBinary);
}

TEST(PropertyList, aLongBinaryListIsRead) {
    std::vector<std::string> objects{binary::dictionary({1, 2}), binary::string("k"), ""};
    std::string references;
    for (unsigned i = 0; i < 300; ++i) {
        references += std::string("\0\x03", 2);
    }
    objects[2] = "\xAF\x11\x01\x2C" + references;
    objects.push_back(binary::string("x"));
    EXPECT_EQ(stringsOf(binaryPropertyList(objects)), std::vector<std::string>(300, "x"));
}
