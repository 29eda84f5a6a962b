// One run of a child against the barest way to do it.
// Budget: a run takes at most 1.3 times a bare posix_spawn and waitpid of the same program.

#include "MenubarApp/Commands/CommandRunner.h"

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" char** environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace {

constexpr const char* program = "/bin/true";

void bareSpawn(benchmark::State& state) {
    char name[] = "/bin/true"; // NOLINT(modernize-avoid-c-arrays): what posix_spawn takes
    char* arguments[] = {name, nullptr};
    for (auto _ : state) {
        pid_t child = -1;
        int status = -1;
        if (::posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
            ::waitpid(child, &status, 0) != child || status != 0) {
            state.SkipWithError("the program did not run");
            break;
        }
    }
}

void runSync(benchmark::State& state) {
    for (auto _ : state) {
        const auto result = menubar::CommandRunner::runSync(program, {}, {}, [](std::string_view) {});
        if (result.status != 0) {
            state.SkipWithError("the program did not run");
            break;
        }
    }
}

// Real time: the work is the child's.
BENCHMARK(bareSpawn)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(runSync)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
