// vorhost.cpp - the emulated CAD host with the drafting module loaded,
// played by a script or by a person typing at standard input.
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "emulator/session/host.h"
#include "emulator/io/dump.h"
#include "emulator/io/dxf.h"
#include "emulator/io/host_text.h"
#include "emulator/io/svg.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/search_path.h"
#include "emulator/ui/script.h"
#include "host/ads.h"

#ifndef VORMIS_VERSION
#define VORMIS_VERSION "unknown"
#endif

namespace {

const char kVersion[] = "vorhost " VORMIS_VERSION "\n";

const char kUsage[] =
    "usage: vorhost [options] [SCRIPT | -]\n"
    "       vorhost --import-text FILE... | --export-text FILE...\n"
    "\n"
    "Runs the CAD host with the drafting module loaded. Each line of SCRIPT (or\n"
    "of standard input, for - or no SCRIPT) is what the user types next: a\n"
    "command or expression at the command prompt, such as (VOR_ELINE \"E*\"),\n"
    "or the answer to whatever the host or the module is asking. Lines that\n"
    "start with # and a word are directives; see docs/scripting.md.\n"
    "\n"
    "options:\n"
    "  --drive X=DIR       make the Linux folder DIR the drive X: (repeatable).\n"
    "                      Without one for C:, C: is the current directory.\n"
    "  --open FILE.dxf     start from this drawing instead of an empty one\n"
    "  --save FILE.dxf     when the script ends, save the drawing (DXF R12, Big5)\n"
    "  --svg FILE.svg      when the script ends, write the drawing as SVG\n"
    "  --dump              when the script ends, print the drawing as text\n"
    "  --import-text FILE  convert a data file written in UTF-8 to the module's\n"
    "                      form (Big5, CR LF, 0x1A at the end), in place; refused\n"
    "                      for a character Big5 cannot hold or a line over 255\n"
    "                      bytes (repeatable; runs instead of a script)\n"
    "  --export-text FILE  convert a data file of the module to UTF-8 with plain\n"
    "                      line ends, in place (repeatable; runs instead of a\n"
    "                      script)\n"
    "  --version           show the program's version\n"
    "  --help              show this text\n"
    "\n"
    "The host's search path is the ACAD environment variable (DOS folders\n"
    "separated by ';'), then the module's dialog files and the host's own\n"
    "resources, found beside the program ($VORMIS_FILES and\n"
    "$VORHOST_RESOURCES name other folders).\n"
    "\n"
    "Exit status: 0 when the script ran to its end, 1 when one of its lines\n"
    "failed (an expectation, or input that ended while the host was asking)\n"
    "or a file could not be converted, 2 for a usage error, a script, drawing\n"
    "or file to convert that cannot be read, or missing files of the program,\n"
    "3 when a file to write could not be written.\n";

struct Options {
  // Files to convert, in order: true to import (UTF-8 to the host's text),
  // false to export.
  std::vector<std::pair<bool, std::string>> conversions;
  std::vector<std::pair<char, std::string>> drives;
  std::string script = "-";
  std::string open, save, svg;
  bool dump = false;
};

// The value of an option given as "--name VALUE" or "--name=VALUE".
bool OptionValue(int argc, char** argv, int* i, const std::string& name, std::string* value) {
  std::string arg = argv[*i];
  if (arg == name) {
    if (*i + 1 >= argc) return false;
    *value = argv[++*i];
    return true;
  }
  if (arg.starts_with(name + "=")) {
    *value = arg.substr(name.size() + 1);
    return true;
  }
  return false;
}

bool ParseOptions(int argc, char** argv, Options* opts, std::string* err) {
  bool have_script = false;
  for (int i = 1; i < argc; i++) {
    std::string arg = argv[i];
    std::string mapping, file;
    if (OptionValue(argc, argv, &i, "--import-text", &file) ||
        OptionValue(argc, argv, &i, "--export-text", &file)) {
      opts->conversions.emplace_back(arg.starts_with("--import-text"), file);
    } else if (OptionValue(argc, argv, &i, "--open", &opts->open) ||
        OptionValue(argc, argv, &i, "--save", &opts->save) ||
        OptionValue(argc, argv, &i, "--svg", &opts->svg)) {
      continue;
    } else if (arg == "--dump") {
      opts->dump = true;
    } else if (arg == "--drive" || arg.starts_with("--drive=")) {
      OptionValue(argc, argv, &i, "--drive", &mapping);
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
  if (!opts->conversions.empty() && (have_script || !opts->drives.empty() || !opts->open.empty() ||
                                     !opts->save.empty() || !opts->svg.empty() || opts->dump)) {
    *err = "--import-text and --export-text take no script and no other option";
    return false;
  }
  return true;
}

// Converts the files in order, saying what became of each; the exit status
// is that of the worst outcome.
int ConvertFiles(const Options& opts) {
  int status = 0;
  for (const auto& [import, file] : opts.conversions) {
    std::string message;
    vorhost::ConvertResult result =
        import ? vorhost::ImportTextFile(file, &message) : vorhost::ExportTextFile(file, &message);
    int code = 0;
    switch (result) {
      case vorhost::ConvertResult::kDone: code = 0; break;
      case vorhost::ConvertResult::kRefused: code = 1; break;
      case vorhost::ConvertResult::kUnreadable: code = 2; break;
      case vorhost::ConvertResult::kUnwritable: code = 3; break;
    }
    (code == 0 ? std::cout : std::cerr) << (code == 0 ? "" : "vorhost: ") << message << "\n";
    status = std::max(status, code);
  }
  return status;
}

// Whether the module's dialog files and the host's resources are where the
// host looks for them; without them every dialog fails.
bool FindOwnFiles(std::string* err) {
  struct OwnFile {
    std::string dir;
    const char* name;
    const char* variable;
  };
  const OwnFile files[] = {
      {vorhost::ModuleDirectory(), "VORMIS.DCL", "VORMIS_FILES"},
      {vorhost::ResourceDirectory(), "BASE.DCL", "VORHOST_RESOURCES"},
  };
  for (const OwnFile& f : files) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(f.dir + "/" + f.name, ec)) {
      *err = "cannot find its own files: no " + std::string(f.name) + " in " + f.dir +
             " (reinstall, or set " + f.variable + " to the folder that holds it)";
      return false;
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
  if (have_c) return true;
  std::error_code ec;
  std::string here = std::filesystem::current_path(ec).string();
  if (ec) {
    *err = "the current directory cannot be drive C: (" + ec.message() + "); give --drive C=DIR";
    return false;
  }
  return vorhost::Files().Mount('C', here, err);
}

// Writes what the options ask for once the script has ended; false when a
// file could not be written (the reason is on standard error).
bool WriteResults(vorhost::Host& host, const Options& opts) {
  std::string err;
  bool ok = true;
  if (!opts.save.empty() && !vorhost::SaveDxf(host.document().drawing(), host.document().sysvars(), opts.save, &err)) {
    std::cerr << "vorhost: " << err << "\n";
    ok = false;
  }
  if (!opts.svg.empty() && !vorhost::SaveSvg(host.document().drawing(), host.document().sysvars(), opts.svg, &err)) {
    std::cerr << "vorhost: " << err << "\n";
    ok = false;
  }
  if (opts.dump) std::cout << vorhost::DumpDrawing(host.document().drawing());
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; i++)
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
      std::cout << kUsage;
      return 0;
    } else if (std::strcmp(argv[i], "--version") == 0) {
      std::cout << kVersion;
      return 0;
    }
  Options opts;
  std::string err;
  if (!ParseOptions(argc, argv, &opts, &err)) {
    std::cerr << "vorhost: " << err << "\n" << kUsage;
    return 2;
  }
  if (!opts.conversions.empty()) return ConvertFiles(opts);
  if (!MountDrives(opts, &err)) {
    std::cerr << "vorhost: " << err << "\n" << kUsage;
    return 2;
  }
  if (!FindOwnFiles(&err)) {
    std::cerr << "vorhost: " << err << "\n";
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
  host.console().set_user(&script);
  bool person = opts.script == "-" && isatty(STDIN_FILENO);
  if (person) std::cout << kVersion;
  host.console().set_echo_answers(!person);
  script.set_interactive(person);
  if (!opts.open.empty() && !host.OpenDrawing(opts.open, &err)) {
    std::cerr << "vorhost: " << err << "\n";
    return 2;
  }
  host.module().Load(acrxEntryPoint);
  host.Run();
  host.module().Unload();
  std::cout.flush();
  int status = script.failed() ? 1 : 0;
  if (script.failed()) std::cerr << script.failure() << "\n";
  if (!WriteResults(host, opts)) status = status ? status : 3;
  return status;
}
