// file_editor.h - lets a person edit one of the host's text files (Big5,
// CR LF) in their own editor, as UTF-8 with plain line ends.
#ifndef VORHOST_UI_FILE_EDITOR_H
#define VORHOST_UI_FILE_EDITOR_H

#include <string>

#include "emulator/core/input.h"

namespace vorhost {

// Opens a UTF-8 copy of *contents, the bytes of a host text file, in
// $VISUAL, $EDITOR or vi, and when the editor ends normally gives back the
// edited text in *contents in Big5 with CR LF line ends (and the end mark
// 0x1A if the file had one). The contents are left as they were when the
// editor fails, when they hold bytes that are not Big5 text (they would not
// survive the round trip), or when the edit holds characters Big5 cannot
// hold (*why says which).
EditOutcome EditInEditor(std::string* contents, std::string* why);

}  // namespace vorhost

#endif
