#pragma once

#include "MenubarApp/View/View.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace menubar {

/// Identities for the items of the lists in the settings window. A list's items are texts that may be equal and may
/// change with every keystroke, so they have none of their own; with these, removing an item takes away its own row and
/// leaves the insertion point in the row where it was. One window's worth. Main thread.
class ListItemIds {
public:
    /// One identity for each item of the list `name`, as many as `count`. A list that has become longer or shorter
    /// since the last call, other than by `remove`, has done so at its end.
    [[nodiscard]] const std::vector<std::string>& ids(const std::string& name, std::size_t count);

    /// The item at `index` of the list goes.
    void remove(const std::string& name, std::size_t index);

private:
    std::map<std::string, std::vector<std::string>> m_lists;
    std::uint64_t m_last = 0;
};

/// Edits a list of texts: a field and a button to remove it for each item, and a button that appends an empty one.
struct ListControl {
    std::vector<std::string> items;
    std::string name;                                       ///< of the list, for the identities
    std::string label;                                      ///< of the setting, for assistive technology
    std::string description;                                ///< read with every item
    std::shared_ptr<ListItemIds> ids;                       ///< not null
    std::function<void(std::vector<std::string>)> onChange; ///< gets the whole new list
    std::function<void(const std::string&)> focus;          ///< puts the insertion point into the row of this identity

    [[nodiscard]] View body() const;
};

} // namespace menubar
