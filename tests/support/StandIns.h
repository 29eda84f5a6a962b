#pragma once

#include "MenubarApp/Commands/SystemTools.h"
#include "MenubarCore/Daemon/LaunchAgentLabel.h"
#include "MenubarCore/JSON/JSONValue.h"

#include "tests/support/Programs.h"
#include "tests/support/RecordingShell.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace menubar::testing_support {

/// A scratch home and the stand-ins, which record every call that they get.
struct StandIns {
    TemporaryDirectory home;
    ScopedVariable record{"OSTREL_DEMO_RECORD", home / "record"};
    ScopedVariable domain{"OSTREL_DEMO_LAUNCHD", home / "launchd"};
    recording::FakeMainLoop mainLoop;
    std::vector<std::string> lines;
    CommandContext context{
        .environment = {{"PATH", standInFolder}},
        .home = home.path(),
        .uid = ::getuid(),
        .tools = {.launchctl = standInFolder + "/launchctl", .osascript = standInFolder + "/osascript", .cmux = {}},
        .log = [this](std::string_view line) { lines.emplace_back(line); }};

    /// The calls so far: "TOOL ARGUMENT...", arguments in angle brackets, "quiet " before when so asked.
    [[nodiscard]] std::vector<std::string> calls() const {
        std::vector<std::string> result;
        std::ifstream in(home / "record");
        for (std::string line; std::getline(in, line);) {
            result.push_back(described(JSONValue::decode(line).value_or(JSONValue())));
        }
        return result;
    }

    static std::string described(const JSONValue& call) {
        const JSONValue::Object* fields = call.objectValue();
        if (fields == nullptr) {
            return "a line that is no JSON object";
        }
        std::string text = fields->at("quiet") == JSONValue("1") ? "quiet " : "";
        text += fields->at("tool").compactText();
        const JSONValue& words = fields->at("arguments");
        for (const JSONValue& word : *words.arrayValue()) {
            text += " <" + word.compactText() + ">";
        }
        return text;
    }
};

} // namespace menubar::testing_support
