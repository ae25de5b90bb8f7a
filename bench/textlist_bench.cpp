// textlist_bench.cpp - loading and saving a catalogue-sized text list
// through the emulated host's text-mode files.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "emulator/host.h"
#include "emulator/platform/filesystem.h"
#include "util/textlist.h"

namespace {

// A drive C: over a temporary folder holding C:\CAT.TXT of `lines` records.
class Drive {
 public:
  explicit Drive(int lines) {
    char dir[] = "/tmp/vor_bench_XXXXXX";
    root_ = mkdtemp(dir);
    std::string err;
    vorhost::Files().Mount('C', root_, &err);
    std::ofstream out(root_ + "/CAT.TXT", std::ios::binary);
    for (int i = 0; i < lines; i++)
      out << "\"E-" << i << "\" \"ELINE" << i << "\" \"E-POWER\" \"1\" \"2.0mm2x3\" "
          << "\"(2.0 3)\" \"A,5,-2,[\\\"E\\\",STANDARD,S=2,R=0,X=-1,Y=-1],-3\"\r\n";
    out << '\x1A';
  }
  ~Drive() {
    vorhost::Files().Reset();
    std::filesystem::remove_all(root_);
  }

 private:
  std::string root_;
};

void BM_LoadAndFree(benchmark::State& state) {
  Drive drive(static_cast<int>(state.range(0)));
  vorhost::Host host;
  TextList list{};
  for (auto _ : state) {
    textlist_load("C:\\CAT.TXT", &list, 1, 255, 0, 0, 0, 0, 0, 0);
    benchmark::DoNotOptimize(list.count);
    textlist_free(&list);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_LoadAndFree)->Arg(50)->Arg(500);

void BM_Save(benchmark::State& state) {
  Drive drive(static_cast<int>(state.range(0)));
  vorhost::Host host;
  TextList list{};
  textlist_load("C:\\CAT.TXT", &list, 1, 255, 0, 0, 0, 0, 0, 0);
  list.modified = 1;
  for (auto _ : state) textlist_save(&list);
  textlist_free(&list);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Save)->Arg(50)->Arg(500);

}  // namespace
