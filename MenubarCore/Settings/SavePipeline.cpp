#include "MenubarCore/Settings/SavePipeline.h"

#include "MenubarCore/Settings/DebugText.h"

namespace menubar {

namespace {

/// The path with its last component deleted.
std::string directory(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

std::string unreadableOutput(ValidateOutput::ParseError error, const CommandOutcome& outcome) {
    const std::string detail =
        outcome.stderr_.empty() ? "exit status " + std::to_string(outcome.status) : outcome.stderr_;
    return std::string(describe(error)) + " (" + detail + ")";
}

SaveOutcome rejected(const SettingsForm& form, const ValidateOutput::Invalid& invalid) {
    ValidateOutput::Options names;
    for (const SettingField& field : form.fields()) {
        names.insert(field.name());
    }
    auto messages = ValidateOutput::mapped(invalid.issues, names);
    return SaveOutcome::Rejected{.fields = std::move(messages.fields), .general = std::move(messages.general)};
}

/// Asks the daemon about the candidate, and puts it in place when it is good.
SaveOutcome validateAndPlace(const SettingsForm& form, const std::string& candidate, const std::string& path,
                             const SaveEnvironment& environment) {
    const CommandOutcome outcome = environment.runValidate(candidate);
    // The exit status does not count: the daemon's word in its output does.
    const auto output = ValidateOutput::parse(outcome.stdout_);
    if (!output) {
        environment.remove(candidate);
        return SaveOutcome::CommandFailed{unreadableOutput(output.error(), outcome)};
    }
    if (const auto* invalid = output->invalid()) {
        environment.remove(candidate);
        return rejected(form, *invalid);
    }
    if (auto renamed = environment.rename(candidate, path); !renamed) {
        environment.remove(candidate);
        return SaveOutcome::WriteFailed{std::move(renamed.error().message)};
    }
    return SaveOutcome::Saved{};
}

struct Describe {
    std::string operator()(const SaveOutcome::InvalidLocally& outcome) const {
        return "invalidLocally(" + debugText(outcome.errors) + ")";
    }

    std::string operator()(const SaveOutcome::Rejected& outcome) const {
        return "rejected(fields: " + debugText(outcome.fields) + ", general: " + debugText(outcome.general) + ")";
    }

    std::string operator()(const SaveOutcome::CommandFailed& outcome) const {
        return "commandFailed(" + debugText(outcome.message) + ")";
    }

    std::string operator()(const SaveOutcome::WriteFailed& outcome) const {
        return "writeFailed(" + debugText(outcome.message) + ")";
    }

    std::string operator()(const SaveOutcome::Saved&) const { return "saved"; }
};

} // namespace

SaveError SaveError::rename(std::string_view reason) {
    return {"could not move the new file into place: " + std::string(reason)};
}

std::string describe(const SaveOutcome& outcome) {
    return std::visit(Describe{}, outcome.storage());
}

std::string SavePipeline::candidatePath(std::string_view path, std::int32_t pid) {
    return std::string(path) + "." + std::to_string(pid) + ".tmp";
}

SaveOutcome SavePipeline::save(const SettingsForm& form, const std::string& path, const SaveEnvironment& environment,
                               std::int32_t pid) {
    if (auto errors = form.errors(); !errors.empty()) {
        return SaveOutcome::InvalidLocally{std::move(errors)};
    }
    const auto bytes = form.serializedData();
    if (!bytes) {
        return SaveOutcome::WriteFailed{std::string(describe(bytes.error()))};
    }
    if (auto created = environment.createDirectory(directory(path)); !created) {
        return SaveOutcome::WriteFailed{std::move(created.error().message)};
    }
    const std::string candidate = candidatePath(path, pid);
    if (auto written = environment.writeFile(candidate, *bytes); !written) {
        return SaveOutcome::WriteFailed{std::move(written.error().message)};
    }
    return validateAndPlace(form, candidate, path, environment);
}

} // namespace menubar
