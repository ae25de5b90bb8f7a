// browser_bench.cpp - the file browser over the data set's schedules: one
// listing (files, dates and notes, sorted) with and without a notes store,
// the dialog opened and cancelled, and one action of the user's in it.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "browser/browser.h"
#include "browser/notes.h"
#include "support/session.h"

namespace vorbench {
namespace {

// A session on files schedules (their circuits do not matter here) and a
// notes store of notes lines, the home directory C:\VOR.
struct BrowserSession {
  Session session;
  BrowserSession(int files, int notes) : session(DataSetShape{files, 2, notes}) {
    if (session.ok()) session.Play({"(setq VORMIS \"C:/VOR\")"});
  }
};

void BM_BrowserListing(benchmark::State& state) {
  ReleaseDrawn();
  BrowserSession b(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  int id = 0;
  ads_hdlg dialog = nullptr;
  if (!b.session.ok() || ads_load_dialog("BLK.DCL", &id) != RTNORM ||
      ads_new_dialog("FILE_CON", id, nullptr, &dialog) != RTNORM) {
    state.SkipWithError(b.session.ok() ? "FILE_CON cannot be had" : b.session.error().c_str());
    return;
  }
  notes_load();
  for (auto _ : state) scan_directory(dialog, "C:\\ACF\\", "*.ACF");
  state.counters["files"] = FileCount;
  state.counters["notes"] = FileNotes.count;
  notes_reset();
  ads_unload_dialog(id);
}
BENCHMARK(BM_BrowserListing)
    ->Args({100, 0})
    ->Args({100, 1000})
    ->Args({999, 0})
    ->Args({999, 1000})
    ->Unit(benchmark::kMillisecond);

// Plays the events of one opening of a dialog and times the host over
// each but the last: from handing the event over to being asked again.
class TimedUser : public vorhost::User {
 public:
  explicit TimedUser(std::vector<std::string> events) : events_(std::move(events)) {}

  vorhost::Input Read(vorhost::Asking, std::string_view) override {
    const std::string* line = Next();
    return line ? vorhost::Input::Line(*line) : vorhost::Input::End();
  }
  vorhost::DialogInput ReadEvent(vorhost::Dialog&, std::string_view) override {
    const std::string* line = Next();
    if (!line) return vorhost::DialogInput::End();
    vorhost::DialogEvent event;
    std::string why;
    if (!vorhost::ParseDialogEvent(*line, &event, &why)) return vorhost::DialogInput::Mistake(*line, why);
    return vorhost::DialogInput::Event(std::move(event), *line);
  }
  vorhost::EditOutcome EditText(std::string*, std::string*) override {
    return vorhost::EditOutcome::kCancelled;
  }
  // Seconds the timed events took, all together.
  double seconds() const { return std::chrono::duration<double>(elapsed_).count(); }
  size_t timed() const { return events_.empty() ? 0 : events_.size() - 1; }

 private:
  // The next event's text, null at the end; the clock stops for the one
  // before it and starts for it unless it is the last.
  const std::string* Next() {
    auto now = std::chrono::steady_clock::now();
    if (timing_) elapsed_ += now - given_;
    if (next_ == events_.size()) return nullptr;
    timing_ = next_ + 1 < events_.size();
    given_ = std::chrono::steady_clock::now();
    return &events_[next_++];
  }

  std::vector<std::string> events_;
  size_t next_ = 0;
  bool timing_ = false;
  std::chrono::steady_clock::time_point given_;
  std::chrono::steady_clock::duration elapsed_{};
};

// Runs FILE_CON on C:\ACF\ as VOR_ACF does, played by user.
void RunBrowser(Session& session, TimedUser* user) {
  session.host().console().set_user(user);
  std::strcpy(BrowserPath, "C:\\ACF\\");
  std::strcpy(BrowserPattern, "*.ACF");
  file_browser();
  session.host().console().set_user(nullptr);
}

void BM_BrowserOpen(benchmark::State& state) {
  ReleaseDrawn();
  BrowserSession b(static_cast<int>(state.range(0)), 1000);
  for (auto _ : state) {
    TimedUser user({"cancel"});
    RunBrowser(b.session, &user);
  }
  state.counters["files"] = FileCount;
}
BENCHMARK(BM_BrowserOpen)->Arg(100)->Arg(999)->Unit(benchmark::kMillisecond);

// Clicks in the file list of 999 rows, choosing a hundred rows one by one
// and un-choosing them again: each click's callback reads the list's value
// (every chosen row) and keeps the order of choosing. An iteration is the
// 200 clicks of one opening, timed without the opening; us_per_click is the
// mean.
void BM_BrowserClicks(benchmark::State& state) {
  ReleaseDrawn();
  BrowserSession b(999, 1000);
  std::vector<std::string> events;
  for (int pass = 0; pass < 2; pass++)
    for (int row = 0; row < 100; row++) events.push_back("select file " + std::to_string(row * 9));
  events.push_back("cancel");
  double seconds = 0;
  size_t clicks = 0;
  for (auto _ : state) {
    TimedUser user(events);
    RunBrowser(b.session, &user);
    state.SetIterationTime(user.seconds());
    seconds += user.seconds();
    clicks += user.timed();
  }
  state.counters["us_per_click"] = clicks ? 1e6 * seconds / static_cast<double>(clicks) : 0;
}
BENCHMARK(BM_BrowserClicks)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorbench
