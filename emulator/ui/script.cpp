// script.cpp - the script driver: lines as answers and events, directives
// carried out as they come, file edits.
#include "emulator/ui/script.h"

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/session/host.h"

namespace vorhost {
namespace {

std::string TrimText(std::string_view s) { return std::string(Trim(s, kBlanksAndLineEnds)); }

}  // namespace

ScriptUser::ScriptUser(Host& host, std::string name, std::vector<std::string> lines)
    : ScriptUser(host, std::move(name), nullptr) {
  lines_ = std::move(lines);
}

ScriptUser::ScriptUser(Host& host, std::string name, std::istream* in)
    : host_(host), name_(std::move(name)), in_(in),
      directives_{host, 0, [this](const std::string& message) { Fail(line_number_, message); }} {}

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
      DirectiveStep step = RunDirective(directives_, line, &answer);
      if (step == DirectiveStep::kFail) break;
      if (step == DirectiveStep::kAnswer) return answer;
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

EditOutcome ScriptUser::EditText(std::string* text, std::string*) {
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
