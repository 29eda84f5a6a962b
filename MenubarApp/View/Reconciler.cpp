#include "MenubarApp/View/Reconciler.h"

#include "MenubarApp/View/DrawnText.h"
#include "MenubarApp/View/Layout.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ranges>
#include <span>
#include <tuple>
#include <type_traits>
#include <unordered_set>
#include <utility>

namespace menubar {

namespace {

/// The text that a person can edit in the control; null for all other controls.
std::string* editedText(View::Content& content) {
    if (auto* field = std::get_if<TextField>(&content)) {
        return &field->text;
    }
    if (auto* editor = std::get_if<TextEditor>(&content)) {
        return &editor->text;
    }
    return nullptr;
}

/// What of a content decides how much room it takes: all of it for what places others, nothing for what is as large as
/// its kind.
template <class Content>
auto sizeOf(const Content& content) {
    if constexpr (std::is_same_v<Content, Text>) {
        return std::tie(content.text, content.font, content.lineLimit);
    } else if constexpr (std::is_same_v<Content, Button>) {
        return std::tie(content.title, content.symbol, content.style);
    } else if constexpr (std::is_same_v<Content, Checkbox>) {
        return std::tie(content.title);
    } else if constexpr (std::is_same_v<Content, Picker>) {
        return std::tie(content.options);
    } else if constexpr (takesKeys<Content>) {
        return std::tuple();
    } else {
        return std::tie(content);
    }
}

/// Of two contents of one kind.
bool differInSize(const View::Content& before, const View::Content& now) {
    return std::visit(
        [&](const auto& content) {
            return sizeOf(content) != sizeOf(std::get<std::remove_cvref_t<decltype(content)>>(before));
        },
        now);
}

/// For each fresh view the index of the old one that it is, if any: of the same identity and kind, and at the same
/// place among those that agree in both.
std::vector<std::optional<std::size_t>> match(const std::vector<View>& old, const std::vector<View>& fresh) {
    std::vector<std::optional<std::size_t>> result(fresh.size());
    using Key = std::pair<std::string_view, std::size_t>;
    const auto key = [](const View& view) { return Key(view.id, view.content.index()); };
    if (std::ranges::equal(old, fresh, {}, key, key)) { // as a rule
        std::ranges::copy(std::views::iota(std::size_t{0}, fresh.size()), result.begin());
        return result;
    }
    std::multimap<Key, std::size_t> places;
    for (std::size_t i = 0; i < old.size(); ++i) {
        places.emplace(key(old[i]), i);
    }
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        if (const auto first = places.lower_bound(key(fresh[i]));
            first != places.end() && first->first == key(fresh[i])) {
            result[i] = first->second;
            places.erase(first);
        }
    }
    return result;
}

void collectControls(const View& node, std::vector<ControlId>& out) {
    for (const View& child : node.children) {
        if (isControl(child)) {
            out.push_back(child.shown.id);
        } else {
            collectControls(child, out);
        }
    }
}

void collectKeyControls(const View& node, std::vector<ControlId>& out) {
    if (std::visit([]<class Content>(const Content&) { return takesKeys<Content>; }, node.content)) {
        out.push_back(node.shown.id);
    }
    for (const View& child : node.children) {
        collectKeyControls(child, out);
    }
}

/// The way from `root` to the first view that `matches`, both included; empty when there is none.
template <class V, class Matches>
std::vector<V*> wayTo(V& root, const Matches& matches) {
    if (matches(root)) {
        return {&root};
    }
    for (V& child : root.children) {
        if (auto way = wayTo(child, matches); !way.empty()) {
            way.insert(way.begin(), &root);
            return way;
        }
    }
    return {};
}

auto hasId(ControlId id) {
    return [id](const View& view) { return isControl(view) && view.shown.id == id; };
}

using Way = std::vector<const View*>;

/// Where the last view of the way lies; the window stands for a scroll view where there is none around it.
Reconciler::Place placeAt(const Way& way) {
    Reconciler::Place place;
    if (way.empty()) {
        return place;
    }
    for (const View* around : std::span(way).first(way.size() - 1)) {
        if (std::holds_alternative<ScrollView>(around->content)) {
            place = {.scrollView = around->shown.id, .room = around->shown.frame.height, .area = {}};
        } else if (isControl(*around)) {
            place.area.x += around->shown.frame.x;
            place.area.y += around->shown.frame.y;
        }
    }
    const Rect& frame = way.back()->shown.frame;
    place.area = {
        .x = place.area.x + frame.x, .y = place.area.y + frame.y, .width = frame.width, .height = frame.height};
    return place;
}

/// The way to the row around: to what lies directly in the innermost box.
Way rowOf(Way way) {
    while (way.size() > 1 && !std::holds_alternative<Box>(way[way.size() - 2]->content)) {
        way.pop_back();
    }
    return way;
}

} // namespace

void Reconciler::show(View view) {
    makeDrawable(view);
    View fresh{.content = VStack{}};
    fresh.children.push_back(std::move(view));
    m_structureChanged = false;
    (void)updateChildren(m_root, fresh, windowContent);
    if (m_structureChanged) {
        arrange(m_root, windowContent);
        updateTabOrder();
    }
}

void Reconciler::create(View& node, ControlId parent) {
    m_structureChanged = true;
    ControlId inner = parent;
    if (isControl(node)) {
        node.shown.id = ++m_lastId;
        inner = node.shown.id;
        if (const std::string* text = editedText(node.content)) {
            node.shown.viewText = *text;
        }
        m_host.create(inner, parent, node);
    }
    for (View& child : node.children) {
        create(child, inner);
    }
}

void Reconciler::destroy(const View& node) {
    m_structureChanged = true;
    for (const View& child : node.children) {
        destroy(child);
    }
    if (isControl(node)) {
        if (m_editing == node.shown.id) {
            m_editing.reset();
        }
        m_host.destroy(node.shown.id);
    }
}

bool Reconciler::update(View& node, View& fresh, ControlId parent) {
    bool resized = node.sizing != fresh.sizing || differInSize(node.content, fresh.content);
    if (isControl(node)) {
        parent = node.shown.id;
        keepEditedText(node, fresh);
        if (!looksAlike(node, fresh)) {
            m_host.update(parent, fresh, node);
        }
    }
    resized = updateChildren(node, fresh, parent) || resized;
    if (resized) {
        node.shown.forgetSizes();
    }
    // The content for its handlers, if for nothing else.
    node.content = std::move(fresh.content);
    node.sizing = fresh.sizing;
    node.tooltip = std::move(fresh.tooltip);
    node.accessibility = std::move(fresh.accessibility);
    return resized;
}

void Reconciler::keepEditedText(View& node, View& fresh) const {
    std::string* text = editedText(fresh.content);
    if (text == nullptr) {
        return;
    }
    Shown& shown = node.shown;
    const bool isKept = m_editing == shown.id && (m_typedIn == shown.id || *text == shown.viewText);
    shown.viewText = *text;
    if (isKept) {
        *text = *editedText(node.content);
    }
}

bool Reconciler::updateChildren(View& node, View& fresh, ControlId parent) {
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
    std::vector<View> children;
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

void Reconciler::arrange(View& container, ControlId id) {
    std::vector<ControlId> wanted;
    collectControls(container, wanted);
    // The host has the old ones that are left, then the new ones in the order in which they were created.
    const std::unordered_set<ControlId> alive(wanted.begin(), wanted.end());
    std::vector<ControlId> present = std::exchange(container.shown.order, wanted);
    std::erase_if(present, [&](ControlId c) { return !alive.contains(c); });
    const std::unordered_set<ControlId> old(present.begin(), present.end());
    std::ranges::copy_if(wanted, std::back_inserter(present), [&](ControlId c) { return !old.contains(c); });
    if (present != wanted) {
        m_host.arrange(id, wanted);
    }

    const auto arrangeInside = [this](auto& self, View& node) -> void {
        for (View& child : node.children) {
            if (!isControl(child)) {
                self(self, child);
            } else if (!child.children.empty() || !child.shown.order.empty()) {
                arrange(child, child.shown.id);
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
    const Way edited = m_editing ? wayTo(std::as_const(m_root), hasId(*m_editing)) : Way();
    const Place field = placeAt(edited);
    const Place row = placeAt(rowOf(edited));
    for (View& node : m_root.children) {
        menubar::layOut(node, size, m_host);
        place(node);
    }
    if (field.scrollView == windowContent) {
        return;
    }
    // What comes or goes above moves nothing under a person's hands, and what is said below of the edit is seen.
    if (const double moved = placeAt(edited).area.y - field.area.y; moved != 0.0) {
        m_host.scrollBy(field.scrollView, moved);
    }
    const Place now = placeAt(rowOf(edited));
    if (m_typedIn && now.area.height > row.area.height && now.area.height <= now.room) {
        m_host.scrollToVisible(now.scrollView, now.area);
    }
}

void Reconciler::place(View& node) {
    if (isControl(node) && node.shown.placed != node.shown.frame) {
        m_host.place(node.shown.id, node.shown.frame);
        node.shown.placed = node.shown.frame;
    }
    if (std::holds_alternative<ScrollView>(node.content) && node.shown.placedContent != node.shown.contentSize) {
        m_host.setContentSize(node.shown.id, node.shown.contentSize);
        node.shown.placedContent = node.shown.contentSize;
    }
    for (View& child : node.children) {
        place(child);
    }
}

View* Reconciler::find(ControlId id) {
    const auto way = wayTo(m_root, hasId(id));
    return way.empty() ? nullptr : way.back();
}

const View* Reconciler::control(ControlId id) const {
    const auto way = wayTo(m_root, hasId(id));
    return way.empty() ? nullptr : way.back();
}

bool Reconciler::noteTyped(ControlId id, const std::string& text, const std::string& taken) {
    View* node = find(id);
    std::string* shown = node == nullptr ? nullptr : editedText(node->content);
    if (shown == nullptr || *shown == text) {
        return false;
    }
    *shown = text;
    m_editing = id;
    m_typedIn = id;
    if (taken != text) {
        showText(*node, taken);
    }
    return true;
}

void Reconciler::endEditing(ControlId id) {
    if (m_editing == id) {
        m_editing.reset();
    }
    reapply(id);
}

void Reconciler::reapplyEditedText() {
    if (m_editing) {
        reapply(*m_editing);
    }
}

void Reconciler::reapply(ControlId id) {
    View* node = find(id);
    const std::string* shown = node == nullptr ? nullptr : editedText(node->content);
    if (shown != nullptr && *shown != node->shown.viewText) {
        showText(*node, node->shown.viewText);
    }
}

void Reconciler::showText(View& node, const std::string& text) {
    const View before{.content = node.content, .tooltip = node.tooltip, .accessibility = node.accessibility};
    *editedText(node.content) = text;
    m_host.update(node.shown.id, node, before);
}

std::optional<Reconciler::Place> Reconciler::placeOf(std::string_view viewId) const {
    const Place place = placeAt(wayTo(m_root, [viewId](const View& view) { return view.id == viewId; }));
    return place.scrollView == windowContent ? std::nullopt : std::optional(place);
}

std::optional<ControlId> Reconciler::firstField(std::string_view viewId) const {
    const auto way = wayTo(m_root, [viewId](const View& view) { return view.id == viewId; });
    const auto field = way.empty() ? way : wayTo(*way.back(), [](const View& view) {
        return std::holds_alternative<TextField>(view.content) || std::holds_alternative<TextEditor>(view.content);
    });
    return field.empty() ? std::nullopt : std::optional(field.back()->shown.id);
}

} // namespace menubar
