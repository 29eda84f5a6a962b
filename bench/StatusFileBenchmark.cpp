// Decoding a status file, beside what it stands on (the parser, walking the same bytes and copying every text) and a
// well-known untyped parser. Budgets: into records at most 1.2 times that walk and at least 10 times faster than the
// untyped parse; as a JSONValue at most 4 times that walk.

#include "MenubarCore/JSON/JSONValue.h"
#include "MenubarCore/Status/StatusDecoder.h"

#include "bench/SampleStatus.h"

#include <string>
#include <vector>

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

/// Visits every value, reads every scalar and copies every text.
void walk(const simdjson::dom::element& value, std::vector<std::string>& texts, double& sum) {
    switch (value.type()) {
    case simdjson::dom::element_type::OBJECT:
        for (const auto [key, member] : value.get_object()) {
            sum += static_cast<double>(key.size());
            walk(member, texts, sum);
        }
        return;
    case simdjson::dom::element_type::ARRAY:
        for (const auto element : value.get_array()) {
            walk(element, texts, sum);
        }
        return;
    case simdjson::dom::element_type::STRING: texts.emplace_back(value.get_string().value()); return;
    case simdjson::dom::element_type::BOOL: sum += value.get_bool().value() ? 1 : 0; return;
    case simdjson::dom::element_type::NULL_VALUE: return;
    default: sum += value.get_double().value(); return;
    }
}

void walkWithSimdjson(benchmark::State& state) {
    const std::string document = bench::sampleStatus(static_cast<int>(state.range(0)));
    simdjson::dom::parser parser;
    for (auto _ : state) {
        const simdjson::padded_string padded(document);
        std::vector<std::string> texts;
        double sum = 0;
        walk(parser.parse(padded), texts, sum);
        benchmark::DoNotOptimize(texts.data());
        benchmark::DoNotOptimize(sum);
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
