// make_data.cpp - writes the benchmark's data set and the vorhost script that
// draws it, for bench/acf_peer/run.py:
//
//   acf_make_data DIR FILES CIRCUITS NOTES
//
// DIR/c is the drive (ACF\ with the schedules, VOR\FILE_CON.DAT), DIR/acf.vor
// the script, and DIR/points.txt the start points, one "x,y" a line, in the
// order the files are drawn (the browser's, by name).
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "support/dataset.h"

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: acf_make_data DIR FILES CIRCUITS NOTES\n");
    return 2;
  }
  std::string dir = argv[1];
  vorbench::DataSetShape shape;
  shape.files = std::atoi(argv[2]);
  shape.circuits = std::atoi(argv[3]);
  shape.notes = std::atoi(argv[4]);
  if (shape.files < 1 || shape.files > 999 || shape.circuits < 1 || shape.notes < 0) {
    std::fprintf(stderr, "acf_make_data: FILES must be 1 to 999, CIRCUITS at least 1\n");
    return 2;
  }
  std::string err;
  if (!vorbench::WriteDataSet(dir + "/c", shape, &err)) {
    std::fprintf(stderr, "acf_make_data: %s\n", err.c_str());
    return 1;
  }
  std::ofstream script(dir + "/acf.vor", std::ios::binary | std::ios::trunc);
  for (const std::string& line : vorbench::AcfScript(shape)) script << line << "\n";
  std::ofstream points(dir + "/points.txt", std::ios::binary | std::ios::trunc);
  for (int k = 0; k < shape.files; k++) {
    std::array<double, 3> p = vorbench::StartPoint(k, shape.circuits);
    points << p[0] << "," << p[1] << "\n";
  }
  script.close();
  points.close();
  if (!script || !points) {
    std::fprintf(stderr, "acf_make_data: cannot write the script or the points in %s\n", dir.c_str());
    return 1;
  }
  return 0;
}
