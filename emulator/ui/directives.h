// directives.h - the lines of a script that speak to vorhost rather than
// to whoever asks: comments, literal answers, Escape, expectations about
// the transcript, the drawing, variables and files, checks on the dialog
// that is open, and arranged allocation failures (docs/scripting.md). One
// table gives each directive's word, handler and help.
#ifndef VORHOST_UI_DIRECTIVES_H
#define VORHOST_UI_DIRECTIVES_H

#include <functional>
#include <string>
#include <string_view>

#include "emulator/core/input.h"

namespace vorhost {

class Host;

// "#" then a blank, "!" or a lower-case word: a directive or a comment.
// Anything else starting with "#" (a pattern like "#*") is an answer.
bool IsDirective(std::string_view line);
// "#" alone or followed by a blank or "!".
bool IsComment(std::string_view line);

// What a directive did with the script: go on, give the host an answer,
// or fail the script.
enum class DirectiveStep { kNext, kAnswer, kFail };

// What directives read and change while a script runs.
struct DirectiveContext {
  Host& host;
  size_t output_cursor = 0;  // where the next #expect-output starts looking
  // Fails the script at the directive's line with a message (UTF-8).
  std::function<void(const std::string& message)> fail;
};

// Carries out a directive line (UTF-8). kAnswer leaves the answer the
// script gives in *answer; kFail has called context.fail.
DirectiveStep RunDirective(DirectiveContext& context, std::string_view line, Input* answer);

// One line per directive: "#WORD ARGUMENTS  what it does".
std::string DirectiveSummary();

}  // namespace vorhost

#endif
