// line_reader.cpp - a person's lines: edited with libedit when vorhost is
// built with it (VORHOST_LIBEDIT), read plainly otherwise; Ctrl-C caught.
#include "emulator/ui/line_reader.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstring>
#include <cwchar>

#ifdef VORHOST_LIBEDIT
#include <histedit.h>
#endif

#include "emulator/ui/terminal_screen.h"

namespace vorhost {
namespace {

volatile sig_atomic_t interrupted = 0;
struct sigaction previous_action;

void OnInterrupt(int) { interrupted = 1; }


// One byte of input: 1, 0 at the end, -1 for Ctrl-C or an error.
int ReadByte(int fd, unsigned char* byte) {
  for (;;) {
    ssize_t n = read(fd, byte, 1);
    if (n == 1) return 1;
    if (n == 0) return 0;
    if (errno != EINTR) return -1;
    if (InterruptGuard::Take()) {
      interrupted = 1;  // left for the reader to see
      return -1;
    }
  }
}

// A line read with the terminal's own editing: keys that send sequences
// arrive in the line; Escape alone, then Enter, cancels, and F1 asks for help.
class PlainReader : public LineReader {
 public:
  PlainReader(History& history, int in_fd, int out_fd) : history_(history), in_(in_fd), out_(out_fd) {}

  LineInput Read(const std::string& prompt, const CompleteFn&) override {
    InterruptGuard::Take();
    WriteToFd(out_, prompt);
    std::string line;
    for (unsigned char c;;) {
      int n = ReadByte(in_, &c);
      if (n < 0 && InterruptGuard::Take()) {
        WriteToFd(out_, "\n");
        return {LineInput::Kind::kCancel, ""};
      }
      if (n < 0) return {LineInput::Kind::kClosed, ""};
      if (n == 0) {
        if (line.empty()) return {LineInput::Kind::kEnd, ""};
        break;
      }
      if (c == '\n') break;
      line += static_cast<char>(c);
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return Interpret(line);
  }

 private:
  LineInput Interpret(const std::string& line) {
    std::string text;
    for (size_t i = 0; i < line.size(); i++) {
      if (line[i] != '\x1b') {
        text += line[i];
        continue;
      }
      std::string_view rest = std::string_view(line).substr(i + 1);
      if (rest.starts_with("OP") || rest.starts_with("[11~")) return {LineInput::Kind::kHelp, ""};
      if (rest.empty() || (rest[0] != '[' && rest[0] != 'O')) return {LineInput::Kind::kCancel, ""};
      // A key's sequence (an arrow, say): left out.
      size_t end = i + 2;
      if (rest[0] == '[')
        while (end < line.size() && !(line[end] >= 0x40 && line[end] <= 0x7e)) end++;
      i = end;
    }
    history_.Add(text);
    return {LineInput::Kind::kLine, text};
  }

  History& history_;
  int in_, out_;
};

#ifdef VORHOST_LIBEDIT

// How long an Escape waits for the rest of a key's sequence (an arrow
// sends Escape and more at once); alone, it is Escape.
constexpr int kEscapeWaitMs = 60;

bool MoreWithin(int fd, int ms) {
  pollfd p{fd, POLLIN, 0};
  int n;
  do n = poll(&p, 1, ms);
  while (n < 0 && errno == EINTR && !interrupted);
  return n > 0;
}

class EditReader : public LineReader {
 public:
  EditReader(History& history, int in_fd, int out_fd) : history_(history), in_fd_(in_fd) {
    in_ = fdopen(dup(in_fd), "r");
    out_ = fdopen(dup(out_fd), "w");
    el_ = el_init("vorhost", in_, out_, stderr);
    edit_history_ = history_init();
    HistEvent ev;
    ::history(edit_history_, &ev, H_SETSIZE, 1000);
    for (const std::string& line : history_.lines()) ::history(edit_history_, &ev, H_ENTER, line.c_str());
    el_set(el_, EL_CLIENTDATA, this);
    el_set(el_, EL_EDITOR, "emacs");
    el_set(el_, EL_HIST, ::history, edit_history_);
    el_set(el_, EL_PROMPT, &EditReader::Prompt);
    el_set(el_, EL_GETCFN, &EditReader::GetChar);
    // The wide form keeps the names as given; the narrow one copies them
    // and never frees the copies.
    el_wset(el_, EL_ADDFN, L"vor-complete", L"Complete the word", &EditReader::CompleteWord);
    el_wset(el_, EL_ADDFN, L"vor-help", L"Show help", &EditReader::Help);
    el_wset(el_, EL_ADDFN, L"vor-end", L"End of input on an empty line, else delete", &EditReader::EndOrDelete);
    el_set(el_, EL_BIND, "^I", "vor-complete", nullptr);
    el_set(el_, EL_BIND, "^D", "vor-end", nullptr);
    el_set(el_, EL_BIND, "\033OP", "vor-help", nullptr);
    el_set(el_, EL_BIND, "\033[11~", "vor-help", nullptr);
    el_source(el_, nullptr);  // the person's own ~/.editrc
  }
  ~EditReader() override {
    el_end(el_);
    history_end(edit_history_);
    fclose(in_);
    fclose(out_);
  }

  LineInput Read(const std::string& prompt, const CompleteFn& complete) override {
    InterruptGuard::Take();
    prompt_ = prompt;
    complete_ = &complete;
    pending_ = LineInput::Kind::kEnd;
    el_resize(el_);  // the window may have changed since the last line
    if (!kept_.empty()) el_push(el_, kept_.c_str());
    kept_.clear();
    int count = 0;
    const char* line = el_gets(el_, &count);
    complete_ = nullptr;
    if (!line || count <= 0) {
      if (pending_ == LineInput::Kind::kEnd && interrupted) pending_ = LineInput::Kind::kCancel;
      InterruptGuard::Take();
      return {pending_, ""};
    }
    std::string text(line, static_cast<size_t>(count));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    if (!Trim(text).empty()) {
      HistEvent ev;
      ::history(edit_history_, &ev, H_ENTER, text.c_str());
      history_.Add(text);
    }
    return {LineInput::Kind::kLine, text};
  }

 private:
  static EditReader* Of(EditLine* el) {
    void* self = nullptr;
    el_get(el, EL_CLIENTDATA, &self);
    return static_cast<EditReader*>(self);
  }
  static std::string_view Trim(std::string_view s) {
    size_t b = s.find_first_not_of(" \t");
    return b == std::string_view::npos ? "" : s.substr(b);
  }

  static char* Prompt(EditLine* el) { return Of(el)->prompt_.data(); }

  // Reads a character (UTF-8) for libedit; Escape alone and Ctrl-C end the
  // line as cancelled.
  static int GetChar(EditLine* el, wchar_t* wc) {
    EditReader* self = Of(el);
    unsigned char lead;
    int n = ReadByte(self->in_fd_, &lead);
    if (n < 0) self->pending_ = interrupted ? LineInput::Kind::kCancel : LineInput::Kind::kClosed;
    if (n <= 0) return n;
    if (lead == 0x1b && !MoreWithin(self->in_fd_, kEscapeWaitMs)) {
      self->pending_ = LineInput::Kind::kCancel;
      return -1;
    }
    int more = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    std::string bytes(1, static_cast<char>(lead));
    for (int i = 0; i < more; i++) {
      unsigned char c;
      if (ReadByte(self->in_fd_, &c) != 1) return -1;
      bytes += static_cast<char>(c);
    }
    std::mbstate_t state{};
    wchar_t out = 0;
    size_t used = std::mbrtowc(&out, bytes.data(), bytes.size(), &state);
    *wc = used == static_cast<size_t>(-1) || used == static_cast<size_t>(-2) ? L'?' : out;
    return 1;
  }

  static unsigned char Help(EditLine* el, int) {
    EditReader* self = Of(el);
    const LineInfo* li = el_line(el);
    self->kept_.assign(li->buffer, static_cast<size_t>(li->lastchar - li->buffer));
    self->pending_ = LineInput::Kind::kHelp;
    fputc('\n', self->out_);
    return CC_EOF;
  }

  // Ctrl-D: the end of input on an empty line (without libedit's "^D" on
  // the screen), else deletes the character under the cursor.
  static unsigned char EndOrDelete(EditLine* el, int) {
    const LineInfo* li = el_line(el);
    if (li->buffer == li->lastchar) {
      Of(el)->pending_ = LineInput::Kind::kEnd;
      return CC_EOF;
    }
    if (li->cursor == li->lastchar) return CC_REFRESH_BEEP;
    el_cursor(el, 1);
    el_deletestr(el, 1);
    return CC_REFRESH;
  }

  static unsigned char CompleteWord(EditLine* el, int) {
    EditReader* self = Of(el);
    if (!self->complete_ || !*self->complete_) return CC_ERROR;
    const LineInfo* li = el_line(el);
    std::string line(li->buffer, static_cast<size_t>(li->lastchar - li->buffer));
    size_t cursor = static_cast<size_t>(li->cursor - li->buffer);
    Completion c = (*self->complete_)(line, cursor);
    if (c.candidates.empty()) return CC_REFRESH_BEEP;
    std::string word = line.substr(c.start, cursor - c.start);
    std::string insert;
    if (c.Replacement(word, &insert)) {
      int chars = 0;
      for (unsigned char ch : word) chars += (ch & 0xC0) != 0x80;
      el_deletestr(el, chars);
      el_insertstr(el, insert.c_str());
      return CC_REFRESH;
    }
    // Nothing to add: show the choices under the line.
    std::string list = "\n" + c.Columns(78);
    fputs(list.c_str(), self->out_);
    fflush(self->out_);
    return CC_REDISPLAY;
  }

  History& history_;
  int in_fd_;
  FILE* in_ = nullptr;
  FILE* out_ = nullptr;
  EditLine* el_ = nullptr;
  ::History* edit_history_ = nullptr;
  std::string prompt_;
  const CompleteFn* complete_ = nullptr;
  LineInput::Kind pending_ = LineInput::Kind::kEnd;
  std::string kept_;  // the line under way when F1 was pressed, given back
};

#endif

}  // namespace

InterruptGuard::InterruptGuard() {
  struct sigaction action {};
  action.sa_handler = &OnInterrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = 0;  // no SA_RESTART: a read under way returns, to be cancelled
  sigaction(SIGINT, &action, &previous_action);
}

InterruptGuard::~InterruptGuard() { sigaction(SIGINT, &previous_action, nullptr); }

bool InterruptGuard::Take() {
  bool was = interrupted != 0;
  interrupted = 0;
  return was;
}

bool LineEditing() {
#ifdef VORHOST_LIBEDIT
  return true;
#else
  return false;
#endif
}

std::unique_ptr<LineReader> MakeLineReader(History& history, int in_fd, int out_fd) {
#ifdef VORHOST_LIBEDIT
  // libedit reads and shows characters as the locale says; the host's
  // terminal texts are UTF-8.
  if (!std::setlocale(LC_CTYPE, "") || !std::strstr(std::setlocale(LC_CTYPE, nullptr), "UTF-8"))
    std::setlocale(LC_CTYPE, "C.UTF-8");
  return std::make_unique<EditReader>(history, in_fd, out_fd);
#else
  return std::make_unique<PlainReader>(history, in_fd, out_fd);
#endif
}

}  // namespace vorhost
