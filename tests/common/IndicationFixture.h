#pragma once

#include "cmpicpp/CmpiDateTime.h"
#include "common/PYLIndication.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/support/DataSources.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

/// A broker, data sources that read nothing until a test says what, and the log of an indication.
struct IndicationFixture : testing::Test {
    TestBroker host{{{"KT_AlertIndication", ""}, {"KT_IPProtocolEndpoint", ""}}};
    DataSources sources;
    JournalLog log;

    PYL::KTAlertIndication alert{log.logger, "KT_AlertIndication", "root/ktq", 2};

    IndicationFixture() { log.journal->take(); }

    void everythingIsKnown() { sources.everythingIsKnown(); }

    /// "Name type value" of each property in order, with "now" for the present time.
    static Lines propertiesOf(const CmpiCpp::CmpiInstance& instance) {
        Lines lines;
        for (unsigned i = 0; i < instance.getPropertyCount(); ++i) {
            const auto [name, data] = instance.getPropertyAt(i);
            const bool isTime = data.getType() == CMPI_dateTime;
            lines.push_back(name.str() + " " + CmpiCpp::CmpiData::typeToString(data.getType()) +
                            (data.isArray() ? "[] " : " ") +
                            (isTime ? _timeText(data.asDateTime()) : data.str()));
        }
        return lines;
    }
    Lines properties() { return propertiesOf(alert.getInstance()); }

    /// The one of these properties, or the empty text.
    std::string property(const std::string& name) {
        for (const auto& line : properties()) {
            if (line.starts_with(name + " ")) return line.substr(name.size() + 1);
        }
        return "";
    }

    /// What an indication's instance has that says nothing but "unknown", but for its own number.
    static Lines plainLayer(std::uint64_t number, const std::string& className) {
        return {
            "IndicationIdentifier string \"PYL:" + className + ":" + std::to_string(number) + "\"",
            "PerceivedSeverity uint16 2", "IndicationTime datetime now"};
    }
    static Lines alertLayer() {
        return {"Description string \"unknown\"",
                "EventID string \"0\"",
                "EventTime datetime now",
                "AlertType uint16 1",
                "ProviderName string \"unknown\"",
                "RecommendedActions string[] {\"none\"}",
                "SystemName string \"server-1\"",
                "SystemCreationClassName string \"unknown\"",
                "AlertingManagedElement string \"\"",
                "AlertingElementFormat uint16 0"};
    }
    static Lines joined(std::initializer_list<Lines> parts) {
        Lines all;
        for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }

private:
    /// "now" for a time of the last minute in whole seconds.
    static std::string _timeText(const CmpiCpp::CmpiDateTime& time) {
        using std::chrono::minutes;
        using std::chrono::seconds;
        const auto age = std::chrono::system_clock::now().time_since_epoch() - time.microseconds();
        const bool isWhole = time.microseconds() % seconds(1) == std::chrono::microseconds(0);
        const bool isNow = !time.isInterval() && age >= seconds(0) && age < minutes(1);
        return isNow && isWhole ? "now" : time.str();
    }
};
