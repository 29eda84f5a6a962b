// The settings without their window: load a schema and a config file, validate every field, edit, write.
// Budget: under 1 millisecond with 40 fields; time linear in the number of fields, up to 5,000.

#include "MenubarCore/Settings/SettingsForm.h"

#include "bench/Allocations.h"

#include <array>
#include <string>

#include <benchmark/benchmark.h>

using namespace menubar;

namespace {

constexpr std::array<const char*, 9> controls{"toggle", "number", "percent", "duration", "text",
                                              "list",   "enum",   "path",    "colour"};
constexpr std::array<const char*, 9> values{
    "true",         "5",         "70", R"("30s")", R"("some text")", R"(["one","two","three"])", R"("second")",
    R"("/a/path")", R"({"r":1})"};

std::string name(int number) {
    return "setting-" + std::to_string(number);
}

/// Every kind of control in turn, each with its rules.
std::string schemaDocument(int count) {
    std::string properties;
    std::string settings;
    for (int i = 0; i < count; ++i) {
        const std::string separator = i == 0 ? "" : ",";
        properties += separator + "\"" + name(i) +
                      R"(":{"minimum":0,"maximum":100,"pattern":"^[0-9]+(ms|s|m|h)$","enum":["first","second"],)" +
                      R"("items":{"pattern":"^[a-z]+$"}})";
        settings += separator + R"({"name":")" + name(i) + R"(","group":"g","control":")" +
                    controls[static_cast<std::size_t>(i) % controls.size()] + R"(","help":"What this setting does."})";
    }
    return R"({"x-settings-version":1,"properties":{)" + properties + R"(},"x-groups":[{"id":"g","settings":[)" +
           settings + "]}]}";
}

std::string configDocument(int count) {
    std::string config = R"({"unknown":[1,2,3])";
    for (int i = 0; i < count; ++i) {
        config += ",\"" + name(i) + "\":" + values[static_cast<std::size_t>(i) % values.size()];
    }
    return config + "}";
}

void loadAndWriteSettings(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const std::string schema = schemaDocument(count);
    const std::string config = configDocument(count);
    const bench::Allocations before = bench::allocationsSoFar();
    for (auto _ : state) {
        SettingsForm form(SettingsSchema::decode(schema).value(), SettingsForm::parseFile(config).value());
        form.set(name(count / 2), "30s");
        form.reset(name(0));
        if (form.fields().size() != static_cast<std::size_t>(count)) {
            state.SkipWithError("a field is missing");
        }
        auto bytes = form.serializedData();
        benchmark::DoNotOptimize(bytes);
    }
    const std::size_t allocations = bench::allocationsSoFar().count - before.count;
    state.counters["allocations"] = static_cast<double>(allocations) / static_cast<double>(state.iterations());
    state.SetComplexityN(count);
}

/// What each keystroke in a field costs.
void editOneSetting(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    SettingsForm form(SettingsSchema::decode(schemaDocument(count)).value(), {});
    for (auto _ : state) {
        form.set(name(3), "30s");
        benchmark::DoNotOptimize(form.field(name(3)));
    }
}

BENCHMARK(loadAndWriteSettings)->Arg(40)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond)->Complexity(benchmark::oN);
BENCHMARK(editOneSetting)->Arg(40)->Arg(5000)->Unit(benchmark::kMicrosecond);

} // namespace
