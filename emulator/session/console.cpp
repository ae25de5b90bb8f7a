// console.cpp - prompts, answers and alerts in the transcript.
#include "emulator/session/console.h"

#include <utility>

namespace vorhost {

// Shows prompt, reads what read gets from the user (none when there is no
// user), and keeps it after the prompt.
template <typename In, typename Read>
In Console::Exchange(std::string_view prompt, In none, Read read) {
  transcript_.Write(prompt);
  size_t shown = transcript_.text().size();
  In in = user_ ? read(*user_) : none;
  if (in.kind != In::Kind::kEnd) Reprompt(prompt, shown);
  Show(in);
  return in;
}

Input Console::Ask(std::string_view prompt, Asking asking, std::optional<Point3> base,
                   const std::vector<uint64_t>* chosen) {
  if (asking == Asking::kCommand) transcript_.StartLine();
  std::optional<Point3> outer = std::exchange(base_point_, base);
  const std::vector<uint64_t>* outer_chosen = std::exchange(chosen_, chosen);
  Input in = Exchange(prompt, Input::Cancel(), [&](User& user) { return user.Read(asking, prompt); });
  base_point_ = outer;
  chosen_ = outer_chosen;
  return in;
}

Input Console::Ask(std::string_view prompt, const Question& question) {
  Question outer = std::exchange(question_, question);
  Input in = Ask(prompt, Asking::kPrompt);
  question_ = std::move(outer);
  return in;
}

DialogInput Console::NextEvent(Dialog& dialog) {
  std::string prompt = "\n" + dialog.name() + "> ";
  return Exchange(std::string_view(prompt), DialogInput::Escape(),
                  [&](User& user) { return user.ReadEvent(dialog, prompt); });
}

void Console::Reprompt(std::string_view prompt, size_t shown) {
  if (transcript_.text().size() == shown) return;
  while (!prompt.empty() && prompt.front() == '\n') prompt.remove_prefix(1);
  transcript_.StartLine();
  transcript_.Write(prompt);
}

// The answer stays on the prompt's line: whatever the host prints next
// starts a line of its own, as texts and prompts begin with a line feed.
// A text typed at a terminal is on the screen already; a point or objects
// picked are written as the command line shows them.
void Console::Show(const Input& in) {
  switch (in.kind) {
    case Input::Kind::kAnswer:
      if (in.answer.kind != Answer::Kind::kText || echo_answers_) transcript_.Write(in.answer.Echo());
      else transcript_.Record(in.answer.text + "\n");
      break;
    case Input::Kind::kCancel: transcript_.Write("*Cancel*"); break;
    case Input::Kind::kEnd: transcript_.StartLine(); break;
  }
}

void Console::Show(const DialogInput& in) {
  switch (in.kind) {
    case DialogInput::Kind::kEvent:
    case DialogInput::Kind::kMistake:
      if (in.kind == DialogInput::Kind::kEvent && in.typed.empty()) transcript_.Write(EventText(in.event));
      else if (echo_answers_) transcript_.Write(in.typed);  // as typed
      else transcript_.Record(in.typed + "\n");
      break;
    case DialogInput::Kind::kEscape: transcript_.Write("*Cancel*"); break;
    case DialogInput::Kind::kEnd: transcript_.StartLine(); break;
  }
}

void Console::Alert(std::string_view message) {
  transcript_.WriteLine("[Alert] " + std::string(message));
  if (user_) user_->Acknowledge(message);
}

void Console::Misstep(const std::string& why) {
  transcript_.WriteLine(why);
  if (user_) user_->Misstep(why);
}

}  // namespace vorhost
