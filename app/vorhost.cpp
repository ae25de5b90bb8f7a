// vorhost.cpp - the emulated CAD host with the drafting module loaded,
// played by a script or by a person typing at standard input.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <filesystem>
#include <optional>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/session/host.h"
#include "emulator/io/dump.h"
#include "emulator/io/dxf.h"
#include "app/gui/run_window.h"
#include "emulator/io/host_text.h"
#include "emulator/io/svg.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/install_dirs.h"
#include "emulator/platform/search_path.h"
#include "emulator/platform/shared_library.h"
#include "emulator/core/encoding.h"
#include "emulator/ui/history.h"
#include "emulator/ui/line_reader.h"
#include "emulator/ui/script.h"
#include "emulator/ui/terminal.h"
#include "emulator/ui/terminal_screen.h"

#ifndef VORMIS_VERSION
#define VORMIS_VERSION "unknown"
#endif

namespace {

const char kVersion[] = "vorhost " VORMIS_VERSION "\n";

// The text before and after the options in --help.
const char kUsageHead[] =
    "usage: vorhost [options] [SCRIPT | -]\n"
    "       vorhost --import-text FILE... | --export-text FILE...\n"
    "\n"
    "Runs the CAD host with the drafting module loaded. Each line of SCRIPT (or\n"
    "of standard input, for - or no SCRIPT) is what the user types next: a\n"
    "command or expression at the command prompt, such as (VOR_ELINE \"E*\"),\n"
    "or the answer to whatever the host or the module is asking. Lines that\n"
    "start with # and a word are directives; see docs/scripting.md.\n"
    "\n"
    "options:\n";

const char kUsageTail[] =
    "\n"
    "The host's search path is the ACAD environment variable (DOS folders\n"
    "separated by ';'), then the module's dialog files and the host's own\n"
    "resources, found beside the program ($VORMIS_FILES and\n"
    "$VORHOST_RESOURCES name other folders).\n"
    "\n"
    "Exit status: 0 when the script ran to its end, 1 when one of its lines\n"
    "failed (an expectation, or input that ended while the host was asking)\n"
    "or a file could not be converted, 2 for a usage error, a script, drawing\n"
    "or file to convert that cannot be read, missing files of the program,\n"
    "or a module that cannot be loaded, 3 when a file to write could not be\n"
    "written.\n";

struct Options {
  bool gui = false;
  std::string play, screenshots;  // --gui only
  // Files to convert, in order: true to import (UTF-8 to the host's text),
  // false to export.
  std::vector<std::pair<bool, std::string>> conversions;
  std::vector<std::pair<char, std::string>> drives;
  std::string script = "-";
  std::string open, save, svg, live;
  std::string module;  // the module's file; empty for the program's own
  bool dump = false;
  bool no_module = false;
};

// An option as given: "--name", with its value when it takes one
// ("--name VALUE" or "--name=VALUE"; none when it is missing).
struct Given {
  std::string arg;
  std::optional<std::string> value;
};

bool Unknown(const Given& g, std::string* err) {
  *err = "unknown option " + g.arg;
  return false;
}

bool TakeDrive(const Given& g, Options* opts, std::string* err) {
  std::string mapping = g.value.value_or("");
  if (mapping.size() < 3 || mapping[1] != '=' || !std::isalpha(static_cast<unsigned char>(mapping[0]))) {
    *err = "--drive wants X=DIR, got \"" + mapping + "\"";
    return false;
  }
  opts->drives.emplace_back(mapping[0], mapping.substr(2));
  return true;
}

bool TakeGui(const Given&, Options* opts, std::string*) {
  opts->gui = true;
  return true;
}

// A handler for an option whose value goes into a field of Options.
template <std::string Options::*field>
bool TakeFile(const Given& g, Options* opts, std::string* err) {
  if (!g.value) return Unknown(g, err);
  opts->*field = *g.value;
  return true;
}

template <bool import>
bool TakeConversion(const Given& g, Options* opts, std::string* err) {
  if (!g.value) return Unknown(g, err);
  opts->conversions.emplace_back(import, *g.value);
  return true;
}

bool TakeDump(const Given&, Options* opts, std::string*) {
  opts->dump = true;
  return true;
}

bool TakeNoModule(const Given&, Options* opts, std::string*) {
  opts->no_module = true;
  return true;
}

struct Option {
  const char* name;
  const char* value;  // what it takes, as --help names it; null for a flag
  const char* help;   // lines of --help, "\n" between
  // Null for --help and --version, which main answers whatever else is given.
  bool (*take)(const Given& given, Options* opts, std::string* err);
};

const Option kOptions[] = {
    {"--drive", "X=DIR", "make the Linux folder DIR the drive X: (repeatable).\n"
                         "Without one for C:, C: is the current directory.", TakeDrive},
    {"--open", "FILE.dxf", "start from this drawing instead of an empty one", TakeFile<&Options::open>},
    {"--save", "FILE.dxf", "when the script ends, save the drawing (DXF R12, Big5)", TakeFile<&Options::save>},
    {"--svg", "FILE.svg", "when the script ends, write the drawing as SVG", TakeFile<&Options::svg>},
    {"--live", "FILE.svg", "write the drawing as SVG after every command line, for\n"
                           "an image viewer or a browser to show as it grows", TakeFile<&Options::live>},
    {"--dump", nullptr, "when the script ends, print the drawing as text", TakeDump},
    {"--module", "FILE.arx", "load this module at start instead of the program's own", TakeFile<&Options::module>},
    {"--no-module", nullptr, "start with no module loaded (ARXLOAD loads one)", TakeNoModule},
    {"--import-text", "FILE", "convert a data file written in UTF-8 to the module's\n"
                              "form (Big5, CR LF, 0x1A at the end), in place; refused\n"
                              "for a character Big5 cannot hold or a line over 255\n"
                              "bytes (repeatable; runs instead of a script)", TakeConversion<true>},
    {"--export-text", "FILE", "convert a data file of the module to UTF-8 with plain\n"
                              "line ends, in place (repeatable; runs instead of a\n"
                              "script)", TakeConversion<false>},
    {"--gui", nullptr, "run in a window: the drawing, the command line, the\n"
                       "module's dialogs (when built with Qt 6)", TakeGui},
    {"--play", "SCRIPT", "with --gui, play SCRIPT in the window; the person at the\n"
                         "window goes on after it unless --screenshot is given", TakeFile<&Options::play>},
    {"--screenshot", "DIR", "with --gui, write a PNG of each dialog as it opens and\n"
                            "of the main window at the end into DIR", TakeFile<&Options::screenshots>},
    {"--version", nullptr, "show the program's version", nullptr},
    {"--help", nullptr, "show this text", nullptr},
};

// The options' part of --help: each option with what it takes in a column
// of 20, its help beside it.
std::string Usage() {
  std::string out = kUsageHead;
  for (const Option& o : kOptions) {
    std::string head = std::string("  ") + o.name + (o.value ? std::string(" ") + o.value : "");
    head.resize(std::max<size_t>(head.size() + 2, 22), ' ');
    std::string help = o.help;
    for (size_t nl = help.find('\n'); nl != std::string::npos; nl = help.find('\n', nl + 23))
      help.insert(nl + 1, 22, ' ');
    out += head + help + "\n";
  }
  return out + kUsageTail;
}

// The option arg is, with its value taken from arg or the next argument.
const Option* Match(int argc, char** argv, int* i, Given* given) {
  std::string arg = argv[*i];
  for (const Option& o : kOptions) {
    std::string name = o.name;
    if (!o.take) continue;
    if (arg == name) {
      given->arg = arg;
      if (o.value && *i + 1 < argc) given->value = argv[++*i];
      return &o;
    }
    if (o.value && arg.starts_with(name + "=")) {
      given->arg = arg;
      given->value = arg.substr(name.size() + 1);
      return &o;
    }
  }
  return nullptr;
}

bool ParseOptions(int argc, char** argv, Options* opts, std::string* err) {
  bool have_script = false;
  for (int i = 1; i < argc; i++) {
    std::string arg = argv[i];
    Given given;
    if (const Option* o = Match(argc, argv, &i, &given)) {
      if (!o->take(given, opts, err)) return false;
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
                                     !opts->save.empty() || !opts->svg.empty() || !opts->live.empty() ||
                                     opts->dump || !opts->module.empty() || opts->no_module)) {
    *err = "--import-text and --export-text take no script and no other option";
    return false;
  }
  if (!opts->module.empty() && opts->no_module) {
    *err = "--module and --no-module exclude each other";
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

// Loads the module at start: the file given, or the program's own.
bool LoadModule(vorhost::Host& host, const std::string& given, std::string* err) {
  if (!given.empty()) return host.module().LoadFile(given, err);
  std::string own = vorhost::LibraryDirectory() + "/vormis.arx";
  std::error_code ec;
  if (!std::filesystem::is_regular_file(own, ec)) {
    *err = "cannot find its own files: no vormis.arx in " + vorhost::LibraryDirectory() +
           " (reinstall, or give --module FILE)";
    return false;
  }
  return host.module().LoadFile(own, err);
}

// Writes what the options ask for once the script has ended; false when a
// file could not be written (the reason is on standard error). A person's
// drawing is saved by SAVE, QSAVE and QUIT, under the name --save gives it.
bool WriteResults(vorhost::Host& host, const Options& opts, bool person) {
  std::string err;
  bool ok = true;
  if (!person && !opts.save.empty() && !vorhost::SaveDxf(host.document().drawing(), host.document().sysvars(), opts.save, &err)) {
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

// The drawing's name for SAVE and QUIT: the file it was opened from, or
// the one to save it to.
void NameDrawing(vorhost::Host& host, const Options& opts) {
  const std::string& file = !opts.open.empty() ? opts.open : opts.save;
  if (file.empty()) return;
  std::string name;
  if (!vorhost::Utf8ToBig5(file, &name)) name = file;
  host.NameDrawing(name, file);
}

// With --live, the drawing as SVG after every command line; a file that
// cannot be written is reported once.
void WatchLive(vorhost::Host& host, const Options& opts) {
  if (opts.live.empty()) return;
  auto write = [&host, file = opts.live, reported = false]() mutable {
    std::string err;
    if (vorhost::SaveSvg(host.document().drawing(), host.document().sysvars(), file, &err)) {
      reported = false;
    } else if (!reported) {
      host.transcript().WriteLine(err + "\n");
      reported = true;
    }
  };
  write();
  host.command_line().set_after_line(write);
}

// Opens the drawing and loads the module the options name, and names the
// drawing; false when either cannot be done (the reason is on standard
// error).
bool StartHost(vorhost::Host& host, const Options& opts) {
  std::string err;
  if ((!opts.open.empty() && !host.OpenDrawing(opts.open, &err)) ||
      (!opts.no_module && !LoadModule(host, opts.module, &err))) {
    std::cerr << "vorhost: " << err << "\n";
    return false;
  }
  NameDrawing(host, opts);
  host.MarkDrawingSaved();
  WatchLive(host, opts);
  return true;
}

bool TerminalHasColour() {
  const char* term = std::getenv("TERM");
  return isatty(STDOUT_FILENO) && !std::getenv("NO_COLOR") && term && std::string_view(term) != "dumb";
}

// A person at the terminal, until QUIT, EXIT or Ctrl-D; the exit status.
int RunPerson(const Options& opts) {
  std::cout << kVersion << std::flush;
  vorhost::TerminalScreen screen(STDOUT_FILENO);
  vorhost::Host host(&screen.stream());
  vorhost::History history;
  std::string history_file = vorhost::History::DefaultPath(), err;
  if (!history_file.empty() && !history.Load(history_file, &err)) std::cerr << "vorhost: " << err << "\n";
  vorhost::InterruptGuard interrupts;
  std::unique_ptr<vorhost::LineReader> reader = vorhost::MakeLineReader(history, STDIN_FILENO, STDOUT_FILENO);
  // Dialogs are drawn in 80 columns at most, as a narrower terminal allows.
  vorhost::TerminalUser user(host, screen, *reader, 80, TerminalHasColour());
  host.console().set_user(&user);
  host.console().set_echo_answers(false);
  host.command_line().set_repeat_on_enter(true);
  if (!StartHost(host, opts)) return 2;
  host.command_line().Run();
  host.module().Unload();
  screen.Flush();
  if (!history_file.empty() && !history.Save(history_file, &err)) std::cerr << "vorhost: " << err << "\n";
  return WriteResults(host, opts, true) ? 0 : 3;
}

// Runs the script the options name, or a person at the terminal, in a host
// with the module loaded; the program's exit status.
int RunSession(const Options& opts) {
  if (opts.script == "-" && isatty(STDIN_FILENO)) return RunPerson(opts);
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
  if (!StartHost(host, opts)) return 2;
  host.command_line().Run();
  host.module().Unload();
  std::cout.flush();
  int status = script.failed() ? 1 : 0;
  if (script.failed()) std::cerr << script.failure() << "\n";
  if (!WriteResults(host, opts, false)) status = status ? status : 3;
  return status;
}

// The window's options go together: --play and --screenshot with --gui,
// which takes no script of its own.
bool CheckWindowOptions(const Options& opts, std::string* err) {
  if ((!opts.play.empty() || !opts.screenshots.empty()) && !opts.gui) {
    *err = "--play and --screenshot go with --gui";
    return false;
  }
  if (opts.gui && opts.script != "-") {
    *err = "--gui takes its script with --play";
    return false;
  }
  return true;
}

// Runs the session in vorhost's window: its library, next to the module,
// is opened only now, so that other sessions never load Qt.
int RunWindow(const Options& opts) {
  std::string path = vorhost::LibraryDirectory() + "/" + vorhost::gui::kWindowLibrary;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) {
    std::cerr << "vorhost: this vorhost was built without its window (no " << path << "):\n"
                 "  it needs Qt 6 and the build option VOR_WINDOW=ON (VOR_WINDOW=ON scripts/run.sh\n"
                 "  in a new build folder)\n";
    return 2;
  }
  std::string err;
  std::unique_ptr<vorhost::SharedLibrary> window = vorhost::SharedLibrary::Open(path, &err);
  auto run = window ? reinterpret_cast<vorhost::gui::RunWindowEntry>(window->Find(vorhost::gui::kRunWindowEntry))
                    : nullptr;
  if (!run) {
    std::cerr << "vorhost: cannot open its window: " << (window ? "no entry point in " + path : err) << "\n";
    return 2;
  }
  // Qt's libraries stay mapped until the process ends: their exit handlers
  // may run after main returns.
  window->Keep();
  vorhost::gui::WindowOptions options{opts.open, opts.play, opts.screenshots};
  vorhost::gui::ModuleLoader load_module = [&opts](vorhost::Host& host, std::string* why) {
    return opts.no_module || LoadModule(host, opts.module, why);
  };
  vorhost::gui::SessionEnd done = [&opts](vorhost::Host& host) { return WriteResults(host, opts, false); };
  return run(&options, &load_module, &done);
}

}  // namespace

int main(int argc, char** argv) {
  // --help and --version answer whatever else is given.
  for (int i = 1; i < argc; i++) {
    std::string_view arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::cout << Usage();
      return 0;
    }
    if (arg == "--version") {
      std::cout << kVersion;
      return 0;
    }
  }
  Options opts;
  std::string err;
  if (!ParseOptions(argc, argv, &opts, &err) || !CheckWindowOptions(opts, &err)) {
    std::cerr << "vorhost: " << err << "\n" << Usage();
    return 2;
  }
  if (!opts.conversions.empty()) return ConvertFiles(opts);
  if (!MountDrives(opts, &err)) {
    std::cerr << "vorhost: " << err << "\n" << Usage();
    return 2;
  }
  if (!FindOwnFiles(&err)) {
    std::cerr << "vorhost: " << err << "\n";
    return 2;
  }
  vorhost::Files().SetCurrentDrive(3);
  if (opts.gui) return RunWindow(opts);
  return RunSession(opts);
}
