#pragma once

#include "MenubarCore/JSON/DecodingError.h"
#include "MenubarCore/JSON/JSONReader.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

/// What the rows of a record's table promise, for any record.
namespace menubar::testing_support {

/// A JSON text that fits a shape.
inline std::string sample(const Shape& shape);

inline std::string sample(const RecordTable& table, const FieldRow* replaced = nullptr,
                          const std::string& replacement = "") {
    std::string text = "{";
    for (const FieldRow& row : table.rows) {
        text += (text.size() > 1 ? ",\"" : "\"") + std::string(row.key) + "\":";
        text += &row == replaced ? replacement : sample(*row.shape);
    }
    return text + "}";
}

inline std::string sample(const Shape& shape) {
    switch (shape.kind) {
    case Shape::Kind::boolean: return "true";
    case Shape::Kind::integer: return "7";
    case Shape::Kind::number: return "7.5";
    case Shape::Kind::text: return "\"text\"";
    case Shape::Kind::formattedText: return "\"2025-03-04T10:15:30Z\"";
    case Shape::Kind::enumeration: return "\"" + std::string(shape.texts.front()) + "\"";
    case Shape::Kind::record: return sample(*shape.record);
    case Shape::Kind::list: return "[" + sample(*shape.element) + "]";
    case Shape::Kind::map: return "{\"k\":" + sample(*shape.element) + "}";
    case Shape::Kind::any: return "null";
    }
    return "";
}

/// Texts of every JSON type that do not fit a shape.
inline std::vector<std::string> misfits(const Shape& shape) {
    std::vector<std::string> result;
    const std::string own = shape.typeName() == "String" ? "\"" : sample(shape).substr(0, 1);
    for (const std::string_view text : {"true", "1.5", "\"x\"", "[]", "{}"}) {
        const bool isNumber = text == "1.5" && shape.kind == Shape::Kind::number;
        if (shape.kind != Shape::Kind::any && !isNumber && !text.starts_with(own)) {
            result.emplace_back(text);
        }
    }
    return result;
}

template <Record R>
std::string errorOf(const std::string& document) {
    const auto record = JSONReader::decode<R>(document);
    return record ? "" : describe(record.error());
}

/// Every row of a record with what it must take and what it must refuse.
template <Record R>
void expectRowsHold() {
    const RecordTable& table = recordTable<R>;
    EXPECT_EQ(errorOf<R>(sample(table)), "");
    for (const FieldRow& row : table.rows) {
        const std::string key(row.key);
        for (const std::string& misfit : misfits(*row.shape)) {
            EXPECT_EQ(errorOf<R>(sample(table, &row, misfit)),
                      "type mismatch (" + std::string(row.shape->typeName()) + ") at " + key)
                << misfit;
        }
        const std::string withNull = errorOf<R>(sample(table, &row, "null"));
        EXPECT_EQ(withNull, row.presence == Presence::required
                                ? "missing value (" + std::string(row.shape->typeName()) + ") at " + key
                                : "");
    }
}

} // namespace menubar::testing_support
