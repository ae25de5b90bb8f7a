// vorhost.cpp - the emulated CAD host with the drafting module loaded,
// played by a script or by a person typing at standard input.
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/platform/filesystem.h"
#include "emulator/ui/script.h"
#include "host/ads.h"

namespace {

const char kUsage[] =
    "usage: vorhost [options] [SCRIPT | -]\n"
    "\n"
    "Runs the CAD host with the drafting module loaded. Each line of SCRIPT (or\n"
    "of standard input, for - or no SCRIPT) is what the user types next: a\n"
    "command or expression at the command prompt, such as (VOR_ELINE \"E*\"),\n"
    "or the answer to whatever the host or the module is asking. Lines that\n"
    "start with # and a word are directives; see docs/scripting.md.\n"
    "\n"
    "options:\n"
    "  --drive X=DIR  make the Linux folder DIR the drive X: (repeatable).\n"
    "                 Without one for C:, C: is the current directory.\n"
    "  --help         show this text\n"
    "\n"
    "The host's search path is the ACAD environment variable (DOS folders\n"
    "separated by ';'), then the host's own resources.\n"
    "\n"
    "Exit status: 0 when the script ran to its end, 1 when one of its lines\n"
    "failed (an expectation, or input that ended while the host was asking),\n"
    "2 for a usage error or a script that cannot be read.\n";

struct Options {
  std::vector<std::pair<char, std::string>> drives;
  std::string script = "-";
};

bool ParseOptions(int argc, char** argv, Options* opts, std::string* err) {
  bool have_script = false;
  for (int i = 1; i < argc; i++) {
    std::string arg = argv[i];
    if (arg == "--drive" || arg.starts_with("--drive=")) {
      std::string mapping = arg == "--drive" ? (i + 1 < argc ? argv[++i] : "") : arg.substr(8);
      if (mapping.size() < 3 || mapping[1] != '=' || !std::isalpha(static_cast<unsigned char>(mapping[0]))) {
        *err = "--drive wants X=DIR, got \"" + mapping + "\"";
        return false;
      }
      opts->drives.emplace_back(mapping[0], mapping.substr(2));
    } else if (arg.size() > 1 && arg[0] == '-') {
      *err = "unknown option " + arg;
      return false;
    } else if (have_script) {
      *err = "only one script may be given";
      return false;
    } else {
      opts->script = arg;
      have_script = true;
    }
  }
  return true;
}

bool MountDrives(const Options& opts, std::string* err) {
  bool have_c = false;
  for (const auto& [letter, dir] : opts.drives) {
    if (!vorhost::Files().Mount(letter, dir, err)) return false;
    have_c = have_c || letter == 'c' || letter == 'C';
  }
  if (!have_c) return vorhost::Files().Mount('C', std::filesystem::current_path().string(), err);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; i++)
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
      std::cout << kUsage;
      return 0;
    }
  Options opts;
  std::string err;
  if (!ParseOptions(argc, argv, &opts, &err) || !MountDrives(opts, &err)) {
    std::cerr << "vorhost: " << err << "\n" << kUsage;
    return 2;
  }
  vorhost::Files().SetCurrentDrive(3);

  std::ifstream file;
  std::istream* in = &std::cin;
  if (opts.script != "-") {
    std::error_code ec;
    if (!std::filesystem::is_directory(opts.script, ec)) file.open(opts.script, std::ios::binary);
    if (!file.is_open()) {
      std::cerr << "vorhost: cannot read script " << opts.script << "\n";
      return 2;
    }
    in = &file;
  }
  vorhost::Host host(&std::cout);
  vorhost::ScriptUser script(host, opts.script == "-" ? "<stdin>" : opts.script, in);
  host.set_user(&script);
  host.set_echo_answers(!(opts.script == "-" && isatty(STDIN_FILENO)));
  host.LoadModule(acrxEntryPoint);
  host.Run();
  host.UnloadModule();
  std::cout.flush();
  if (script.failed()) {
    std::cerr << script.failure() << "\n";
    return 1;
  }
  return 0;
}
