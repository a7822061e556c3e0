#include "toolkit/CollectionProvider.h"

#include "testing/cimhost/testing/Allocations.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/Things.h"
#include "toolkit/TwoEndedAssociation.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::CollectionProvider;

constexpr PYL::AssociationClass leftToRight{"PYL_Link", "Left", "Right"};

/// A provider whose hooks a test sets.
struct OpenProvider : CollectionProvider {
    using CollectionProvider::Ask;
    using CollectionProvider::CollectionProvider;

    std::function<void()> onRefresh = [] {};
    Collection& instances() { return _instances; }

protected:
    void refresh(const CmpiContext&) override { onRefresh(); }
};

/// A provider that answers from two collections, one after the other.
struct TwofoldProvider : OpenProvider {
    TwofoldProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
        : OpenProvider(broker, log), second(log) {}

    Collection second;
    std::string around;

protected:
    void answer(const CmpiContext&, const CmpiObjectPath&, const Ask& ask) override {
        ask(_instances);
        ask(second);
    }
    void answerAround(const CmpiContext& context, const CmpiObjectPath& source,
                      const CmpiName& associationClass, const Ask& ask) override {
        around = source.str() + " " + associationClass.str();
        OpenProvider::answerAround(context, source, associationClass, ask);
    }
};

/// Has a method "Turn".
class TurningThing : public Thing {
public:
    using Thing::Thing;
    void invokeMethod(const CmpiName& method, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& out) override {
        if (!(method == CmpiName("Turn"))) return Thing::invokeMethod(method, in, out);
        out.deliver(getPath().getKey("Id").asString());
    }
};

/// Forgot where it is.
class HostlessThing : public Thing {
public:
    using Thing::Thing;
    CmpiObjectPath getPath() override {
        auto path = Thing::getPath();
        path.setHost("");
        return path;
    }
};

/// Knows its path once.
class ForgetfulThing : public Thing {
public:
    using Thing::Thing;
    CmpiObjectPath getPath() override {
        if (_isAsked) throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "forgotten");
        _isAsked = true;
        return Thing::getPath();
    }

private:
    bool _isAsked = false;
};

struct CollectionProviderTest : testing::Test {
    TestBroker host;
    Calls calls;
    Logger log = silentLogger();
    Journal journal;
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};
    CapturedMethodResult method{journal};

    template <typename Provider>
    struct Made : Provider {
        explicit Made(CollectionProviderTest& test) : Provider(test.host.broker(), test.log) {}
    };
    Made<OpenProvider> provider{*this};
    int refreshes = 0;

    CollectionProviderTest() {
        for (const auto* key : {"a", "b"}) add(provider.instances(), thing(key));
        add(provider.instances(), link("a", "b"));
        provider.onRefresh = [this] { ++refreshes; };
    }

    std::unique_ptr<PYL::CmpiManagedInstance> thing(const std::string& key) {
        return std::make_unique<TurningThing>(host, calls, host.path("PYL_Thing", key));
    }
    std::unique_ptr<PYL::CmpiManagedInstance> link(const std::string& left,
                                                   const std::string& right) {
        return std::make_unique<PYL::TwoEndedAssociation>(
            leftToRight, [this, left] { return host.path("PYL_Thing", left); },
            [this, right] { return host.path("PYL_Thing", right); });
    }
    CmpiObjectPath classPath(const char* className) {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className);
    }
    static std::string text(const std::string& key) {
        return "//server-1/root/ktq:PYL_Thing.Id=\"" + key + "\"";
    }
    std::string call(CollectionProvider& on, const CmpiObjectPath& path, const char* name) {
        const auto none = CmpiCpp::makeCmpiArgs(host.broker());
        return outcomeOf([&] { on.invokeMethod(host.context(), path, name, none, method); });
    }
};

TEST_F(CollectionProviderTest, HandsOutItsBroker) {
    EXPECT_EQ(provider.getBroker(), host.broker().toRawCMPI());
}

TEST_F(CollectionProviderTest, OwnsWhatIsAdded) {
    {
        Made<OpenProvider> shortLived(*this);
        add(shortLived.instances(), thing("x"));
        EXPECT_EQ(calls.deletions, Lines{});
    }
    EXPECT_EQ(calls.deletions, Lines{"x"});
}

TEST_F(CollectionProviderTest, DeletesWhatItHasNoRoomFor) {
    PYL::CmpiManagedInstanceCollection collection(log);
    auto instance = thing("x");
    const auto outcome = outcomeOf([&] {
        const cimtest::FailingAllocation failing(1, false);
        PYL::add(collection, std::move(instance));
    });
    EXPECT_EQ(outcome, "bad_alloc");
    EXPECT_EQ(calls.deletions, Lines{"x"});
    EXPECT_EQ(collection.size(), 0U);
}

TEST_F(CollectionProviderTest, AnswersInstanceRequestsFromItsCollection) {
    provider.enumInstanceNames(host.context(), classPath("PYL_Thing"), paths);
    EXPECT_EQ(journal.take(), (Lines{"delivered " + text("a"), "delivered " + text("b")}));
    provider.enumInstances(host.context(), classPath("PYL_Thing"), nullptr, instances);
    EXPECT_EQ(journal.take().size(), 2U);
    provider.getInstance(host.context(), host.path("root/ktq", "PYL_Thing", "b", "10.0.0.1"),
                         nullptr, instances);
    EXPECT_EQ(journal.take(),
              Lines{"delivered instance of PYL_Thing {Id = \"b\";} at " + text("b")});
}

TEST_F(CollectionProviderTest, AnswersAssociationRequestsFromItsCollection) {
    const auto source = host.path("PYL_Thing", "a");
    provider.associators(host.context(), source, "", "", "", "", nullptr, instances);
    EXPECT_EQ(journal.take(),
              Lines{"delivered instance of PYL_Thing {Id = \"b\";} at " + text("b")});
    provider.associatorNames(host.context(), source, "PYL_Link", "", "", "", paths);
    EXPECT_EQ(journal.take(), Lines{"delivered " + text("b")});
    provider.references(host.context(), source, "", "", nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
    provider.referenceNames(host.context(), source, "PYL_SpecialLink", "", paths);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_EQ(
        outcomeOf([&] { provider.referenceNames(host.context(), source, "", "Left", paths); }),
        "status 7 role filters not supported");
}

TEST_F(CollectionProviderTest, SaysWhichInstanceItHasNot) {
    const auto missing = host.path("PYL_Thing", "c");
    const std::string words = "status 6 no such instance: " + missing.str();
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), missing, nullptr, instances); }),
              words);
    EXPECT_EQ(call(provider, missing, "Turn"), words);
}

TEST_F(CollectionProviderTest, SaysThatAnInstanceIsNotFoundForWantOfAHost) {
    add(provider.instances(),
        std::make_unique<HostlessThing>(host, calls, host.path("PYL_Thing", "lost")));
    const auto lost = host.path("PYL_Thing", "lost");
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), lost, nullptr, instances); }),
              "status 6 no such instance: " + lost.str() +
                  " (but one whose getPath() names no host: setHost() was not called)");
}

TEST_F(CollectionProviderTest, SaysThatAnInstanceIsNotFoundThoughLookingForAHintFails) {
    add(provider.instances(),
        std::make_unique<ForgetfulThing>(host, calls, host.path("PYL_Thing", "other")));
    const auto missing = host.path("PYL_Thing", "c");
    EXPECT_EQ(outcomeOf([&] { provider.getInstance(host.context(), missing, nullptr, instances); }),
              "status 6 no such instance: " + missing.str());
}

TEST_F(CollectionProviderTest, RunsTheMethodsOfItsInstances) {
    EXPECT_EQ(call(provider, host.path("root/ktq", "PYL_Thing", "b", "10.0.0.1"), "Turn"), "none");
    EXPECT_EQ(journal.take(), Lines{"delivered string b"});
    EXPECT_EQ(call(provider, host.path("PYL_Thing", "b"), "Stop").substr(0, 10), "status 17 ");
    provider.instances().getManagedInstance(1U)->setVisible(false);
    EXPECT_EQ(call(provider, host.path("PYL_Thing", "b"), "Turn").substr(0, 9), "status 6 ");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionProviderTest, RefusesToWrite) {
    const auto path = host.path("PYL_Thing", "a");
    const auto instance = CmpiCpp::makeCmpiInstance(host.broker(), path);
    const auto refusal = [](const std::function<void()>& action) {
        return outcomeOf(action).substr(0, 9);
    };
    EXPECT_EQ(refusal([&] { provider.createInstance(host.context(), path, instance, paths); }),
              "status 7 ");
    EXPECT_EQ(refusal([&] { provider.modifyInstance(host.context(), path, instance, nullptr); }),
              "status 7 ");
    EXPECT_EQ(refusal([&] { provider.deleteInstance(host.context(), path); }), "status 7 ");
    EXPECT_EQ(refusal([&] { provider.execQuery(host.context(), path, "q", "CQL", paths); }),
              "status 7 ");
    EXPECT_EQ(refreshes, 0);
}

TEST_F(CollectionProviderTest, IsRefreshedBeforeEachRequest) {
    const auto path = host.path("PYL_Thing", "a");
    const std::function<void()> requests[] = {
        [&] { provider.enumInstanceNames(host.context(), path, paths); },
        [&] { provider.enumInstances(host.context(), path, nullptr, instances); },
        [&] { provider.getInstance(host.context(), path, nullptr, instances); },
        [&] {
            provider.invokeMethod(host.context(), path, "Turn",
                                  CmpiCpp::makeCmpiArgs(host.broker()), method);
        },
        [&] { provider.associators(host.context(), path, "", "", "", "", nullptr, instances); },
        [&] { provider.associatorNames(host.context(), path, "", "", "", "", paths); },
        [&] { provider.references(host.context(), path, "", "", nullptr, instances); },
        [&] { provider.referenceNames(host.context(), path, "", "", paths); },
    };
    int expected = 0;
    for (const auto& request : requests) {
        request();
        EXPECT_EQ(refreshes, ++expected);
        EXPECT_NE(journal.take(), Lines{});
    }
    provider.onRefresh = [] { throw std::runtime_error("no hardware"); };
    for (const auto& request : requests) EXPECT_EQ(outcomeOf(request).substr(0, 9), "exception");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionProviderTest, AnswersFromEveryCollectionThatItIsGiven) {
    Made<TwofoldProvider> twofold(*this);
    add(twofold.instances(), thing("a"));
    add(twofold.second, thing("b"));
    add(twofold.second, link("a", "b"));
    twofold.enumInstanceNames(host.context(), classPath("PYL_Thing"), paths);
    EXPECT_EQ(journal.take(), (Lines{"delivered " + text("a"), "delivered " + text("b")}));
    twofold.getInstance(host.context(), host.path("PYL_Thing", "b"), nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
    EXPECT_EQ(call(twofold, host.path("PYL_Thing", "b"), "Turn"), "none");
    EXPECT_EQ(journal.take(), Lines{"delivered string b"});
    twofold.associatorNames(host.context(), host.path("PYL_Thing", "b"), "PYL_Link", "", "", "",
                            paths);
    EXPECT_EQ(journal.take(), Lines{"delivered " + text("a")});
    EXPECT_EQ(twofold.around, text("b") + " PYL_Link");
}

TEST_F(CollectionProviderTest, DeliversOneInstanceThoughTwoCollectionsHaveIt) {
    Made<TwofoldProvider> twofold(*this);
    for (auto* const collection : {&twofold.instances(), &twofold.second}) {
        add(*collection, thing("a"));
    }
    twofold.getInstance(host.context(), host.path("PYL_Thing", "a"), nullptr, instances);
    EXPECT_EQ(journal.take().size(), 1U);
    EXPECT_EQ(call(twofold, host.path("PYL_Thing", "a"), "Turn"), "none");
    EXPECT_EQ(journal.take().size(), 1U);
}

}  // namespace
