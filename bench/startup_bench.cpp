// startup_bench.cpp - vorhost from start to exit: the program started, its
// files found, the module loaded (messages 1 and 3), a one-line script
// run, the module unloaded (4 and 2), the process gone. Real time, as the
// work is the child's.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <fstream>
#include <string>

#include "support/session.h"

extern char** environ;

namespace vorbench {
namespace {

void BM_StartToExit(benchmark::State& state) {
  TempFolder drive;
  std::string script = drive.path() + "/start.vor", mapping = "C=" + drive.path();
  std::ofstream(script) << "(setq VORMIS \"C:/VOR\")\n";
  const char* argv[] = {VorhostProgram(), "--drive", mapping.c_str(), script.c_str(), nullptr};
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  for (auto _ : state) {
    pid_t pid;
    int status = 0;
    if (posix_spawn(&pid, argv[0], &quiet, nullptr, const_cast<char**>(argv), environ) != 0 ||
        waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      state.SkipWithError("vorhost did not run to its end");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&quiet);
}
BENCHMARK(BM_StartToExit)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorbench
