#include "MenubarApp/Settings/SettingsWindowController.h"

#include "MenubarApp/Platform/Clock.h"
#include "MenubarApp/Platform/MainLoop.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Settings/ListControl.h"
#include "MenubarApp/Settings/SettingsModel.h"
#include "MenubarApp/View/ViewPresenter.h"
#include "MenubarCore/Text/Tilde.h"

#include <utility>

namespace menubar {

namespace {

constexpr std::string_view savedOnOpenSetting = "warn-context";
constexpr int savedOnOpenValue = 45;

/// What an answer to an alert means: the index of its button.
constexpr std::size_t restartButton = 0;

} // namespace

std::shared_ptr<SettingsWindowController>
SettingsWindowController::create(Environment environment, std::shared_ptr<SettingsModel> model, Ports ports) {
    // The constructor is private, which rules out make_shared.
    return std::shared_ptr<SettingsWindowController>(
        new SettingsWindowController(std::move(environment), std::move(model), std::move(ports)));
}

SettingsWindowController::SettingsWindowController(Environment environment, std::shared_ptr<SettingsModel> model,
                                                   Ports ports)
    : m_environment(std::move(environment)), m_model(std::move(model)), m_ports(std::move(ports)) {}

SettingsWindowController::~SettingsWindowController() {
    if (m_presenter) {
        m_presenter->close();
    }
}

// The window

void SettingsWindowController::show() {
    if (!m_window) {
        open();
    }
    m_window->bringForward();
}

void SettingsWindowController::open() {
    m_window = m_ports.windows.makeWindow(
        {.title = "ostrel Settings", .contentSize = contentSize, .minimumSize = minimumSize}, weak_from_this());
    m_listIds = std::make_shared<ListItemIds>();
    m_actions = makeActions();
    installSaveOnOpenHook();
    m_model->load();
    m_presenter = ViewPresenter::create(
        m_window->content(), [this] { return body(); }, // the presenter is closed before this object goes
        [&mainLoop = m_ports.mainLoop](std::function<void()> action) { mainLoop.post(std::move(action)); });
    m_modelChanges = m_model->onChange([presenter = std::weak_ptr(m_presenter)] {
        if (const auto strong = presenter.lock()) {
            strong->setNeedsRender();
        }
    });
}

View SettingsWindowController::body() const {
    const auto state = SettingsViewState::of(*m_model, m_ports.clock.timeZone());
    return SettingsView{.state = state, .actions = m_actions, .listIds = m_listIds}.body();
}

SettingsViewActions SettingsWindowController::makeActions() {
    /// Calls `act` with this object, if it is still there.
    const auto promoted = [weak = weak_from_this()](auto act) {
        return [weak, act](const auto&... arguments) {
            if (const auto self = weak.lock()) {
                act(*self, arguments...);
            }
        };
    };
    using Self = SettingsWindowController;
    return {
        .close = promoted([](Self& self) {
            if (self.m_window) {
                self.m_window->performClose();
            }
        }),
        .save = promoted([](Self& self) { self.save(AfterSave::offerRestart); }),
        .restart = promoted([](Self& self) { self.m_model->restartDaemon(); }),
        .tryAgain = promoted([](Self& self) { self.m_model->tryAgain(); }),
        .load = promoted([](Self& self) { self.m_model->load(); }),
        .keepEdits = promoted([](Self& self) { self.m_model->reloadKeepingEdits(); }),
        .row = {.edit = promoted([](Self& self, const auto& change) { self.m_model->edit(change); }),
                .endTyping = promoted([](Self& self, const std::string& name) { self.m_model->endTyping(name); }),
                .choosePath = promoted([](Self& self, const SettingSpec& spec) { self.choosePath(spec); }),
                .focus = promoted([](Self& self, const std::string& viewId) {
                    if (self.m_presenter) {
                        self.m_presenter->focus(viewId);
                    }
                })},
    };
}

void SettingsWindowController::update(const StatusFile* status, const DaemonState& state) {
    m_model->update(status, state);
    if (m_window) {
        m_model->checkFile();
    }
}

void SettingsWindowController::windowWillClose() {
    if (!m_window) {
        return;
    }
    m_presenter->commitEditing();
    m_presenter->close();
    m_modelChanges = {};
    // The window is still in the middle of closing, perhaps within a button of its own.
    m_ports.mainLoop.post([window = std::shared_ptr(std::move(m_window)), presenter = std::move(m_presenter)] {});
}

// Saving

void SettingsWindowController::save(AfterSave afterSave) {
    m_model->save([weak = weak_from_this(), log = m_ports.log, afterSave](const SaveOutcome& outcome) {
        log("save outcome: " + describe(outcome));
        if (const auto self = weak.lock()) {
            self->finishSave(outcome, afterSave);
        }
    });
}

void SettingsWindowController::finishSave(const SaveOutcome& outcome, AfterSave afterSave) {
    if (!outcome.isSaved()) {
        scrollToFirstError();
    } else if (afterSave == AfterSave::offerRestart) {
        offerRestart();
    }
}

void SettingsWindowController::scrollToFirstError() {
    const SettingsForm* form = m_model->form();
    if (!m_presenter || form == nullptr) {
        return;
    }
    for (const SettingField& field : form->fields()) {
        if (field.error) {
            (void)m_presenter->scrollToVisible(SettingRow::identity(field.name()));
            return;
        }
    }
}

void SettingsWindowController::offerRestart() {
    if (!m_window || !m_model->state().isDaemonInstalled) {
        return;
    }
    m_window->showAlert(
        {.message = "Settings saved",
         .information = "The daemon reads the config file when it starts. Restart it now to apply the change?",
         .buttons = {"Restart Daemon", "Later"}},
        [weak = weak_from_this()](std::size_t button) {
            if (const auto self = weak.lock(); self && button == restartButton) {
                self->m_model->restartDaemon();
            }
        });
}

// Choosing a file

void SettingsWindowController::choosePath(const SettingSpec& spec) {
    if (!m_window) {
        return;
    }
    const SettingsForm* form = m_model->form();
    const SettingField* field = form == nullptr ? nullptr : form->field(spec.name);
    const std::string* now = field == nullptr ? nullptr : field->value.text();
    std::string startPath = now == nullptr ? std::string() : expandTilde(*now, homeDirectory(m_environment));
    m_window->chooseFile({.title = spec.label(), .startPath = std::move(startPath)},
                         [model = std::weak_ptr(m_model), name = spec.name](const std::optional<std::string>& path) {
                             if (const auto strong = model.lock(); strong && path) {
                                 strong->edit([&](SettingsForm& edited) { edited.set(name, *path); });
                             }
                         });
}

// Saving on open

void SettingsWindowController::installSaveOnOpenHook() {
    if (variable(m_environment, saveOnOpenKey) != "1") {
        return;
    }
    if (variable(m_environment, configFileKey).empty()) {
        m_ports.log("OSTREL_MENUBAR_SAVE_ON_OPEN ignored: set OSTREL_CONFIG_FILE to a scratch file first");
        return;
    }
    m_model->setAfterLoad([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->saveOnOpen();
        }
    });
}

void SettingsWindowController::saveOnOpen() {
    m_ports.log("save-on-open: setting warn-context to " + std::to_string(savedOnOpenValue) + " and saving to " +
                m_model->state().configPath);
    m_model->edit([](SettingsForm& form) { form.set(savedOnOpenSetting, savedOnOpenValue); });
    save(AfterSave::nothing);
}

} // namespace menubar
