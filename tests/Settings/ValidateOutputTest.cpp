#include "MenubarCore/Settings/ValidateOutput.h"

#include <string>

#include <gtest/gtest.h>

using namespace menubar;

namespace {

using Issues = std::vector<ValidationIssue>;
using ParseError = ValidateOutput::ParseError;
using Messages = ValidateOutput::Messages;

ValidateOutput invalid(Issues issues) {
    return ValidateOutput::Invalid{std::move(issues)};
}

/// What is parsed from {"ok": false, "errors": ...}.
Issues issues(const std::string& errors) {
    const auto output = ValidateOutput::parse(R"({"ok":false,"errors":)" + errors + "}");
    EXPECT_TRUE(output) << errors;
    EXPECT_TRUE(output && output->invalid() != nullptr) << errors;
    return output && output->invalid() != nullptr ? output->invalid()->issues : Issues{};
}

} // namespace

TEST(ValidateOutput, okIsAllThatAGoodFileNeeds) {
    EXPECT_EQ(ValidateOutput::parse(R"({"ok":true})"), ValidateOutput(ValidateOutput::Ok{}));
    EXPECT_EQ(ValidateOutput::parse(R"({"ok":true,"errors":[{"message":"ignored"}],"x":1})"),
              ValidateOutput(ValidateOutput::Ok{}));
    EXPECT_EQ(ValidateOutput::parse(" {\n\"ok\" : true }\n"), ValidateOutput(ValidateOutput::Ok{}));
}

TEST(ValidateOutput, whatIsNotJSONSaysSo) {
    for (const char* text : {"", " ", "ok", "{\"ok\":true} trailing", "{\"ok\":true}{\"ok\":true}", "{'ok':true}",
                             "warning: x\n{\"ok\":true}", "{\"ok\":true"}) {
        EXPECT_EQ(ValidateOutput::parse(text), std::unexpected(ParseError::notJSON)) << text;
    }
    EXPECT_EQ(describe(ParseError::notJSON), "config validate printed something other than JSON");
}

TEST(ValidateOutput, jsonOfEveryOtherShapeSaysSo) {
    for (const char* text : {"null", "true", "1", "\"ok\"", "[]", "[{\"ok\":true}]", "{}", "{\"Ok\":true}",
                             "{\"ok\":null}", "{\"ok\":1}", "{\"ok\":\"true\"}", "{\"ok\":[]}", "{\"errors\":[]}"}) {
        EXPECT_EQ(ValidateOutput::parse(text), std::unexpected(ParseError::unexpectedShape)) << text;
    }
    EXPECT_EQ(describe(ParseError::unexpectedShape), "config validate printed JSON of an unexpected shape");
}

TEST(ValidateOutput, aRefusalWithoutAUsableListHasNoIssues) {
    EXPECT_EQ(ValidateOutput::parse(R"({"ok":false})"), invalid({}));
    for (const char* errors : {"null", "1", "\"x\"", "{}", "{\"0\":{\"message\":\"m\"}}", "[]"}) {
        EXPECT_EQ(issues(errors), Issues{}) << errors;
    }
}

TEST(ValidateOutput, issuesAreReadInOrderAndMalformedOnesSkipped) {
    EXPECT_EQ(issues(R"([{"message":"one","options":["a","b"]}, 1, null, "x", [], {}, {"options":["a"]},
                         {"message":1}, {"message":null}, {"message":"two","code":7}])"),
              (Issues{{.options = {"a", "b"}, .message = "one"}, {.options = {}, .message = "two"}}));
}

TEST(ValidateOutput, onlyTextsCountAsOptions) {
    EXPECT_EQ(issues(R"([{"message":"m","options":["a",1,null,["b"],"c",""]}])"),
              (Issues{{.options = {"a", "c", ""}, .message = "m"}}));
    for (const char* options : {"\"a\"", "null", "{\"a\":1}", "1", "[]"}) {
        EXPECT_EQ(issues(R"([{"message":"m","options":)" + std::string(options) + "}]"),
                  (Issues{{.options = {}, .message = "m"}}))
            << options;
    }
}

TEST(ValidateOutput, tenMegabytesAreRead) {
    std::string errors = "[";
    for (int i = 0; errors.size() < 10'000'000; ++i) {
        errors += (i == 0 ? "" : ",") + std::string(R"({"message":"something is wrong with this","options":["a"]})");
    }
    EXPECT_GT(issues(errors + "]").size(), 150'000);
    EXPECT_EQ(ValidateOutput::parse(std::string(10'000'000, 'x')), std::unexpected(ParseError::notJSON));
    EXPECT_EQ(ValidateOutput::parse(std::string(10'000'000, '[')), std::unexpected(ParseError::notJSON));
}

TEST(ValidateOutput, aMessageGoesToTheKnownOptionsThatItsIssueNames) {
    EXPECT_EQ(ValidateOutput::mapped({{.options = {"a", "b"}, .message = "m"}}, {"a", "b", "c"}),
              (Messages{.fields = {{"a", "m"}, {"b", "m"}}, .general = {}}));
}

TEST(ValidateOutput, anIssueThatNamesAKnownAndAnUnknownOptionIsTheKnownOnesOnly) {
    EXPECT_EQ(ValidateOutput::mapped({{.options = {"x", "a"}, .message = "m"}}, {"a"}),
              (Messages{.fields = {{"a", "m"}}, .general = {}}));
}

TEST(ValidateOutput, anIssueThatNamesNoKnownOptionIsGeneral) {
    EXPECT_EQ(ValidateOutput::mapped({{.options = {"x"}, .message = "one"},
                                      {.options = {}, .message = "two"},
                                      {.options = {"A"}, .message = "three"}},
                                     {"a"}),
              (Messages{.fields = {}, .general = {"one", "two", "three"}}));
    EXPECT_EQ(ValidateOutput::mapped({{.options = {"a"}, .message = "m"}}, {}),
              (Messages{.fields = {}, .general = {"m"}}));
}

TEST(ValidateOutput, theFirstIssueThatNamesAnOptionWins) {
    EXPECT_EQ(
        ValidateOutput::mapped(
            {{.options = {"a"}, .message = "first"}, {.options = {"a", "b", "b"}, .message = "second"}}, {"a", "b"}),
        (Messages{.fields = {{"a", "first"}, {"b", "second"}}, .general = {}}));
}

TEST(ValidateOutput, aCommandSucceedsWithStatusZero) {
    EXPECT_TRUE((CommandOutcome{.status = 0, .stdout_ = "", .stderr_ = "x"}).succeeded());
    EXPECT_FALSE((CommandOutcome{.status = 1, .stdout_ = "", .stderr_ = ""}).succeeded());
    EXPECT_FALSE((CommandOutcome{.status = -1, .stdout_ = "", .stderr_ = ""}).succeeded());
}
