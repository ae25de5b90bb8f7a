// module_fixture.h - a fresh host with the module loaded (messages 1 and
// 3 sent), its home directory C:\VOR, and the catalogue state reset before
// and after each test.
#ifndef VORMIS_TESTS_SUPPORT_MODULE_FIXTURE_H
#define VORMIS_TESTS_SUPPORT_MODULE_FIXTURE_H

#include "host/ads.h"
#include "linetool/catalogue.h"
#include "support/host_fixture.h"

namespace vorhost::testing {

class ModuleTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    catalogue_reset();
    host_->LoadModule(acrxEntryPoint);
    SetSymbol("VORMIS", "C:/VOR");
  }
  void TearDown() override {
    catalogue_reset();
    HostTest::TearDown();
  }
};

}  // namespace vorhost::testing

#endif
