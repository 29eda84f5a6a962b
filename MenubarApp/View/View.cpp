#include "MenubarApp/View/View.h"

namespace menubar {

namespace {

constexpr Insets formPadding = Insets::all(20.0);
constexpr double formSpacing = 20.0;
constexpr Insets boxPadding = Insets::symmetric(10.0, 12.0);
constexpr double titleSpacing = 8.0;
constexpr double labelSpacing = 6.0;

} // namespace

bool isControl(const View& view) {
    return std::visit([]<class Content>(const Content&) { return isNative<Content>; }, view.content);
}

bool looksAlike(const View& left, const View& right) {
    return left.content == right.content && left.tooltip == right.tooltip && left.accessibility == right.accessibility;
}

View label(Symbol symbol, Text text) {
    return view(HStack{.spacing = labelSpacing, .alignment = VerticalAlignment::firstBaseline}, view(std::move(symbol)),
                view(std::move(text)));
}

View caption(std::string text, TextColor color) {
    return view(Text{.text = std::move(text), .font = Font::caption, .color = color});
}

View progressView(const std::string& title) {
    return view(VStack{.spacing = titleSpacing, .alignment = HorizontalAlignment::center},
                view(Spinner{}).withAccessibility(title), view(Text{.text = title}));
}

View section(std::string title, std::vector<View> rows) {
    View result = view(VStack{.spacing = titleSpacing}).fillingWidth();
    if (!title.empty()) {
        result.children.push_back(view(Text{.text = std::move(title), .font = Font::headline}));
    }
    if (!rows.empty()) { // a box around nothing is only a smudge
        View box = view(Box{}).fillingWidth().withPadding(boxPadding);
        for (View& row : rows) {
            if (!box.children.empty()) {
                box.children.push_back(view(Divider{}));
            }
            box.children.push_back(std::move(row));
        }
        result.children.push_back(std::move(box));
    }
    return result;
}

View form(std::vector<View> sections) {
    return viewOf(ScrollView{.spacing = formSpacing}, std::move(sections)).withPadding(formPadding);
}

} // namespace menubar
