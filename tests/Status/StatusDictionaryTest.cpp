// The fuzz target's dictionary is made of what the tables say: a key or a text that is added to a table must be added
// to the dictionary, or the fuzzer would hardly ever find it.

#include "MenubarCore/Status/StatusFields.h"

#include "tests/support/FuzzDictionary.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;

TEST(StatusDictionary, holdsEveryKeyAndEveryEnumerationText) {
    std::set<std::string> texts;
    testing_support::collectTexts(shapeOf<StatusFile>, texts);
    testing_support::expectDictionary(
        MENUBAR_FUZZ_DICTIONARY, "Every key and every enumeration text of the status file, as JSON strings.", texts);
}
