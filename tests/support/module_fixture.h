// module_fixture.h - the module's state as it starts, around every test:
// ModuleStateTest for tests that call the module's parts directly,
// ModuleTest for a host that has loaded the module (messages 1 and 3 sent)
// with its home directory C:\VOR.
#ifndef VORMIS_TESTS_SUPPORT_MODULE_FIXTURE_H
#define VORMIS_TESTS_SUPPORT_MODULE_FIXTURE_H

#include "host/ads.h"
#include "host/entry.h"
#include "support/host_fixture.h"

namespace vorhost::testing {

// A fresh host, and module_reset() before and after each test, so that no
// test sees what another left in the module's state.
class ModuleStateTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    module_reset();
  }
  void TearDown() override {
    module_reset();
    HostTest::TearDown();
  }
};

class ModuleTest : public ModuleStateTest {
 protected:
  void SetUp() override {
    ModuleStateTest::SetUp();
    host_->module().Load(acrxEntryPoint);
    SetSymbol("VORMIS", "C:/VOR");
  }
};

}  // namespace vorhost::testing

#endif
