#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace menubar {

/// How `config validate` ended. Problems in starting it are expressed in here too. (The names without an underscore are
/// macros of the C library.)
struct CommandOutcome {
    std::int32_t status = 0;
    std::string stdout_;
    std::string stderr_;

    [[nodiscard]] bool succeeded() const { return status == 0; }

    bool operator==(const CommandOutcome&) const = default;
};

/// One problem that the daemon found in a config file.
struct ValidationIssue {
    std::vector<std::string> options; ///< the config keys concerned; may be empty
    std::string message;              ///< for people

    bool operator==(const ValidationIssue&) const = default;
};

/// What `config validate PATH --json` prints on standard output:
///
///     {"ok": true}
///     {"ok": false, "errors": [{"message": "...", "options": ["key", ...]}, ...]}
///
/// Other keys are ignored, and so is every part of "errors" that does not have this form.
class ValidateOutput {
public:
    struct Invalid {
        std::vector<ValidationIssue> issues; ///< may be empty: refused without a reason
        bool operator==(const Invalid&) const = default;
    };

    struct Ok {
        bool operator==(const Ok&) const = default;
    };

    using Storage = std::variant<Invalid, Ok>;

    enum class ParseError {
        notJSON,
        unexpectedShape, ///< no object, or none with a boolean "ok"
    };

    /// Messages for people: those about a key, by key, and the rest.
    struct Messages {
        std::map<std::string, std::string> fields;
        std::vector<std::string> general;
        bool operator==(const Messages&) const = default;
    };

    using Options = std::set<std::string, std::less<>>;

    ValidateOutput(Invalid invalid) : m_storage(std::move(invalid)) {}

    ValidateOutput(Ok ok) : m_storage(ok) {}

    [[nodiscard]] static std::expected<ValidateOutput, ParseError> parse(std::string_view standardOutput);

    /// Gives each issue's message to the known options that it names; of several messages for an option the first
    /// holds. An issue that names no known option is general.
    [[nodiscard]] static Messages mapped(const std::vector<ValidationIssue>& issues, const Options& knownOptions);

    /// Null when the file is acceptable.
    [[nodiscard]] const Invalid* invalid() const& { return std::get_if<Invalid>(&m_storage); }

    const Invalid* invalid() && = delete;

    [[nodiscard]] const Storage& storage() const& { return m_storage; }

    bool operator==(const ValidateOutput&) const = default;

private:
    Storage m_storage;
};

/// A lower-case sentence for people.
[[nodiscard]] std::string_view describe(ValidateOutput::ParseError error);

} // namespace menubar
