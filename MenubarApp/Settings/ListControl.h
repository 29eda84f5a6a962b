#pragma once

#include "MenubarApp/View/View.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace menubar {

class ListItemIds;

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
