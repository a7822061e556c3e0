#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "cmpicpp/CmpiDateTime.h"
#include "common/PYLIndication.h"
#include "tests/common/DataSources.h"
#include "tests/common/HostName.h"
#include "tests/common/Journal.h"
#include "tests/common/TestBroker.h"

/// A broker, data sources that read nothing until a test says what, and the log of an indication.
struct IndicationFixture : testing::Test {
    TestBroker host{{{"KT_AlertIndication", ""}, {"KT_IPProtocolEndpoint", ""}}};
    DataSources sources;
    JournalLog log;

    PYL::KTAlertIndication alert{log.logger, "KT_AlertIndication", "root/ktq", 2};

    IndicationFixture() { log.journal->take(); }

    void everythingIsKnown() { sources.everythingIsKnown(); }

    /// "Name type value" of each property in order, with "now" for the present time.
    static Lines propertiesOf(CmpiCpp::CmpiInstance const& instance) {
        Lines lines;
        for (unsigned i = 0; i < instance.getPropertyCount(); ++i) {
            auto const [name, data] = instance.getPropertyAt(i);
            bool const isTime = data.getType() == CMPI_dateTime;
            lines.push_back(name.str() + " " + CmpiCpp::CmpiData::typeToString(data.getType()) +
                            (data.isArray() ? "[] " : " ") +
                            (isTime ? timeText(data.asDateTime()) : data.str()));
        }
        return lines;
    }
    Lines properties() { return propertiesOf(alert.getInstance()); }

    /// The one of these properties, or the empty text.
    std::string property(std::string const& name) {
        for (auto const& line : properties())
            if (line.starts_with(name + " ")) return line.substr(name.size() + 1);
        return "";
    }

    /// What an indication's instance has that says nothing but "unknown", but for its own number.
    static Lines plainLayer(std::uint64_t number, std::string const& className) {
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
        for (auto const& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }

private:
    /// "now" for a time of the last minute in whole seconds.
    static std::string timeText(CmpiCpp::CmpiDateTime const& time) {
        using namespace std::chrono;
        auto const age = system_clock::now().time_since_epoch() - time.microseconds();
        bool const isWhole = time.microseconds() % seconds(1) == microseconds(0);
        bool const isNow = !time.isInterval() && age >= seconds(0) && age < minutes(1);
        return isNow && isWhole ? "now" : time.str();
    }
};
