// lisp_fuzz.cpp - the command language as the command line reads it: each
// line of the input typed at Command: (expressions evaluated with the
// host's functions and the module's, anything else run as a command, no
// one answering what they ask); and every expression of the input read,
// printed, and read again, which must give the same value.
#include <string>
#include <string_view>

#include "emulator/lisp/interp.h"
#include "emulator/lisp/value.h"
#include "support/fuzz_env.h"

namespace {

// Values agree in kind and content; reals as printed, since printing keeps
// six digits by design.
bool Same(const vorhost::lisp::Value& a, const vorhost::lisp::Value& b) {
  using Kind = vorhost::lisp::Value::Kind;
  if (a.kind != b.kind) return false;
  switch (a.kind) {
    case Kind::kInt: return a.integer == b.integer;
    case Kind::kReal: return vorhost::lisp::Print(a) == vorhost::lisp::Print(b);
    case Kind::kString:
    case Kind::kSymbol: return a.text == b.text;
    case Kind::kList:
      if (a.items.size() != b.items.size() || a.dotted != b.dotted) return false;
      for (size_t k = 0; k < a.items.size(); k++)
        if (!Same(a.items[k], b.items[k])) return false;
      return true;
    default: return true;
  }
}

void CheckPrinting(std::string_view text) {
  size_t pos = 0;
  for (int count = 0; pos < text.size() && count < 64; count++) {
    vorhost::lisp::Value value;
    std::string err;
    if (!vorhost::lisp::Read(text, &pos, &value, &err)) return;
    std::string printed = vorhost::lisp::Print(value);
    vorhost::lisp::Value again;
    size_t at = 0;
    if (!vorhost::lisp::Read(printed, &at, &again, &err))
      vorfuzz::Broken("a printed value does not read back: " + err + "\n" + printed);
    if (!Same(again, value))
      vorfuzz::Broken("a printed value reads back otherwise: " + printed + "\n" +
                      vorhost::lisp::Print(again));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text = vorfuzz::Bytes(data, size);
  CheckPrinting(text);

  vorfuzz::Session& session = vorfuzz::Session::Get();
  session.Begin();
  for (size_t start = 0; start < text.size();) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    session.host().command_line().Execute(text.substr(start, end - start));
    start = end + 1;
  }
  return 0;
}
