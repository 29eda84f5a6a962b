// The fuzz target's dictionary is made of what the tables say: a key or a text that is added to a table must be added
// to the dictionary, or the fuzzer would hardly ever find it.

#include "MenubarCore/Status/StatusFields.h"

#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

void collect(const Shape& shape, std::set<std::string>& texts) {
    texts.insert(shape.texts.begin(), shape.texts.end());
    if (shape.element != nullptr) {
        collect(*shape.element, texts);
    }
    if (shape.record != nullptr) {
        for (const FieldRow& row : shape.record->rows) {
            texts.emplace(row.key);
            collect(*row.shape, texts);
        }
    }
}

/// One entry a line: each text as a JSON string.
std::string dictionary() {
    std::set<std::string> texts;
    collect(shapeOf<StatusFile>, texts);
    std::string result = "# Every key and every enumeration text of the status file, as JSON strings.\n";
    for (const std::string& text : texts) {
        result += "\"\\\"" + text + "\\\"\"\n";
    }
    return result;
}

} // namespace

TEST(StatusDictionary, holdsEveryKeyAndEveryEnumerationText) {
    std::ifstream file(MENUBAR_FUZZ_DICTIONARY);
    ASSERT_TRUE(file.is_open()) << MENUBAR_FUZZ_DICTIONARY;
    const std::string contents(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(contents, dictionary()) << "replace " << MENUBAR_FUZZ_DICTIONARY << " by the second of these texts";
}
