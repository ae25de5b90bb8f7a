// select_bench.cpp - choosing objects in drawings of 10, 100 and 400 panels
// (about 4,100, 41,000 and 164,000 entities): a point pick, a window round
// one panel, a crossing window across one panel's branches, and ERASE of
// one branch by a window through the command line.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

#include "emulator/commands/selection.h"
#include "support/session.h"

namespace vorbench {
namespace {

constexpr int kCircuits = 40;
constexpr double kPitch = 250, kBusDepth = 400;

// Where things are in panel k of the data set: its branches hang from the
// bus at pitch 250, the first at left.
struct Panel {
  double x, y, left, bus;
  explicit Panel(int k) {
    std::array<double, 3> p = StartPoint(k, kCircuits);
    x = p[0], y = p[1];
    left = x - kPitch * (kCircuits - 1) / 2;
    bus = y - kBusDepth;
  }
  double branch(int c) const { return left + kPitch * c; }
  double right() const { return branch(kCircuits - 1); }
};

using vorhost::Answer;

// The drawing of files panels, or null after SkipWithError.
Session* DrawnFor(benchmark::State& state) {
  Session* session = Drawn(static_cast<int>(state.range(0)));
  if (!session->ok()) {
    state.SkipWithError(session->error().c_str());
    return nullptr;
  }
  return session;
}

void Report(benchmark::State& state, Session* session, size_t found) {
  const vorhost::Drawing& drawing = session->host().document().drawing();
  state.counters["entities"] = static_cast<double>(drawing.MainEntities().size());
  state.counters["found"] = static_cast<double>(found);
}

// Selects with the answers given, as "Select objects:" takes them.
size_t Select(vorhost::Host& host, const std::vector<Answer>& answers) {
  vorhost::ObjectSelector selector(host.commands());
  for (const Answer& a : answers) selector.Feed(a);
  return selector.selected().size();
}

void BM_PointPick(benchmark::State& state) {
  Session* session = DrawnFor(state);
  if (!session) return;
  // The lower run of a branch in the middle panel.
  Panel panel(session->shape().files / 2);
  std::vector<Answer> pick = {Answer::OfPoint({panel.branch(kCircuits / 2), panel.bus - 900, 0})};
  size_t found = 0;
  for (auto _ : state) found = Select(session->host(), pick);
  Report(state, session, found);
}
BENCHMARK(BM_PointPick)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

void BM_WindowSelection(benchmark::State& state) {
  Session* session = DrawnFor(state);
  if (!session) return;
  // Round the whole of the middle panel: title, box, branches, texts.
  Panel panel(session->shape().files / 2);
  std::vector<Answer> window = {Answer::Text("W"), Answer::OfPoint({panel.left - 300, panel.y + 100, 0}),
                                Answer::OfPoint({panel.right() + 400, panel.bus - 2200, 0})};
  size_t found = 0;
  for (auto _ : state) found = Select(session->host(), window);
  Report(state, session, found);
}
BENCHMARK(BM_WindowSelection)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

void BM_CrossingSelection(benchmark::State& state) {
  Session* session = DrawnFor(state);
  if (!session) return;
  // A strip across the lower runs and cable labels of every branch.
  Panel panel(session->shape().files / 2);
  std::vector<Answer> crossing = {Answer::Text("C"), Answer::OfPoint({panel.left - 10, panel.bus - 700, 0}),
                                  Answer::OfPoint({panel.right() + 10, panel.bus - 720, 0})};
  size_t found = 0;
  for (auto _ : state) found = Select(session->host(), crossing);
  Report(state, session, found);
}
BENCHMARK(BM_CrossingSelection)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

// ERASE of one branch after another, each chosen by a window; when every
// branch is gone the drawing is made again, off the clock.
void BM_Erase(benchmark::State& state) {
  Session* session = DrawnFor(state);
  if (!session) return;
  const int files = session->shape().files;
  int next = 0;
  size_t before = session->host().document().drawing().MainEntities().size();
  for (auto _ : state) {
    if (next == files * kCircuits) {
      state.PauseTiming();
      session->Restart();
      session->DrawAll();
      next = 0;
      state.ResumeTiming();
    }
    Panel panel(next / kCircuits);
    double x = panel.branch(next % kCircuits);
    next++;
    int result = session->host().commands().Feed(
        {Answer::Text("ERASE"), Answer::Text("W"), Answer::OfPoint({x - 120, panel.bus + 10, 0}),
         Answer::OfPoint({x + 120, panel.bus - 1800, 0}), Answer::Enter()});
    if (result != RTNORM) {
      state.SkipWithError("ERASE was refused");
      break;
    }
  }
  state.counters["entities"] = static_cast<double>(before);
  // The drawing is no longer the one the other benchmarks expect.
  ReleaseDrawn();
}
BENCHMARK(BM_Erase)->Arg(10)->Arg(100)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorbench
