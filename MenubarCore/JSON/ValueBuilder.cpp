#include "MenubarCore/JSON/ValueBuilder.h"

#include <utility>

namespace menubar {

void ValueBuilder::add(JSONValue value) {
    if (m_open.empty()) {
        m_result = std::move(value);
        return;
    }
    Container& container = m_open.back();
    if (auto* array = std::get_if<JSONValue::Array>(&container.elements)) {
        array->push_back(std::move(value));
    } else if (auto* object = std::get_if<JSONValue::Object>(&container.elements)) {
        object->insert_or_assign(std::move(container.key), std::move(value));
    }
}

void ValueBuilder::close() {
    auto elements = std::move(m_open.back().elements);
    m_open.pop_back();
    add(std::visit([](auto& container) { return JSONValue(std::move(container)); }, elements));
}

} // namespace menubar
