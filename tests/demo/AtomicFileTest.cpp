#include "demo/AtomicFile.h"

#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace menubar::demo;
using menubar::testing_support::bytesOf;
using menubar::testing_support::TemporaryDirectory;
using testing::HasSubstr;

namespace {

std::size_t entriesOf(const std::string& directory) {
    const std::filesystem::directory_iterator entries(directory);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

} // namespace

TEST(WriteAtomically, replacesTheWholeFileAndLeavesNothingBesideIt) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("s.json", "the old and longer text");
    ASSERT_TRUE(writeAtomically(path, "new"));
    EXPECT_EQ(bytesOf(path), "new");
    EXPECT_EQ(entriesOf(directory.path()), 1U);
}

TEST(WriteAtomically, aFailureSaysWhyAndLeavesTheOldState) {
    const TemporaryDirectory directory;
    const auto missing = writeAtomically(directory / "no/s.json", "x");
    ASSERT_FALSE(missing);
    EXPECT_THAT(missing.error(), HasSubstr("No such file or directory"));

    std::filesystem::create_directories(directory / "taken/inside");
    const auto taken = writeAtomically(directory / "taken", "x");
    ASSERT_FALSE(taken);
    EXPECT_THAT(taken.error(), HasSubstr("cannot write " + (directory / "taken")));
    EXPECT_EQ(entriesOf(directory.path()), 1U);
}

TEST(MakeDirectories, createsTheOnesAboveAndAcceptsThatTheyExist) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(makeDirectories(directory / "a/b/c"));
    EXPECT_TRUE(makeDirectories(directory / "a/b/c"));
    EXPECT_TRUE(std::filesystem::is_directory(directory / "a/b/c"));
    const std::string file = directory.write("file", "");
    EXPECT_FALSE(makeDirectories(file + "/below"));
}
