#include "MenubarCore/Settings/SavePipeline.h"

#include "tests/Settings/SampleSettings.h"

#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace menubar;
using menubar::sample::form;
using menubar::sample::spec;

namespace {

using Kind = SettingControl::Kind;
using Steps = std::vector<std::string>;

constexpr const char* path = "/a/b/config.json";
constexpr const char* candidate = "/a/b/config.json.42.tmp";

/// Records each step and keeps files in memory; a step that has an error here fails with it.
struct RecordingEnvironment {
    Steps steps;
    std::map<std::string, std::string> files{{path, "old"}};
    CommandOutcome validation{.status = 0, .stdout_ = R"({"ok":true})", .stderr_ = ""};
    std::optional<std::string> createError;
    std::optional<std::string> writeError;
    std::optional<std::string> renameError;

    SaveEnvironment environment() {
        return {
            .runValidate =
                [this](const std::string& file) {
                    steps.push_back("validate " + file + " " + files[file]);
                    return validation;
                },
            .writeFile =
                [this](const std::string& file, std::string_view bytes) {
                    steps.push_back("write " + file);
                    files[file] = bytes;
                    return result(writeError);
                },
            .createDirectory =
                [this](const std::string& directory) {
                    steps.push_back("create " + directory);
                    return result(createError);
                },
            .rename =
                [this](const std::string& from, const std::string& to) {
                    steps.push_back("rename " + from + " " + to);
                    if (!renameError) {
                        files[to] = files[from];
                        files.erase(from);
                    }
                    return result(renameError);
                },
            .remove =
                [this](const std::string& file) {
                    steps.push_back("remove " + file);
                    files.erase(file);
                },
        };
    }

    static SaveEnvironment::Result result(const std::optional<std::string>& error) {
        return error ? SaveEnvironment::Result(std::unexpected(SaveError{*error})) : SaveEnvironment::Result();
    }

    SaveOutcome save(const SettingsForm& edited, const std::string& target = path) {
        return SavePipeline::save(edited, target, environment(), 42);
    }
};

SettingsForm edited() {
    SettingsForm result = form({spec(Kind::text, "a"), spec(Kind::number, "b")});
    result.set("a", "x");
    return result;
}

const std::string bytes = "{\n  \"a\" : \"x\"\n}\n";
const std::string created = "create /a/b";
const std::string written = "write " + std::string(candidate);
const std::string validated = "validate " + std::string(candidate) + " " + bytes;
const std::string removed = "remove " + std::string(candidate);
const std::string renamed = "rename " + std::string(candidate) + " " + path;

} // namespace

TEST(SavePipeline, aGoodFileIsValidatedUnderItsTemporaryNameAndRenamed) {
    RecordingEnvironment disk;
    EXPECT_EQ(disk.save(edited()), SaveOutcome::Saved{});
    EXPECT_EQ(disk.steps, (Steps{created, written, validated, renamed}));
    EXPECT_EQ(disk.files, (std::map<std::string, std::string>{{path, bytes}}));
}

TEST(SavePipeline, aFormWithErrorsTouchesNothing) {
    SettingsForm wrong = edited();
    wrong.set("b", "x");
    RecordingEnvironment disk;
    EXPECT_EQ(disk.save(wrong), (SaveOutcome::InvalidLocally{{{"b", "Must be a number"}}}));
    EXPECT_EQ(disk.steps, Steps{});
}

TEST(SavePipeline, aFileValueThatWasNotUnderstoodStopsASaveUntilItIsEditedOrReset) {
    SettingsForm read = form({spec(Kind::number, "b")}, R"({"b":[]})");
    RecordingEnvironment disk;
    EXPECT_TRUE(std::holds_alternative<SaveOutcome::InvalidLocally>(disk.save(read).storage()));
    EXPECT_EQ(disk.steps, Steps{});
    read.reset("b");
    EXPECT_EQ(disk.save(read), SaveOutcome::Saved{});
}

TEST(SavePipeline, aFormThatCannotBeWrittenAsJSONTouchesNothing) {
    SettingsForm infinite = edited();
    infinite.set("b", std::numeric_limits<double>::infinity());
    RecordingEnvironment disk;
    EXPECT_EQ(disk.save(infinite), (SaveOutcome::WriteFailed{std::string(describe(EncodingError::nonFiniteNumber))}));
    EXPECT_EQ(disk.steps, Steps{});
}

TEST(SavePipeline, withoutItsDirectoryNothingIsWritten) {
    RecordingEnvironment disk;
    disk.createError = "no room";
    EXPECT_EQ(disk.save(edited()), SaveOutcome::WriteFailed{"no room"});
    EXPECT_EQ(disk.steps, Steps{created});
}

TEST(SavePipeline, aFailedWriteIsNotValidatedNorRemoved) {
    RecordingEnvironment disk;
    disk.writeError = "disk full";
    EXPECT_EQ(disk.save(edited()), SaveOutcome::WriteFailed{"disk full"});
    EXPECT_EQ(disk.steps, (Steps{created, written}));
    EXPECT_EQ(disk.files[path], "old");
}

TEST(SavePipeline, aFailedRenameRemovesTheCandidate) {
    RecordingEnvironment disk;
    disk.renameError = SaveError::rename("Permission denied").message;
    EXPECT_EQ(disk.save(edited()),
              SaveOutcome::WriteFailed{"could not move the new file into place: Permission denied"});
    EXPECT_EQ(disk.steps, (Steps{created, written, validated, renamed, removed}));
    EXPECT_EQ(disk.files, (std::map<std::string, std::string>{{path, "old"}}));
}

TEST(SavePipeline, theDaemonsWordCountsWhateverItsExitStatus) {
    RecordingEnvironment disk;
    disk.validation = {.status = 1, .stdout_ = R"({"ok":true})", .stderr_ = "noise"};
    EXPECT_EQ(disk.save(edited()), SaveOutcome::Saved{});
    disk.validation = {.status = 0, .stdout_ = R"({"ok":false,"errors":[{"message":"m"}]})", .stderr_ = ""};
    EXPECT_EQ(disk.save(edited()), (SaveOutcome::Rejected{.fields = {}, .general = {"m"}}));
}

TEST(SavePipeline, aRefusalIsMappedToTheFieldsAndTheCandidateRemoved) {
    RecordingEnvironment disk;
    disk.validation.stdout_ = R"({"ok":false,"errors":[{"message":"one","options":["b","nowhere"]},
        {"message":"two","options":["b","a"]},{"message":"three","options":["nowhere"]}]})";
    EXPECT_EQ(disk.save(edited()),
              (SaveOutcome::Rejected{.fields = {{"a", "two"}, {"b", "one"}}, .general = {"three"}}));
    EXPECT_EQ(disk.steps, (Steps{created, written, validated, removed}));
    EXPECT_EQ(disk.files, (std::map<std::string, std::string>{{path, "old"}}));
}

TEST(SavePipeline, aRefusalWithoutErrorsHasNoMessages) {
    RecordingEnvironment disk;
    disk.validation.stdout_ = R"({"ok":false})";
    EXPECT_EQ(disk.save(edited()), (SaveOutcome::Rejected{.fields = {}, .general = {}}));
}

TEST(SavePipeline, outputThatIsNotUnderstoodIsDescribedByStandardErrorOrTheStatus) {
    struct Case {
        CommandOutcome outcome;
        const char* message;
    };

    const Case cases[] = {
        {{.status = 2, .stdout_ = "", .stderr_ = ""},
         "config validate printed something other than JSON (exit status 2)"},
        {{.status = 3, .stdout_ = "", .stderr_ = ""},
         "config validate printed something other than JSON (exit status 3)"},
        {{.status = 0, .stdout_ = "x", .stderr_ = "boom\n"},
         "config validate printed something other than JSON (boom\n)"},
        {{.status = 0, .stdout_ = "[]", .stderr_ = ""},
         "config validate printed JSON of an unexpected shape (exit status 0)"},
        {{.status = -1, .stdout_ = "", .stderr_ = "failed to launch /x/ostrel: No such file or directory"},
         "config validate printed something other than JSON (failed to launch /x/ostrel: No such file or directory)"},
    };
    for (const Case& each : cases) {
        RecordingEnvironment disk;
        disk.validation = each.outcome;
        EXPECT_EQ(disk.save(edited()), SaveOutcome::CommandFailed{each.message});
        EXPECT_EQ(disk.steps, (Steps{created, written, validated, removed}));
        EXPECT_EQ(disk.files, (std::map<std::string, std::string>{{path, "old"}}));
    }
}

TEST(SavePipeline, theCandidateLiesBesideItsTarget) {
    EXPECT_EQ(SavePipeline::candidatePath(path, 42), candidate);
    EXPECT_EQ(SavePipeline::candidatePath("config.json", 1), "config.json.1.tmp");
    EXPECT_EQ(SavePipeline::candidatePath("", 7), ".7.tmp");
}

TEST(SavePipeline, theDirectoryIsThePathWithoutItsLastComponent) {
    for (const auto& [target, step] : std::map<std::string, std::string>{{"/config.json", "create /"},
                                                                         {"config.json", "create "},
                                                                         {"x/c.json", "create x"},
                                                                         {"/a//c", "create /a/"}}) {
        RecordingEnvironment disk;
        EXPECT_EQ(disk.save(edited(), target), SaveOutcome::Saved{});
        EXPECT_EQ(disk.steps.front(), step) << target;
    }
}

TEST(SavePipeline, anOutcomeIsDescribedForTheLog) {
    struct Case {
        SaveOutcome outcome;
        const char* text;
    };

    const Case cases[] = {
        {SaveOutcome::Saved{}, "saved"},
        {SaveOutcome::InvalidLocally{{{"b", "m"}, {"a", "say \"x\""}}},
         R"(invalidLocally(["a": "say \"x\"", "b": "m"]))"},
        {SaveOutcome::Rejected{.fields = {}, .general = {}}, "rejected(fields: [:], general: [])"},
        {SaveOutcome::Rejected{.fields = {{"a", "m"}}, .general = {"g", "h"}},
         R"(rejected(fields: ["a": "m"], general: ["g", "h"]))"},
        {SaveOutcome::CommandFailed{"c"}, "commandFailed(\"c\")"},
        {SaveOutcome::WriteFailed{"line\nfeed"}, R"(writeFailed("line\nfeed"))"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(describe(each.outcome), each.text);
    }
}
