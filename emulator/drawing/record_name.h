// record_name.h - the short names every record carries (its type, layer
// and linetype), kept once for the whole session.
//
// A panel diagram has a hundred thousand records and a dozen distinct
// names among them. A RecordName is a pointer to the one copy of its text:
// 8 bytes in the record instead of a 32-byte string, names compared by
// pointer, and it reads as the const std::string it stands for. The copies
// are never freed: a session meets a few hundred names, and a file that
// gives each record a name of its own adds no more than the file's size.
#ifndef VORHOST_DRAWING_RECORD_NAME_H
#define VORHOST_DRAWING_RECORD_NAME_H

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace vorhost {

class RecordName {
 public:
  RecordName();  // the empty name
  RecordName(std::string_view text);  // NOLINT: a name is made from any text
  RecordName(const std::string& text) : RecordName(std::string_view(text)) {}  // NOLINT
  RecordName(const char* text) : RecordName(std::string_view(text)) {}  // NOLINT

  const std::string& str() const { return *text_; }
  operator const std::string&() const { return *text_; }  // NOLINT: reads as its text
  operator std::string_view() const { return *text_; }  // NOLINT
  bool empty() const { return text_->empty(); }
  size_t size() const { return text_->size(); }
  const char* c_str() const { return text_->c_str(); }
  const char* data() const { return text_->data(); }

  friend bool operator==(const RecordName& a, const RecordName& b) { return a.text_ == b.text_; }
  friend bool operator==(const RecordName& a, std::string_view b) { return *a.text_ == b; }
  friend bool operator==(const RecordName& a, const char* b) { return *a.text_ == b; }
  friend bool operator==(const RecordName& a, const std::string& b) { return *a.text_ == b; }
  friend std::string operator+(const std::string& a, const RecordName& b) { return a + *b.text_; }
  friend std::string operator+(std::string&& a, const RecordName& b) { return std::move(a) + *b.text_; }
  friend std::string operator+(const char* a, const RecordName& b) { return a + *b.text_; }
  friend std::string operator+(const RecordName& a, const char* b) { return *a.text_ + b; }
  friend std::string operator+(const RecordName& a, const std::string& b) { return *a.text_ + b; }
  friend std::ostream& operator<<(std::ostream& out, const RecordName& n) { return out << *n.text_; }

 private:
  const std::string* text_;
};

}  // namespace vorhost

#endif
