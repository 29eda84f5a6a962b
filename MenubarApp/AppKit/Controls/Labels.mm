// What is only read: texts, symbols and the spinning wheel.
#include "MenubarApp/AppKit/Controls/ControlAdapter.h"
#include "MenubarApp/AppKit/Controls/Look.h"
#include "MenubarApp/AppKit/Conversions.h"

#include <algorithm>
#include <cmath>

namespace menubar {

namespace {

/// More than any window is wide or any text high. A cell computes with it, so it is not infinite.
constexpr double boundless = 1e6;

class TextAdapter final : public AdapterFor<Text, NSTextField> {
public:
    TextAdapter() : AdapterFor([[NSTextField alloc] initWithFrame:NSZeroRect]) {
        NSTextField* label = native();
        NativeLook::dressLabel(label);
        [label setEditable:NO];
        [label setSelectable:NO];
        [label setBordered:NO];
        [label setBezeled:NO];
        [label setDrawsBackground:NO];
        [[label cell] setWraps:YES];
        [[label cell] setLineBreakMode:NSLineBreakByWordWrapping];
    }

    [[nodiscard]] Measured measure(const View::Content& shown, double width) const override {
        NSTextField* label = native();
        const auto& text = std::get<Text>(shown);
        NSFont* font = Look::font(text.font);
        // The frame of a label reaches beyond its text.
        const NSRect room =
            [label frameForAlignmentRect:NSMakeRect(0, 0, std::min(std::ceil(width), boundless), boundless)];
        const NSSize size = [[label cell] cellSizeForBounds:NSMakeRect(0, 0, NSWidth(room), NSHeight(room))];
        const NSRect taken = [label alignmentRectForFrame:NSMakeRect(0, 0, size.width, size.height)];
        const double line = lineHeight(font);
        double height = std::max(std::ceil(NSHeight(taken)), line);
        if (text.lineLimit > 0) {
            height = std::min(height, line * text.lineLimit);
        }
        return {.width = std::ceil(NSWidth(taken)),
                .height = height,
                .baseline = std::round(line + std::min(0.0, static_cast<double>([font descender])))};
    }

protected:
    void apply(const Change<Text>& change) override {
        NSTextField* label = native();
        const Text& text = change.now;
        if (change.in(&Text::font)) {
            [label setFont:Look::font(text.font)];
        }
        if (change.in(&Text::color)) {
            [label setTextColor:Look::color(text.color)];
        }
        if (change.in(&Text::selectable)) {
            [label setSelectable:text.selectable];
        }
        if (change.in(&Text::lineLimit)) {
            [label setMaximumNumberOfLines:text.lineLimit];
            [[label cell] setTruncatesLastVisibleLine:text.lineLimit > 0];
        }
        if (change.in(&Text::text)) {
            [label setStringValue:toNSString(text.text)];
        }
    }

private:
    [[nodiscard]] static double lineHeight(NSFont* font) {
        return std::ceil([@"Xg" sizeWithAttributes:@{NSFontAttributeName : font}].height);
    }
};

class SymbolAdapter final : public AdapterFor<Symbol, NSImageView> {
public:
    SymbolAdapter() : AdapterFor(NativeLook::newSymbolView()) {}

    [[nodiscard]] Measured measure(const View::Content& shown, double) const override {
        const NSSize size = [[native() image] size];
        const double height = std::ceil(size.height);
        return {.width = std::ceil(size.width),
                .height = height,
                .baseline = Look::centeredBaseline(height, Look::font(std::get<Symbol>(shown).font))};
    }

protected:
    void apply(const Change<Symbol>& change) override {
        const Symbol& symbol = change.now;
        if (change.in(&Symbol::name, &Symbol::description, &Symbol::font)) {
            [native() setImage:NativeLook::symbol(symbol.name, symbol.description, Look::font(symbol.font))];
            NativeLook::describe(native(), {.label = symbol.description});
        }
        if (change.in(&Symbol::color)) {
            [native() setContentTintColor:Look::color(symbol.color)];
        }
    }
};

class SpinnerAdapter final : public AdapterFor<Spinner, NSProgressIndicator> {
public:
    SpinnerAdapter() : AdapterFor([[NSProgressIndicator alloc] initWithFrame:NSMakeRect(0, 0, side, side)]) {
        [native() setStyle:NSProgressIndicatorStyleSpinning];
        [native() setIndeterminate:YES];
        [native() setDisplayedWhenStopped:NO];
        [native() startAnimation:nil];
    }

    [[nodiscard]] Measured measure(const View::Content&, double) const override {
        return {.width = side, .height = side, .baseline = side};
    }

    void disconnect() override { [native() stopAnimation:nil]; }

private:
    static constexpr double side = 32.0; // of the regular wheel
};

} // namespace

AdapterPointer makeAdapter(const Text&, const Reporter&) {
    return std::make_unique<TextAdapter>();
}

AdapterPointer makeAdapter(const Symbol&, const Reporter&) {
    return std::make_unique<SymbolAdapter>();
}

AdapterPointer makeAdapter(const Spinner&, const Reporter&) {
    return std::make_unique<SpinnerAdapter>();
}

} // namespace menubar
