// terminal.cpp - the person at the terminal.
#include "emulator/ui/terminal.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "emulator/core/encoding.h"
#include "emulator/core/text.h"
#include "emulator/session/host.h"
#include "emulator/ui/dialog_view.h"
#include "emulator/ui/file_editor.h"

namespace vorhost {
namespace {

// Ctrl-D this many times in a row, with nothing typed between, means no
// one is there any more (input that only ends): the session ends.
constexpr int kEndsBeforeGone = 10;

// "  kind  words" wrapped at width, the words in a column of their own.
std::string Wrapped(const std::string& kind, const std::string& words, int width, size_t column = 16);

// "WORDS  help" lines with the help in a column from column, indented and
// wrapped at width.
std::string Columns(const std::string& lines, size_t column, int width) {
  std::string out;
  size_t start = 0;
  while (start < lines.size()) {
    size_t nl = lines.find('\n', start);
    if (nl == std::string::npos) nl = lines.size();
    std::string line = lines.substr(start, nl - start);
    start = nl + 1;
    size_t gap = line.find("  ");
    out += Wrapped(line.substr(0, gap), gap == std::string::npos ? "" : line.substr(gap + 2), width, column);
  }
  return out;
}

std::string Wrapped(const std::string& kind, const std::string& words, int width, size_t column) {
  std::string out, line = "  " + kind;
  if (line.size() + 1 > column) {
    out += line + "\n";
    line.clear();
  }
  line.resize(column, ' ');
  size_t start = 0;
  bool first = true;
  while (start < words.size()) {
    size_t end = words.find(' ', start);
    if (end == std::string::npos) end = words.size();
    std::string word = words.substr(start, end - start);
    start = end + 1;
    if (!first && line.size() + 1 + word.size() > static_cast<size_t>(width)) {
      out += line + "\n";
      line = std::string(column, ' ');
      first = true;
    }
    line += (first ? "" : " ") + word;
    first = false;
  }
  return out + line + "\n";
}

bool IsHelpWord(std::string_view line) {
  std::string word = UpperName(Trim(line, kBlanks));
  return word == "HELP" || word == "?";
}

}  // namespace

TerminalUser::TerminalUser(Host& host, TerminalScreen& screen, LineReader& reader, int width, bool colour)
    : host_(host), screen_(screen), reader_(reader), completer_(host), width_(width), colour_(colour),
      directives_{host, 0, [this](const std::string& message) { screen_.Show(message); }} {}

LineInput TerminalUser::NextLine(const std::string& prompt, Asking asking) {
  for (;;) {
    LineInput in = reader_.Read(prompt, [this, asking](std::string_view line, size_t cursor) {
      return completer_.Complete(line, cursor, asking);
    });
    if (in.kind == LineInput::Kind::kHelp) {
      ShowHelp(asking);
      continue;
    }
    if (in.kind == LineInput::Kind::kEnd && ++ends_in_a_row_ >= kEndsBeforeGone) in.kind = LineInput::Kind::kClosed;
    if (in.kind != LineInput::Kind::kLine) return in;
    ends_in_a_row_ = 0;
    if (asking == Asking::kDialog && Trim(in.text, kBlanks).empty()) continue;
    if (asking == Asking::kDialog && IsHelpWord(in.text)) {
      ShowHelp(asking);
      continue;
    }
    std::string big5;
    if (!Utf8ToBig5(in.text, &big5)) {
      screen_.Show("The line has characters that Big5 cannot hold; type it again.");
      continue;
    }
    return in;
  }
}

DirectiveStep TerminalUser::Directive(const std::string& line, Input* answer) {
  std::string word = line.substr(0, line.find_first_of(" \t"));
  if (word == "#edit" || word == "#keep" || word == "#end") {
    screen_.Show("#edit, #keep and #end answer only a file edit of a script.");
    return DirectiveStep::kNext;
  }
  if (word == "#show") {  // the dialog drawn again, on the screen only
    Dialog* open = host_.dialogs().top();
    screen_.Show(open ? DrawDialog(*open, Style()) : "#show: no dialog is open");
    return DirectiveStep::kNext;
  }
  return RunDirective(directives_, line, answer);
}

DialogViewStyle TerminalUser::Style() const {
  DialogViewStyle style;
  style.width = std::min(screen_.Columns(width_), width_);
  style.colour = colour_;
  return style;
}

void TerminalUser::Acknowledge(std::string_view) {
  // The alert is the open line; it stays on the screen until Enter.
  std::string alert = screen_.TakeOpenLine();
  reader_.Read(alert + "  (Enter closes it) ", {});
  host_.transcript().Record("\n");  // the reader has ended the line
}

Input TerminalUser::Read(Asking asking, std::string_view) {
  std::string prompt = screen_.TakeOpenLine();
  last_drawing_.clear();
  for (;;) {
    LineInput in = NextLine(prompt, asking);
    switch (in.kind) {
      case LineInput::Kind::kClosed: return Input::End();
      case LineInput::Kind::kEnd:
        if (asking != Asking::kCommand) return Input::Cancel();
        // Ctrl-D at the command prompt is QUIT, shown as if typed.
        screen_.Write("QUIT\n");
        return Input::Line("QUIT");
      case LineInput::Kind::kLine: break;
      default: return Input::Cancel();
    }
    if (IsDirective(in.text)) {
      Input answer;
      if (Directive(in.text, &answer) == DirectiveStep::kAnswer) return answer;
      continue;
    }
    std::string big5;
    Utf8ToBig5(in.text, &big5);
    return Input::Line(std::move(big5));
  }
}

DialogInput TerminalUser::ReadEvent(Dialog& dialog, std::string_view) {
  std::string prompt = screen_.TakeOpenLine();
  std::string drawing = DrawDialog(dialog, Style());
  if (drawing != last_drawing_) screen_.Show(drawing);
  last_drawing_ = drawing;
  for (;;) {
    LineInput in = NextLine(prompt, Asking::kDialog);
    if (in.kind == LineInput::Kind::kClosed) return DialogInput::End();
    if (in.kind != LineInput::Kind::kLine) return DialogInput::Escape();
    if (IsDirective(in.text)) {
      Input answer;
      if (Directive(in.text, &answer) != DirectiveStep::kAnswer) continue;
      if (answer.kind == Input::Kind::kCancel) return DialogInput::Escape();
      in.text = Big5ToUtf8(answer.text());
    }
    std::string big5;
    Utf8ToBig5(in.text, &big5);
    DialogEvent event;
    std::string why;
    if (!ParseDialogEvent(big5, &event, &why)) return DialogInput::Mistake(big5, why + "; help lists them");
    return DialogInput::Event(std::move(event), big5);
  }
}

EditOutcome TerminalUser::EditText(std::string* text, std::string* why) {
  screen_.Flush();
  return EditInEditor(text, why);
}

void TerminalUser::ShowHelp(Asking asking) {
  if (asking == Asking::kCommand) {
    screen_.Show(Big5ToUtf8(host_.HelpText()));
    return;
  }
  if (asking != Asking::kDialog) {
    screen_.Show("Answer the prompt; Enter takes the value shown in <>, Escape or Ctrl-C cancels.");
    return;
  }
  Dialog* dialog = host_.dialogs().top();
  std::string out = "Events (Escape or Ctrl-C is cancel, Tab completes a word):\n" + Columns(EventSummary(), 22, Style().width);
  if (dialog) {
    // The keys by kind of tile, in layout order; disabled ones in brackets.
    out += "Tiles of " + dialog->name() + " by kind (disabled ones in brackets):\n";
    std::vector<std::pair<std::string, std::string>> kinds;
    for (LiveTile* tile : dialog->KeyedTiles()) {
      std::string kind = dcl::KindName(tile->kind());
      auto at = std::find_if(kinds.begin(), kinds.end(), [&](const auto& k) { return k.first == kind; });
      if (at == kinds.end()) at = kinds.insert(kinds.end(), {kind, ""});
      std::string key = tile->Usable() ? tile->key() : "[" + tile->key() + "]";
      if (tile->IsList()) key += "(rows 0-" + std::to_string(tile->rows.empty() ? 0 : tile->rows.size() - 1) + ")";
      at->second += (at->second.empty() ? "" : " ") + key;
    }
    for (const auto& [kind, keys] : kinds) out += Wrapped(kind, keys, Style().width);
  }
  screen_.Show(Big5ToUtf8(out));
}

std::string TerminalUser::HelpNotes() {
  std::string directives = DirectiveSummary();
  std::string usable;
  size_t start = 0;
  while (start < directives.size()) {
    size_t nl = directives.find('\n', start);
    std::string line = directives.substr(start, nl - start);
    start = nl == std::string::npos ? directives.size() : nl + 1;
    if (!line.starts_with("#edit") && !line.starts_with("#keep") && !line.starts_with("#end")) usable += line + "\n";
  }
  return std::string(LineEditing() ? "Keys: Up and Down recall lines typed before, Tab completes a name,\n"
                                     "Escape or Ctrl-C cancels, F1 shows this help, Ctrl-D at Command: is QUIT.\n"
                                   : "Keys: Escape then Enter, or Ctrl-C, cancels; Ctrl-D at Command: is QUIT.\n") +
         "Lines a script may hold that you may type too:\n" + Indented(usable);
}

}  // namespace vorhost
