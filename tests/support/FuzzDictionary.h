#pragma once

#include "MenubarCore/JSON/RecordTable.h"

#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace menubar::testing_support {

/// Adds the keys and the enumeration texts of everything that `shape` holds.
inline void collectTexts(const Shape& shape, std::set<std::string>& texts) {
    texts.insert(shape.texts.begin(), shape.texts.end());
    if (shape.element != nullptr) {
        collectTexts(*shape.element, texts);
    }
    if (shape.record != nullptr) {
        for (const FieldRow& row : shape.record->rows) {
            texts.emplace(row.key);
            collectTexts(*row.shape, texts);
        }
    }
}

/// Expects the file to hold `title` as a comment and then one entry a line: each text as a JSON string.
inline void expectDictionary(const std::string& path, const std::string& title, const std::set<std::string>& texts) {
    std::string expected = "# " + title + "\n";
    for (const std::string& text : texts) {
        expected += "\"\\\"" + text + "\\\"\"\n";
    }
    std::ifstream file(path);
    ASSERT_TRUE(file.is_open()) << path;
    const std::string contents(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(contents, expected) << "replace " << path << " by the second of these texts";
}

} // namespace menubar::testing_support
