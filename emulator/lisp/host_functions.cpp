// host_functions.cpp - the host functions of the command language, and
// their table.
#include "emulator/lisp/host_functions.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "emulator/core/answer.h"
#include "emulator/core/text.h"
#include "emulator/core/resbuf.h"
#include "emulator/core/numbers.h"
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
bool W1(HostServices& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 2, err)) return false;
  const std::string& current = args[0].text;
  std::string prompt = "\n" + args[1].text;
  prompt += current.empty() ? ": " : " <" + current + ">: ";
  Input in = host.AskQuestion(prompt, Question::Text(args[1].text, current));
  if (!in.IsAnswer()) return true;
  std::string text = in.answer.kind == Answer::Kind::kText ? in.text() : in.answer.Echo();
  *result = Value::String(text.empty() ? current : text);
  return true;
}

// (W2 path): lets the user edit the file; T when the edit ended normally,
// nil when the user abandoned it or it could not be saved. The file must
// exist. Its new contents replace it whole (ReplaceFile), so a failed save
// leaves it as it was.
bool W2(HostServices& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 1, err)) return false;
  std::string linux_path;
  std::error_code ec;
  if (!Files().Resolve(args[0].text, &linux_path) || !std::filesystem::is_regular_file(linux_path, ec)) {
    *err = "file not found: " + args[0].text;
    return false;
  }
  std::string name = Files().DosPath(args[0].text);
  host.PrintLine("Editing " + name);
  std::string contents;
  if (!ReadWholeFile(linux_path, &contents)) {
    host.PrintLine("Cannot read " + name + ".");
    return true;
  }
  std::string why;
  std::optional<EditOutcome> outcome = host.EditText(&contents, &why);
  if (!outcome) return true;  // nobody to edit it
  switch (*outcome) {
    case EditOutcome::kSaved:
      if (!ReplaceFile(linux_path, contents, name, &why)) {
        host.PrintLine(why);
        return true;
      }
      host.PrintLine("File saved.");
      *result = Value::T();
      return true;
    case EditOutcome::kUnchanged:
      *result = Value::T();
      return true;
    case EditOutcome::kCancelled:
      host.PrintLine(why.empty() ? "Edit abandoned; file unchanged." : why);
      return true;
  }
  return true;
}

// (ADS_HELP file topic): shows the topic in the transcript.
bool AdsHelp(HostServices& host, const Args& args, Value* result, std::string* err) {
  if (!TextArgs(args, 2, err)) return false;
  auto path = FindFile(args[0].text);
  if (!path) {
    host.PrintLine("Help file " + args[0].text + " not found.");
    return true;
  }
  std::string contents, text;
  ReadWholeFile(*path, &contents);  // one that cannot be read has no topic
  if (!HelpTopic(contents, args[1].text, &text)) {
    host.PrintLine("No help topic " + args[1].text + " in " + args[0].text + ".");
    return true;
  }
  host.PrintLine("---- Help: " + args[1].text + " ----");
  host.Print("\n" + text);
  host.PrintLine("----");
  host.ShowHelp(args[1].text, text);
  *result = Value::T();
  return true;
}

// (ACAD_COLORDLG colour [flag]): a colour from 1 to 255, or nil when the
// user cancels. Unless flag is nil, BYBLOCK (0) and BYLAYER (256) may be
// chosen too. Enter keeps the current colour when it is one of those.
bool ColorDialog(HostServices& host, const Args& args, Value* result, std::string* err) {
  if (args.empty() || args.size() > 2) {
    *err = args.empty() ? "too few arguments" : "too many arguments";
    return false;
  }
  if (args[0].kind != Value::Kind::kInt) {
    *err = "bad argument type";
    return false;
  }
  long current = args[0].integer;
  bool logical = args.size() < 2 || !args[1].IsNil();
  long lowest = logical ? kColorByBlock : 1, highest = logical ? kColorByLayer : 255;
  for (;;) {
    Input in = host.AskQuestion("\nSelect color (1-255) <" + std::to_string(current) + ">: ",
                                Question::Colour(static_cast<int>(current), logical));
    if (!in.IsAnswer()) return true;
    std::optional<short> chosen = ColorAnswer(in.answer, logical);
    if (in.answer.IsEnter() && current >= lowest && current <= highest) chosen = static_cast<short>(current);
    if (chosen) {
      *result = Value::Int(*chosen);
      return true;
    }
    host.PrintLine("Invalid color: choose a number from 1 to 255.");
  }
}

// A list of two or three numbers: a point as the command language gives one.
std::optional<Point3> PointOf(const Value& v) {
  if (v.kind != Value::Kind::kList || v.dotted || v.items.size() < 2 || v.items.size() > 3)
    return std::nullopt;
  for (const Value& item : v.items)
    if (!item.IsNumber()) return std::nullopt;
  return Point3{v.items[0].Number(), v.items[1].Number(), v.items.size() == 3 ? v.items[2].Number() : 0.0};
}

// (getvar name): the variable's value, or nil for an unknown name.
bool GetVar(HostServices& host, const Args& args, Value* r, std::string* err) {
  if (args.size() != 1 || args[0].kind != Value::Kind::kString) {
    *err = args.size() != 1 ? "too few arguments" : "bad argument type";
    return false;
  }
  SysValue v;
  if (!host.GetVariable(args[0].text, &v)) return true;  // nil
  if (auto* s = std::get_if<short>(&v)) *r = Value::Int(*s);
  else if (auto* d = std::get_if<double>(&v)) *r = Value::Real(*d);
  else if (auto* p = std::get_if<Point3>(&v))
    *r = Value::List({Value::Real((*p)[0]), Value::Real((*p)[1]), Value::Real((*p)[2])});
  else *r = Value::String(std::get<std::string>(v));
  return true;
}

// The value (setvar name value) sets, or none for a value no variable takes.
std::optional<SysValue> SysValueOf(const Value& v) {
  switch (v.kind) {
    case Value::Kind::kInt:  // past 16 bits it is refused, not wrapped
      if (!IsShort(v.integer)) return std::nullopt;
      return SysValue(static_cast<short>(v.integer));
    case Value::Kind::kReal: return SysValue(v.real);
    case Value::Kind::kString: return SysValue(v.text);
    default:
      if (std::optional<Point3> p = PointOf(v)) return SysValue(*p);
      return std::nullopt;
  }
}

// (setvar name value): the value, or an error when the host refuses it.
bool SetVar(HostServices& host, const Args& args, Value* r, std::string* err) {
  if (args.size() != 2 || args[0].kind != Value::Kind::kString) {
    *err = args.size() != 2 ? "too few arguments" : "bad argument type";
    return false;
  }
  std::optional<SysValue> value = SysValueOf(args[1]);
  std::string why;
  if (!value || !host.SetVariable(args[0].text, *value, &why)) {
    *err = "the host rejected the value";
    return false;
  }
  *r = args[1];
  return true;
}

// The answer a value of (command ...) stands for: nil and whatever cannot
// answer a prompt are Enter.
Answer AnswerOf(const Value& v) {
  switch (v.kind) {
    case Value::Kind::kString: return Answer::Text(v.text);
    case Value::Kind::kInt: return Answer::OfInt(v.integer);
    case Value::Kind::kReal: return Answer::OfReal(v.real);
    case Value::Kind::kEname: return Answer::OfEntities(Answer::Kind::kName, {EntityId(v.ename)});
    default:
      if (std::optional<Point3> p = PointOf(v)) return Answer::OfPoint(*p);
      return Answer::Enter();
  }
}

// (command "LINE" '(0 0) '(10 0) ""): answers fed as a program feeds them;
// (command) cancels the pending command.
bool CommandFunction(HostServices& host, const Args& args, Value*, std::string*) {
  std::vector<Answer> items;
  for (const Value& v : args) items.push_back(AnswerOf(v));
  if (items.empty()) host.CancelCommand();
  else host.FeedCommand(items);
  return true;
}

// (dcl_preview "FILE.DCL" "DIALOG"): shows a dialog with no actions of its
// own, for a look at it; gives the status it ended with, or nil.
bool DclPreview(HostServices& host, const Args& args, Value* r, std::string* err) {
  if (args.size() != 2 || args[0].kind != Value::Kind::kString || args[1].kind != Value::Kind::kString) {
    *err = "bad argument type";
    return false;
  }
  if (std::optional<int> status = host.PreviewDialog(args[0].text, args[1].text)) *r = Value::Int(*status);
  return true;
}

// (arxload name [onfailure]), (arxunload name [onfailure]): name when the
// host loaded or unloaded the module; else the host says why, and gives
// onfailure when there is one, or fails.
template <bool load>
bool ArxLoad(HostServices& host, const Args& args, Value* r, std::string* err) {
  if (args.empty() || args.size() > 2) {
    *err = args.empty() ? "too few arguments" : "too many arguments";
    return false;
  }
  if (args[0].kind != Value::Kind::kString) {
    *err = "bad argument type";
    return false;
  }
  std::string why;
  if (load ? host.LoadApplication(args[0].text, &why) : host.UnloadApplication(args[0].text, &why)) {
    *r = args[0];
    return true;
  }
  host.PrintLine(why);
  if (args.size() == 2) {
    *r = args[1];
    return true;
  }
  *err = load ? "ARXLOAD failed" : "ARXUNLOAD failed";
  return false;
}

// (arx): the file names of the modules loaded, or nil.
bool Arx(HostServices& host, const Args& args, Value* r, std::string* err) {
  if (!args.empty()) {
    *err = "too many arguments";
    return false;
  }
  std::vector<Value> names;
  for (const std::string& name : host.Applications()) names.push_back(Value::String(name));
  *r = Value::List(std::move(names));
  return true;
}

struct HostFunction {
  const char* name;
  const char* help;
  bool (*fn)(HostServices&, const Args&, Value*, std::string*);
};

const HostFunction kHostFunctions[] = {
    {"W1", "(W1 default prompt): a text the user types, the default kept on Enter", W1},
    {"W2", "(W2 path): the user edits a text file", W2},
    {"ADS_HELP", "(ADS_HELP file topic): shows a topic of a help file", AdsHelp},
    {"ACAD_COLORDLG", "(ACAD_COLORDLG colour flag): a colour the user chooses", ColorDialog},
    {"GETVAR", "(getvar name): a system variable", GetVar},
    {"SETVAR", "(setvar name value): sets a system variable", SetVar},
    {"COMMAND", "(command items...): answers to the command line, as a program gives them", CommandFunction},
    {"DCL_PREVIEW", "(dcl_preview file dialog): opens any dialog of a dialog file, to try it", DclPreview},
    {"ARXLOAD", "(arxload name [onfailure]): loads a module", ArxLoad<true>},
    {"ARXUNLOAD", "(arxunload name [onfailure]): unloads a module that allows it", ArxLoad<false>},
    {"ARX", "(arx): the modules loaded", Arx},
};

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

void DefineHostFunctions(lisp::Interpreter& lisp, HostServices& host) {
  for (const HostFunction& f : kHostFunctions)
    lisp.Define(f.name, [&host, fn = f.fn](const Args& args, Value* r, std::string* err) {
      return fn(host, args, r, err);
    });
}

std::string HostFunctionSummary() {
  std::string out;
  for (const HostFunction& f : kHostFunctions) out += std::string(f.name) + "  " + f.help + "\n";
  return out;
}

}  // namespace vorhost
