// textfile_fuzz.cpp - text-mode files, opened as the module opens every data
// file it reads and writes (plat_fopen, on drive C:): the bytes on disk
// against what a reader must get (CR LF as a line feed, a lone CR kept,
// nothing from the first 0x1A on), read a character, a line and a block at
// a time; what is written reading back the same; and appending after a
// final 0x1A.
#include <cstdio>
#include <string>
#include <string_view>

#include "host/platform.h"
#include "support/fuzz_env.h"

namespace {

// What reading a text-mode file of these bytes must give.
std::string TextOf(std::string_view raw) {
  std::string out;
  for (size_t i = 0; i < raw.size() && raw[i] != '\x1A'; i++) {
    if (raw[i] == '\r' && i + 1 < raw.size() && raw[i + 1] == '\n') continue;
    out += raw[i];
  }
  return out;
}

// What writing these bytes in text mode must put on disk.
std::string DiskOf(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

// The scratch drive's file T.TXT.
const char kPath[] = "C:\\T.TXT";

FILE* Open(const char* path, const char* mode) {
  FILE* f = plat_fopen(kPath, mode);
  if (!f) vorfuzz::Broken(std::string("cannot open the file with ") + mode);
  return f;
}

std::string ReadByChars(const char* path) {
  FILE* f = Open(kPath, "r");
  std::string out;
  for (int c; (c = std::fgetc(f)) != EOF;) out += static_cast<char>(c);
  std::fclose(f);
  return out;
}

// fgets into a buffer of size bytes, as the text lists read with 256. The
// buffer is filled with a mark first, so that the terminator fgets puts
// after the bytes it read is the last NUL even when a line holds NULs.
std::string ReadByLines(const char* path, int size) {
  FILE* f = Open(kPath, "r");
  std::string out, buf;
  for (;;) {
    buf.assign(static_cast<size_t>(size), '\x7F');
    if (!std::fgets(buf.data(), size, f)) break;
    out.append(buf, 0, buf.rfind('\0'));
  }
  std::fclose(f);
  return out;
}

std::string ReadByBlocks(const char* path, size_t block) {
  FILE* f = Open(kPath, "r");
  std::string out(block, '\0');
  std::string all;
  for (size_t got; (got = std::fread(out.data(), 1, block, f)) > 0;) all.append(out, 0, got);
  std::fclose(f);
  return all;
}

void Expect(const std::string& got, const std::string& want, const char* how) {
  if (got != want)
    vorfuzz::Broken(std::string("text read ") + how + " differs: " + std::to_string(got.size()) +
                    " bytes for " + std::to_string(want.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vorfuzz::ScratchDrive& drive = vorfuzz::ScratchDrive::Get();
  const std::string raw(vorfuzz::Bytes(data, size));

  drive.Write("T.TXT", raw);
  const std::string text = TextOf(raw);
  Expect(ReadByChars(kPath), text, "a character at a time");
  Expect(ReadByLines(kPath, 256), text, "by lines of 256");
  Expect(ReadByLines(kPath, 2), text, "by lines of 2");
  Expect(ReadByBlocks(kPath, 4096), text, "in blocks of 4096");
  Expect(ReadByBlocks(kPath, 7), text, "in blocks of 7");

  FILE* f = Open(kPath, "w");
  std::fwrite(raw.data(), 1, raw.size(), f);
  std::fclose(f);
  if (drive.Read("T.TXT") != DiskOf(raw)) vorfuzz::Broken("written text is not on disk as CR LF");
  Expect(ReadByChars(kPath), TextOf(DiskOf(raw)), "after writing");
  if (TextOf(DiskOf(raw)) != raw.substr(0, raw.find('\x1A')))
    vorfuzz::Broken("written text does not read back");

  drive.Write("T.TXT", raw);
  f = Open(kPath, "a+");
  std::fputs("X\n", f);
  std::rewind(f);
  std::string appended;
  for (int c; (c = std::fgetc(f)) != EOF;) appended += static_cast<char>(c);
  std::fclose(f);
  std::string kept = !raw.empty() && raw.back() == '\x1A' ? raw.substr(0, raw.size() - 1) : raw;
  Expect(appended, TextOf(kept + "X\r\n"), "after appending");
  return 0;
}
