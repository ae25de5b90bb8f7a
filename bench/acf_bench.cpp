// acf_bench.cpp - VOR_ACF drawing panel diagrams from 10, 100 and 400
// schedules of 40 circuits (about 4,100, 41,000 and 164,000 entities), the
// drawing saved as DXF and as SVG, and its extents measured. Items are the
// drawing's entities, so that items per second shows how the cost grows
// with the drawing.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

#include "emulator/drawing/geometry.h"
#include "emulator/io/dxf.h"
#include "emulator/io/svg.h"
#include "support/session.h"

namespace vorbench {
namespace {

void BM_AcfDraw(benchmark::State& state) {
  DataSetShape shape;
  shape.files = static_cast<int>(state.range(0));
  ReleaseDrawn();
  Session session(shape);
  size_t entities = 0;
  if (!session.ok()) {
    state.SkipWithError(session.error().c_str());
    return;
  }
  for (auto _ : state) {
    state.PauseTiming();
    session.Restart();
    state.ResumeTiming();
    if (!session.DrawAll()) {
      state.SkipWithError(session.error().c_str());
      break;
    }
    state.PauseTiming();
    entities = session.host().document().drawing().MainEntities().size();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(entities));
  state.counters["entities"] = static_cast<double>(entities);
}
BENCHMARK(BM_AcfDraw)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

// The drawing of files schedules written by save into the data set's
// folder, each iteration replacing the file.
template <typename Save>
void SaveDrawing(benchmark::State& state, const char* name, Save save) {
  Session* session = Drawn(static_cast<int>(state.range(0)));
  if (!session->ok()) {
    state.SkipWithError(session->error().c_str());
    return;
  }
  const vorhost::Drawing& drawing = session->host().document().drawing();
  std::string path = session->root() + "/" + name, err;
  for (auto _ : state)
    if (!save(drawing, session->host().document().sysvars(), path, &err)) {
      state.SkipWithError(err.c_str());
      break;
    }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(drawing.MainEntities().size()));
}

void BM_SaveDxf(benchmark::State& state) {
  SaveDrawing(state, "OUT.DXF", [](auto&&... a) { return vorhost::SaveDxf(a...); });
}
BENCHMARK(BM_SaveDxf)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

void BM_SaveSvg(benchmark::State& state) {
  SaveDrawing(state, "OUT.SVG", [](auto&&... a) { return vorhost::SaveSvg(a...); });
}
BENCHMARK(BM_SaveSvg)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

// The drawing's extents from an index built afresh, as the first save
// after drawing finds them: every entity measured, each block traced once
// for all its inserts.
void BM_Extents(benchmark::State& state) {
  Session* session = Drawn(static_cast<int>(state.range(0)));
  if (!session->ok()) {
    state.SkipWithError(session->error().c_str());
    return;
  }
  vorhost::Drawing& drawing = session->host().document().drawing();
  for (auto _ : state) {
    drawing.tables().blocks();  // handed out for change: the index is built again
    benchmark::DoNotOptimize(vorhost::DrawingBox(drawing));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(drawing.MainEntities().size()));
}
BENCHMARK(BM_Extents)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorbench
