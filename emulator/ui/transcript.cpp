// transcript.cpp - command-line history in UTF-8.
#include "emulator/ui/transcript.h"

#include "emulator/core/encoding.h"

namespace vorhost {

void Transcript::Write(std::string_view big5) {
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
}

void Transcript::StartLine() {
  if (!at_line_start_) Write("\n");
}

void Transcript::WriteLine(std::string_view big5) {
  StartLine();
  Write(big5);
}

}  // namespace vorhost
