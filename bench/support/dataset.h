// dataset.h - the panel schedules the benchmarks draw: a drive with
// C:\ACF\ holding schedules shaped like a designer's (Big5 descriptions,
// breakers, cables, devices, second breakers, load symbols) and
// C:\VOR\FILE_CON.DAT with a note for each, as the file browser finds them.
// The same set for the Google benchmarks and for the script that runs
// vorhost beside the ezdxf peer, so that both measure one thing.
#ifndef VORBENCH_SUPPORT_DATASET_H
#define VORBENCH_SUPPORT_DATASET_H

#include <array>
#include <string>
#include <vector>

namespace vorbench {

struct DataSetShape {
  int files = 100;     // schedules, P0001.ACF on (at most 999: the browser's limit)
  int circuits = 40;   // circuit lines in each
  int notes = 1000;    // lines of FILE_CON.DAT: at least one per file, or none for 0
};

// The name of schedule k (from 0): P0001.ACF for k = 0.
std::string ScheduleName(int k);

// The bytes of schedule k as the module reads them: Big5, CR LF, 0x1A.
// Circuits vary with k and their position, deterministically.
std::string ScheduleText(int k, int circuits);

// The bytes of FILE_CON.DAT: one note per schedule, its key in the forms a
// designer writes (full path, no drive, bare name, lower case with "/"),
// spread among notes of files elsewhere up to shape.notes lines. Empty
// when shape.notes is 0.
std::string NotesText(const DataSetShape& shape);

// Writes root/ACF/ and root/VOR/FILE_CON.DAT; false with *err.
bool WriteDataSet(const std::string& root, const DataSetShape& shape, std::string* err);

// Where panel k is started: a grid of ten panels a row, far enough apart
// for panels of the given number of circuits not to overlap.
std::array<double, 3> StartPoint(int k, int circuits);

// The script (UTF-8 lines) with which a user has VOR_ACF draw every schedule
// of the set: the home directory, the browser's "all" and OK, one start
// point per file.
std::vector<std::string> AcfScript(const DataSetShape& shape);

// A folder under /tmp removed with everything in it when this goes.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace vorbench

#endif
