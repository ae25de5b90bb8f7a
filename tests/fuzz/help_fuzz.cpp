// help_fuzz.cpp - help files as ADS_HELP reads them: each topic the module
// asks for, and every topic the file itself heads, which must be found.
#include <sstream>
#include <string>

#include "emulator/lisp/host_functions.h"
#include "support/fuzz_env.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string contents(vorfuzz::Bytes(data, size));
  std::string text;
  for (const char* topic : {"VOR_ELINE", "VOR_ELINE_CABLE", "VOR_SLINE_CABLE", "VOR_PLINE_CABLE",
                            "FILE_CON", ""})
    (void)vorhost::HelpTopic(contents, topic, &text);

  std::istringstream in(contents);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
      std::string topic = line.substr(1, line.size() - 2);
      if (!vorhost::HelpTopic(contents, topic, &text))
        vorfuzz::Broken("the file heads a topic that is not found: " + topic);
    }
  }
  return 0;
}
