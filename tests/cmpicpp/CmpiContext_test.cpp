#include "cmpicpp/CmpiContext.h"

#include "tests/cmpicpp/BrokerFixture.h"

namespace CmpiCpp {
namespace {

class CmpiContextTest : public test::BrokerTest {
protected:
    const CMPIContext* context(const cimhost::RequestContext& request) const {
        return cimhost::makeContext(realBroker, request);
    }
};

TEST_F(CmpiContextTest, TellsWhoAsksWhereAndHow) {
    cimhost::RequestContext request;
    request.nameSpace = "root/ktq";
    request.principal = "alice";
    request.acceptLanguage = "de";
    request.flags = CMPI_FLAG_DeepInheritance | CMPI_FLAG_LocalOnly;
    const CmpiContext read(context(request));
    EXPECT_EQ(read.nameSpace(), "root/ktq");
    EXPECT_EQ(read.principal(), "alice");
    EXPECT_EQ(read.acceptLanguage(), "de");
    EXPECT_EQ(read.invocationFlags(), CMPI_FLAG_DeepInheritance | CMPI_FLAG_LocalOnly);
}

TEST_F(CmpiContextTest, ReadsMissingEntriesAsNothing) {
    CMPIContext* const bare = cimhost::makeContext(realBroker, {});
    CMPIContextFT table = *bare->ft;
    table.getEntry = [](const CMPIContext*, const char*, CMPIStatus* status) -> CMPIData {
        *status = {CMPI_RC_ERR_NO_SUCH_PROPERTY, nullptr};
        return {CMPI_string, CMPI_goodValue, {}};
    };
    const CMPIContext missing{bare->hdl, &table};
    const CmpiContext read(&missing);
    EXPECT_EQ(read.nameSpace(), "");
    EXPECT_EQ(read.principal(), "");
    EXPECT_EQ(read.acceptLanguage(), "");
    EXPECT_EQ(read.invocationFlags(), 0U);
}

TEST_F(CmpiContextTest, ReadsEntriesOfAnotherTypeAsNothing) {
    CMPIContextFT table{};
    table.getEntry = [](const CMPIContext*, const char*, CMPIStatus* status) -> CMPIData {
        *status = {CMPI_RC_OK, nullptr};
        return {CMPI_boolean, CMPI_goodValue, {}};
    };
    const CMPIContext odd{&table, &table};
    EXPECT_EQ(CmpiContext(&odd).nameSpace(), "");
    EXPECT_EQ(CmpiContext(&odd).invocationFlags(), 0U);
}

TEST_F(CmpiContextTest, ReadsAsNothingWhatTheObjectManagerThrowsFor) {
    CMPIContextFT table{};
    table.getEntry = [](const CMPIContext*, const char*, CMPIStatus*) -> CMPIData { throw 1; };
    const CMPIContext throwing{&table, &table};
    EXPECT_EQ(CmpiContext(&throwing).nameSpace(), "");
    EXPECT_EQ(CmpiContext(&throwing).invocationFlags(), 0U);
}

TEST_F(CmpiContextTest, MayBeMissingAltogether) {
    const CmpiContext none(nullptr);
    EXPECT_EQ(none.nameSpace(), "");
    EXPECT_EQ(none.principal(), "");
    EXPECT_EQ(none.invocationFlags(), 0U);
    EXPECT_EQ(none.toCMPI(), nullptr);
}

}  // namespace
}  // namespace CmpiCpp
