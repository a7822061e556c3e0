#include "common/OpstatusUtils.h"

#include "common/PYLUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

namespace {

using PYL::healthStateCriticalFailure;
using PYL::healthStateMinorFailure;
using PYL::ktlogAlertLevel;
using PYL::operationalStatus;
using PYL::opstatusFromUint16;
using PYL::opstatusToString;
using PYL::PYLUtil;
using PYL::severityDegraded;
using PYL::severityFatal;
using PYL::severityWarning;
using PYL::updateWorst;
using enum PYL::operationalStatus;

operationalStatus status(int value) { return static_cast<operationalStatus>(value); }

/// Every value of the enumeration and some round it.
std::vector<int> allValues() {
    std::vector<int> values;
    for (int value = -3; value <= 300; ++value) values.push_back(value);
    values.insert(values.end(), {0x8000, 0xFFFF, std::numeric_limits<int>::max(),
                                 std::numeric_limits<int>::min()});
    return values;
}

TEST(OpstatusToString, NamesEveryStatus) {
    const char* const texts[] = {"Unknown",
                                 "Other",
                                 "OK",
                                 "Degraded",
                                 "Stressed",
                                 "Predicted failure",
                                 "Error",
                                 "Non-recoverable error",
                                 "Starting",
                                 "Stopping",
                                 "Stopped",
                                 "In service",
                                 "No contact",
                                 "Lost communication",
                                 "Aborted",
                                 "Dormant",
                                 "Supporting entity in error",
                                 "Complete",
                                 "Power mode"};
    for (int value = 0; value <= 18; ++value) {
        EXPECT_EQ(opstatusToString(status(value)), texts[value]);
    }
}

TEST(OpstatusToString, PrintsTheNumberOfAnyOtherValue) {
    EXPECT_EQ(opstatusToString(status(25)), "Unknown operationalStatus value 25");
    EXPECT_EQ(opstatusToString(status(19)), "Unknown operationalStatus value 19");
    EXPECT_EQ(opstatusToString(status(-1)), "Unknown operationalStatus value -1");
}

TEST(OpstatusFromUint16, KeepsTheStandardsValuesAndNothingElse) {
    for (unsigned value = 0; value <= 0xFFFF; ++value) {
        EXPECT_EQ(opstatusFromUint16(static_cast<unsigned short>(value)),
                  value >= 1 && value <= 18 ? status(static_cast<int>(value)) : statusUnknown);
    }
}

/// How bad a status is, as an operator would rank it.
int badness(int value) {
    switch (value) {
        case statusOther:
        case statusStarting:
        case statusStopping:
        case statusDormant:
        case statusPowerMode: return 0;
        case statusUnknown:
        case statusNoContact: return 1;
        case statusStopped:
        case statusInService: return 3;
        case statusDegraded:
        case statusStressed: return 4;
        case statusPredictiveFailure:
        case statusError:
        case statusAborted:
        case statusSupportingEntityInError: return 5;
        case statusNonRecoverableError:
        case statusLostCommunication: return 6;
        default: return 2;  // OK, and what nobody defined
    }
}

constexpr operationalStatus classOfBadness[] = {statusOther,
                                                statusUnknown,
                                                statusOK,
                                                statusStopped,
                                                statusDegraded,
                                                statusError,
                                                statusNonRecoverableError};

bool isClass(int value) {
    return std::ranges::find(classOfBadness, value) != std::end(classOfBadness);
}

TEST(UpdateWorst, GivesTheWorseOfAnyTwo) {
    for (const int worst : allValues()) {
        for (const int next : allValues()) {
            const int expected =
                isClass(worst) ? std::max(badness(worst), badness(next)) : badness(next);
            EXPECT_EQ(updateWorst(status(worst), status(next)), classOfBadness[expected])
                << worst << " and " << next;
        }
    }
}

TEST(UpdateWorst, ReplacesAFirstValueThatIsNoClass) {
    EXPECT_EQ(updateWorst(statusStarting, statusOK), statusOK);
    EXPECT_EQ(updateWorst(statusStressed, statusOther), statusOther);
    EXPECT_EQ(updateWorst(status(42), statusOther), statusOther);
}

TEST(UpdateWorst, HoldsTheRanksThatOperatorsRelyOn) {
    EXPECT_EQ(updateWorst(statusOK, statusOther), statusOK);
    EXPECT_EQ(updateWorst(statusOther, statusOK), statusOK);
    EXPECT_EQ(updateWorst(statusUnknown, statusOK), statusOK);
    EXPECT_EQ(updateWorst(statusOK, statusUnknown), statusOK);
    EXPECT_EQ(updateWorst(statusOther, statusUnknown), statusUnknown);
    EXPECT_EQ(updateWorst(statusOK, statusInService), statusStopped);
    EXPECT_EQ(updateWorst(statusStopped, statusStressed), statusDegraded);
    EXPECT_EQ(updateWorst(statusError, statusStopped), statusError);
    EXPECT_EQ(updateWorst(statusDegraded, status(42)), statusDegraded);
}

TEST(UpdateWorst, FoldsToTheSameWhateverTheOrder) {
    const int states[] = {statusOK, statusDormant, statusStressed, statusNoContact, statusAborted};
    std::vector<int> order{std::begin(states), std::end(states)};
    std::ranges::sort(order);
    do {
        auto worst = statusUnknown;
        for (const int state : order) worst = updateWorst(worst, status(state));
        EXPECT_EQ(worst, statusError);
    } while (std::ranges::next_permutation(order).found);
}

TEST(OpstatusToHealthState, FollowsTheStatus) {
    const auto expected = [](int value) {
        switch (value) {
            case 2:
            case 8:
            case 9:
            case 15:
            case 17:
            case 18: return 5;
            case 3:
            case 4:
            case 10:
            case 11: return 10;
            case 5:
            case 6:
            case 14:
            case 16: return 20;
            case 7:
            case 13: return 30;
            default: return 0;
        }
    };
    for (const int value : allValues()) {
        EXPECT_EQ(PYLUtil::opstatusToHealthState(status(value)), expected(value)) << value;
    }
}

TEST(KtLogToCIMSeverity, FollowsTheLevel) {
    const auto severity = [](int level) {
        return static_cast<int>(PYLUtil::ktLogToCIMSeverity(static_cast<ktlogAlertLevel>(level)));
    };
    const int expected[] = {4, 5, 2, 3, 0, 6, 0, 6, 0};
    for (int level = 0; level <= 8; ++level) EXPECT_EQ(severity(level), expected[level]) << level;
    for (const int level : {-1, 9, 100, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(severity(level), 0) << level;
    }
}

TEST(Opstatus, HasTheStandardsNumbers) {
    EXPECT_EQ(healthStateMinorFailure, 15);
    EXPECT_EQ(healthStateCriticalFailure, 25);
    EXPECT_EQ(severityWarning, severityDegraded);
    EXPECT_EQ(severityFatal, 7);
    EXPECT_EQ(statusPowerMode, 18);
}

}  // namespace
