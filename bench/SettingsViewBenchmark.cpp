#include "MenubarApp/Settings/ListControl.h"
#include "MenubarApp/Settings/SettingsView.h"
#include "MenubarApp/View/Reconciler.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

using namespace menubar;

/// A toolkit that costs nothing: what is left is our own work.
class NoHost final : public ViewHost {
public:
    void setEvents(std::weak_ptr<ViewEvents> /*events*/) override {}

    void create(ControlId /*id*/, ControlId /*parent*/, const View& /*control*/) override {}

    void update(ControlId /*id*/, const View& /*now*/, const View& /*before*/) override {}

    void place(ControlId /*id*/, const Rect& /*frame*/) override {}

    void setContentSize(ControlId /*scrollView*/, Size /*size*/) override {}

    void arrange(ControlId /*parent*/, std::span<const ControlId> /*order*/) override {}

    void setTabOrder(std::span<const ControlId> /*order*/) override {}

    void destroy(ControlId /*id*/) override {}

    void commitEditing() override {}

    void focus(ControlId /*id*/) override {}

    void scrollBy(ControlId /*scrollView*/, double /*length*/) override {}

    void scrollToVisible(ControlId /*scrollView*/, const Rect& /*area*/) override {}

    [[nodiscard]] Measured measure(ControlId /*id*/, const View& control, double width) override {
        const auto* text = std::get_if<Text>(&control.content);
        const double natural = text == nullptr ? 60.0 : 7.0 * static_cast<double>(text->text.size());
        return {.width = natural, .height = natural > width ? 32.0 : 16.0, .baseline = 12.0};
    }
};

SettingsForm formOf(std::int64_t count) {
    SettingsGroup group{.id = "g", .title = "Group", .settings = {}};
    const SettingControl::Kind kinds[] = {SettingControl::Kind::toggle, SettingControl::Kind::number,
                                          SettingControl::Kind::duration, SettingControl::Kind::text};
    for (std::int64_t i = 0; i < count; ++i) {
        group.settings.push_back(
            {.name = "setting-" + std::to_string(i),
             .control = kinds[i % 4],
             .help = "What it is for, in a sentence that is long enough to wrap in a narrow window."});
    }
    return {{.version = 1, .groups = {std::move(group)}}, {}};
}

/// One window over a form of so many settings.
struct Window {
    explicit Window(std::int64_t count) : form(formOf(count)) {
        state.phase = SettingsModel::Loaded{};
        state.form = &form;
    }

    void show() {
        reconciler.show(SettingsView{.state = state, .actions = actions, .listIds = ids}.body());
        reconciler.layOut({680.0, 760.0});
    }

    NoHost host;
    Reconciler reconciler{host};
    SettingsForm form;
    SettingsViewState state;
    SettingsViewActions actions;
    std::shared_ptr<ListItemIds> ids = std::make_shared<ListItemIds>();
};

void openSettingsWindow(benchmark::State& state) {
    for (auto _ : state) {
        Window window(state.range(0));
        window.show();
    }
    state.SetComplexityN(state.range(0));
}

/// A keystroke: the model changes, the whole view is written again, one control differs.
void typeIntoSettingsWindow(benchmark::State& state) {
    Window window(state.range(0));
    window.show();
    bool isOn = false;
    for (auto _ : state) {
        isOn = !isOn;
        window.form.set("setting-0", isOn);
        window.show();
    }
    state.SetComplexityN(state.range(0));
}

void resizeSettingsWindow(benchmark::State& state) {
    Window window(state.range(0));
    window.show();
    double width = 520.0;
    for (auto _ : state) {
        width = width > 1600.0 ? 520.0 : width + 7.0;
        window.reconciler.layOut({width, 760.0});
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(openSettingsWindow)->Arg(40)->Arg(300)->Arg(3000)->Complexity()->Unit(benchmark::kMicrosecond);
BENCHMARK(typeIntoSettingsWindow)->Arg(40)->Arg(300)->Arg(3000)->Complexity()->Unit(benchmark::kMicrosecond);
BENCHMARK(resizeSettingsWindow)->Arg(40)->Arg(300)->Arg(3000)->Complexity()->Unit(benchmark::kMicrosecond);
