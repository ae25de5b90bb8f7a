// wcmatch_bench.cpp - filtering a catalogue of 500 part codes with wildcards.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "emulator/core/wcmatch.h"

namespace {

// Codes shaped like "E-3.5-22": a series letter, a size, a length.
const std::vector<std::string>& Catalogue() {
  static const std::vector<std::string> codes = [] {
    std::vector<std::string> out;
    out.reserve(500);
    for (int i = 0; i < 500; ++i) {
      std::string code(1, static_cast<char>('A' + i % 6));
      code += "-" + std::to_string(1 + i % 9) + "." + std::to_string(i % 10);
      code += "-" + std::to_string(10 + i / 6);
      out.push_back(code);
    }
    return out;
  }();
  return codes;
}

void BM_WcMatchCatalogue(benchmark::State& state, const char* pattern) {
  const std::vector<std::string>& codes = Catalogue();
  for (auto _ : state) {
    int hits = 0;
    for (const std::string& code : codes) hits += vorhost::WcMatch(code, pattern) ? 1 : 0;
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(codes.size()));
}

BENCHMARK_CAPTURE(BM_WcMatchCatalogue, exact, "E-3.5-22");
BENCHMARK_CAPTURE(BM_WcMatchCatalogue, classes, "E-#.#-##");
BENCHMARK_CAPTURE(BM_WcMatchCatalogue, stars, "*3*5*2*");
BENCHMARK_CAPTURE(BM_WcMatchCatalogue, brackets, "[A-C]-[~1-4].#-*");
BENCHMARK_CAPTURE(BM_WcMatchCatalogue, alternatives, "~E*,*-1#,*.5-*");

}  // namespace
