// big5_literals_test.cpp - every Chinese text of the module is written as
// Big5 bytes with its Unicode form in a comment right after it; the bytes
// must say what the comment says.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "emulator/core/encoding.h"
#include "support/files.h"

namespace vorhost {
namespace {

// Reads the C string literal that starts at text[*pos] ('"'), escapes
// decoded, and moves *pos past it.
std::string ReadLiteral(const std::string& text, size_t* pos) {
  std::string bytes;
  for (++*pos; *pos < text.size() && text[*pos] != '"'; ++*pos) {
    char c = text[*pos];
    if (c != '\\') {
      bytes += c;
      continue;
    }
    char e = text[++*pos];
    if (e == 'x') {
      size_t end = *pos + 1;
      while (end < text.size() && std::isxdigit(static_cast<unsigned char>(text[end]))) end++;
      bytes += static_cast<char>(std::stoi(text.substr(*pos + 1, end - *pos - 1), nullptr, 16));
      *pos = end - 1;
    } else {
      bytes += e == 'n' ? '\n' : e == 'r' ? '\r' : e == 't' ? '\t' : e;
    }
  }
  ++*pos;
  return bytes;
}

bool HasHighBytes(const std::string& s) {
  for (unsigned char c : s)
    if (c >= 0x80) return true;
  return false;
}

TEST(Big5LiteralTest, EachChineseTextMatchesItsComment) {
  const std::filesystem::path root = std::filesystem::path(VORMIS_FILES).parent_path();
  int checked = 0;
  for (const char* dir : {"host", "util", "linetool", "cable", "draw", "panel", "numtool", "browser", "layer"})
    for (const auto& entry : std::filesystem::directory_iterator(root / dir)) {
      const std::string text = testing::FileBytes(entry.path().string());
      for (size_t pos = 0; pos < text.size(); pos++) {
        if (text.compare(pos, 2, "//") == 0) {
          pos = text.find('\n', pos);
          if (pos == std::string::npos) break;
          continue;
        }
        if (text.compare(pos, 2, "/*") == 0) {
          pos = text.find("*/", pos + 2) + 1;
          continue;
        }
        if (text[pos] == '\'') {
          pos = text.find('\'', pos + 2);
          continue;
        }
        if (text[pos] != '"') continue;
        // A group of adjacent literals, then what follows on its line.
        std::string bytes;
        size_t at = pos;
        while (at < text.size() && text[at] == '"') {
          bytes += ReadLiteral(text, &at);
          size_t next = text.find_first_not_of(" \t\r\n", at);
          if (next == std::string::npos || text[next] != '"') break;
          at = next;
        }
        pos = at - 1;
        if (!HasHighBytes(bytes)) continue;
        size_t line_end = text.find('\n', at);
        std::string rest = text.substr(at, line_end - at);
        size_t open = rest.find("/*"), close = rest.find("*/");
        std::string where = entry.path().filename().string() + ": " + Big5ToUtf8(bytes);
        ASSERT_TRUE(open != std::string::npos && close != std::string::npos)
            << where << " has no comment with its Unicode form";
        std::string comment = rest.substr(open + 2, close - open - 2);
        comment.erase(0, comment.find_first_not_of(' '));
        comment.erase(comment.find_last_not_of(' ') + 1);
        std::string utf8 = Big5ToUtf8(bytes);
        utf8.erase(utf8.find_last_not_of(' ') + 1);
        EXPECT_EQ(utf8, comment) << where;
        checked++;
      }
    }
  EXPECT_GE(checked, 8) << "the module's Chinese texts were not found";
}

}  // namespace
}  // namespace vorhost
