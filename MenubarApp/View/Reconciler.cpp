#include "MenubarApp/View/Reconciler.h"

#include "MenubarApp/View/Layout.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <unordered_set>
#include <utility>

namespace menubar {

namespace {

/// The text that a person can edit in the control; null for all other controls.
std::string* editedText(Control::Content& content) {
    if (auto* field = std::get_if<TextField>(&content)) {
        return &field->text;
    }
    if (auto* editor = std::get_if<TextEditor>(&content)) {
        return &editor->text;
    }
    return nullptr;
}

/// Whether two contents of one kind want different room.
struct DiffersInSize {
    const Control::Content& before;

    bool operator()(const Text& now) const {
        const Text& old = std::get<Text>(before);
        return old.text != now.text || old.font != now.font || old.lineLimit != now.lineLimit;
    }

    bool operator()(const Button& now) const {
        const auto& old = std::get<Button>(before);
        return old.title != now.title || old.symbol != now.symbol || old.style != now.style;
    }

    bool operator()(const Checkbox& now) const { return std::get<Checkbox>(before).title != now.title; }

    bool operator()(const Picker& now) const { return std::get<Picker>(before).options != now.options; }

    bool operator()(const Symbol& now) const { return std::get<Symbol>(before) != now; }

    // The others are as large as their kind.
    template <class Content>
    bool operator()(const Content&) const {
        return false;
    }
};

struct TakesKeys {
    template <class Content>
    bool operator()(const Content&) const {
        return false;
    }

    bool operator()(const Button&) const { return true; }

    bool operator()(const Toggle&) const { return true; }

    bool operator()(const Checkbox&) const { return true; }

    bool operator()(const TextField&) const { return true; }

    bool operator()(const TextEditor&) const { return true; }

    bool operator()(const Stepper&) const { return true; }

    bool operator()(const Picker&) const { return true; }
};

/// For each fresh node the index of the old one with its key, if any.
std::vector<std::optional<std::size_t>> match(const std::vector<ViewNode>& old, const std::vector<ViewNode>& fresh) {
    std::vector<std::optional<std::size_t>> result(fresh.size());
    std::map<NodeKey, std::size_t> byKey; // filled only when the order is not the old one
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        if (i < old.size() && old[i].key == fresh[i].key) {
            result[i] = i;
            continue;
        }
        if (byKey.empty()) {
            for (std::size_t j = 0; j < old.size(); ++j) {
                byKey.emplace(old[j].key, j);
            }
        }
        if (const auto found = byKey.find(fresh[i].key); found != byKey.end()) {
            result[i] = found->second;
        }
    }
    return result;
}

void collectControls(const ViewNode& node, std::vector<ControlId>& out) {
    for (const ViewNode& child : node.children) {
        if (child.control) {
            out.push_back(child.id);
        } else {
            collectControls(child, out);
        }
    }
}

void collectKeyControls(const ViewNode& node, std::vector<ControlId>& out) {
    if (node.control && std::visit(TakesKeys{}, node.control->content)) {
        out.push_back(node.id);
    }
    for (const ViewNode& child : node.children) {
        collectKeyControls(child, out);
    }
}

ViewNode* findIn(ViewNode& node, ControlId id) {
    if (node.control && node.id == id) {
        return &node;
    }
    for (ViewNode& child : node.children) {
        if (ViewNode* found = findIn(child, id)) {
            return found;
        }
    }
    return nullptr;
}

std::optional<Reconciler::Place> placeIn(const ViewNode& node, std::string_view viewId, Reconciler::Place around) {
    if (node.key.id == viewId) {
        around.area.x += node.frame.x;
        around.area.y += node.frame.y;
        around.area.width = node.frame.width;
        around.area.height = node.frame.height;
        return around;
    }
    if (node.style.kind == LayoutStyle::Kind::scroll) {
        around = {.scrollView = node.id, .area = {}};
    } else if (node.control) {
        around.area.x += node.frame.x;
        around.area.y += node.frame.y;
    }
    for (const ViewNode& child : node.children) {
        if (const auto found = placeIn(child, viewId, around)) {
            return found;
        }
    }
    return std::nullopt;
}

} // namespace

void Reconciler::show(View view) {
    ViewNode fresh;
    fresh.children.push_back(makeNode(std::move(view)));
    m_structureChanged = false;
    (void)updateChildren(m_root, fresh, windowContent);
    if (m_structureChanged) {
        arrange(m_root, windowContent);
        updateTabOrder();
    }
}

void Reconciler::create(ViewNode& node, ControlId parent) {
    m_structureChanged = true;
    ControlId inner = parent;
    if (node.control) {
        node.id = ++m_lastId;
        inner = node.id;
        if (const std::string* text = editedText(node.control->content)) {
            node.viewText = *text;
        }
        m_host.create(node.id, parent, *node.control);
    }
    for (ViewNode& child : node.children) {
        create(child, inner);
    }
}

void Reconciler::destroy(const ViewNode& node) {
    m_structureChanged = true;
    for (const ViewNode& child : node.children) {
        destroy(child);
    }
    if (node.control) {
        if (m_editing == node.id) {
            m_editing.reset();
        }
        m_host.destroy(node.id);
    }
}

bool Reconciler::update(ViewNode& node, ViewNode& fresh, ControlId parent) {
    bool resized = node.style != fresh.style;
    node.style = fresh.style;
    if (node.control) {
        resized = updateControl(node, std::move(*fresh.control)) || resized;
    }
    resized = updateChildren(node, fresh, node.control ? node.id : parent) || resized;
    if (resized) {
        node.forgetSizes();
    }
    return resized;
}

bool Reconciler::updateControl(ViewNode& node, Control now) {
    Control& before = *node.control;
    if (std::string* text = editedText(now.content)) {
        const bool isKept = m_editing == node.id && (m_typedIn == node.id || *text == node.viewText);
        node.viewText = *text;
        if (isKept) {
            *text = *editedText(before.content);
        }
    }
    bool resized = false;
    if (now != before) {
        m_host.update(node.id, now, before);
        resized = std::visit(DiffersInSize{before.content}, now.content);
    }
    before = std::move(now); // for its handlers, if for nothing else
    return resized;
}

bool Reconciler::updateChildren(ViewNode& node, ViewNode& fresh, ControlId parent) {
    const auto matches = match(node.children, fresh.children);
    std::vector<bool> isKept(node.children.size());
    for (const auto& old : matches) {
        if (old) {
            isKept[*old] = true;
        }
    }
    bool resized = node.children.size() != fresh.children.size();
    for (std::size_t j = 0; j < node.children.size(); ++j) {
        if (!isKept[j]) {
            destroy(node.children[j]);
        }
    }
    std::vector<ViewNode> children;
    children.reserve(fresh.children.size());
    for (std::size_t i = 0; i < fresh.children.size(); ++i) {
        if (const auto old = matches[i]) {
            const bool isMoved = *old != i;
            m_structureChanged = m_structureChanged || isMoved;
            children.push_back(std::move(node.children[*old]));
            resized = update(children.back(), fresh.children[i], parent) || isMoved || resized;
        } else {
            children.push_back(std::move(fresh.children[i]));
            create(children.back(), parent);
            resized = true;
        }
    }
    node.children = std::move(children);
    return resized;
}

void Reconciler::arrange(ViewNode& container, ControlId id) {
    std::vector<ControlId> wanted;
    collectControls(container, wanted);
    // The host has the old ones that are left, then the new ones in the order in which they were created.
    const std::unordered_set<ControlId> alive(wanted.begin(), wanted.end());
    const std::unordered_set<ControlId> old(container.order.begin(), container.order.end());
    std::vector<ControlId> present;
    std::ranges::copy_if(container.order, std::back_inserter(present), [&](ControlId c) { return alive.contains(c); });
    std::ranges::copy_if(wanted, std::back_inserter(present), [&](ControlId c) { return !old.contains(c); });
    if (present != wanted) {
        m_host.arrange(id, wanted);
    }
    container.order = std::move(wanted);

    const auto arrangeInside = [this](auto& self, ViewNode& node) -> void {
        for (ViewNode& child : node.children) {
            if (!child.control) {
                self(self, child);
            } else if (!child.children.empty() || !child.order.empty()) {
                arrange(child, child.id);
            }
        }
    };
    arrangeInside(arrangeInside, container);
}

void Reconciler::updateTabOrder() {
    std::vector<ControlId> order;
    collectKeyControls(m_root, order);
    if (order != m_tabOrder) {
        m_host.setTabOrder(order);
        m_tabOrder = std::move(order);
    }
}

void Reconciler::layOut(Size size) {
    for (ViewNode& node : m_root.children) {
        menubar::layOut(node, size, m_host);
        place(node);
    }
}

void Reconciler::place(ViewNode& node) {
    if (node.control && node.placed != node.frame) {
        m_host.place(node.id, node.frame);
        node.placed = node.frame;
    }
    if (node.style.kind == LayoutStyle::Kind::scroll && node.placedContent != node.contentSize) {
        m_host.setContentSize(node.id, node.contentSize);
        node.placedContent = node.contentSize;
    }
    for (ViewNode& child : node.children) {
        place(child);
    }
}

ViewNode* Reconciler::find(ControlId id) {
    return findIn(m_root, id);
}

const Control* Reconciler::control(ControlId id) const {
    // The search does not change the tree; writing it twice for that would be worse.
    const ViewNode* node = findIn(const_cast<ViewNode&>(m_root), id); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    return node == nullptr ? nullptr : &*node->control;
}

bool Reconciler::noteToggled(ControlId id, bool isOn) {
    ViewNode* node = find(id);
    if (node == nullptr) {
        return false;
    }
    bool* shown = nullptr;
    if (auto* toggle = std::get_if<Toggle>(&node->control->content)) {
        shown = &toggle->isOn;
    } else if (auto* checkbox = std::get_if<Checkbox>(&node->control->content)) {
        shown = &checkbox->isOn;
    }
    return shown != nullptr && std::exchange(*shown, isOn) != isOn;
}

bool Reconciler::notePicked(ControlId id, std::size_t option) {
    ViewNode* node = find(id);
    auto* picker = node == nullptr ? nullptr : std::get_if<Picker>(&node->control->content);
    if (picker == nullptr || option >= picker->options.size()) {
        return false;
    }
    return std::exchange(picker->selection, option) != option;
}

bool Reconciler::noteTyped(ControlId id, const std::string& text) {
    ViewNode* node = find(id);
    std::string* shown = node == nullptr ? nullptr : editedText(node->control->content);
    if (shown == nullptr || *shown == text) {
        return false;
    }
    *shown = text;
    m_editing = id;
    m_typedIn = id;
    return true;
}

void Reconciler::endEditing(ControlId id) {
    if (m_editing == id) {
        m_editing.reset();
    }
    if (ViewNode* node = find(id)) {
        putBack(*node);
    }
}

void Reconciler::putBackEditedText() {
    if (ViewNode* node = m_editing ? find(*m_editing) : nullptr) {
        putBack(*node);
    }
}

void Reconciler::putBack(ViewNode& node) {
    std::string* shown = editedText(node.control->content);
    if (shown == nullptr || *shown == node.viewText) {
        return;
    }
    const Control before = *node.control;
    *shown = node.viewText;
    m_host.update(node.id, *node.control, before);
}

std::optional<Reconciler::Place> Reconciler::placeOf(std::string_view viewId) const {
    const auto found = placeIn(m_root, viewId, {});
    return found && found->scrollView != windowContent ? found : std::nullopt;
}

std::string Reconciler::dump() const {
    return m_root.children.empty() ? std::string() : dumpFrames(m_root.children.front());
}

} // namespace menubar
