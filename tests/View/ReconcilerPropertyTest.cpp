#include "MenubarApp/View/Reconciler.h"

#include "tests/support/RecordingViewHost.h"

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace menubar {
namespace {

using recording::RecordingViewHost;

/// Views drawn at random, the same ones for the same seed. Identities and texts come from small sets, so that two views
/// in a row share much of their trees.
class RandomViews {
public:
    explicit RandomViews(unsigned seed) : m_random(seed) {}

    View tree() { return tree(4); }

    Size size() {
        return {.width = 100.0 + static_cast<double>(below(900)), .height = 50.0 + static_cast<double>(below(900))};
    }

private:
    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(m_random); }

    bool oneIn(std::size_t chances) { return below(chances) == 0; }

    std::string word() { return std::string(1 + below(40), static_cast<char>('a' + below(3))); }

    View tree(int depth) {
        View result = depth == 0 || oneIn(3) ? leaf() : container(depth);
        if (oneIn(3)) {
            result.id = std::string(1, static_cast<char>('p' + below(4)));
        }
        if (oneIn(6)) {
            result.sizing.fillWidth = true;
        }
        if (oneIn(8)) {
            result.sizing.padding = Insets::all(static_cast<double>(below(10)));
        }
        if (oneIn(10)) {
            result.sizing.width = 50.0 + static_cast<double>(below(100));
        }
        if (oneIn(6)) {
            result.tooltip = word();
        }
        if (oneIn(6)) {
            result.accessibility.label = word();
        }
        return result;
    }

    View container(int depth) {
        std::vector<View> children;
        for (std::size_t i = below(5); i > 0; --i) {
            children.push_back(tree(depth - 1));
        }
        switch (below(5)) {
        case 0:
            return viewOf(HStack{.alignment = oneIn(2) ? VerticalAlignment::firstBaseline : VerticalAlignment::top},
                          std::move(children));
        case 1: return form(std::move(children));
        case 2: return section(oneIn(2) ? "" : word(), std::move(children));
        case 3: return viewOf(ScrollView{}, std::move(children)).withMaxHeight(80);
        default:
            return viewOf(VStack{.alignment = oneIn(2) ? HorizontalAlignment::center : HorizontalAlignment::leading},
                          std::move(children));
        }
    }

    View leaf() {
        switch (below(13)) {
        case 0: return view(Spacer{});
        case 1: return view(Text{.text = word(), .font = oneIn(2) ? Font::caption : Font::body});
        case 2: return label({.name = "lock"}, {.text = word()});
        case 3: return view(Button{.title = word(), .enabled = oneIn(2)});
        case 4: return view(Toggle{.isOn = oneIn(2)});
        case 5: return view(Checkbox{.title = word(), .isOn = oneIn(2)});
        case 6: return view(TextField{.text = word()});
        case 7: return view(TextEditor{.text = word()});
        case 8: return view(Stepper{.value = static_cast<double>(below(5))});
        case 9: return view(Picker{.options = {word(), word()}, .selection = below(2)});
        case 10: return progressView(word());
        case 11: return view(Symbol{.name = word()});
        default: return view(Divider{});
        }
    }

    std::mt19937 m_random;
};

/// What is on the screen, with the Tab order as positions in reading order instead of names of controls.
std::string screen(const RecordingViewHost& host) {
    std::string result = host.dump() + "tab:";
    for (const ControlId id : host.tabOrder) {
        const Rect frame = host.frame(id);
        result += " " + dump(host.control(id)) + "@" + std::to_string(frame.x) + "," + std::to_string(frame.y);
    }
    return result;
}

TEST(ReconcilerProperty, anyViewAfterAnyOtherLooksAsIfItWereTheFirst) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        RandomViews views(seed);
        RecordingViewHost host;
        Reconciler reconciler(host);
        for (int step = 0; step < 5; ++step) {
            const View shown = views.tree();
            const Size size = views.size();
            reconciler.show(shown);
            reconciler.layOut(size);

            RecordingViewHost freshHost;
            Reconciler fresh(freshHost);
            fresh.show(shown);
            fresh.layOut(size);

            ASSERT_EQ(screen(host), screen(freshHost)) << "seed " << seed << ", step " << step << "\n" << dump(shown);
            ASSERT_EQ(dumpFrames(reconciler.view()), dumpFrames(fresh.view())) << "seed " << seed << ", step " << step;
            ASSERT_THAT(host.faults, ::testing::IsEmpty()) << "seed " << seed << ", step " << step;
            host.log.clear();
            reconciler.show(shown);
            reconciler.layOut(size);
            ASSERT_THAT(host.log, ::testing::IsEmpty()) << "seed " << seed << ", step " << step;
        }
    }
}

TEST(ReconcilerProperty, noFrameIsLostOrNegativeInAnyWindow) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        RandomViews views(seed);
        RecordingViewHost host;
        Reconciler reconciler(host);
        reconciler.show(views.tree());
        reconciler.layOut({0, 0});
        EXPECT_THAT(dumpFrames(reconciler.view()),
                    ::testing::Not(::testing::ContainsRegex("x-[0-9]|[( ][0-9]+,[0-9]+ -")))
            << "seed " << seed;
        reconciler.layOut({3000, 3000});
        EXPECT_THAT(dumpFrames(reconciler.view()),
                    ::testing::Not(::testing::ContainsRegex("x-[0-9]|[( ][0-9]+,[0-9]+ -")))
            << "seed " << seed;
    }
}

} // namespace
} // namespace menubar
