#include "tests/cimhost/operations/OperationsFixture.h"

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace cimhost::test {
namespace {

constexpr int threadCount = 8;
constexpr int roundCount = 150;

/// Eight clients at once; what they may be answered with is said by each test.
class OperationThreads : public OperationsTest {
protected:
    OperationThreads() {
        readMof(
            "instance of TST_System as $s { Name = \"s\"; };"
            "instance of TST_Sensor as $n { Number = 1; Since = \"20261121053000.000000+000\"; };"
            "instance of TST_Link { Whole = $s; Part = $n; };");
        ScriptedProvider& provider = serve("P", "TST_Fan root/test instance method");
        provider.getInstance = [&](const ProviderCalled& called) {
            Instance instance;
            instance.path = called.path;
            instance.set("Speed", uint16Value(1));
            provider.deliver(called.result, instance);
            return provider.succeed();
        };
        provider.enumerateInstances = [&](const ProviderCalled& called) {
            for (int i = 0; i < 10; ++i) {
                Instance instance;
                instance.path = named(called.path.className, std::to_string(i));
                provider.deliver(called.result, instance);
            }
            return provider.succeed();
        };
        provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
            CMPIStatus status{};
            const CMPIInstance* const other = handle()->bft->getInstance(
                handle(), called.context, makeObjectPath(broker, named("TST_System", "s")), nullptr,
                &status);
            if (!other) return status;
            provider.deliver(called.result, named("TST_Fan", "up"));
            return provider.succeed();
        };
        provider.invokeMethod = [&](const ProviderCalled& called) {
            provider.deliver(called.result, uint32Value(0));
            return provider.succeed();
        };
        ScriptedProvider& links = serve("Q", "TST_FanLink root/test association");
        links.associators = [&](const ProviderCalled& called) {
            Instance instance;
            instance.path = named("TST_Fan", "linked");
            links.deliver(called.result, instance);
            return links.succeed();
        };
    }

    void runMix(int round) {
        FoundInstances instances;
        FoundPaths paths;
        switch (round % 5) {
            case 0:
                operations().getInstance(request(), named("TST_Fan", "a"), {}, instances);
                break;
            case 1:
                operations().enumerateInstances(request(), classPath("TST_Element"), {}, instances);
                break;
            case 2:
                operations().enumerateInstanceNames(request(), classPath("TST_Fan"), paths);
                break;
            case 3:
                operations().associators(request(), named("TST_System", "s"), {}, {}, instances);
                break;
            default:
                operations().invokeMethod(request(), named("TST_Fan", "a"), "SetSpeed",
                                          {{"Speed", uint16Value(1)}});
        }
        found += instances.all.size() + paths.all.size();
    }

    static void runClients(const std::function<void(int thread)>& client) {
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) threads.emplace_back(client, i);
        for (std::thread& thread : threads) thread.join();
    }

    std::atomic<std::size_t> found = 0;
};

TEST_F(OperationThreads, MixedOperationsDoNotDisturbEachOther) {
    start();
    runClients([&](int thread) {
        for (int round = 0; round < roundCount; ++round) {
            EXPECT_EQ(errorCodeOf([&] { runMix(thread + round); }), 0);
        }
    });
    // 1 instance, 10 fans with a sensor and a system, 1 name, a fan and a sensor, no result.
    EXPECT_EQ(found, static_cast<std::size_t>(threadCount * roundCount / 5 * (1 + 12 + 1 + 2)));
}

TEST_F(OperationThreads, ModulesAreUnloadedAndMadeAnewBetweenCalls) {
    start();
    runClients([&](int thread) {
        for (int round = 0; round < roundCount; ++round) {
            if (thread < 2) {
                host().unload("PModule");
            } else {
                EXPECT_EQ(errorCodeOf([&] { runMix(thread + round); }), 0);
            }
        }
    });
    runMix(0);
    EXPECT_EQ(host().unload("PModule"), UnloadOutcome::unloaded);
}

TEST_F(OperationThreads, ShutDownAmongCallsRefusesTheLateOnesOnly) {
    start();
    std::atomic<int> refused = 0;
    runClients([&](int thread) {
        for (int round = 0; round < roundCount; ++round) {
            if (thread == 0 && round == roundCount / 2) {
                EXPECT_TRUE(host().shutDown());
            }
            const int code = errorCodeOf([&] { runMix(thread + round); });
            // An up-call learns of it as a general failure.
            EXPECT_TRUE(code == 0 || code == 28 || code == 1) << code;
            if (code != 0) ++refused;
        }
    });
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace cimhost::test
