#include "MenubarApp/Settings/ListControl.h"

#include <utility>

namespace menubar {

namespace {

using Items = std::shared_ptr<const std::vector<std::string>>;

View itemRow(const ListControl& control, const Items& items, std::size_t index, const std::string& id) {
    const std::string item = "Item " + std::to_string(index + 1);
    // Each handler makes the new list of the one it was written for: a new view has new handlers.
    auto edit = [items, onChange = control.onChange, index](const std::string& text) {
        auto changed = *items;
        changed[index] = text;
        onChange(std::move(changed));
    };
    auto remove = [items, onChange = control.onChange, ids = control.ids, name = control.name, index] {
        auto changed = *items;
        changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(index));
        ids->remove(name, index);
        onChange(std::move(changed));
    };
    return view(HStack{},
                view(TextField{.text = (*items)[index], .prompt = item, .onEdit = std::move(edit)})
                    .withAccessibility(control.label + ", " + item, control.description),
                view(Button{.symbol = "minus.circle", .style = ButtonStyle::borderless, .onPress = std::move(remove)})
                    .withTooltip("Remove this item")
                    .withAccessibility("Remove " + item + " of " + control.label))
        .withId(id);
}

} // namespace

const std::vector<std::string>& ListItemIds::ids(const std::string& name, std::size_t count) {
    std::vector<std::string>& list = m_lists[name];
    if (list.size() > count) {
        list.resize(count);
    }
    while (list.size() < count) {
        list.push_back("item " + std::to_string(++m_last));
    }
    return list;
}

void ListItemIds::remove(const std::string& name, std::size_t index) {
    const auto found = m_lists.find(name);
    if (found != m_lists.end() && index < found->second.size()) {
        found->second.erase(found->second.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

View ListControl::body() const {
    std::vector<View> rows;
    rows.reserve(items.size() + 2);
    if (items.empty()) {
        rows.push_back(caption("Empty"));
    }
    const auto shared = std::make_shared<const std::vector<std::string>>(items);
    const std::vector<std::string>& itemIds = ids->ids(name, items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        rows.push_back(itemRow(*this, shared, i, itemIds[i]));
    }
    auto add = [shared, onChange = onChange, ids = ids, name = name, focus = focus] {
        auto changed = *shared;
        changed.emplace_back();
        const std::string added = ids->ids(name, changed.size()).back();
        onChange(std::move(changed));
        focus(added);
    };
    rows.push_back(
        view(Button{
                 .title = "Add", .symbol = "plus.circle", .style = ButtonStyle::borderless, .onPress = std::move(add)})
            .withId("add")
            .withAccessibility("Add an item to " + label));
    return viewOf(VStack{.spacing = 4.0}, std::move(rows));
}

} // namespace menubar
