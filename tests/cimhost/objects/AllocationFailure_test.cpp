#include "testing/cimhost/testing/Allocations.h"
#include "tests/support/BrokerFixture.h"

#include <functional>

namespace cimhost {
namespace {

using Call = std::function<CMPIStatus(CMPIStatus&)>;

class AllocationFailure : public BrokerTest {
protected:
    AllocationFailure() {
        path->ft->addKey(path, "Name", charsValue(longText), CMPI_chars);
        instance = eft().newInstance(broker(), path, nullptr);
        instance->ft->setProperty(instance, "Text", charsValue(longText), CMPI_chars);
        args->ft->addArg(args, "Text", charsValue(longText), CMPI_chars);
        array->ft->setElementAt(array, 0, charsValue(longText), CMPI_chars);
        context = makeContext(realBroker, {longText, longText, longText, longText, 0});
    }

    // Repeats the call with its first, second, ... allocation failing until none does.
    void failEachAllocation(const char* name, const Call& call) {
        int failures = 0;
        for (int n = 1;; ++n) {
            CMPIStatus outcome{CMPI_RC_OK, nullptr};
            {
                const cimtest::FailingAllocation failing(n, false);
                outcome = call(outcome);
            }
            if (!cimtest::allocationHasFailed()) {
                EXPECT_EQ(outcome, CMPI_RC_OK) << name;
                break;
            }
            EXPECT_EQ(outcome, CMPI_RC_ERR_FAILED) << name << ", allocation " << n;
            ++failures;
        }
        EXPECT_GT(failures, 0) << name << " allocates nothing";
    }

    template <typename Handle>
    void failCloning(const char* name, const Handle* object) {
        failEachAllocation(name, [object](CMPIStatus& outcome) {
            Handle* const copy = object->ft->clone(object, &outcome);
            if (copy) copy->ft->release(copy);
            return outcome;
        });
    }

    static constexpr const char* longText = "a text that is longer than any string keeps in itself";

    CMPIObjectPath* path = newPath();
    CMPIInstance* instance = nullptr;
    CMPIArgs* args = eft().newArgs(broker(), nullptr);
    CMPIArray* array = eft().newArray(broker(), 2, CMPI_string, nullptr);
    CMPIContext* context = nullptr;
};

TEST_F(AllocationFailure, MakesNothingAndSaysSo) {
    failEachAllocation("newObjectPath", [this](CMPIStatus& outcome) {
        eft().newObjectPath(broker(), longText, longText, &outcome);
        return outcome;
    });
    failEachAllocation("newInstance", [this](CMPIStatus& outcome) {
        eft().newInstance(broker(), path, &outcome);
        return outcome;
    });
    failEachAllocation("newArray", [this](CMPIStatus& outcome) {
        eft().newArray(broker(), 100, CMPI_uint8, &outcome);
        return outcome;
    });
    failEachAllocation("newStringCP", [this](CMPIStatus& outcome) {
        eft().newStringCP(broker(), longText, CMPI_CPID_SYSTEM, &outcome);
        return outcome;
    });
    failEachAllocation("newCMPIError", [this](CMPIStatus& outcome) {
        eft().newCMPIError(broker(), longText, longText, longText, ErrorSevLow, Timeout,
                           CMPI_RC_ERR_FAILED, &outcome);
        return outcome;
    });
    failEachAllocation("newPropertyList", [this](CMPIStatus& outcome) {
        const char* names[] = {longText, "Name", nullptr};
        eft().newPropertyList(broker(), names, &outcome);
        return outcome;
    });
    failEachAllocation("toString", [this](CMPIStatus& outcome) {
        eft().toString(broker(), instance, &outcome);
        return outcome;
    });
}

TEST_F(AllocationFailure, LeavesObjectsAsTheyWere) {
    failEachAllocation("addKey", [this](CMPIStatus&) {
        return path->ft->addKey(path, "Name", charsValue("another text of more than a few bytes"),
                                CMPI_chars);
    });
    failEachAllocation("setNameSpace",
                       [this](CMPIStatus&) { return path->ft->setNameSpace(path, longText); });
    failEachAllocation("setProperty", [this](CMPIStatus&) {
        return instance->ft->setProperty(instance, "Text", charsValue(longText), CMPI_chars);
    });
    failEachAllocation("setProperty of a new one", [this](CMPIStatus&) {
        return instance->ft->setProperty(instance, longText, nullptr, CMPI_uint8);
    });
    failEachAllocation("addArg", [this](CMPIStatus&) {
        return args->ft->addArg(args, longText, charsValue(longText), CMPI_chars);
    });
    failEachAllocation("setElementAt", [this](CMPIStatus&) {
        return array->ft->setElementAt(array, 1, charsValue(longText), CMPI_chars);
    });
    failEachAllocation("addEntry", [this](CMPIStatus&) {
        return context->ft->addEntry(context, longText, charsValue(longText), CMPI_chars);
    });
    failEachAllocation("setPropertyFilter", [this](CMPIStatus&) {
        const char* names[] = {longText, "Text", "Name", nullptr};
        return instance->ft->setPropertyFilter(instance, names, nullptr);
    });
    EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 1U);
    EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 3U);
    EXPECT_EQ(args->ft->getArgCount(args, nullptr), 2U);
}

TEST_F(AllocationFailure, MakesNoClones) {
    failCloning("clone of a path", path);
    failCloning("clone of an instance", instance);
    failCloning("clone of arguments", args);
    failCloning("clone of an array", array);
    failCloning("clone of a context", context);
    failCloning("clone of a string", newString(longText));
    failCloning("clone of a datetime", eft().newDateTime(broker(), nullptr));
}

TEST_F(AllocationFailure, LeavesThreadsAndMarksInOrder) {
    failEachAllocation("mark", [this](CMPIStatus& outcome) {
        CMPIGcStat* const mark = mft().mark(broker(), &outcome);
        if (mark) mft().release(broker(), mark);
        return outcome;
    });
    failEachAllocation("attach", [this](CMPIStatus&) {
        CMPIContext* const prepared = broker()->bft->prepareAttachThread(broker(), context);
        if (!prepared) return CMPIStatus{CMPI_RC_ERR_FAILED, nullptr};
        const CMPIStatus attached = broker()->bft->attachThread(broker(), prepared);
        if (attached.rc == CMPI_RC_OK) broker()->bft->detachThread(broker(), prepared);
        return attached;
    });
}

}  // namespace
}  // namespace cimhost
