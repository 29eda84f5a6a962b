#pragma once

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/JSON/RecordTable.h"
#include "MenubarCore/JSON/ValueReader.h"
#include "MenubarCore/Text/EnumTexts.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace menubar {

/// How a type says what it looks like in JSON. Built in: `bool`, `std::int64_t`, `double`, `std::string`, `JSONValue`,
/// `JSONValue::Object`, lists (`std::vector`) and maps (`std::map` with text keys) of what is readable, enumerations
/// with `enumTexts`. Two kinds of types bring a table:
///
///     template <>                                       // a record: one row for each member
///     inline constexpr auto recordRows<Point> = std::array{
///         field::required<&Point::x>("x"),
///         field::optional<&Point::label>("label"),      // a std::optional member
///         field::withDefault<&Point::unit>("unit"),
///     };
///
///     template <>                                       // a text with a form of its own
///     struct TextForm<Date> {
///         static std::optional<Date> parse(std::string_view text);
///         static std::string refusal(std::string_view text); // the error text when there is none
///     };
///
/// Of an enumeration the last enumerator absorbs every text that is not in the table. A table must be declared before
/// anything that reads its type, and before the tables of records that hold it.
template <typename T>
inline constexpr std::nullptr_t recordRows = nullptr;

template <typename T>
struct TextForm;

template <typename T>
concept Record = !std::same_as<decltype(recordRows<T>), const std::nullptr_t>;

template <typename T>
concept FormattedText = requires(std::string_view text) {
    { TextForm<T>::parse(text) } -> std::same_as<std::optional<T>>;
    { TextForm<T>::refusal(text) } -> std::same_as<std::string>;
};

namespace detail {

template <typename T>
concept List = std::same_as<T, std::vector<typename T::value_type>>;

template <typename T>
concept Map = requires { typename T::mapped_type; };

template <typename T>
concept Optional = std::same_as<T, std::optional<typename T::value_type>>;

template <typename T>
struct MemberOf;

template <typename R, typename V>
struct MemberOf<V R::*> {
    using Holder = R;
    using Value = V;
};

} // namespace detail

template <Record T>
inline constexpr RecordTable recordTable = RecordTable{recordRows<T>};

template <typename T>
constexpr Shape makeShape();

template <typename T>
inline constexpr Shape shapeOf = makeShape<T>();

template <typename T>
constexpr Shape makeShape() {
    using Kind = Shape::Kind;
    if constexpr (std::same_as<T, bool>) {
        return {.kind = Kind::boolean};
    } else if constexpr (std::same_as<T, std::int64_t>) {
        return {.kind = Kind::integer};
    } else if constexpr (std::same_as<T, double>) {
        return {.kind = Kind::number};
    } else if constexpr (std::same_as<T, std::string>) {
        return {.kind = Kind::text};
    } else if constexpr (std::same_as<T, JSONValue>) {
        return {.kind = Kind::any};
    } else if constexpr (FormattedText<T>) {
        return {.kind = Kind::formattedText};
    } else if constexpr (TextEnumeration<T>) {
        return {.kind = Kind::enumeration, .texts = enumTexts<T>};
    } else if constexpr (Record<T>) {
        static_assert(RecordTable::areSound(recordRows<T>));
        return {.kind = Kind::record, .record = &recordTable<T>};
    } else if constexpr (detail::List<T>) {
        return {.kind = Kind::list, .element = &shapeOf<typename T::value_type>};
    } else if constexpr (detail::Map<T>) {
        return {.kind = Kind::map, .element = &shapeOf<typename T::mapped_type>};
    } else {
        static_assert(sizeof(T) == 0, "this type has no table that says what it looks like in JSON");
    }
}

template <typename T>
[[nodiscard]] bool readElement(ValueReader& reader, T& value);

/// Reads the reader's current value, which is not `null` (but for a `JSONValue`), into a fresh `value`. False when it
/// could not; the reader knows why.
template <typename T>
[[nodiscard]] bool readValue(ValueReader& reader, T& value) {
    if constexpr (std::same_as<T, bool> || std::same_as<T, std::int64_t> || std::same_as<T, double> ||
                  std::same_as<T, std::string> || std::same_as<T, JSONValue>) {
        return reader.read(value);
    } else if constexpr (FormattedText<T>) {
        const std::optional<std::string_view> text = reader.readText();
        if (!text) {
            return false;
        }
        const std::optional<T> parsed = TextForm<T>::parse(*text);
        if (!parsed) {
            return reader.refuse(TextForm<T>::refusal(*text));
        }
        value = *parsed;
        return true;
    } else if constexpr (TextEnumeration<T>) {
        const std::optional<std::string_view> text = reader.readText();
        value = enumeratorOf<T>(text.value_or(""));
        return text.has_value();
    } else if constexpr (Record<T>) {
        return reader.readRecord(recordTable<T>, &value);
    } else if constexpr (detail::List<T>) {
        return reader.readList(&value, [](ValueReader& elementReader, void* target, std::size_t count) {
            auto& list = *static_cast<T*>(target);
            if (list.empty()) {
                list.reserve(std::min(count, 4 * elementReader.documentSize() / sizeof(typename T::value_type)));
            }
            return readElement(elementReader, list.emplace_back());
        });
    } else {
        static_assert(detail::Map<T>);
        return reader.readMap(&value, [](ValueReader& entryReader, void* map, std::string_view key) {
            return readElement(entryReader, (*static_cast<T*>(map))[std::string(key)]);
        });
    }
}

/// Reads a value in a place where one is required: `null` is an error, but for a `JSONValue`.
template <typename T>
[[nodiscard]] bool readElement(ValueReader& reader, T& value) {
    if constexpr (!std::same_as<T, JSONValue>) {
        if (reader.isNull()) {
            return reader.refuseNull(shapeOf<T>.typeName());
        }
    }
    return readValue(reader, value);
}

namespace field {

template <auto Member, bool isOptional>
constexpr FieldRow row(std::string_view key, Presence presence) {
    using Holder = typename detail::MemberOf<decltype(Member)>::Holder;
    using Value = typename detail::MemberOf<decltype(Member)>::Value;
    static_assert(detail::Optional<Value> == isOptional);
    if constexpr (isOptional) {
        return {key, presence, &shapeOf<typename Value::value_type>, [](ValueReader& reader, void* record) {
                    return readValue(reader, (static_cast<Holder*>(record)->*Member).emplace());
                }};
    } else {
        return {key, presence, &shapeOf<Value>, [](ValueReader& reader, void* record) {
                    return readValue(reader, static_cast<Holder*>(record)->*Member);
                }};
    }
}

template <auto Member>
constexpr FieldRow required(std::string_view key) {
    return row<Member, false>(key, Presence::required);
}

template <auto Member>
constexpr FieldRow optional(std::string_view key) {
    return row<Member, true>(key, Presence::optional);
}

template <auto Member>
constexpr FieldRow withDefault(std::string_view key) {
    return row<Member, false>(key, Presence::withDefault);
}

} // namespace field

} // namespace menubar
