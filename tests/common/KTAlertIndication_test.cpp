#include "common/KTAlertIndication.h"

#include "common/IndicationDB.h"
#include "tests/common/Failures.h"
#include "tests/common/IndicationFixture.h"

#include <limits>
#include <optional>
#include <vector>

namespace {

using CmpiCpp::CmpiInstance;
using PYL::KTAlertIndication;

/// What a fresh indication says of the event, without sources for the rest.
const Lines unknownEvent{"Summary string \"unknown\"", "EventCategory uint32 0",
                         "ProbableCause uint16 0", "ProbableCauseDescription string \"unknown\"",
                         "ProviderVersion string \"03.02.00\""};

struct Alert : IndicationFixture {
    /// The properties of the last layer alone.
    Lines ownProperties() {
        auto instance = CmpiCpp::makeCmpiInstance(host.broker(), alert.getPath());
        alert.addProperties(instance);
        return propertiesOf(instance);
    }
};

TEST_F(Alert, SaysThatNothingIsKnownUntilItIsTold) {
    EXPECT_EQ(properties(), joined({plainLayer(alert.getId(), "KT_AlertIndication"),
                                    alertLayer(),
                                    unknownEvent,
                                    {"ImpactedDomain uint16 4"}}));
}

TEST_F(Alert, TellsTheEvent) {
    alert.setSummary("Fan failed");
    alert.setEventCategory(23);
    alert.setEventSubCategory(12);
    alert.setProbableCause(94);
    alert.setProbableCauseDescription("Fan Failed");
    EXPECT_EQ(ownProperties(),
              (Lines{"Summary string \"Fan failed\"", "EventCategory uint32 23",
                     "ProbableCause uint16 94", "ProbableCauseDescription string \"Fan Failed\"",
                     "ProviderVersion string \"03.02.00\"", "EventSubCategory uint32 12",
                     "ImpactedDomain uint16 4"}));
}

TEST_F(Alert, TellsTheDevice) {
    alert.setHWLogicalLocation("logical");
    alert.setHWPhysicalLocation("physical");
    alert.setHWFirmwareVersion("1.2");
    alert.setHWManufacturer("KT");
    alert.setHWSerialNumber("X");
    alert.setHWPartNumber("P-1");
    alert.setDeviceModel("model");
    alert.setDeviceControllerLogicalLocation("slot 1");
    EXPECT_EQ(ownProperties(),
              joined({unknownEvent,
                      {"HWLogicalLocation string[] {\"logical\"}",
                       "HWPhysicalLocation string \"physical\"",
                       "HWFirmwareVersion string[] {\"1.2\", \"\"}", "HWManufacturer string \"KT\"",
                       "HWSerialNumber string[] {\"X\", \"\"}", "HWPartNumber string \"P-1\"",
                       "DeviceModel string \"model\"",
                       "DeviceControllerLogicalLocation string[] {\"slot 1\"}",
                       "ImpactedDomain uint16 4"}}));
}

TEST_F(Alert, LeavesOutWhatWasMadeEmptyAgain) {
    alert.setHWPartNumber("P-1");
    alert.setHWPartNumber("");
    alert.setEventSubCategory(1);
    alert.setEventSubCategory(0);
    EXPECT_EQ(ownProperties(), joined({unknownEvent, {"ImpactedDomain uint16 4"}}));
}

TEST_F(Alert, SendsTheVersionOfTheFamilyWhateverItIsTold) {
    alert.setProviderVersion("9.9");
    EXPECT_EQ(property("ProviderVersion"), "string \"03.02.00\"");
}

TEST_F(Alert, DoesNotSendTheOtherEventCategory) {
    const auto before = properties();
    alert.setOtherEventCategory("special");
    EXPECT_EQ(properties(), before);
}

TEST_F(Alert, SendsNegativeNumbersInTheWidthOfTheProperty) {
    alert.setEventCategory(-1);
    alert.setEventSubCategory(-1);
    alert.setProbableCause(-1);
    EXPECT_EQ(property("EventCategory"), "uint32 4294967295");
    EXPECT_EQ(property("EventSubCategory"), "uint32 4294967295");
    EXPECT_EQ(property("ProbableCause"), "uint16 65535");
}

TEST_F(Alert, TellsTheThresholdsOfATemperature) {
    alert.setTemperatureVariables(65, 72.5F);
    EXPECT_EQ(ownProperties(),
              joined({unknownEvent,
                      {"VariableNames string[] {\"UpperThresholdCritical\", "
                       "\"UpperThresholdFatal\"}",
                       "VariableTypes uint16[] {9, 9}",
                       "VariableValues string[] {\"65\", \"72.5\"}", "ImpactedDomain uint16 4"}}));
}

TEST_F(Alert, WritesTemperaturesAsAStreamDoes) {
    struct {
        float value;
        const char* text;
    } const rows[] = {{0, "0"},
                      {-40, "-40"},
                      {0.1F, "0.1"},
                      {1234567, "1.23457e+06"},
                      {100000, "100000"},
                      {0.00001F, "1e-05"},
                      {36.6666F, "36.6666"},
                      {std::numeric_limits<float>::max(), "3.40282e+38"},
                      {std::numeric_limits<float>::lowest(), "-3.40282e+38"},
                      {std::numeric_limits<float>::denorm_min(), "1.4013e-45"},
                      {std::numeric_limits<float>::infinity(), "inf"}};
    for (const auto& row : rows) {
        alert.setTemperatureVariables(row.value, 0);
        EXPECT_EQ(property("VariableValues"),
                  std::string("string[] {\"") + row.text + "\", \"0\"}");
    }
}

TEST_F(Alert, TakesTheValuesOfARecord) {
    const PYL::IndicationDB database(log.logger, "PYL_EthernetIndication");
    PYL::IndDBRec record;
    ASSERT_EQ(database.getRecord(5, record), 0);
    KTAlertIndication network(log.logger, "KT_AlertIndication", "root/ktq", record._severity);
    network.setDescription(record._description);
    network.setEventID(record._WBEMEventID);
    network.setAlertType(record._alertType);
    network.setProviderName(record._WBEMProviderName);
    network.setRecommendedActions(record._recommendedActions);
    network.setSummary(record._summary);
    network.setEventCategory(static_cast<int>(record._eventCategory));
    network.setEventSubCategory(static_cast<int>(record._eventSubCategory));
    network.setProbableCause(record._probableCause);
    network.setProbableCauseDescription(record._probableCauseDescription);
    const auto instance = network.getInstance();
    EXPECT_EQ(instance.getProperty("PerceivedSeverity").str(), "6");
    EXPECT_EQ(instance.getProperty("AlertType").str(), "2");
    EXPECT_EQ(instance.getProperty("EventSubCategory").str(), "12");
    EXPECT_EQ(instance.getProperty("Summary").str(), "\"Ethernet team lost redundancy\"");
    EXPECT_EQ(instance.getProperty("ProviderName").str(), "\"KT Ethernet\"");
}

TEST_F(Alert, MakesAllLayersThroughTheBaseToo) {
    const auto all = properties();
    EXPECT_EQ(propertiesOf(static_cast<PYL::CIMAlertIndication&>(alert).getInstance()), all);
}

TEST_F(Alert, LogsEachLayerOfItsLife) {
    sources.computerSystem.emplace();
    sources.blade.emplace();
    { KTAlertIndication(log.logger, "KT_AlertIndication", "root/ktq", 2).getInstance(); }
    EXPECT_EQ(
        log.journal->take(),
        (Lines{"information: CIMIndication cxtor()", "information: CIMAlertIndication cxtor()",
               "information: KTAlertIndication cxtor()",
               "information: CIMIndication.addProperties()",
               "information: CIMAlertIndication.addProperties()",
               "information: KTAlertIndication.addProperties()",
               "information: KTAlertIndication dxtor()", "information: CIMAlertIndication dxtor()",
               "information: CIMIndication dxtor()"}));
}

/// Endpoints as another provider would serve them.
struct Addresses : Alert {
    std::vector<CmpiInstance> endpoints;

    Addresses() {
        host.onEnumInstances = [this](const CmpiCpp::CmpiObjectPath& path) {
            log.journal->note("enumerate " + path.str());
            return endpoints;
        };
    }
    void endpointIs(std::optional<unsigned short> kind, const std::optional<std::string>& ipv4,
                    const std::optional<std::string>& ipv6) {
        auto endpoint = CmpiCpp::makeCmpiInstance(
            host.broker(),
            CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", "KT_IPProtocolEndpoint"));
        if (kind) endpoint.setProperty("ProtocolIFType", *kind);
        if (ipv4) endpoint.setProperty("IPv4Address", *ipv4);
        if (ipv6) endpoint.setProperty("IPv6Address", *ipv6);
        endpoints.push_back(endpoint);
    }
    std::string outcome() {
        return outcomeOf([&] { alert.setNetworkIPAddress(host.context()); });
    }
};

TEST_F(Addresses, AreThoseOfAllEndpointsInTheirOrder) {
    endpointIs(4097, std::nullopt, "fe80::1");
    endpointIs(4096, "10.0.0.1", "unused");
    endpointIs(4098, "both", "both");
    endpointIs(1, "other", "other");
    endpointIs(4096, "", std::nullopt);
    endpointIs(4096, "10.0.0.1", std::nullopt);
    ASSERT_EQ(outcome(), "none");
    EXPECT_EQ(log.journal->take(), Lines{"enumerate /root/ktq:KT_IPProtocolEndpoint"});
    EXPECT_EQ(ownProperties(),
              joined({unknownEvent,
                      {"NetworkAddresses string[] {\"fe80::1\", \"10.0.0.1\", \"\", \"10.0.0.1\"}",
                       "ImpactedDomain uint16 4"}}));
}

TEST_F(Addresses, AreLeftOutWhenThereAreNone) {
    ASSERT_EQ(outcome(), "none");
    EXPECT_EQ(property("NetworkAddresses"), "");
}

TEST_F(Addresses, AreAppendedWithEachCall) {
    endpointIs(4096, "10.0.0.1", std::nullopt);
    ASSERT_EQ(outcome(), "none");
    ASSERT_EQ(outcome(), "none");
    EXPECT_EQ(property("NetworkAddresses"), "string[] {\"10.0.0.1\", \"10.0.0.1\"}");
}

TEST_F(Addresses, ThatAnEndpointDoesNotHaveCostNoOther) {
    endpointIs(4096, "10.0.0.1", std::nullopt);
    endpointIs(4096, std::nullopt, std::nullopt);
    endpointIs(4097, "10.0.0.2", std::nullopt);
    endpointIs(std::nullopt, "10.0.0.3", std::nullopt);
    endpointIs(4096, "10.0.0.4", std::nullopt);
    endpoints.back().setProperty("IPv4Address", CmpiCpp::CmpiValue::null(CMPI_string));
    endpointIs(4096, "10.0.0.5", std::nullopt);
    endpoints.back().setProperty("ProtocolIFType", CmpiCpp::CmpiValue::null(CMPI_uint16));
    endpointIs(4097, std::nullopt, "fe80::1");
    ASSERT_EQ(outcome(), "none");
    EXPECT_EQ(property("NetworkAddresses"), "string[] {\"10.0.0.1\", \"fe80::1\"}");
}

TEST_F(Addresses, AreTakenOnlyFromPropertiesOfTheirType) {
    endpointIs(std::nullopt, "10.0.0.1", std::nullopt);
    endpoints.back().setProperty("ProtocolIFType", 4096U);
    endpointIs(std::nullopt, "10.0.0.2", std::nullopt);
    endpoints.back().setProperty("ProtocolIFType", "4096");
    endpointIs(4096, std::nullopt, std::nullopt);
    endpoints.back().setProperty("IPv4Address", 167772163U);
    endpointIs(4096, "10.0.0.4", std::nullopt);
    ASSERT_EQ(outcome(), "none");
    EXPECT_EQ(property("NetworkAddresses"), "string[] {\"10.0.0.4\"}");
}

TEST_F(Addresses, ThatNobodyServesAreAnError) {
    host.onEnumInstances = [](const auto&) -> std::vector<CmpiInstance> {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_INVALID_CLASS, "no endpoints here");
    };
    EXPECT_EQ(outcome(), "status 5 no endpoints here");
}

}  // namespace
