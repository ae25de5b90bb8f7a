// transcript.cpp - command-line history in UTF-8.
#include "emulator/core/transcript.h"

#include "emulator/core/encoding.h"

namespace vorhost {

void Transcript::Write(std::string_view big5) {
  // After a line a person typed, the terminal is on a new line already: a
  // text's own leading line feed would only add a blank line.
  if (after_typed_line_ && !big5.empty() && big5.front() == '\n') big5.remove_prefix(1);
  after_typed_line_ = false;
  if (big5.empty()) return;
  std::string utf8 = Big5ToUtf8(big5);
  text_ += utf8;
  at_line_start_ = big5.back() == '\n';
  if (out_) {
    *out_ << utf8;
    out_->flush();
  }
}

void Transcript::Record(std::string_view big5) {
  if (big5.empty()) return;
  text_ += Big5ToUtf8(big5);
  at_line_start_ = big5.back() == '\n';
  after_typed_line_ = at_line_start_;
}

void Transcript::StartLine() {
  if (!at_line_start_) Write("\n");
}

void Transcript::WriteLine(std::string_view big5) {
  StartLine();
  Write(big5);
}

}  // namespace vorhost
