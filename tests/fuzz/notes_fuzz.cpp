// notes_fuzz.cpp - the file notes store FILE_CON.DAT as the file browser
// reads it from the home directory: the note of files named by the store's
// own keys (as full paths, paths without a drive, bare names and name
// ends) and of a file in C:\ACF\; a note given, found again, replaced and
// removed; and the store saved and read back to the same lines and notes.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "browser/notes.h"
#include "emulator/core/encoding.h"
#include "support/fuzz_env.h"

namespace {

using File = std::pair<std::string, std::string>;  // directory (ending in "\"), bare name

// The file a key names, as the browser would list it: the key split at its
// last separator (a whole character, not the second byte of a Big5 one)
// into a directory made full on C: and a bare name; none for a key that
// names no file (an empty name, or one a DOS name cannot be).
bool FileOf(const std::string& key, File* file) {
  size_t cut = std::string::npos;
  for (size_t i = 0; i < key.size(); i += vorhost::Big5CharLength(key, i))
    if (key[i] == '\\' || key[i] == '/') cut = i;
  std::string dir = cut == std::string::npos ? "" : key.substr(0, cut + 1);
  std::string name = key.substr(cut == std::string::npos ? 0 : cut + 1);
  if (name.empty() || name.find_first_of(":*?") != std::string::npos) return false;
  for (size_t i = 0; i < dir.size(); i += vorhost::Big5CharLength(dir, i))
    if (dir[i] == '/') dir[i] = '\\';
  if (dir.size() < 2 || dir[1] != ':') dir = (dir.starts_with("\\") ? "C:" : "C:\\ACF\\") + dir;
  *file = {dir, name};
  return true;
}

// P1.ACF in C:\ACF\ and the files the store's first keys name.
std::vector<File> FilesOf(const TextList& notes) {
  std::vector<File> files = {{"C:\\ACF\\", "P1.ACF"}};
  for (const TextNode* node = notes.head; node && files.size() < 8; node = node->next) {
    std::string line = node->text;
    size_t start = line.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string::npos) continue;
    File f;
    if (FileOf(line.substr(start, line.find_first_of(" \t\n\v\f\r", start) - start), &f))
      files.push_back(f);
  }
  return files;
}

std::vector<std::string> NotesOf(const std::vector<File>& files) {
  std::vector<std::string> notes;
  for (const File& f : files) {
    char note[256];
    int32_t index;
    find_note(f.first.c_str(), f.second.c_str(), note, &index);
    if (index < 0 && note[0]) vorfuzz::Broken("a note for a file with no line");
    notes.push_back(note);
  }
  return notes;
}

std::vector<std::string> Lines(const TextList& list) {
  std::vector<std::string> lines;
  for (const TextNode* node = list.head; node; node = node->next) lines.push_back(node->text);
  return lines;
}

// Gives the file the note, which it must then have; false when the store
// refused it.
bool Give(const File& f, const char* new_note) {
  char note[256];
  int32_t index;
  TextNode* prev = find_note(f.first.c_str(), f.second.c_str(), note, &index);
  if (!set_note(f.first.c_str(), f.second.c_str(), note, index, prev, new_note)) return false;
  find_note(f.first.c_str(), f.second.c_str(), note, &index);
  if (new_note[0] && std::strcmp(note, new_note) != 0)
    vorfuzz::Broken("a note given is not found again for " + f.first + f.second);
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vorfuzz::Session::Get().Begin();
  vorfuzz::ScratchDrive::Get().Write("VOR/FILE_CON.DAT", vorfuzz::Bytes(data, size));

  notes_load();
  std::vector<File> files = FilesOf(FileNotes);
  (void)NotesOf(files);
  for (const File& f : files) {
    if (Give(f, "\xA4\x40\xBC\xD3")) Give(f, "");  // 一樓, then none
  }
  Give(files.back(), "NOTE");

  FileNotes.modified = 1;
  textlist_save(&FileNotes);
  std::vector<std::string> lines = Lines(FileNotes);
  std::vector<std::string> notes = NotesOf(files);
  notes_load();
  if (Lines(FileNotes) != lines) vorfuzz::Broken("the saved store reads back otherwise");
  if (NotesOf(files) != notes) vorfuzz::Broken("the saved store gives other notes");
  textlist_free(&FileNotes);
  return 0;
}
