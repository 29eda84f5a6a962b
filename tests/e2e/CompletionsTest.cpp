// The completions that the packages install, in the real shells, for the names of the table, of settings and of
// sessions.

#include "tests/e2e/ScratchHome.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using menubar::e2e::ChildProcess;
using menubar::e2e::ScratchHome;
using testing::HasSubstr;
using testing::Not;

namespace {

class CompletionsTest : public testing::Test {
protected:
    CompletionsTest() {
        home.environment["PATH"] = std::filesystem::path(MENUBARCTL_PROGRAM).parent_path().string() + ":/usr/bin:/bin";
        home.environment["OSTREL_CLI"] = DEMO_PROGRAM;
        home.environment["LC_ALL"] = ScratchHome::utf8Locale;
        home.writeStatus(R"json({"at":"2025-03-04T10:15:30Z","sessions":[{"dirName":"api","sessionId":"id-1"},
            {"dirName":"my web's $(touch hit)","sessionId":"id-2"},{"dirName":"\u001b[2J","shortId":"s3"},
            {"dirName":"twin","shortId":"s4"},{"dirName":"twin","shortId":"s5"}]})json");
    }

    /// What the shell prints of a script; skips the test
    /// where the shell is not installed.
    [[nodiscard]] std::string in(const std::string& shell, const std::string& script) const {
        const std::string program = ScratchHome::installed(shell);
        if (program.empty()) {
            return "";
        }
        auto options = home.menubarctl({"-c", "cd " + home.path() + "\n" + script});
        options.program = program;
        const auto result = ScratchHome::run(options);
        EXPECT_EQ(result.errors, "");
        EXPECT_FALSE(std::filesystem::exists(home / "hit"));
        return "> " + result.output;
    }

    /// The words that bash would put on the line.
    [[nodiscard]] std::string bash(const std::string& words) const {
        return in("bash", "source " COMPLETIONS_FOLDER "/ostrel-menubarctl.bash\nCOMP_WORDS=(" + words +
                              ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_ostrel_menubarctl\n"
                              "printf '<%s>' \"${COMPREPLY[@]}\"");
    }

    [[nodiscard]] std::string fish(const std::string& line) const {
        return in("fish", "source " COMPLETIONS_FOLDER "/ostrel-menubarctl.fish\ncomplete -C '" + line + "'");
    }

    ScratchHome home;
};

} // namespace

TEST_F(CompletionsTest, bashCompletesCommandsOptionsSettingsAndSessions) {
    const std::string commands = bash("ostrel-menubarctl se");
    if (commands.empty()) {
        GTEST_SKIP() << "bash is not installed";
    }
    EXPECT_EQ(commands, "> <sessions><settings>");
    EXPECT_EQ(bash("ostrel-menubarctl menu --w"), "> <--watch>");
    EXPECT_THAT(bash("ostrel-menubarctl settings get warn"), HasSubstr("<warn-context>"));
    EXPECT_EQ(bash("ostrel-menubarctl settings set "
                   "dry-run ''"),
              "> <on><off>");
    EXPECT_EQ(bash("ostrel-menubarctl focus ''"), R"~(> <s3><api><my\ web\'s\ \$\(touch\ hit\)><s4><s5>)~");
    EXPECT_EQ(bash(R"(ostrel-menubarctl focus 'my\ w')"), R"(> <my\ web\'s\ \$\(touch\ hit\)>)");
    EXPECT_THAT(bash("ostrel-menubarctl status "
                     "--status-file .loc"),
                HasSubstr("<.local>"));
    EXPECT_EQ(bash("ostrel-menubarctl nonsense ''"), "> <>");
}

TEST_F(CompletionsTest, fishCompletesCommandsOptionsSettingsAndSessions) {
    const std::string commands = fish("ostrel-menubarctl se");
    if (commands.empty()) {
        GTEST_SKIP() << "fish is not installed";
    }
    EXPECT_THAT(commands, HasSubstr("sessions\tevery session"));
    EXPECT_THAT(commands, HasSubstr("settings\t"));
    EXPECT_THAT(fish("ostrel-menubarctl menu --w"), HasSubstr("--watch\tgo on until interrupted"));
    EXPECT_THAT(fish("ostrel-menubarctl settings get warn"), HasSubstr("warn-context\t"));
    const std::string sessions = fish("ostrel-menubarctl focus ");
    EXPECT_THAT(sessions, HasSubstr("api\t[unknown] api"));
    EXPECT_THAT(sessions, HasSubstr("touch hit"));
    EXPECT_THAT(sessions, Not(HasSubstr("\x1b")));
}

TEST_F(CompletionsTest, zshCompletesCommandsOptionsSettingsAndSessions) {
    // The shell completes on a terminal only: it gets
    // one of its own, and a Tab.
    const std::string program = ScratchHome::installed("zsh");
    if (program.empty()) {
        GTEST_SKIP() << "zsh is not installed";
    }
    home.write(".zshrc", "fpath=(" COMPLETIONS_FOLDER " $fpath)\nautoload -U compinit && compinit -u -D\n"
                         "PS1='ready> '\nbindkey '^I' complete-word\nsetopt no_list_beep\n");
    home.environment["TERM"] = "dumb";
    auto options = home.menubarctl({"-i"});
    options.program = program;
    options.output = ChildProcess::Output::terminal;
    options.columns = 200;
    ChildProcess zsh(options);
    std::size_t seen = 0;
    const auto after = [&](const std::string& keys, const std::string& expected) {
        zsh.type(keys);
        const bool came =
            zsh.readUntil([&](const std::string& output) { return output.find(expected, seen) != std::string::npos; });
        EXPECT_TRUE(came) << expected << " in " << zsh.output().substr(seen);
        zsh.type("\x15"); // kill the line
        seen = zsh.output().size();
    };
    ASSERT_TRUE(zsh.readUntil([](const std::string& output) { return output.find("ready> ") != std::string::npos; }));
    seen = zsh.output().size();
    after("ostrel-menubarctl doc\t", "doctor");
    after("ostrel-menubarctl menu --wat\t", "--watch");
    after("ostrel-menubarctl settings get warn-con\t", "warn-context");
    after("ostrel-menubarctl focus my\t", R"(my\ web\'s\ \$\(touch\ hit\))");
    zsh.type("exit\n");
    EXPECT_TRUE(zsh.wait());
    EXPECT_FALSE(std::filesystem::exists(home / "hit"));
}
