#include "providers/baseserver/Worker.h"

#include "tests/providers/baseserver/BaseServerFixture.h"

namespace {

using WorkerTest = BaseServerFixture;

TEST_F(WorkerTest, IsOneInstanceOnThisHost) {
    baseserver::WorkerInstance worker;
    EXPECT_EQ(worker.getClassName().str(), "PYL_BaseServerWorker");
    EXPECT_EQ(worker.getPath().str(), workerText);
    const auto instance = worker.getInstance();
    EXPECT_EQ(instance.getPath().str(), workerText);
    EXPECT_EQ(property(instance, "InstanceID"), "string \"KTQ:PYL_BaseServerWorker:1\"");
    EXPECT_EQ(property(instance, "ElementName"), "string \"Base server worker\"");
}

}  // namespace
