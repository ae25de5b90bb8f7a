// console.h - the host's command line between it and whoever plays the
// user: it shows a prompt in the transcript, takes the user's answer or
// dialog event and keeps it there too, and shows alerts.
#ifndef VORHOST_SESSION_CONSOLE_H
#define VORHOST_SESSION_CONSOLE_H

#include <optional>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/core/input.h"
#include "emulator/core/numbers.h"
#include "emulator/core/question.h"
#include "emulator/core/transcript.h"
#include "emulator/dialogs/dialogs.h"
#include "emulator/session/user.h"

namespace vorhost {

class Console : public EventSource {
 public:
  // Writes to transcript (not owned).
  explicit Console(Transcript& transcript) : transcript_(transcript) {}
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // The user is not owned. With none, every question is cancelled.
  void set_user(User* user) { user_ = user; }
  User* user() const { return user_; }
  // Whether typed answers are printed after their prompts (a script's are;
  // a terminal shows what a person types by itself).
  void set_echo_answers(bool echo) { echo_answers_ = echo; }

  // Shows prompt (Big5) and reads the user's answer, keeping it in the
  // transcript. An answer while no user is set is Escape. base is the
  // point a point asked for is measured from, where there is one; chosen
  // the objects chosen so far while objects are being selected (not owned;
  // it must outlive the call).
  Input Ask(std::string_view prompt, Asking asking = Asking::kPrompt, std::optional<Point3> base = std::nullopt,
            const std::vector<uint64_t>* chosen = nullptr);
  // While the user is asked: the point the answer is measured from, given
  // to Ask (a front end draws a line from it to the cursor); none else.
  const std::optional<Point3>& base_point() const { return base_point_; }
  // While the user is asked during a selection: the objects chosen so far,
  // as the host holds them (a front end highlights them); empty else.
  const std::vector<uint64_t>& chosen() const { return chosen_ ? *chosen_ : kNoneChosen; }
  // Asks prompt as above for a host function's question: while the user is
  // asked, question() is it (a front end may show a window for it); it is
  // of kind kNone else.
  Input Ask(std::string_view prompt, const Question& question);
  const Question& question() const { return question_; }
  // A help topic (Big5) has been printed: a front end may show it too.
  void ShowHelp(std::string_view topic, std::string_view text) {
    if (user_) user_->ShowHelp(topic, text);
  }

  // An alert box with message (Big5).
  void Alert(std::string_view message);

  // The user's next event in dialog, shown after the prompt "NAME> ".
  DialogInput NextEvent(Dialog& dialog) override;

  // The user's answer could not be taken: why goes to the transcript and
  // to the user (a script stops there; a person tries again).
  void Misstep(const std::string& why) override;

 private:
  template <typename In, typename Read>
  In Exchange(std::string_view prompt, In none, Read read);
  // Writes prompt again, on a line of its own, when something was printed
  // since it was shown at shown (a script's #show), so the answer follows it.
  void Reprompt(std::string_view prompt, size_t shown);
  // Keeps what the user gave after its prompt.
  void Show(const Input& in);
  void Show(const DialogInput& in);

  Transcript& transcript_;
  User* user_ = nullptr;
  bool echo_answers_ = true;
  std::optional<Point3> base_point_;
  const std::vector<uint64_t>* chosen_ = nullptr;
  static inline const std::vector<uint64_t> kNoneChosen{};
  Question question_;
};

}  // namespace vorhost

#endif
