// directives.cpp - the script directives, one table row each.
#include "emulator/ui/directives.h"

#include <cstdlib>
#include <filesystem>

#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/io/dump.h"
#include "emulator/platform/filesystem.h"
#include "emulator/session/host.h"

namespace vorhost {
namespace {

// A directive line taken apart: its word, its argument trimmed, and the
// text after the blank that follows the word as it stands.
struct Directive {
  std::string word, arg, text;
  bool negated;  // the "no" form: #expect-no-output, ...
};

using Handler = DirectiveStep (*)(DirectiveContext&, const Directive&, Input*);

DirectiveStep Fail(DirectiveContext& c, const std::string& message) {
  c.fail(message);
  return DirectiveStep::kFail;
}

DirectiveStep Checked(DirectiveContext& c, bool holds, const std::string& message) {
  return holds ? DirectiveStep::kNext : Fail(c, message);
}

bool SameNumberOrText(const std::string& a, const std::string& b) {
  if (a == b) return true;
  char *ea = nullptr, *eb = nullptr;
  double x = std::strtod(a.c_str(), &ea), y = std::strtod(b.c_str(), &eb);
  return !a.empty() && !b.empty() && !*ea && !*eb && x == y;
}

DirectiveStep GiveAnswer(DirectiveContext& c, const Directive& d, Input* answer) {
  std::string big5;
  if (!Utf8ToBig5(d.text, &big5)) return Fail(c, "the line has characters that Big5 cannot hold");
  *answer = Input::Line(std::move(big5));
  return DirectiveStep::kAnswer;
}

DirectiveStep PressEscape(DirectiveContext&, const Directive&, Input* answer) {
  *answer = Input::Cancel();
  return DirectiveStep::kAnswer;
}

DirectiveStep CheckDialog(DirectiveContext& c, const Directive& d, Input*) {
  Dialog* open = c.host.dialogs().top();
  std::string want = d.arg.empty() ? "(none)" : d.arg;
  std::string have = open ? open->name() : "(none)";
  return Checked(c, want == have,
                 "expected dialog " + want + " to be open, but " +
                     (open ? "the dialog " + have + " is" : std::string("none is")));
}

DirectiveStep ShowDialog(DirectiveContext& c, const Directive&, Input*) {
  Dialog* open = c.host.dialogs().top();
  if (!open) return Fail(c, "#show: no dialog is open");
  c.host.transcript().WriteLine(open->Describe());
  return DirectiveStep::kNext;
}

DirectiveStep FailAlloc(DirectiveContext&, const Directive& d, Input*) {
  FailAllocation(Heap::kModule, d.arg.empty() ? 0 : std::atoi(d.arg.c_str()));
  return DirectiveStep::kNext;
}

DirectiveStep ExpectOutput(DirectiveContext& c, const Directive& d, Input*) {
  const std::string& out = c.host.transcript().text();
  size_t at = out.find(d.arg, std::min(c.output_cursor, out.size()));
  if (!d.negated && at != std::string::npos) {
    c.output_cursor = at + d.arg.size();
    return DirectiveStep::kNext;
  }
  if (d.negated && at == std::string::npos) return DirectiveStep::kNext;
  std::string seen = out.substr(std::min(c.output_cursor, out.size()));
  return Fail(c, std::string(d.negated ? "unexpected output seen: " : "expected output not seen: ") + "\"" +
                     d.arg + "\"\n--- output since the last match ---\n" + seen);
}

DirectiveStep ExpectResult(DirectiveContext& c, const Directive& d, Input*) {
  std::string got = Big5ToUtf8(lisp::Print(c.host.command_line().last_value()));
  if (got.empty()) got = "no value";
  return Checked(c, got == d.arg, "expected result " + d.arg + ", got " + got);
}

DirectiveStep ExpectSysvar(DirectiveContext& c, const Directive& d, Input*) {
  size_t space = d.arg.find_first_of(" \t");
  std::string name = d.arg.substr(0, space);
  std::string want = space == std::string::npos ? "" : std::string(Trim(d.arg.substr(space), kBlanksAndLineEnds));
  SysValue value;
  if (!c.host.document().sysvars().Get(name, &value)) return Fail(c, "no system variable " + name);
  std::string got = Big5ToUtf8(FormatSysValue(value));
  return Checked(c, SameNumberOrText(got, want), "expected " + name + " = " + want + ", got " + got);
}

DirectiveStep ExpectDrawing(DirectiveContext& c, const Directive& d, Input*) {
  std::string dump = DumpDrawing(c.host.document().drawing());
  bool found = dump.find(d.arg) != std::string::npos;
  return Checked(c, found != d.negated,
                 std::string(found ? "the drawing holds: " : "the drawing does not hold: ") + d.arg +
                     "\n--- the drawing ---\n" + dump);
}

DirectiveStep ExpectFile(DirectiveContext& c, const Directive& d, Input*) {
  std::string dos, linux_path;
  if (!Utf8ToBig5(d.arg, &dos)) return Fail(c, "the line has characters that Big5 cannot hold");
  std::error_code ec;
  bool exists = Files().Resolve(dos, &linux_path) && std::filesystem::exists(linux_path, ec);
  return Checked(c, exists != d.negated, d.arg + (exists ? " exists" : " does not exist"));
}

// #edit, #keep and #end outside a file edit (which reads them itself).
DirectiveStep OutOfEdit(DirectiveContext& c, const Directive& d, Input*) {
  return Fail(c, "#" + d.word + " answers only a file edit, and the host is not editing a file");
}

struct DirectiveEntry {
  const char* word;
  Handler handler;
  bool negated;
  const char* help;
};

const DirectiveEntry kDirectives[] = {
    {"answer", GiveAnswer, false, "TEXT  answers with TEXT exactly, blanks included"},
    {"cancel", PressEscape, false, "presses Escape at the prompt that is asking"},
    {"expect-output", ExpectOutput, false, "TEXT  TEXT appears in the transcript after the last match"},
    {"expect-no-output", ExpectOutput, true, "TEXT  TEXT does not appear after the last match"},
    {"expect-result", ExpectResult, false, "VALUE  the last expression gave VALUE"},
    {"expect-sysvar", ExpectSysvar, false, "NAME VALUE  a system variable has VALUE"},
    {"expect-file", ExpectFile, false, "PATH  a file exists at a DOS path"},
    {"expect-no-file", ExpectFile, true, "PATH  no file exists at a DOS path"},
    {"expect-drawing", ExpectDrawing, false, "TEXT  the drawing's dump holds TEXT"},
    {"expect-no-drawing", ExpectDrawing, true, "TEXT  the drawing's dump does not hold TEXT"},
    {"fail-alloc", FailAlloc, false, "[N]  the module's allocation after the next N fails, once"},
    {"dialog", CheckDialog, false, "[NAME]  the dialog on top is NAME (none for no NAME)"},
    {"show", ShowDialog, false, "prints the open dialog's tiles"},
    {"edit", OutOfEdit, false, "... #end  the new lines of a file being edited"},
    {"keep", OutOfEdit, false, "closes the editor without changing the file"},
    {"end", OutOfEdit, false, "ends the lines of #edit"},
};

}  // namespace

bool IsDirective(std::string_view line) {
  if (line.empty() || line[0] != '#') return false;
  return line.size() == 1 || line[1] == ' ' || line[1] == '\t' || line[1] == '!' ||
         (line[1] >= 'a' && line[1] <= 'z');
}

bool IsComment(std::string_view line) {
  return line.size() == 1 || line[1] == ' ' || line[1] == '\t' || line[1] == '!';
}

DirectiveStep RunDirective(DirectiveContext& context, std::string_view line, Input* answer) {
  if (IsComment(line)) return DirectiveStep::kNext;
  size_t space = line.find_first_of(" \t");
  Directive d;
  d.word = line.substr(1, space == std::string_view::npos ? std::string_view::npos : space - 1);
  d.arg = space == std::string_view::npos ? "" : std::string(Trim(line.substr(space), kBlanksAndLineEnds));
  d.text = space == std::string_view::npos ? "" : line.substr(space + 1);
  for (const DirectiveEntry& e : kDirectives)
    if (d.word == e.word) {
      d.negated = e.negated;
      return e.handler(context, d, answer);
    }
  return Fail(context, "unknown directive #" + d.word);
}

std::string DirectiveSummary() {
  std::string out;
  for (const DirectiveEntry& e : kDirectives) out += "#" + std::string(e.word) + " " + e.help + "\n";
  return out;
}

}  // namespace vorhost
