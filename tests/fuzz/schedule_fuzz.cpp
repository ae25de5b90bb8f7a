// schedule_fuzz.cpp - a panel schedule (*.ACF) as VOR_ACF reads it from a
// drive (plat_fopen, text mode, the text list's field filter): every field
// of every line as acf_field gives it, the cable label of each circuit, and
// the panel drawn from it by the host's commands with the host's symbol
// blocks.
#include <cstring>
#include <string>

#include "host/ads.h"
#include "host/hostval.h"
#include "panel/acf.h"
#include "panel/circuit_text.h"
#include "panel/schedule.h"
#include "support/fuzz_env.h"
#include "util/textlist.h"

namespace {

// Fields beyond the last one any role uses.
constexpr int kFields = 24;

void CheckFields(const TextNode* line) {
  char field[256];
  for (int k = 0; k < kFields; k++) {
    std::memset(field, 'x', sizeof field);
    acf_field(line, k, field);
    size_t len = strnlen(field, sizeof field);
    if (len > 255) vorfuzz::Broken("a field passes 255 bytes");
    if (std::memchr(field, 0xED, len)) vorfuzz::Broken("a field keeps the file's diameter sign");
  }
}

void CheckLabel(const TextNode* circuit) {
  char size[256], count[256], earth[256], conduit[256], suffix[256], label[256];
  acf_field(circuit, CIRCUIT_CONDUCTOR_SIZE, size);
  acf_field(circuit, CIRCUIT_CONDUCTOR_COUNT, count);
  acf_field(circuit, CIRCUIT_EARTH_SIZE, earth);
  acf_field(circuit, CIRCUIT_CONDUIT_SIZE, conduit);
  acf_field(circuit, CIRCUIT_CONDUIT_SUFFIX, suffix);
  std::memset(label, 'x', sizeof label);
  compose_cable_label(size, count, earth, conduit, suffix, label);
  if (strnlen(label, sizeof label) > 255) vorfuzz::Broken("a cable label passes 255 bytes");
}

// The two text styles VOR_ACF makes before it draws.
void MakeStyles() {
  for (const char* style : {"ROMANSAEH", "ROMANSAEV"})
    ads_command(RTSTR, "STYLE", RTSTR, style, RTSTR, "ROMANS,AE", RTSTR, "", RTSTR, "", RTSTR, "",
                RTSTR, "", RTSTR, "", RTSTR, style[8] == 'V' ? "Y" : "N", 0);
  ads_command(RTSTR, "TEXTSTYLE", RTSTR, "ROMANSAEH", 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vorfuzz::Session& session = vorfuzz::Session::Get();
  session.Begin();
  vorfuzz::ScratchDrive::Get().Write("ACF/P1.ACF", vorfuzz::Bytes(data, size));

  TextList schedule = {};
  textlist_load("C:\\ACF\\P1.ACF", &schedule, 1, 255, 0, 0, 0, 0, 0, 0);
  for (const TextNode* line = schedule.head; line; line = line->next) CheckFields(line);
  for (int k = 0; k < schedule_circuit_count(&schedule); k++)
    CheckLabel(schedule_circuit(&schedule, k));

  if (schedule.count >= SCHEDULE_MIN_LINES) {
    set_int_sysvar("CMDECHO", 0);
    MakeStyles();
    const ads_point start = {0, 0, 0};
    draw_panel(&schedule, start);
  }
  textlist_free(&schedule);
  return 0;
}
