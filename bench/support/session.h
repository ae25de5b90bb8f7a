// session.h - a benchmark's host: the data set on drive C: and the emulated
// host with the module loaded, as vorhost has them, played by script lines.
#ifndef VORBENCH_SUPPORT_SESSION_H
#define VORBENCH_SUPPORT_SESSION_H

#include <memory>
#include <string>
#include <vector>

#include "emulator/host.h"
#include "emulator/ui/script.h"
#include "support/dataset.h"

namespace vorbench {

class Session {
 public:
  // Writes the data set into a new folder and makes it drive C:, the
  // current drive; starts a host (see Restart).
  explicit Session(const DataSetShape& shape);
  // The host goes, then the drive and its folder.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  vorhost::Host& host() { return *host_; }
  const DataSetShape& shape() const { return shape_; }
  // The Linux folder of drive C:.
  const std::string& root() const { return folder_.path(); }
  // False, with the reason in error(), when the data set could not be
  // written or a script failed.
  bool ok() const { return error_.empty(); }
  const std::string& error() const { return error_; }

  // A new host with an empty drawing and the module loaded; the old host
  // unloads the module and goes first.
  void Restart();
  // Plays lines (UTF-8) as the user at the command prompt until they end;
  // false when one failed.
  bool Play(std::vector<std::string> lines);
  // VOR_ACF over every schedule of the set, in one call (AcfScript).
  bool DrawAll() { return Play(AcfScript(shape_)); }

 private:
  TempFolder folder_;
  DataSetShape shape_;
  std::unique_ptr<vorhost::ScriptUser> user_;
  std::unique_ptr<vorhost::Host> host_;
  std::string error_;
};

// The drawing of VOR_ACF over files schedules of 40 circuits, kept for the
// benchmarks that read it. There is one session at a time, as there is one
// drive C:: it is made anew when another size is asked for. Check ok().
Session* Drawn(int files);
// Lets that session go, before a benchmark makes its own or after one has
// changed the drawing.
void ReleaseDrawn();

// The vorhost program of this build.
const char* VorhostProgram();

}  // namespace vorbench

#endif
