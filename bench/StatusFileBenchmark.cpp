// Decoding a status file, beside what it stands on (simdjson, indexing and walking the same bytes) and a well-known
// untyped parser. Budgets: at most 4 times simdjson's walk, at least 10 times faster than the untyped parse.

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Status/StatusDecoder.h"

#include "bench/SampleStatus.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

using namespace menubar;

namespace {

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(6)->Arg(200)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

void report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void decodeStatusFile(benchmark::State& state) {
    const std::string document = bench::sampleStatus(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto file = StatusDecoder::decode(document);
        if (!file) {
            state.SkipWithError(describe(file.error()).c_str());
            return;
        }
        benchmark::DoNotOptimize(file);
    }
    report(state, document.size());
}

void decodeUntyped(benchmark::State& state) {
    const std::string document = bench::sampleStatus(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(JSONValue::decode(document));
    }
    report(state, document.size());
}

/// Visits every value and reads every scalar.
void walk(simdjson::ondemand::value value, std::size_t& seen) {
    switch (value.type().value()) {
    case simdjson::ondemand::json_type::object:
        for (auto field : value.get_object()) {
            seen += field.unescaped_key().value().size();
            walk(field.value(), seen);
        }
        return;
    case simdjson::ondemand::json_type::array:
        for (auto element : value.get_array()) {
            walk(element.value(), seen);
        }
        return;
    case simdjson::ondemand::json_type::string: seen += value.get_string().value().size(); return;
    case simdjson::ondemand::json_type::number: seen += static_cast<std::size_t>(value.get_double().value()); return;
    case simdjson::ondemand::json_type::boolean: seen += value.get_bool().value() ? 1 : 0; return;
    case simdjson::ondemand::json_type::null: seen += value.is_null() ? 1 : 0; return;
    }
}

void walkWithSimdjson(benchmark::State& state) {
    const std::string document = bench::sampleStatus(static_cast<int>(state.range(0)));
    simdjson::ondemand::parser parser;
    for (auto _ : state) {
        const simdjson::padded_string padded(document);
        auto parsed = parser.iterate(padded);
        std::size_t seen = 0;
        for (auto field : parsed.get_object()) {
            walk(field.value(), seen);
        }
        benchmark::DoNotOptimize(seen);
    }
    report(state, document.size());
}

void parseWithNlohmann(benchmark::State& state) {
    const std::string document = bench::sampleStatus(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(nlohmann::json::parse(document));
    }
    report(state, document.size());
}

BENCHMARK(decodeStatusFile)->Apply(sizes);
BENCHMARK(decodeUntyped)->Apply(sizes);
BENCHMARK(walkWithSimdjson)->Apply(sizes);
BENCHMARK(parseWithNlohmann)->Apply(sizes);

} // namespace
