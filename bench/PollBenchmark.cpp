// One poll as the app does it: read the file, decode it, decide the presentation, make the finished menu value.
// Budget: under 100 microseconds with 6 sessions; time and memory linear in the number of sessions.

#include "MenubarApp/Platform/PosixFileManager.h"
#include "MenubarApp/Platform/SystemClock.h"
#include "MenubarApp/StatusMenu/StatusPoll.h"
#include "MenubarCore/Text/Timestamp.h"

#include "bench/Allocations.h"
#include "bench/SampleStatus.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

using namespace menubar;

namespace {

/// A status file in a scratch place for one benchmark.
class ScratchFile {
public:
    explicit ScratchFile(const std::string& bytes) {
        const int fd = ::mkstemp(m_path.data());
        if (fd >= 0) {
            ::close(fd);
        }
        std::ofstream(m_path, std::ios::binary) << bytes;
    }

    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    ~ScratchFile() { std::remove(m_path.c_str()); }

    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    std::string m_path = "/tmp/menubar-bench-XXXXXX";
};

void poll(benchmark::State& state) {
    const ScratchFile file(bench::sampleStatus(static_cast<int>(state.range(0))));
    const StatusPaths paths = StatusPaths::under("/home/ann", file.path());
    const PosixFileManager files;
    const Date now = parseTimestamp("2025-03-04T14:03:00Z").value();
    const TimeZone zone = SystemClock().timeZone();
    const HiddenItemTracker tracker;
    const bench::Allocations before = bench::allocationsSoFar();
    for (auto _ : state) {
        const StatusPoll result = StatusPoll::read(paths.statusFile, {}, false, files, now, zone);
        const StatusMenu menu = result.menu(paths, tracker, files, now, zone);
        if (!result.state.isRunning() || menu.sessions.size() != static_cast<std::size_t>(state.range(0))) {
            state.SkipWithError("the sample was not read as it should be");
            return;
        }
        benchmark::DoNotOptimize(menu.items.data());
    }
    const bench::Allocations after = bench::allocationsSoFar();
    const auto polls = static_cast<double>(state.iterations());
    state.counters["allocations"] = static_cast<double>(after.count - before.count) / polls;
    state.counters["bytes"] = static_cast<double>(after.bytes - before.bytes) / polls;
}

BENCHMARK(poll)->Arg(6)->Arg(200)->Arg(10000)->Unit(benchmark::kMicrosecond);

} // namespace
