#include "common/CIMAlertIndication.h"

#include "tests/common/IndicationFixture.h"

namespace {

using PYL::CIMAlertIndication;

struct PlainAlert : IndicationFixture {
    CIMAlertIndication indication{log.logger, "KT_AlertIndication", "root/ktq", 2};
};

TEST_F(PlainAlert, SaysThatNothingIsKnownUntilItIsTold) {
    EXPECT_EQ(propertiesOf(indication.getInstance()),
              joined({plainLayer(indication.getId(), "KT_AlertIndication"), alertLayer()}));
}

TEST_F(PlainAlert, HasThePathOfTheIndication) {
    EXPECT_EQ(indication.getInstance().getPath(), indication.getPath());
}

TEST_F(PlainAlert, TellsWhatItWasTold) {
    indication.setDescription("a \"fan\" failed");
    indication.setEventID("3");
    indication.setAlertType(5);
    indication.setProviderName("KT Cooling");
    indication.setRecommendedActions("Replace it.");
    indication.setSystemCreationClassName("PYL_ComputerSystem");
    indication.setAlertingManagedElement("root/ktq:PYL_Fan.DeviceID=\"1\"");
    indication.setAlertingElementFormat(2);
    const Lines expected{"Description string \"a \\\"fan\\\" failed\"",
                         "EventID string \"3\"",
                         "EventTime datetime now",
                         "AlertType uint16 5",
                         "ProviderName string \"KT Cooling\"",
                         "RecommendedActions string[] {\"Replace it.\"}",
                         "SystemName string \"server-1\"",
                         "SystemCreationClassName string \"PYL_ComputerSystem\"",
                         "AlertingManagedElement string \"root/ktq:PYL_Fan.DeviceID=\\\"1\\\"\"",
                         "AlertingElementFormat uint16 2"};
    EXPECT_EQ(propertiesOf(indication.getInstance()),
              joined({plainLayer(indication.getId(), "KT_AlertIndication"), expected}));
}

TEST_F(PlainAlert, SendsEmptyTextsAsTheyAre) {
    indication.setDescription("");
    indication.setRecommendedActions("");
    const auto instance = indication.getInstance();
    EXPECT_EQ(instance.getProperty("Description").str(), "\"\"");
    EXPECT_EQ(instance.getProperty("RecommendedActions").str(), "{\"\"}");
}

TEST_F(PlainAlert, SaysThatTheHostHasNoName) {
    const cimtest::HostNameIs none(std::nullopt);
    EXPECT_EQ(indication.getInstance().getProperty("SystemName").asString(),
              "Host Name Not Defined!");
}

TEST_F(PlainAlert, AddsItsOwnLayerAlone) {
    auto instance = CmpiCpp::makeCmpiInstance(host.broker(), indication.getPath());
    static_cast<PYL::CIMIndication&>(indication).addProperties(instance);
    EXPECT_EQ(propertiesOf(instance), alertLayer());
}

TEST_F(PlainAlert, MakesTheSameIndicationAsOftenAsItIsAsked) {
    const auto first = propertiesOf(indication.getInstance());
    EXPECT_EQ(propertiesOf(indication.getInstance()), first);
}

TEST_F(PlainAlert, LogsEachLayerOfItsLife) {
    log.journal->take();
    { CIMAlertIndication(log.logger, "KT_AlertIndication", "root/ktq", 2).getInstance(); }
    EXPECT_EQ(
        log.journal->take(),
        (Lines{"information: CIMIndication cxtor()", "information: CIMAlertIndication cxtor()",
               "information: CIMIndication.addProperties()",
               "information: CIMAlertIndication.addProperties()",
               "information: CIMAlertIndication dxtor()", "information: CIMIndication dxtor()"}));
}

}  // namespace
