// script_fuzz.cpp - scripts as vorhost plays them: the lines of the input
// are what the user types (commands and expressions, answers to prompts,
// dialog events, directives, file edits), against the host with the module
// loaded and the example drive on C: (catalogues, layer memo, notes,
// schedules), as the main job runs its examples.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/fuzz_env.h"
#include "emulator/core/text.h"

namespace {

// The files of the example drive, as (path below the drive, bytes).
const std::vector<std::pair<std::string, std::string>>& ExampleDrive() {
  static const auto files = [] {
    std::vector<std::pair<std::string, std::string>> out;
    const std::filesystem::path root = VOR_SOURCE_DIR "/examples/c";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
      if (!entry.is_regular_file()) continue;
      std::string bytes;
      vorhost::ReadWholeFile(entry.path().string(), &bytes);
      out.push_back({std::filesystem::relative(entry.path(), root).string(), bytes});
    }
    if (out.empty()) vorfuzz::Broken("the example drive is missing");
    return out;
  }();
  return files;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vorfuzz::Session& session = vorfuzz::Session::Get();
  session.Begin();
  for (const auto& [path, bytes] : ExampleDrive()) vorfuzz::ScratchDrive::Get().Write(path, bytes);

  std::vector<std::string> lines;
  std::istringstream in{std::string(vorfuzz::Bytes(data, size))};
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  session.Answer(std::move(lines));
  session.host().command_line().Run();
  return 0;
}
