// dataset.cpp - schedules and notes for the benchmarks.
#include "support/dataset.h"

#include <stdlib.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "emulator/core/encoding.h"

namespace vorbench {
namespace {

// UTF-8 to the module's Big5; the texts below are all Big5 characters.
std::string Big5(const std::string& utf8) {
  std::string out;
  vorhost::Utf8ToBig5(utf8, &out);
  return out;
}

std::string Pick(const std::vector<std::string>& from, unsigned n) { return from[n % from.size()]; }

// A deterministic mix of two numbers (a 64-bit finaliser), so that
// neighbouring files and circuits differ in every bit.
unsigned Mix(int a, int b) {
  uint64_t x = static_cast<uint64_t>(static_cast<uint32_t>(a)) << 32 | static_cast<uint32_t>(b);
  x ^= x >> 33;
  x *= 0xff51afd7ed558ccdULL;
  x ^= x >> 33;
  x *= 0xc4ceb9fe1a85ec53ULL;
  x ^= x >> 33;
  return static_cast<unsigned>(x);
}

const std::vector<std::string> kPlaces = {"一樓", "二樓", "三樓", "地下室", "機房", "屋頂", "梯廳", "電氣室"};
const std::vector<std::string> kLoads = {"照明", "插座", "空調箱", "排水泵", "排風機", "消防泵",
                                         "電梯", "控制盤", "緊急照明", "熱水器"};
const std::vector<std::string> kPanels = {"一般照明盤", "動力盤", "分電盤", "緊急電源盤", "空調動力盤"};

struct Cable {
  const char* size;
  const char* count;
  const char* earth;
  const char* conduit;
  const char* suffix;
  const char* af;
  const char* at;
};
// Conductor size, count, earth, conduit size and kind, and the breaker
// that goes with them.
const Cable kCables[] = {
    {"2.0 mm", "2", "2.0 mm", "16", "PVC", "50AF", "20AT"},
    {"3.5 mm", "2", "3.5 mm", "20", "PVC", "50AF", "30AT"},
    {"5.5 mm", "3", "5.5 mm", "28", "GIP", "50AF", "30AT"},
    {"14 mm", "3", "8 mm", "36", "GIP", "100AF", "60AT"},
    {"22 mm", "3", "14 mm", "36", "EMT", "100AF", "75AT"},
    {"5.5", "1", "", "28", "PVC", "50AF", "20AT"},
    {"8 sq", "2", "", "", "", "50AF", "40AT"},
};

std::string Circuit(int file, int k) {
  unsigned h = Mix(file, k);
  std::string code = std::string(1, "LPMEC"[h % 5]) + std::to_string(k + 1);
  if (h % 17 == 0)  // a spare: no cable, no symbol
    return Big5("備用") + " SPARE;" + code + ";;50AF;20AT;1P;5KA;;;;;;;;;;;;;";
  const Cable& c = kCables[(h >> 3) % std::size(kCables)];
  std::string load = Pick(kLoads, h >> 5);
  std::string description;
  switch ((h >> 9) % 4) {
    case 0: description = Big5(Pick(kPlaces, h >> 11) + load) + " " + code; break;
    case 1: description = Big5(load); break;
    case 2: description = code + "-" + std::to_string(file + 1); break;
    default: description = Big5(Pick(kPlaces, h >> 11)) + " " + code + " " + Big5(load); break;
  }
  bool three_phase = c.count[0] == '3';
  std::string device, device_label;
  if (three_phase && (h >> 14) % 3 == 0) {
    device = "Y";
    device_label = "Y-D " + std::to_string(10 + h % 30) + "HP";
  } else if (three_phase && (h >> 14) % 3 == 1) {
    device = "M";
    device_label = "MS " + std::to_string(1 + h % 9) + "HP";
  }
  std::string second = (h >> 16) % 3 == 0 ? "Y" : "";
  std::string symbol = (h >> 18) % 10 == 0 ? "" : (h >> 18) % 2 ? "C" : "R";
  std::string kw = std::to_string(1 + h % 30) + "." + std::to_string(h % 10) + "KW";
  // Now and then the diameter sign of the files (0xED) between digits.
  std::string text2 = (h >> 20) % 6 == 0 ? "\xED" + std::to_string(16 + h % 40) : code;
  const char* phase = three_phase ? "RST" : (h >> 22) % 3 == 0 ? "R" : (h >> 22) % 3 == 1 ? "S" : "T";
  // Fields 0 to 19 of a circuit line.
  const std::string fields[] = {description, code, phase, c.af, c.at, three_phase ? "3P" : "1P",
                                three_phase ? "15KA" : "5KA", c.size, c.count, c.suffix, c.conduit, c.earth,
                                device, device_label, second, second.empty() ? "" : "SHT", symbol, "", kw, text2};
  std::string line = fields[0];
  for (size_t i = 1; i < std::size(fields); i++) line += ";" + fields[i];
  return line;
}

}  // namespace

std::string ScheduleName(int k) {
  char name[24];
  std::snprintf(name, sizeof name, "P%04d.ACF", k + 1);
  return name;
}

std::string ScheduleText(int k, int circuits) {
  unsigned h = Mix(k, -1);
  char prefix[16], panel[16];
  std::snprintf(prefix, sizeof prefix, "PN%02d: ", k % 100);  // the six characters never shown
  std::snprintf(panel, sizeof panel, "P%d", k + 1);
  std::string text = prefix + Big5(Pick(kPlaces, h) + " ") + panel + ";" + panel + " " +
                     Big5(Pick(kPanels, h >> 4)) + "\r\n";
  for (int c = 0; c < circuits; c++) text += Circuit(k, c) + "\r\n";
  text += "TOTAL;" + std::to_string(5000 + 1000 * circuits + 37 * k) + ";;400AF;300AT;3P;35KA\r\n\x1A";
  return text;
}

std::string NotesText(const DataSetShape& shape) {
  if (shape.notes == 0) return "";
  int lines = std::max(shape.notes, shape.files);
  int elsewhere = lines - shape.files;
  std::string text;
  int file = 0, other = 0;
  for (int i = 0; i < lines; i++) {
    // The files' own notes spread evenly among the others.
    bool own = file < shape.files && (other >= elsewhere || (long)file * lines <= (long)i * shape.files);
    if (!own) {
      char key[40];
      std::snprintf(key, sizeof key, "C:\\OLD\\Q%04d.ACF ", ++other);
      text += key + Big5("舊盤 已拆除") + "\r\n";
      continue;
    }
    std::string name = ScheduleName(file);
    std::string key;
    switch (file % 4) {
      case 0: key = "C:\\ACF\\" + name; break;
      case 1: key = "\\ACF\\" + name; break;
      case 2: key = name; break;
      default:
        key = "c:/acf/" + name;
        for (char& ch : key) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        break;
    }
    text += key + " " + Big5(Pick(kPlaces, Mix(file, -1)) + Pick(kPanels, Mix(file, -1) >> 4)) + "\r\n";
    file++;
  }
  return text + "\x1A";
}

bool WriteDataSet(const std::string& root, const DataSetShape& shape, std::string* err) {
  std::error_code ec;
  std::filesystem::create_directories(root + "/ACF", ec);
  std::filesystem::create_directories(root + "/VOR", ec);
  if (ec) {
    *err = "cannot make " + root + "/ACF and /VOR: " + ec.message();
    return false;
  }
  auto write = [&](const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    out.close();
    if (!out) *err = "cannot write " + path;
    return static_cast<bool>(out);
  };
  for (int k = 0; k < shape.files; k++)
    if (!write(root + "/ACF/" + ScheduleName(k), ScheduleText(k, shape.circuits))) return false;
  return write(root + "/VOR/FILE_CON.DAT", NotesText(shape));
}

std::array<double, 3> StartPoint(int k, int circuits) {
  double width = 250.0 * std::max(circuits - 1, 0) + 400 + 1000;
  return {(k % 10) * width, -(k / 10) * 3000.0, 0};
}

std::vector<std::string> AcfScript(const DataSetShape& shape) {
  std::vector<std::string> lines = {"(setq VORMIS \"C:/VOR\")", "(VOR_ACF)", "#dialog FILE_CON", "press all",
                                    "ok"};
  for (int k = 0; k < shape.files; k++) {
    std::array<double, 3> p = StartPoint(k, shape.circuits);
    char point[64];
    std::snprintf(point, sizeof point, "%g,%g", p[0], p[1]);
    lines.push_back(point);
  }
  lines.push_back("#dialog");
  return lines;
}

TempFolder::TempFolder() {
  char dir[] = "/tmp/vor_bench_XXXXXX";
  if (mkdtemp(dir)) path_ = dir;
}

TempFolder::~TempFolder() {
  std::error_code ec;
  if (!path_.empty()) std::filesystem::remove_all(path_, ec);
}

}  // namespace vorbench
