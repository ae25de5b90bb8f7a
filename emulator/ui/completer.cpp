// completer.cpp - candidates for Tab.
#include "emulator/ui/completer.h"

#include <algorithm>
#include <sstream>

#include "emulator/commands/command.h"
#include "emulator/core/text.h"
#include "emulator/lisp/host_functions.h"
#include "emulator/session/host.h"

namespace vorhost {
namespace {

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && SameName(text.substr(0, prefix.size()), prefix);
}

// The names among all that begin with word, sorted, each once.
std::vector<std::string> Matching(std::vector<std::string> all, std::string_view word) {
  std::erase_if(all, [&](const std::string& name) { return !StartsWithNoCase(name, word); });
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

// The first word of each line of a summary ("NAME  what it does").
std::vector<std::string> FirstWords(const std::string& summary) {
  std::vector<std::string> words;
  std::istringstream in(summary);
  for (std::string line; std::getline(in, line);) {
    std::string word = line.substr(0, line.find(' '));
    if (!word.empty() && word[0] != '(') words.push_back(word);
  }
  return words;
}

// The blank-separated words of line before end.
std::vector<std::string> WordsBefore(std::string_view line, size_t end) {
  std::vector<std::string> words;
  std::istringstream in{std::string(line.substr(0, end))};
  for (std::string w; in >> w;) words.push_back(w);
  return words;
}

}  // namespace

std::string Completion::CommonPrefix() const {
  if (candidates.empty()) return "";
  std::string prefix = candidates.front();
  for (const std::string& c : candidates) {
    size_t n = 0;
    while (n < prefix.size() && n < c.size() && SameName(prefix.substr(n, 1), c.substr(n, 1))) n++;
    prefix.resize(n);
  }
  // Never a part of a character of more than one byte.
  while (!prefix.empty() && (static_cast<unsigned char>(prefix.back()) & 0xC0) == 0x80) prefix.pop_back();
  if (!prefix.empty() && static_cast<unsigned char>(prefix.back()) >= 0xC0) prefix.pop_back();
  return prefix;
}

bool Completion::Replacement(std::string_view word, std::string* text) const {
  if (candidates.empty()) return false;
  *text = candidates.size() == 1 ? candidates[0] + (then_blank ? " " : "") : CommonPrefix();
  return text->size() > word.size() || (text->size() == word.size() && *text != word && !text->empty());
}

std::string Completion::Columns(size_t width) const {
  size_t widest = 0;
  for (const std::string& s : candidates) widest = std::max(widest, s.size());
  size_t columns = std::max<size_t>(1, width / (widest + 2));
  std::string out;
  for (size_t i = 0; i < candidates.size(); i++) {
    std::string cell = candidates[i];
    bool last = (i + 1) % columns == 0 || i + 1 == candidates.size();
    if (!last) cell.resize(widest + 2, ' ');
    out += cell + (last ? "\n" : "");
  }
  return out;
}

Completion Completer::Complete(std::string_view line, size_t cursor, Asking asking) const {
  cursor = std::min(cursor, line.size());
  size_t start = cursor;
  while (start > 0 && line[start - 1] != ' ' && line[start - 1] != '\t' && line[start - 1] != '(' &&
         line[start - 1] != '!' && line[start - 1] != '\'')
    start--;
  std::string_view word = line.substr(start, cursor - start);
  if (asking == Asking::kDialog) return CompleteEvent(line, start, word);
  if (asking == Asking::kCommand) return CompleteCommand(line, start, word);
  return {start, {}};
}

Completion Completer::CompleteCommand(std::string_view line, size_t start, std::string_view word) const {
  std::string_view before = Trim(line.substr(0, start), kBlanks);
  if (!before.empty() && before.back() == '(') {
    std::vector<std::string> functions = host_.module().RegisteredNames();
    for (std::string& f : FirstWords(HostFunctionSummary())) functions.push_back(std::move(f));
    return {start, Matching(std::move(functions), word)};
  }
  if (!before.empty()) return {start, {}};  // an argument
  std::vector<std::string> commands = CommandNames();
  for (std::string& c : Host::SessionCommandNames()) commands.push_back(c);
  return {start, Matching(std::move(commands), word)};
}

Completion Completer::CompleteEvent(std::string_view line, size_t start, std::string_view word) const {
  std::vector<std::string> words = WordsBefore(line, start);
  Dialog* dialog = host_.dialogs().top();
  if (words.empty()) {
    std::vector<std::string> verbs = EventWords();
    verbs.push_back("help");
    return {start, Matching(std::move(verbs), word)};
  }
  if (!dialog) return {start, {}};
  if (words.size() == 1 && EventTakesKey(words[0])) {
    std::vector<std::string> keys;
    for (LiveTile* tile : dialog->KeyedTiles())
      if (tile->Usable() && EventFits(words[0], *tile)) keys.push_back(tile->key());
    // Keys keep their spelling: they are compared as they stand.
    std::vector<std::string> out;
    for (const std::string& k : keys)
      if (k.starts_with(word) && std::find(out.begin(), out.end(), k) == out.end()) out.push_back(k);
    return {start, out};
  }
  if (words.size() == 2 && EventTakesRow(words[0])) {
    LiveTile* list = dialog->Find(words[1]);
    std::vector<std::string> rows;
    if (list && list->IsList())
      for (size_t i = 0; i < list->rows.size(); i++)
        if (std::to_string(i).starts_with(word)) rows.push_back(std::to_string(i));
    return {start, rows, false};  // the row ends the event
  }
  return {start, {}};
}

}  // namespace vorhost
