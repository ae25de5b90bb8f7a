// session.cpp - the benchmarks' host on a data set.
#include "support/session.h"

#include <stdlib.h>

#include "emulator/platform/filesystem.h"
#include "host/entry.h"

namespace vorbench {

Session::Session(const DataSetShape& shape) : shape_(shape) {
  // The dialog files and resources of the sources, unless told otherwise.
  setenv("VORMIS_FILES", VORMIS_FILES, 0);
  setenv("VORHOST_RESOURCES", VORHOST_RESOURCES, 0);
  if (root().empty()) {
    error_ = "cannot make a folder for the data set";
    return;
  }
  if (!WriteDataSet(root(), shape_, &error_)) return;
  if (!vorhost::Files().Mount('C', root(), &error_)) return;
  vorhost::Files().SetCurrentDrive(3);
  Restart();
}

Session::~Session() {
  host_.reset();
  user_.reset();
  vorhost::Files().Reset();
}

void Session::Restart() {
  host_.reset();
  host_ = std::make_unique<vorhost::Host>();
  host_->module().Load(acrxEntryPoint);
}

bool Session::Play(std::vector<std::string> lines) {
  user_ = std::make_unique<vorhost::ScriptUser>(*host_, "bench", std::move(lines));
  host_->console().set_user(user_.get());
  host_->command_line().Run();
  host_->console().set_user(nullptr);
  if (user_->failed()) error_ = user_->failure();
  return !user_->failed();
}

namespace {
std::unique_ptr<Session> drawn;
}  // namespace

Session* Drawn(int files) {
  if (drawn && drawn->shape().files == files) return drawn.get();
  drawn.reset();
  DataSetShape shape;
  shape.files = files;
  drawn = std::make_unique<Session>(shape);
  if (drawn->ok()) drawn->DrawAll();
  return drawn.get();
}

void ReleaseDrawn() { drawn.reset(); }

const char* VorhostProgram() { return VORHOST_PROGRAM; }

}  // namespace vorbench
