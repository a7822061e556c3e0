#include "common/AutostartDecorator.h"

#include "common/PYLUtil.h"
#include "tests/common/Failures.h"
#include "tests/common/NarrowProviders.h"
#include "tests/common/ProviderOperations.h"
#include "tests/support/Things.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiProvider;
using PYL::AutostartDecorator;

/// What the factory gives: each product once, then nothing.
struct Starts {
    std::vector<CmpiProvider*> products;
    void (*raise)() = nullptr;
    std::atomic<int> count{0};
    const CmpiBroker* broker = nullptr;
    Logger* logger = nullptr;
} starts;

CmpiProvider* start(const CmpiBroker& broker, Logger& logger) {
    starts.broker = &broker;
    starts.logger = &logger;
    const auto number = static_cast<std::size_t>(starts.count++);
    if (starts.raise) starts.raise();
    return number < starts.products.size() ? starts.products[number] : nullptr;
}

struct AutostartBase {
    TestBroker host;
    JournalLog log;
    Journal& journal = *log.journal;
    CmpiBroker broker = host.broker();
    Request request{host, journal};
    Calls worker;
    const std::string workerKey = "worker";

    AutostartBase() {
        worker.onCall = [this](const std::string& call) { journal.note(call); };
        worker.onDelete = [this] { journal.note("worker deleted"); };
    }
    ~AutostartBase() {
        starts.products.clear();
        starts.raise = nullptr;
        starts.count = 0;
    }

    /// A decorator with a worker instance of the class PYL_SpecialThing.
    std::unique_ptr<AutostartDecorator> make(std::vector<CmpiProvider*> products) {
        starts.products = std::move(products);
        auto decorator = std::make_unique<AutostartDecorator>(
            broker, log.logger, new Thing(host, worker, workerPath()), start);
        journal.take();
        return decorator;
    }
    CmpiCpp::CmpiObjectPath workerPath() const { return host.path("PYL_SpecialThing", workerKey); }
    InnerProvider* inner() { return new InnerProvider(host, journal); }
};

struct AutostartDecoratorTest : AutostartBase, testing::Test {};

constexpr const char* workerText = "//server-1/root/ktq:PYL_SpecialThing.Id=\"worker\"";

TEST_F(AutostartDecoratorTest, RecordsTheBrokerAndStartsNothing) {
    PYL::PYLUtil::setBroker(CmpiBroker(nullptr));
    const auto decorator = make({});
    EXPECT_EQ(PYL::PYLUtil::getBroker(), broker.toCMPI());
    EXPECT_EQ(starts.count, 0);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(AutostartDecoratorTest, NamesTheWorkerInstanceWithoutAStart) {
    const auto decorator = make({});
    decorator->enumInstanceNames(request.context, workerPath(), request.paths);
    EXPECT_EQ(journal.take(), (Lines{"getClassName worker", "getPath worker",
                                     std::string("delivered ") + workerText}));
    EXPECT_EQ(starts.count, 0);
    EXPECT_EQ(decorator->unloadOK(request.context), 1);
}

TEST_F(AutostartDecoratorTest, ComparesTheClassWithoutRegardToCaseAndNamespace) {
    const auto decorator = make({});
    const auto path = host.path("root/other", "pyl_specialTHING", "x", "elsewhere");
    decorator->enumInstanceNames(request.context, path, request.paths);
    EXPECT_EQ(journal.take().back(), std::string("delivered ") + workerText);
    EXPECT_EQ(starts.count, 0);
}

TEST_F(AutostartDecoratorTest, EnumeratesTheWorkerInstanceWhole) {
    const auto decorator = make({});
    decorator->enumInstances(request.context, workerPath(), requestProperties(), request.instances);
    EXPECT_EQ(journal.take(),
              (Lines{"getClassName worker", "getInstance worker",
                     std::string("delivered instance of PYL_SpecialThing {Id = \"worker\";} at ") +
                         workerText}));
    EXPECT_EQ(starts.count, 0);
}

TEST_F(AutostartDecoratorTest, GetsTheWorkerInstanceWhateverHostItIsAskedFor) {
    const auto decorator = make({});
    for (const auto* name : {"server-1", "elsewhere", ""}) {
        decorator->getInstance(request.context,
                               host.path("root/ktq", "PYL_SpecialThing", workerKey, name), nullptr,
                               request.instances);
        EXPECT_EQ(
            journal.take(),
            (Lines{"getPath worker", "getInstance worker",
                   std::string("delivered instance of PYL_SpecialThing {Id = \"worker\";} at ") +
                       workerText}));
    }
    EXPECT_EQ(starts.count, 0);
}

TEST_F(AutostartDecoratorTest, SendsOtherKeysOfTheWorkersClassToTheInnerProviderAsTheyCame) {
    const auto decorator = make({inner()});
    const auto path = host.path("root/ktq", "PYL_SpecialThing", "another", "elsewhere");
    decorator->getInstance(request.context, path, nullptr, request.instances);
    EXPECT_EQ(journal.take(), (Lines{"getPath worker",
                                     "inner getInstance //elsewhere/root/ktq:PYL_SpecialThing"
                                     ".Id=\"another\" no list"}));
    EXPECT_EQ(starts.count, 1);
}

TEST_F(AutostartDecoratorTest, SendsMethodsOfTheWorkerInstanceToTheInnerProvider) {
    const auto decorator = make({inner()});
    decorator->invokeMethod(request.context, workerPath(), PYL::WorkerMethodName, request.arguments,
                            request.method);
    EXPECT_EQ(journal.take(),
              Lines{std::string("inner invokeMethod ") + workerText + " PerformWork 0"});
}

TEST_F(AutostartDecoratorTest, GivesTheFactoryItsOwnCopies) {
    const auto decorator = make({inner()});
    decorator->enableIndications(request.context);
    EXPECT_NE(starts.broker, &broker);
    EXPECT_EQ(starts.broker->toCMPI(), broker.toCMPI());
    EXPECT_NE(starts.logger, &log.logger);
    EXPECT_EQ(starts.logger->logSource(), log.logger.logSource());
}

TEST_F(AutostartDecoratorTest, StartsOnce) {
    const auto decorator = make({inner()});
    decorator->enableIndications(request.context);
    decorator->disableIndications(request.context);
    EXPECT_EQ(starts.count, 1);
}

TEST_F(AutostartDecoratorTest, ServesTheWorkerInstanceItselfAfterTheStartToo) {
    const auto decorator = make({inner()});
    decorator->enableIndications(request.context);
    journal.take();
    decorator->enumInstanceNames(request.context, workerPath(), request.paths);
    EXPECT_EQ(journal.take().back(), std::string("delivered ") + workerText);
}

TEST_F(AutostartDecoratorTest, TriesAgainAfterAStartThatGaveNothing) {
    const auto decorator = make({nullptr, inner()});
    EXPECT_EQ(outcomeOf([&] { decorator->enableIndications(request.context); }),
              "status 100 Unable to start provider");
    EXPECT_EQ(journal.take(), Lines{"error: Unable to start provider"});
    EXPECT_EQ(decorator->unloadOK(request.context), 1);
    decorator->enableIndications(request.context);
    EXPECT_EQ(journal.take(), Lines{"inner enableIndications"});
}

TEST_F(AutostartDecoratorTest, PassesOnWhatTheFactoryThrowsAndTriesAgain) {
    for (const auto& failure : allFailures()) {
        starts.count = 0;
        const auto decorator = make({nullptr, inner()});
        starts.raise = failure.raise;
        EXPECT_EQ(outcomeOf([&] { decorator->enableIndications(request.context); }), failure.name);
        EXPECT_EQ(journal.take(), Lines{});
        EXPECT_EQ(decorator->unloadOK(request.context), 1);
        starts.raise = nullptr;
        decorator->enableIndications(request.context);
        EXPECT_EQ(journal.take(), Lines{"inner enableIndications"});
    }
}

TEST_F(AutostartDecoratorTest, PassesOnWhatTheWorkerInstanceThrows) {
    const auto decorator = make({});
    worker.onCall = [](const std::string&) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "worn");
    };
    EXPECT_EQ(outcomeOf([&] {
                  decorator->enumInstanceNames(request.context, workerPath(), request.paths);
              }),
              "status 1 worn");
    EXPECT_EQ(starts.count, 0);
}

TEST_F(AutostartDecoratorTest, CleansNothingUpBeforeTheStart) {
    const auto decorator = make({});
    decorator->cleanup(request.context, true);
    EXPECT_EQ(starts.count, 0);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(AutostartDecoratorTest, AsksTheInnerProviderWhetherToUnload) {
    auto* const product = inner();
    const auto decorator = make({product});
    decorator->enableIndications(request.context);
    for (const int answer : {0, 1, 2}) {
        product->unloadAnswer = answer;
        EXPECT_EQ(decorator->unloadOK(request.context), answer);
    }
}

TEST_F(AutostartDecoratorTest, AnswersWithTheRecordedBroker) {
    const auto decorator = make({});
    CMPIBroker other{};
    PYL::PYLUtil::setBroker(CmpiBroker(&other));
    EXPECT_EQ(decorator->getBroker(), &other);
    EXPECT_EQ(starts.count, 0);
}

TEST_F(AutostartDecoratorTest, DeletesTheWorkerInstanceBeforeTheInnerProvider) {
    auto decorator = make({inner()});
    decorator->enableIndications(request.context);
    journal.take();
    decorator.reset();
    EXPECT_EQ(journal.take(), (Lines{"worker deleted", "inner deleted"}));
    make({}).reset();
    EXPECT_EQ(journal.take(), Lines{"worker deleted"});
}

TEST_F(AutostartDecoratorTest, StartsOnceForConcurrentFirstRequests) {
    for (int round = 0; round < 20; ++round) {
        starts.count = 0;
        const auto decorator = make({inner(), nullptr});
        std::atomic<bool> go{false};
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                while (!go) std::this_thread::yield();
                decorator->enableIndications(request.context);
                decorator->unloadOK(request.context);
            });
        }
        go = true;
        threads.clear();
        EXPECT_EQ(starts.count, 1);
        journal.take();
    }
}

std::atomic<pid_t> lateCaller{0};

bool isAsleep(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.find(") S ") != std::string::npos;
}

/// Until the late caller has looked, has found no provider, and waits for the lock.
void waitForLateCaller() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (int seen = 0; seen < 20 && std::chrono::steady_clock::now() < end;) {
        seen = lateCaller != 0 && isAsleep(lateCaller) ? seen + 1 : 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

TEST_F(AutostartDecoratorTest, StartsNothingForACallerThatWaitedForAStart) {
    const auto decorator = make({inner(), nullptr});
    lateCaller = 0;
    starts.raise = [] {
        if (starts.count == 1) waitForLateCaller();
    };
    std::jthread first([&] { decorator->enableIndications(request.context); });
    std::jthread late([&] {
        while (starts.count == 0) std::this_thread::yield();
        lateCaller = gettid();
        EXPECT_NO_THROW(decorator->enableIndications(request.context));
    });
    first.join();
    late.join();
    EXPECT_EQ(starts.count, 1);
}

/// A decorator that somebody derives has the inner provider at hand.
struct Derived : AutostartDecorator {
    using AutostartDecorator::_asAssociationProvider;
    using AutostartDecorator::_asIndicationProvider;
    using AutostartDecorator::_asInstanceProvider;
    using AutostartDecorator::_asMethodProvider;
    using AutostartDecorator::AutostartDecorator;
};

/// What a derived class gets of a product, and how often the factory was called for it.
template <typename Get>
void getsWhatItStarts(AutostartBase& fixture, Get get) {
    auto* const product = fixture.inner();
    starts.products = {product};
    starts.count = 0;
    Derived decorator(fixture.broker, fixture.log.logger,
                      new Thing(fixture.host, fixture.worker, fixture.workerPath()), start);
    EXPECT_EQ(get(decorator), product);
    EXPECT_EQ(get(decorator), product);
    EXPECT_EQ(starts.count, 1);
}

TEST_F(AutostartDecoratorTest, StartsTheInnerProviderForADerivedClassAsEachOfItsKinds) {
    getsWhatItStarts(*this, [](Derived& each) { return each._asInstanceProvider(); });
    getsWhatItStarts(*this, [](Derived& each) { return each._asAssociationProvider(); });
    getsWhatItStarts(*this, [](Derived& each) { return each._asMethodProvider(); });
    getsWhatItStarts(*this, [](Derived& each) { return each._asIndicationProvider(); });
}

struct AutostartOperation : AutostartBase, testing::TestWithParam<ProviderOperation> {
    const ProviderOperation& operation = GetParam();
    bool starts_() const { return operation.kind != ProviderOperation::Kind::any; }
    void run(AutostartDecorator& decorator) { operation.run(decorator, request); }
    /// What the inner provider and the sinks note; the worker instance is asked first by some.
    Lines takeInner() {
        auto lines = journal.take();
        std::erase_if(lines, [](const auto& line) { return line.ends_with(" worker"); });
        return lines;
    }
};

TEST_P(AutostartOperation, ForwardsToTheInnerProviderThatItStarts) {
    auto* const product = inner();
    const auto decorator = make({product});
    decorator->enableIndications(request.context);
    journal.take();
    run(*decorator);
    EXPECT_EQ(takeInner(), Lines{"inner " + operation.inner});
    EXPECT_EQ(product->context.load(), &request.context);
    if (product->path.load()) {
        EXPECT_EQ(product->path.load(), &request.path);
    }
    EXPECT_EQ(starts.count, 1);
}

TEST_P(AutostartOperation, StartsWhatItNeeds) {
    auto* const product = inner();
    const auto decorator = make({product});
    run(*decorator);
    EXPECT_EQ(starts.count, starts_() ? 1 : 0);
    if (!starts_()) delete product;
}

TEST_P(AutostartOperation, PassesOnWhatTheInnerProviderThrowsAndLogsNothing) {
    auto* const product = inner();
    const auto decorator = make({product});
    decorator->enableIndications(request.context);
    for (const auto& failure : allFailures()) {
        product->onCall = failure.raise;
        journal.take();
        EXPECT_EQ(outcomeOf([&] { run(*decorator); }), failure.name);
        EXPECT_EQ(takeInner(), Lines{"inner " + operation.inner});
    }
}

TEST_P(AutostartOperation, FailsWhenTheInnerProviderIsOfAnotherKind) {
    if (!starts_()) return;
    const auto decorator = make({providerOfAnotherKind(operation.kind)});
    EXPECT_EQ(outcomeOf([&] { run(*decorator); }),
              std::string("status 100 ") + missingInterface(operation.kind));
    EXPECT_EQ(takeInner(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Each, AutostartOperation, testing::ValuesIn(providerOperations()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
