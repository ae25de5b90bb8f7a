// script.cpp - the script driver: answers, directives and expectations.
#include "emulator/ui/script.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "emulator/core/alloc.h"
#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/session/host.h"
#include "emulator/io/dump.h"
#include "emulator/ui/file_editor.h"
#include "emulator/platform/filesystem.h"

namespace vorhost {
namespace {

std::string TrimText(std::string_view s) { return std::string(Trim(s, kBlanksAndLineEnds)); }

// "#" then a blank, "!" or a lower-case word: a directive or a comment.
// Anything else starting with "#" (a pattern like "#*") is an answer.
bool IsDirective(const std::string& line) {
  if (line.empty() || line[0] != '#') return false;
  return line.size() == 1 || line[1] == ' ' || line[1] == '\t' || line[1] == '!' ||
         (line[1] >= 'a' && line[1] <= 'z');
}

bool IsComment(const std::string& line) {
  return line.size() == 1 || line[1] == ' ' || line[1] == '\t' || line[1] == '!';
}

bool SameNumberOrText(const std::string& a, const std::string& b) {
  if (a == b) return true;
  char *ea = nullptr, *eb = nullptr;
  double x = std::strtod(a.c_str(), &ea), y = std::strtod(b.c_str(), &eb);
  return !a.empty() && !b.empty() && !*ea && !*eb && x == y;
}

}  // namespace

ScriptUser::ScriptUser(Host& host, std::string name, std::vector<std::string> lines)
    : host_(host), name_(std::move(name)), lines_(std::move(lines)) {}

ScriptUser::ScriptUser(Host& host, std::string name, std::istream* in)
    : host_(host), name_(std::move(name)), in_(in) {}

bool ScriptUser::NextLine(std::string* line) {
  if (next_ < lines_.size()) {
    *line = lines_[next_++];
  } else if (!in_ || !std::getline(*in_, *line)) {
    return false;
  }
  if (!line->empty() && line->back() == '\r') line->pop_back();
  ++line_number_;
  return true;
}

void ScriptUser::Fail(int line, const std::string& message) {
  if (failure_.empty()) failure_ = FileLineMessage(name_, static_cast<size_t>(line), message);
}

bool ScriptUser::ToBig5(const std::string& utf8, std::string* big5) {
  if (Utf8ToBig5(utf8, big5)) return true;
  Fail(line_number_, "the line has characters that Big5 cannot hold");
  return false;
}

Input ScriptUser::Read(Asking asking, std::string_view prompt) {
  std::string line;
  while (!failed() && NextLine(&line)) {
    if (IsDirective(line)) {
      Input answer;
      Step step = Directive(line, &answer);
      if (step == Step::kFail) break;
      if (step == Step::kAnswer) return answer;
      continue;
    }
    if (!AsksForAnswer(asking) && TrimText(line).empty()) continue;
    std::string big5;
    if (!ToBig5(line, &big5)) break;
    return Input::Line(std::move(big5));
  }
  if (!failed() && AsksForAnswer(asking))
    Fail(line_number_, "the script ended while the host was asking: " + TrimText(Big5ToUtf8(prompt)));
  if (!failed() && asking == Asking::kDialog) {
    Dialog* open = host_.dialogs().top();
    Fail(line_number_, "the script has no event left for the dialog " + (open ? open->name() : std::string("that is open")));
  }
  return Input::End();
}

DialogInput ScriptUser::ReadEvent(Dialog&, std::string_view prompt) {
  Input in = Read(Asking::kDialog, prompt);
  if (in.kind == Input::Kind::kCancel) return DialogInput::Escape();
  if (in.kind == Input::Kind::kEnd) return DialogInput::End();
  DialogEvent event;
  std::string why;
  if (!ParseDialogEvent(in.text(), &event, &why)) return DialogInput::Mistake(in.text(), why);
  return DialogInput::Event(std::move(event), in.text());
}

void ScriptUser::Misstep(const std::string& why) { Fail(line_number_, Big5ToUtf8(why)); }

ScriptUser::Step ScriptUser::Directive(const std::string& line, Input* answer) {
  if (IsComment(line)) return Step::kNext;
  size_t space = line.find_first_of(" \t");
  std::string word = line.substr(1, space == std::string::npos ? std::string::npos : space - 1);
  std::string arg = space == std::string::npos ? "" : TrimText(line.substr(space));
  int num = line_number_;
  if (word == "answer") {
    std::string big5;
    // The text after "#answer " is taken as it stands, blanks included.
    std::string text = space == std::string::npos ? "" : line.substr(space + 1);
    if (!ToBig5(text, &big5)) return Step::kFail;
    *answer = Input::Line(std::move(big5));
    return Step::kAnswer;
  }
  if (word == "cancel") {
    *answer = Input::Cancel();
    return Step::kAnswer;
  }
  if (word == "dialog" || word == "show") {
    Dialog* open = host_.dialogs().top();
    if (word == "show") {
      if (!open) {
        Fail(num, "#show: no dialog is open");
        return Step::kFail;
      }
      host_.transcript().WriteLine(open->Describe());
      return Step::kNext;
    }
    std::string want = arg.empty() ? "(none)" : arg;
    std::string have = open ? open->name() : "(none)";
    if (want == have) return Step::kNext;
    Fail(num, "expected dialog " + want + " to be open, but " + (open ? "the dialog " + have + " is" : std::string("none is")));
    return Step::kFail;
  }
  if (word == "fail-alloc") {
    FailAllocation(Heap::kModule, arg.empty() ? 0 : std::atoi(arg.c_str()));
    return Step::kNext;
  }
  if (word.starts_with("expect-")) return Expect(word, arg) ? Step::kNext : Step::kFail;
  if (word == "edit" || word == "keep" || word == "end")
    Fail(num, "#" + word + " answers only a file edit, and the host is not editing a file");
  else
    Fail(num, "unknown directive #" + word);
  return Step::kFail;
}

bool ScriptUser::ExpectOutput(const std::string& text, bool present) {
  const std::string& out = host_.transcript().text();
  size_t at = out.find(text, std::min(output_cursor_, out.size()));
  if (present && at != std::string::npos) {
    output_cursor_ = at + text.size();
    return true;
  }
  if (!present && at == std::string::npos) return true;
  std::string seen = out.substr(std::min(output_cursor_, out.size()));
  Fail(line_number_, std::string(present ? "expected output not seen: "
                                                    : "unexpected output seen: ") +
                                    "\"" + text + "\"\n--- output since the last match ---\n" + seen);
  return false;
}

bool ScriptUser::Expect(const std::string& word, const std::string& arg) {
  int num = line_number_;
  if (word == "expect-output") return ExpectOutput(arg, true);
  if (word == "expect-no-output") return ExpectOutput(arg, false);
  if (word == "expect-result") {
    std::string got = Big5ToUtf8(lisp::Print(host_.prompt().last_value()));
    if (got.empty()) got = "no value";
    if (got == arg) return true;
    Fail(num, "expected result " + arg + ", got " + got);
    return false;
  }
  if (word == "expect-sysvar") {
    size_t space = arg.find_first_of(" \t");
    std::string name = arg.substr(0, space);
    std::string want = space == std::string::npos ? "" : TrimText(arg.substr(space));
    SysValue value;
    if (!host_.document().sysvars().Get(name, &value)) {
      Fail(num, "no system variable " + name);
      return false;
    }
    std::string got = Big5ToUtf8(FormatSysValue(value));
    if (SameNumberOrText(got, want)) return true;
    Fail(num, "expected " + name + " = " + want + ", got " + got);
    return false;
  }
  if (word == "expect-drawing" || word == "expect-no-drawing") {
    std::string dump = DumpDrawing(host_.document().drawing());
    bool found = dump.find(arg) != std::string::npos;
    if (found == (word == "expect-drawing")) return true;
    Fail(num, std::string(found ? "the drawing holds: " : "the drawing does not hold: ") + arg +
                  "\n--- the drawing ---\n" + dump);
    return false;
  }
  if (word == "expect-file" || word == "expect-no-file") {
    std::string dos, linux_path;
    if (!ToBig5(arg, &dos)) return false;
    std::error_code ec;
    bool exists = Files().Resolve(dos, &linux_path) && std::filesystem::exists(linux_path, ec);
    if (exists == (word == "expect-file")) return true;
    Fail(num, arg + (exists ? " exists" : " does not exist"));
    return false;
  }
  Fail(num, "unknown directive #" + word);
  return false;
}

EditOutcome ScriptUser::EditText(std::string* text, std::string* why) {
  if (interactive_) return EditInEditor(text, why);
  std::string line;
  while (!failed() && NextLine(&line)) {
    if (IsDirective(line) && IsComment(line)) continue;
    if (line == "#keep") return EditOutcome::kUnchanged;
    if (line == "#cancel") return EditOutcome::kCancelled;
    if (line != "#edit") break;
    // The new contents: every line up to "#end", taken literally.
    std::string contents;
    for (std::string typed;;) {
      if (!NextLine(&typed)) {
        Fail(line_number_, "#edit without #end");
        return EditOutcome::kCancelled;
      }
      if (typed == "#end") break;
      std::string big5;
      if (!ToBig5(typed, &big5)) return EditOutcome::kCancelled;
      contents += big5 + "\r\n";
    }
    *text = std::move(contents);
    return EditOutcome::kSaved;
  }
  if (!failed())
    Fail(line_number_, "the host is editing a file: answer with #edit ... #end, #keep or #cancel");
  return EditOutcome::kCancelled;
}

}  // namespace vorhost
