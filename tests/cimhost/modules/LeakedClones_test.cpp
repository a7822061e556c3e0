#include "tests/cimhost/operations/OperationsFixture.h"

#include <gtest/gtest.h>

namespace cimhost::test {
namespace {

/// Providers P of TST_Fan and Q of TST_System. What they clone is released when the test ends.
class LeakedClones : public OperationsTest {
protected:
    LeakedClones()
        : p(serve("P", "TST_Fan root/test instance")),
          q(serve("Q", "TST_System root/test instance")) {}
    ~LeakedClones() override {
        for (CMPIObjectPath* const clone : clones) clone->ft->release(clone);
    }

    CMPIObjectPath* clone() {
        CMPIObjectPath* const path = makeObjectPath(broker, named("TST_Fan", "a"));
        return path->ft->clone(path, nullptr);
    }

    void leak() { clones.push_back(clone()); }

    void get(const std::string& className) {
        FoundInstances found;
        errorCodeOf([&] { operations().getInstance(request(), named(className, "a"), {}, found); });
    }

    std::vector<CMPIObjectPath*> clones;
    ScriptedProvider& p;
    ScriptedProvider& q;
};

TEST_F(LeakedClones, AreToldOnceAProviderWhenTheyComeAgain) {
    p.getInstance = [&](const ProviderCalled&) {
        leak();
        leak();
        return p.fail(6);
    };
    q.getInstance = [&](const ProviderCalled&) {
        leak();
        return q.fail(6);
    };
    start();
    get("TST_Fan");
    EXPECT_EQ(log.lines().size(), 0U) << "a provider may keep what it starts with";
    for (int call = 0; call < 3; ++call) get("TST_Fan");
    EXPECT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.countOf("warning P: provider P did not release 2 of the objects that it cloned "
                          "in getInstance, the second call that leaves some"),
              1U);
    for (int call = 0; call < 3; ++call) get("TST_System");
    EXPECT_EQ(log.countOf("warning Q: provider Q did not release 1 of"), 1U);
}

TEST_F(LeakedClones, AreNoneThatWereReleased) {
    p.getInstance = [&](const ProviderCalled&) {
        CMPIObjectPath* const path = clone();
        path->ft->release(path);
        CMPIString* const text = makeString(broker, "text");
        CMPIString* const copy = text->ft->clone(text, nullptr);
        copy->ft->release(copy);
        return p.fail(6);
    };
    start();
    for (int call = 0; call < 3; ++call) get("TST_Fan");
    EXPECT_EQ(log.lines().size(), 0U);
}

TEST_F(LeakedClones, MayBeKeptByWhatCreates) {
    p.createInstance = [&](const ProviderCalled& called) {
        leak();
        return p.deliver(called.result, named("TST_Fan", "a"));
    };
    start();
    Instance fan;
    fan.path = named("TST_Fan", "a");
    fan.set("Name", Value::string("a"));
    for (int call = 0; call < 3; ++call) operations().createInstance(request(), fan);
    EXPECT_EQ(log.lines().size(), 0U);
}

TEST_F(LeakedClones, AreThoseOfTheProviderThatWasCalledInnermost) {
    p.getInstance = [&](const ProviderCalled& called) {
        handle()->bft->getInstance(handle(), called.context,
                                   makeObjectPath(broker, named("TST_System", "a")), nullptr,
                                   nullptr);
        return p.fail(6);
    };
    q.getInstance = [&](const ProviderCalled&) {
        leak();
        return q.fail(6);
    };
    start();
    for (int call = 0; call < 3; ++call) get("TST_Fan");
    EXPECT_EQ(log.countOf("provider Q did not release"), 1U);
    EXPECT_EQ(log.countOf("provider P did not release"), 0U);
}

}  // namespace
}  // namespace cimhost::test
