// hostfuncs.cpp - W1, W2, ADS_HELP and ACAD_COLORDLG.
#include "emulator/core/hostfuncs.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "emulator/core/answer.h"
#include "emulator/core/text.h"
#include "emulator/host.h"
#include "emulator/platform/search_path.h"
#include "emulator/platform/filesystem.h"
#include "emulator/platform/replace_file.h"

namespace vorhost {
namespace {

using lisp::Value;
using Args = std::vector<Value>;

bool TextArgs(const Args& args, size_t count, std::string* err) {
  if (args.size() != count) {
    *err = args.size() < count ? "too few arguments" : "too many arguments";
    return false;
  }
  for (const Value& a : args)
    if (a.kind != Value::Kind::kString) {
      *err = "bad argument type";
      return false;
    }
  return true;
}

// (W1 default prompt): the text typed; Enter keeps the default; Escape nil.
bool W1(Host& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 2, err)) return false;
  const std::string& current = args[0].text;
  std::string prompt = "\n" + args[1].text;
  prompt += current.empty() ? ": " : " <" + current + ">: ";
  Input in = host.Ask(prompt);
  if (in.kind != Input::Kind::kLine) return true;
  *result = Value::String(in.text.empty() ? current : in.text);
  return true;
}

// (W2 path): lets the user edit the file; T when the edit ended normally,
// nil when the user abandoned it or it could not be saved. The file must
// exist. Its new contents replace it whole (ReplaceFile), so a failed save
// leaves it as it was.
bool W2(Host& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 1, err)) return false;
  std::string linux_path;
  std::error_code ec;
  if (!Files().Resolve(args[0].text, &linux_path) || !std::filesystem::is_regular_file(linux_path, ec)) {
    *err = "file not found: " + args[0].text;
    return false;
  }
  std::string name = Files().DosPath(args[0].text);
  host.transcript().WriteLine("Editing " + name);
  if (!host.user()) return true;
  std::string contents;
  if (!ReadWholeFile(linux_path, &contents)) {
    host.transcript().WriteLine("Cannot read " + name + ".");
    return true;
  }
  std::string why;
  switch (host.user()->EditText(&contents, &why)) {
    case EditOutcome::kSaved:
      if (!ReplaceFile(linux_path, contents, name, &why)) {
        host.transcript().WriteLine(why);
        return true;
      }
      host.transcript().WriteLine("File saved.");
      *result = Value::T();
      return true;
    case EditOutcome::kUnchanged:
      *result = Value::T();
      return true;
    case EditOutcome::kCancelled:
      host.transcript().WriteLine(why.empty() ? "Edit abandoned; file unchanged." : why);
      return true;
  }
  return true;
}

// (ADS_HELP file topic): shows the topic in the transcript.
bool AdsHelp(Host& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 2, err)) return false;
  auto path = FindFile(args[0].text);
  if (!path) {
    host.transcript().WriteLine("Help file " + args[0].text + " not found.");
    return true;
  }
  std::string contents, text;
  ReadWholeFile(*path, &contents);  // one that cannot be read has no topic
  if (!HelpTopic(contents, args[1].text, &text)) {
    host.transcript().WriteLine("No help topic " + args[1].text + " in " + args[0].text + ".");
    return true;
  }
  host.transcript().WriteLine("---- Help: " + args[1].text + " ----");
  host.transcript().Write("\n" + text);
  host.transcript().WriteLine("----");
  *result = Value::T();
  return true;
}

// (ACAD_COLORDLG colour [flag]): a colour from 1 to 255, or nil when the
// user cancels. Enter keeps the current colour when it is one of those.
bool ColorDialog(Host& host, const Args& args, Value* result, std::string* err) {
  if (args.empty() || args.size() > 2) {
    *err = args.empty() ? "too few arguments" : "too many arguments";
    return false;
  }
  if (args[0].kind != Value::Kind::kInt) {
    *err = "bad argument type";
    return false;
  }
  long current = args[0].integer;
  for (;;) {
    Input in = host.Ask("\nSelect color (1-255) <" + std::to_string(current) + ">: ");
    if (in.kind != Input::Kind::kLine) return true;
    std::optional<short> chosen = ColorAnswer(Answer::Text(in.text), false);
    if (in.text.empty() && current >= 1 && current <= 255) chosen = static_cast<short>(current);
    if (chosen) {
      *result = Value::Int(*chosen);
      return true;
    }
    host.transcript().WriteLine("Invalid color: choose a number from 1 to 255.");
  }
}

}  // namespace

bool HelpTopic(std::string_view contents, std::string_view topic, std::string* text) {
  std::string wanted = "[" + UpperName(topic) + "]";
  bool inside = false, found = false;
  text->clear();
  std::istringstream in{std::string(contents)};
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
      inside = UpperName(line) == wanted;
      found = found || inside;
      continue;
    }
    if (inside && !(line.size() && line[0] == ';')) *text += line + "\n";
  }
  while (text->size() >= 2 && text->ends_with("\n\n")) text->pop_back();
  return found;
}

void DefineHostFunctions(Host& host) {
  struct Entry {
    const char* name;
    bool (*fn)(Host&, const Args&, Value*, std::string*);
  };
  static const Entry kFunctions[] = {
      {"W1", W1}, {"W2", W2}, {"ADS_HELP", AdsHelp}, {"ACAD_COLORDLG", ColorDialog}};
  for (const Entry& e : kFunctions)
    host.lisp().Define(e.name, [&host, fn = e.fn](const Args& args, Value* r, std::string* err) {
      return fn(host, args, r, err);
    });
}

}  // namespace vorhost
