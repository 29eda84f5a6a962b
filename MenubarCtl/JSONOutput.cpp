#include "MenubarCtl/JSONOutput.h"

#include "MenubarCore/Menu/ConfigNotices.h"
#include "MenubarCore/Text/CodePoints.h"
#include "MenubarCore/Text/DisplayText.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <utility>

namespace menubar::ctl {

namespace {

JSONValue noticesValue(const StatusPoll& poll) {
    JSONValue::Array notices;
    for (const ConfigNotice& notice : ConfigNotices::notices(poll.snapshot.file(), poll.state)) {
        notices.emplace_back(JSONValue::Object{
            {"kind", notice.configError ? "configError" : "restartNeeded"},
            {"line", text(notice.menuLine())},
        });
    }
    return notices;
}

JSONValue itemValue(const MenuItem& item) {
    if (item.kind == MenuItem::Kind::separator) {
        return JSONValue::Object{{"kind", "separator"}};
    }
    return JSONValue::Object{
        {"action", item.action == MenuAction::none ? JSONValue() : JSONValue(rawText(item.action))},
        {"checked", item.checked},
        {"enabled", item.enabled},
        {"indentation", item.indentation},
        {"key", text(item.keyEquivalent)},
        {"kind", "item"},
        {"path", textOrNull(item.path)},
        {"tag", item.tag},
        {"title", text(item.title)},
        {"tooltip", textOrNull(item.tooltip)},
    };
}

void appendEscape(std::string& out, std::int32_t codePoint) {
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(codePoint));
    out += escape.data();
}

} // namespace

JSONValue text(std::string_view value) {
    return wellFormed(value);
}

JSONValue textOrNull(const std::optional<std::string>& value) {
    return value ? text(*value) : JSONValue();
}

std::string timestampText(Date date) {
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day calendar(day);
    const std::chrono::hh_mm_ss time(date - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(calendar.year()),
                  static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    std::string result = text.data();
    if (const auto fraction = time.subseconds().count(); fraction != 0) {
        std::snprintf(text.data(), text.size(), ".%06d", static_cast<int>(fraction));
        result += text.data();
    }
    return result + "Z";
}

JSONValue stateDocument(const StatusPoll& poll, const TimeZone& timeZone) {
    const StatusFile* file = poll.snapshot.file();
    const OstrelConfig* config = file != nullptr && file->config ? &*file->config : nullptr;
    const std::optional<double> pollAge = poll.state.pollAge();
    return JSONValue::Object{
        {"kind", rawText(poll.state.kind())},
        {"title", text(poll.state.title(timeZone))},
        {"detail", text(poll.state.detail(config))},
        {"pollAge", pollAge ? JSONValue(*pollAge) : JSONValue()},
    };
}

JSONValue statusDocument(const StatusPoll& poll, const TimeZone& timeZone) {
    return JSONValue::Object{
        {"compact", JSONValue::Object{{"compact", poll.compact.compact}, {"source", rawText(poll.compact.source)}}},
        {"notices", noticesValue(poll)},
        {"presentation", JSONValue::Object{{"symbolName", text(poll.presentation.symbolName)},
                                           {"title", text(poll.presentation.title)},
                                           {"tone", rawText(poll.presentation.tone)},
                                           {"tooltip", text(poll.presentation.tooltip)}}},
        {"state", stateDocument(poll, timeZone)},
    };
}

JSONValue menuDocument(const Menu& menu) {
    JSONValue::Array items;
    items.reserve(menu.size());
    for (const MenuItem& item : menu) {
        items.push_back(itemValue(item));
    }
    return JSONValue::Object{{"items", std::move(items)}};
}

std::expected<std::string, EncodingError> documentText(const JSONValue& document) {
    auto json = document.encode(JSONLayout::compact);
    if (json) {
        *json += '\n';
    }
    return json;
}

std::string terminalSafe(std::string_view json) {
    std::string result;
    result.reserve(json.size());
    for (std::size_t index = 0; index < json.size();) {
        const std::size_t start = index;
        const std::int32_t codePoint = nextCodePoint(json, index);
        const std::string_view character = json.substr(start, index - start);
        // All of these lie within the basic plane, and within the document's texts but for its line feeds.
        if (codePoint != '\n' && codePoint != illFormed && displayText(character) != character) {
            appendEscape(result, codePoint);
        } else {
            result += character;
        }
    }
    return result;
}

} // namespace menubar::ctl
