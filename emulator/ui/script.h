// script.h - a script playing the user: each line is what the user types
// next to whoever asks, and lines starting with "#" and a word are
// directives (comments, expectations, literal answers, file edits). The
// format is described in docs/scripting.md.
#ifndef VORHOST_UI_SCRIPT_H
#define VORHOST_UI_SCRIPT_H

#include <istream>
#include <string>
#include <vector>

#include "emulator/session/user.h"
#include "emulator/ui/directives.h"

namespace vorhost {

class Host;

class ScriptUser : public User {
 public:
  // A script of these lines (UTF-8); name is used in failure messages
  // ("name:line: ...").
  ScriptUser(Host& host, std::string name, std::vector<std::string> lines);
  // A script read from in, a line at a time as the host asks, so that a
  // person can type it (in is not owned).
  ScriptUser(Host& host, std::string name, std::istream* in);
  ScriptUser(const ScriptUser&) = delete;
  ScriptUser& operator=(const ScriptUser&) = delete;

  Input Read(Asking asking, std::string_view prompt) override;
  // A line of the script read as an event of docs/scripting.md.
  DialogInput ReadEvent(Dialog& dialog, std::string_view prompt) override;
  EditOutcome EditText(std::string* text, std::string* why) override;
  void Misstep(const std::string& why) override;

  // Set once a line fails (an expectation, a malformed line, input that
  // ended while the host still asked); the script stops there.
  bool failed() const { return !failure_.empty(); }
  const std::string& failure() const { return failure_; }

 private:
  void Fail(int line, const std::string& message);
  bool ToBig5(const std::string& utf8, std::string* big5);
  // The next line of the script, without its line end; false at the end.
  bool NextLine(std::string* line);

  Host& host_;
  std::string name_;
  std::vector<std::string> lines_;
  size_t next_ = 0;            // index in lines_ of the next line to read
  std::istream* in_ = nullptr; // where lines come from after lines_
  int line_number_ = 0;        // of the line read last
  DirectiveContext directives_;
  std::string failure_;
};

}  // namespace vorhost

#endif
