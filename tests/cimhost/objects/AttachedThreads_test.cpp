#include "cimhost/objects/AttachedThreads.h"

#include "tests/support/BrokerFixture.h"
#include "tests/support/MannerCall.h"

#include <thread>

namespace cimhost {
namespace {

class AttachedThreads : public BrokerTest {
protected:
    AttachedThreads() {
        RequestContext request;
        request.principal = "somebody";
        context = makeContext(realBroker, request);
    }

    const CMPIBrokerFT& bft() const { return *broker()->bft; }

    CMPIContext* context;
};

TEST_F(AttachedThreads, UseTheContextThatWasPrepared) {
    CMPIContext* const prepared = bft().prepareAttachThread(broker(), context);
    ASSERT_NE(prepared, nullptr);
    std::thread([this, prepared] {
        EXPECT_EQ(bft().attachThread(broker(), prepared), CMPI_RC_OK);
        const CMPIData user = prepared->ft->getEntry(prepared, CMPIPrincipal, nullptr);
        EXPECT_EQ(textOf(user.value.string), "somebody");
        EXPECT_NE(eft().newString(broker(), "x", nullptr), nullptr);
        EXPECT_EQ(bft().detachThread(broker(), prepared), CMPI_RC_OK);
    }).join();
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(AttachedThreads, ThatDoNotDetachLeakNothing) {
    CMPIContext* const prepared = bft().prepareAttachThread(broker(), context);
    std::thread([this, prepared] {
        EXPECT_EQ(bft().attachThread(broker(), prepared), CMPI_RC_OK);
        eft().newString(broker(), std::string(1000, 'x').c_str(), nullptr);
        mft().mark(broker(), nullptr);
        eft().newArgs(broker(), nullptr);
    }).join();
    EXPECT_NE(bft().prepareAttachThread(broker(), context), nullptr);
}

TEST_F(AttachedThreads, AttachWithAPreparedContextOnly) {
    EXPECT_EQ(bft().attachThread(broker(), context), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().attachThread(broker(), nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().prepareAttachThread(broker(), nullptr), nullptr);
    EXPECT_EQ(bft().prepareAttachThread(nullptr, context), nullptr);
}

TEST_F(AttachedThreads, AttachOnceAtATime) {
    CMPIContext* const first = bft().prepareAttachThread(broker(), context);
    CMPIContext* const second = bft().prepareAttachThread(broker(), context);
    EXPECT_EQ(bft().attachThread(broker(), first), CMPI_RC_OK);
    EXPECT_EQ(bft().attachThread(broker(), second), CMPI_RC_ERR_FAILED);
    std::thread([this, first] {
        EXPECT_EQ(bft().attachThread(broker(), first), CMPI_RC_ERR_INVALID_HANDLE);
    }).join();
    EXPECT_EQ(bft().detachThread(broker(), second), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().detachThread(broker(), first), CMPI_RC_OK);
    EXPECT_EQ(bft().attachThread(broker(), second), CMPI_RC_OK);
    EXPECT_EQ(bft().detachThread(broker(), second), CMPI_RC_OK);
}

TEST_F(AttachedThreads, DetachOnlyWhatIsAttached) {
    CMPIContext* const prepared = bft().prepareAttachThread(broker(), context);
    EXPECT_EQ(bft().detachThread(broker(), prepared), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().detachThread(broker(), nullptr), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(AttachedThreads, MayAttachAgainAfterACallEndedWithoutDetaching) {
    CMPIContext* const first = bft().prepareAttachThread(broker(), context);
    CMPIContext* const second = bft().prepareAttachThread(broker(), context);
    {
        const CallScope call;
        EXPECT_EQ(bft().attachThread(broker(), first), CMPI_RC_OK);
    }
    EXPECT_EQ(bft().attachThread(broker(), second), CMPI_RC_OK);
    EXPECT_EQ(bft().detachThread(broker(), second), CMPI_RC_OK);
}

TEST_F(AttachedThreads, APreparedContextIsNotForTheProviderToRelease) {
    CMPIContext* const prepared = bft().prepareAttachThread(broker(), context);
    EXPECT_EQ(prepared->ft->release(prepared), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().attachThread(broker(), prepared), CMPI_RC_OK);
    EXPECT_EQ(bft().detachThread(broker(), prepared), CMPI_RC_OK);
}

TEST(AttachedThreadsAsSfcb, KeepWhatTheyHaveMadeUntilTheyEnd) {
    MannerCall call("sfcb");
    const CMPIBrokerFT& bft = *call.broker()->bft;
    CMPIContext* const context = makeContext(call.realBroker, RequestContext());
    CMPIContext* const first = bft.prepareAttachThread(call.broker(), context);
    CMPIContext* const second = bft.prepareAttachThread(call.broker(), context);
    std::thread([&] {
        EXPECT_EQ(bft.attachThread(call.broker(), first), CMPI_RC_OK);
        const CMPIString* const kept = call.eft().newString(call.broker(), "kept", nullptr);
        EXPECT_EQ(bft.detachThread(call.broker(), first), CMPI_RC_OK);
        EXPECT_EQ(bft.attachThread(call.broker(), second), CMPI_RC_OK);
        EXPECT_EQ(textOf(kept), "kept");
        EXPECT_EQ(bft.detachThread(call.broker(), second), CMPI_RC_OK);
    }).join();
}

class CollectingIndicationSink : public IndicationSink {
public:
    void deliver(const RequestContext& context, std::string_view nameSpace,
                 const Instance& indication) override {
        text = context.principal + " " + std::string(nameSpace) + " " + indication.className();
    }

    std::string text;
};

TEST_F(AttachedThreads, DeliverIndicationsWhenThereIsASink) {
    CollectingIndicationSink sink;
    realBroker.setIndicationSink(&sink);
    EXPECT_EQ(bft().brokerCapabilities & CMPI_MB_Indications,
              static_cast<unsigned int>(CMPI_MB_Indications));
    EXPECT_EQ(bft().deliverIndication(broker(), context, "root/test", newInstance()), CMPI_RC_OK);
    EXPECT_EQ(sink.text, "somebody root/test Test_Base");
    realBroker.setIndicationSink(nullptr);
    EXPECT_NE(bft().brokerCapabilities & CMPI_MB_Indications,
              static_cast<unsigned int>(CMPI_MB_Indications));
}

TEST_F(AttachedThreads, DoNotDeliverIndicationsWithoutASink) {
    EXPECT_EQ(bft().deliverIndication(broker(), context, "root/test", newInstance()),
              CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST(AttachedThreadsAsSfcb, AreToldThatEveryIndicationWasTakenAndFindItCut) {
    MannerCall call("sfcb");
    const CMPIBrokerFT& bft = *call.broker()->bft;
    const CMPIContext* const context = makeContext(call.realBroker, RequestContext());
    const CMPIInstance* const indication = call.newInstance();
    const CMPIValue size = uint32Value(1);
    EXPECT_EQ(indication->ft->setProperty(indication, "Size", &size, CMPI_uint32), CMPI_RC_OK);
    EXPECT_EQ(bft.deliverIndication(call.broker(), context, "root/test", indication), CMPI_RC_OK);
    indication->ft->getProperty(indication, "Size", &call.status);
    EXPECT_EQ(call.status, CMPI_RC_ERR_NOT_FOUND);
}

TEST(AttachedThreadsAsOpenPegasus, EndTheProcessWhenTheyDeliverWithoutAContext) {
    MannerCall call("openpegasus");
    const CMPIInstance* const indication = call.newInstance();
    EXPECT_DEATH(
        call.broker()->bft->deliverIndication(call.broker(), nullptr, "root/test", indication), "");
}

TEST(AttachedThreadsAsOpenPegasus, EndTheProcessWhenTheyWorkUnattached) {
    const MannerCall call("openpegasus");
    const auto onItsOwn = [](const auto& make) { std::thread(make).join(); };
    const CMPIObjectPath* const path =
        call.eft().newObjectPath(call.broker(), "root/test", "Test_Base", nullptr);
    EXPECT_DEATH(onItsOwn([&] { call.eft().newObjectPath(call.broker(), "n", "C", nullptr); }), "");
    EXPECT_DEATH(onItsOwn([&] { call.eft().newInstance(call.broker(), path, nullptr); }), "");
    onItsOwn([&] { EXPECT_NE(call.eft().newString(call.broker(), "x", nullptr), nullptr); });
}

TEST_F(AttachedThreads, DeliverWholeIndicationsOnly) {
    CollectingIndicationSink sink;
    realBroker.setIndicationSink(&sink);
    EXPECT_EQ(bft().deliverIndication(broker(), nullptr, "root/test", newInstance()),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(bft().deliverIndication(broker(), context, nullptr, newInstance()),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(bft().deliverIndication(broker(), context, "root/test", nullptr),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(sink.text, "");
}

}  // namespace
}  // namespace cimhost
