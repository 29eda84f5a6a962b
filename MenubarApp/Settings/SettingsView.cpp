#include "MenubarApp/Settings/SettingsView.h"

#include "MenubarCore/Menu/Formatting.h"
#include "MenubarCore/Text/Join.h"

#include <map>
#include <utility>

namespace menubar {

namespace {

constexpr double bannerSpacing = 4.0;
constexpr double footerSpacing = 4.0;
constexpr double mostErrorsHeight = 96.0;
constexpr Insets screenPadding = Insets::all(20.0);
constexpr Insets footerPadding = Insets::symmetric(12.0, 20.0);

View selectableCaption(std::string text) {
    return view(
        Text{.text = std::move(text), .font = Font::caption, .color = TextColor::secondary, .selectable = true});
}

View headline(std::string symbol, std::string symbolDescription, TextColor color, std::string text) {
    return label({.name = std::move(symbol),
                  .description = std::move(symbolDescription),
                  .font = Font::headline,
                  .color = color},
                 {.text = std::move(text), .font = Font::headline, .selectable = true});
}

View errorBanner(const ConfigNotice::Error& error) {
    std::vector<View> lines;
    lines.push_back(headline("xmark.octagon", "Error", TextColor::red,
                             "The daemon ignored the config file and is running on flags and defaults"));
    lines.push_back(selectableCaption(error.message));
    if (error.path) {
        lines.push_back(selectableCaption(*error.path));
    }
    return viewOf(VStack{.spacing = bannerSpacing}, std::move(lines)).withId("config error");
}

View unknownKeysBanner(const std::vector<std::string>& keys) {
    return view(
               VStack{.spacing = bannerSpacing},
               headline("exclamationmark.triangle", "Warning", TextColor::orange,
                        "The config file has keys the daemon does not know: " + joined(keys, ", ") +
                            ". They are kept as they are, and the daemon will reject the file until they are removed."))
        .withId("unknown keys");
}

View loading(const std::vector<std::string>& waitingFor) {
    std::vector<View> lines;
    lines.push_back(view(Spacer{}));
    lines.push_back(progressView("Loading settings from the daemon"));
    for (const std::string& command : waitingFor) {
        lines.push_back(selectableCaption("Waiting for: " + command));
    }
    lines.push_back(view(Spacer{}));
    return viewOf(VStack{.alignment = HorizontalAlignment::center}, std::move(lines))
        .withId("loading")
        .fillingWidth()
        .withPadding(screenPadding);
}

/// What the window is made of.
struct Screen : SettingsView {
    View whole() const { return view(VStack{.spacing = 0.0}, content(), view(Divider{}), footer()); }

    View content() const {
        if (const auto* reason = std::get_if<SettingsLoadFailure>(&state.phase)) {
            return failure(*reason);
        }
        if (std::holds_alternative<SettingsModel::Loaded>(state.phase) && state.form != nullptr) {
            return settings();
        }
        return loading(state.waitingFor);
    }

    View failure(const SettingsLoadFailure& reason) const {
        return view(ScrollView{.spacing = 12.0}, view(Spacer{}),
                    view(VStack{.spacing = 12.0, .alignment = HorizontalAlignment::center},
                         headline("exclamationmark.triangle", "Error", TextColor::orange, reason.title),
                         view(Text{.text = reason.detail, .selectable = true}),
                         view(Button{.title = "Try again", .onPress = actions.tryAgain}))
                        .fillingWidth(),
                    view(Spacer{}))
            .withId("failed")
            .withPadding(screenPadding);
    }

    View settings() const {
        std::vector<View> sections;
        if (auto rows = banners(); !rows.empty()) {
            sections.push_back(section({}, std::move(rows)).withId("banners"));
        }
        std::map<std::string, std::size_t> seen; // names that the schema lists twice
        for (const SettingsGroup& group : state.form->schema().groups) {
            std::vector<View> rows;
            for (const SettingField* field : state.form->fields(group)) {
                rows.push_back(SettingRow{.field = *field,
                                          .liveValue = state.liveValue ? state.liveValue(*field) : std::nullopt,
                                          .actions = actions.row,
                                          .listIds = listIds,
                                          .ordinal = seen[field->name()]++}
                                   .body());
            }
            sections.push_back(section(group.title, std::move(rows)).withId("group " + group.id));
        }
        return form(std::move(sections)).withId("form");
    }

    // Banners

    std::vector<View> banners() const {
        std::vector<View> rows;
        if (state.fileChangedOnDisk) {
            rows.push_back(changedFileBanner());
        }
        if (state.configErrorNotice) {
            rows.push_back(errorBanner(*state.configErrorNotice));
        }
        if (state.restartNeeded) {
            rows.push_back(restartBanner());
        }
        if (const auto keys = state.form->unknownKeys(); !keys.empty()) {
            rows.push_back(unknownKeysBanner(keys));
        }
        return rows;
    }

    View restartBanner() const {
        return view(HStack{},
                    headline(
                        "arrow.clockwise", "Restart needed", TextColor::orange,
                        "The config file changed after the daemon read it. Restart the daemon to apply the change."),
                    view(Spacer{}),
                    view(Button{.title = "Restart daemon", .enabled = !isRestarting(), .onPress = actions.restart}))
            .withId("restart needed");
    }

    View changedFileBanner() const {
        const bool isEdited = state.form->isEdited();
        View choice =
            view(HStack{},
                 caption(isEdited ? "Reload drops your edits. Keep my edits loads the file and makes them again."
                                  : "Reload shows what it holds now.")
                     .fillingWidth(),
                 view(Button{.title = "Reload", .onPress = actions.load}));
        if (isEdited) {
            choice.children.push_back(view(Button{.title = "Keep my edits", .onPress = actions.keepEdits}));
        }
        return view(VStack{.spacing = bannerSpacing},
                    headline("arrow.triangle.2.circlepath", "Changed", TextColor::orange,
                             "Another program has changed the config file since it was loaded."),
                    std::move(choice))
            .withId("file changed");
    }

    // Footer

    bool isRestarting() const { return std::holds_alternative<SettingsModel::Restarting>(state.saveState); }

    View footer() const {
        std::vector<View> lines;
        const std::string status = statusLine();
        std::string tooltip; // what two lines may not hold
        if (!state.waitingFor.empty()) {
            tooltip = "Waiting for: " + joined(state.waitingFor, "\n");
        } else if (std::holds_alternative<SettingsModel::SaveFailed>(state.saveState)) {
            tooltip = status;
        }
        lines.push_back(view(Text{.text = status,
                                  .font = Font::caption,
                                  .color = TextColor::secondary,
                                  .selectable = true,
                                  .lineLimit = 2})
                            .withId("status")
                            .withTooltip(tooltip));
        const bool isLoading = std::holds_alternative<SettingsModel::Loading>(state.phase);
        const bool isLoaded = std::holds_alternative<SettingsModel::Loaded>(state.phase);
        if (isLoaded || (!isLoading && state.configFileExists)) { // else nobody knows yet
            lines.push_back(
                selectableCaption(state.configFileExists
                                      ? "Editing " + state.configPath
                                      : "No config file yet; defaults shown. It will be written to " + state.configPath)
                    .withId("file"));
        }
        if (!state.generalErrors.empty()) {
            std::vector<View> errors;
            errors.reserve(state.generalErrors.size());
            for (const std::string& error : state.generalErrors) {
                errors.push_back(
                    view(Text{.text = error, .font = Font::caption, .color = TextColor::red, .selectable = true}));
            }
            // However many there are, the buttons stay within the window.
            lines.push_back(
                viewOf(ScrollView{.spacing = 2.0}, std::move(errors)).withId("errors").withMaxHeight(mostErrorsHeight));
        }
        lines.push_back(buttons());
        return viewOf(VStack{.spacing = footerSpacing}, std::move(lines))
            .withId("footer")
            .fillingWidth()
            .withPadding(footerPadding);
    }

    View buttons() const {
        const bool isBusy = isRestarting() || std::holds_alternative<SettingsModel::Saving>(state.saveState);
        return view(HStack{}, view(Spacer{}),
                    view(Button{.title = "Cancel", .shortcut = KeyShortcut::cancelAction, .onPress = actions.close}),
                    view(Button{.title = "Restart daemon",
                                .enabled = state.isDaemonInstalled && !isBusy,
                                .onPress = actions.restart})
                        .withTooltip(state.isDaemonInstalled
                                         ? "Run launchctl kickstart on the daemon so it reads the config file again"
                                         : "Daemon not installed (run: ostrel install)"),
                    view(Button{.title = "Save",
                                .shortcut = KeyShortcut::commandS,
                                .enabled = state.canSave,
                                .onPress = actions.save})
                        .withTooltip("Validate through the daemon and write the config file (Cmd-S)"))
            .withId("buttons")
            .withPadding({.top = 8.0, .leading = 0.0, .bottom = 0.0, .trailing = 0.0});
    }
};

} // namespace

SettingsViewState SettingsViewState::of(const SettingsModel& model, TimeZone timeZone) {
    SettingsViewState result{model.state()};
    result.form = model.form();
    result.canSave = model.canSave();
    result.waitingFor = model.waitingFor();
    result.liveValue = [&model](const SettingField& field) { return model.liveValue(field); };
    result.timeZone = std::move(timeZone);
    return result;
}

View SettingsView::body() const {
    return Screen{*this}.whole();
}

std::string SettingsView::statusLine() const {
    struct Line {
        const SettingsViewState& state;

        std::string operator()(const SettingsModel::Saved& saved) const {
            return "Saved at " + Formatting::clock(saved.at, state.timeZone) + ". Restart the daemon to apply.";
        }

        std::string operator()(const SettingsModel::SaveFailed& failed) const { return failed.message; }

        std::string operator()(const SettingsModel::Idle&) const {
            if (state.restartNeeded) {
                return "Restart the daemon to apply the saved settings.";
            }
            return state.isDaemonInstalled
                       ? "Save validates the file through the daemon, then offers to restart it."
                       : "Daemon not installed (run: ostrel install); a daemon started by hand reads the file on its "
                         "next start.";
        }

        std::string operator()(const SettingsModel::Saving&) const { return "Validating with the daemon..."; }

        std::string operator()(const SettingsModel::Restarting&) const { return "Restarting the daemon..."; }
    };

    return std::visit(Line{state}, state.saveState);
}

} // namespace menubar
