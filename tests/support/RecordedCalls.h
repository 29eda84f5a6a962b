#pragma once

#include "MenubarCore/JSON/JSONValue.h"

#include <fstream>
#include <string>
#include <vector>

namespace menubar::testing_support {

/// The calls that the stand-ins for outside programs have recorded in a file: "TOOL ARGUMENT...", arguments in angle
/// brackets, "quiet " before when so asked.
inline std::vector<std::string> recordedCalls(const std::string& path) {
    std::vector<std::string> result;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        const JSONValue call = JSONValue::decode(line).value_or(JSONValue());
        const JSONValue::Object* fields = call.objectValue();
        if (fields == nullptr) {
            result.emplace_back("a line that is no JSON object");
            continue;
        }
        std::string text = fields->at("quiet") == JSONValue("1") ? "quiet " : "";
        text += fields->at("tool").compactText();
        for (const JSONValue& word : *fields->at("arguments").arrayValue()) {
            text += " <" + word.compactText() + ">";
        }
        result.push_back(text);
    }
    return result;
}

} // namespace menubar::testing_support
