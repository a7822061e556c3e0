#include "providers/baseserver/Worker.h"

#include "tests/providers/baseserver/BaseServerFixture.h"

namespace {

using WorkerTest = BaseServerFixture;

TEST_F(WorkerTest, IsOneInstanceOnThisHost) {
    EXPECT_EQ(host.show(baseserver::WorkerInstance()),
              cimtest::Instance(workerPath, {{"InstanceID", "KTQ:PYL_BaseServerWorker:1"},
                                             {"ElementName", "Base server worker"}}));
}

}  // namespace
