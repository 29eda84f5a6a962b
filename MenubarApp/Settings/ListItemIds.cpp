#include "MenubarApp/Settings/ListItemIds.h"

namespace menubar {

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

} // namespace menubar
