#include "cimhost/modules/ModuleHost.h"

#include "cimhost/operations/UpCalls.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <latch>
#include <thread>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Hosts the modules that were built for these tests, as registered by text.
class ModuleHostTest : public testing::Test {
protected:
    explicit ModuleHostTest(std::string_view manner = "standard")
        : broker(repository, log, fillUpCalls, Manner(manner)) {
        NameSpace& nameSpace = repository.make("root/test");
        for (const char* const name : {"A", "B", "C"}) {
            Class definition;
            definition.name = name;
            nameSpace.addClass(definition);
        }
    }

    ~ModuleHostTest() override {
        broker.setOperations(nullptr);
        host.reset();
    }

    void start(const std::string& registrations,
               std::vector<std::filesystem::path> folders = {TEST_MODULE_FOLDER}) {
        Registrations read;
        read.readText(registrations, "test");
        host = std::make_unique<cimhost::ModuleHost>(broker, std::move(read), std::move(folders));
        operations = std::make_unique<Operations>(broker, *host, ResultPolicy::pass);
        broker.setOperations(operations.get());
    }

    std::vector<std::string> namesOf(const std::string& className) {
        FoundPaths found;
        RequestContext request;
        request.nameSpace = "root/test";
        operations->enumerateInstanceNames(request, classPath(className), found);
        return found.texts();
    }

    std::string failureOf(const std::string& className) {
        return errorOf([&] { namesOf(className); });
    }

    static std::string moduleFile(const char* name) {
        return std::string(TEST_MODULE_FOLDER) + "/lib" + name + ".so";
    }

    static bool isLoaded(const char* name) {
        void* const library = dlopen(moduleFile(name).c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (library) dlclose(library);
        return library != nullptr;
    }

    /// A variable that the loaded plain module exports.
    template <typename T = int>
    static T& plain(const char* name) {
        void* const library = dlopen(moduleFile("plainModule").c_str(), RTLD_NOW | RTLD_NOLOAD);
        T* const found = static_cast<T*>(dlsym(library, name));
        dlclose(library);  // the host keeps it
        return *found;
    }

    static constexpr const char* plainLines =
        "A root/test Plain plainModule instance method\nB root/test Plain plainModule instance\n";

    Repository repository;
    CapturingLog log;
    Broker broker;
    std::unique_ptr<cimhost::ModuleHost> host;
    std::unique_ptr<Operations> operations;
};

TEST_F(ModuleHostTest, LoadsAModuleWhenItIsFirstNeeded) {
    start(plainLines);
    EXPECT_FALSE(isLoaded("plainModule"));
    EXPECT_THAT(namesOf("A"), ElementsAre("A.left", "A.right"));
    EXPECT_TRUE(isLoaded("plainModule"));
    EXPECT_STREQ(&plain<char>("plainInitNameSpace"), "root/test");
}

TEST_F(ModuleHostTest, MakesOneMiForEachProviderAndType) {
    start(plainLines);
    namesOf("A");
    namesOf("B");
    namesOf("A");
    EXPECT_EQ(plain("plainCreations"), 1);
    const auto mi = host->use<CMPIMethodMI>(
        *host->registrations().find(ProviderType::method, "root/test", "A"));
    EXPECT_STREQ(mi.get()->ft->miName, "methodPlain");
    EXPECT_EQ(plain("plainCreations"), 2);
}

TEST_F(ModuleHostTest, LooksThroughItsFoldersInOrder) {
    start(plainLines, {"/nonexistent", TEST_MODULE_FOLDER});
    EXPECT_EQ(namesOf("A").size(), 2U);
}

TEST_F(ModuleHostTest, SaysWhereItLookedForAModule) {
    start("A root/test P noSuchModule instance\n", {"/first", "/second"});
    EXPECT_EQ(failureOf("A"),
              "1: module noSuchModule cannot be loaded: libnoSuchModule.so was not found in "
              "/first, /second");
}

TEST_F(ModuleHostTest, LogsAFailureEachTimeAndGoesOn) {
    start("A root/test P noSuchModule instance\nB root/test Plain plainModule instance\n");
    EXPECT_NE(failureOf("A"), "");
    EXPECT_NE(failureOf("A"), "");
    EXPECT_EQ(log.countOf("error P: module noSuchModule cannot be loaded"), 2U);
    EXPECT_EQ(namesOf("B").size(), 2U);
}

TEST_F(ModuleHostTest, RefusesAModuleWithMissingSymbolsWhenItIsLoaded) {
    start("A root/test P unresolvedModule instance\n");
    EXPECT_THAT(failureOf("A"), HasSubstr("functionThatNobodyHas"));
}

TEST_F(ModuleHostTest, RefusesAFileThatIsNoLibrary) {
    const auto folder = std::filesystem::temp_directory_path() /
                        ("cimhost-" + std::to_string(getpid()) + "-noLibrary");
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "libtext.so") << "not a library";
    start("A root/test P text instance\n", {folder});
    EXPECT_THAT(failureOf("A"), StartsWith("1: module text cannot be loaded: "));
    std::filesystem::remove_all(folder);
}

TEST_F(ModuleHostTest, NamesTheEntryPointThatAModuleLacks) {
    start("A root/test Other plainModule instance\n");
    EXPECT_EQ(failureOf("A"),
              "1: module plainModule has no entry point Other_Create_InstanceMI; it has "
              "Plain_Create_InstanceMI, Plain_Create_MethodMI");
    EXPECT_EQ(log.countOf("Other_Create_InstanceMI"), 1U);
}

TEST_F(ModuleHostTest, AGenericEntryPointGoesFirst) {
    start("A root/test Throwing oddModule instance\n");
    EXPECT_EQ(failureOf("A"), "1: provider Throwing threw a fan blade");
}

TEST_F(ModuleHostTest, ExceptionsOfAnyKindStopAtTheHost) {
    start("A root/test Throwing oddModule instance\n");
    FoundInstances found;
    RequestContext request;
    request.nameSpace = "root/test";
    EXPECT_EQ(errorOf([&] { operations->enumerateInstances(request, classPath("A"), {}, found); }),
              "1: provider Throwing threw an exception of its own type");
    EXPECT_EQ(failureOf("A"), "1: provider Throwing threw a fan blade");
}

TEST_F(ModuleHostTest, FactoriesThatFailAreAskedAgainNextTime) {
    start(
        "A root/test ThrowingFactory oddModule instance\nB root/test Silent oddModule instance\n"
        "C root/test Stranger oddModule instance\n");
    EXPECT_EQ(failureOf("A"), "1: provider ThrowingFactory threw no clay");
    EXPECT_EQ(failureOf("B"), "1: provider Silent made no Instance MI: CMPI return code 0");
    EXPECT_EQ(failureOf("C"), "1: provider Stranger made no Instance MI: unknown provider");
    EXPECT_EQ(failureOf("C"), "1: provider Stranger made no Instance MI: unknown provider");
    EXPECT_EQ(log.countOf("error Stranger: "), 2U);
}

TEST_F(ModuleHostTest, FactoriesMayDenyAccessOrDecline) {
    start("A root/test Denying oddModule instance\nB root/test Declining oddModule instance\n");
    EXPECT_EQ(failureOf("A"), "2: provider Denying made no Instance MI: not for you");
    EXPECT_EQ(failureOf("B"), "7: provider Declining made no Instance MI: no instances here");
}

TEST_F(ModuleHostTest, AnMiWithoutATableIsRefused) {
    start("A root/test Tableless oddModule instance\n");
    EXPECT_EQ(failureOf("A"), "1: provider Tableless made an MI without a function table");
}

TEST_F(ModuleHostTest, UnloadCleansUpAndClosesTheLibrary) {
    start(plainLines);
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::notLoaded);
    namesOf("A");
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::unloaded);
    EXPECT_FALSE(isLoaded("plainModule"));
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::notLoaded);
    EXPECT_EQ(host->unload("unheardOf"), UnloadOutcome::notLoaded);
    EXPECT_EQ(namesOf("A").size(), 2U) << "it is loaded again";
}

TEST_F(ModuleHostTest, UnloadLeavesAModuleThatIsInUse) {
    start(plainLines);
    const auto* const registration =
        host->registrations().find(ProviderType::instance, "root/test", "A");
    {
        const auto use = host->use<CMPIInstanceMI>(*registration);
        EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::busy);
        EXPECT_EQ(plain("plainCleanups"), 0);
    }
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::unloaded);
}

TEST_F(ModuleHostTest, UnloadHonoursAProviderThatWantsToStayForNow) {
    start(plainLines);
    namesOf("A");
    plain("plainCleanupCode") = CMPI_RC_DO_NOT_UNLOAD;
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::kept);
    EXPECT_EQ(plain("plainCleanups"), 1);
    EXPECT_EQ(plain("plainLastTerminating"), 0);
    EXPECT_EQ(namesOf("A").size(), 2U);
    EXPECT_EQ(plain("plainCreations"), 1) << "it is the same MI";
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::kept);
    EXPECT_EQ(plain("plainCleanups"), 2) << "it is asked again";
    plain("plainCleanupCode") = CMPI_RC_OK;
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::unloaded);
}

TEST_F(ModuleHostTest, UnloadHonoursAProviderThatWantsToStayForEver) {
    start(plainLines);
    namesOf("A");
    plain("plainCleanupCode") = CMPI_RC_NEVER_UNLOAD;
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::kept);
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::kept);
    EXPECT_EQ(plain("plainCleanups"), 1) << "it is not asked again";
    EXPECT_EQ(namesOf("A").size(), 2U);
    host->shutDown();
    EXPECT_FALSE(isLoaded("plainModule"));
}

TEST_F(ModuleHostTest, AFailedCleanupCountsAsDone) {
    start("A root/test Throwing oddModule instance\n");
    failureOf("A");
    EXPECT_EQ(host->unload("oddModule"), UnloadOutcome::unloaded);
    EXPECT_EQ(log.countOf("warning Throwing: provider Throwing threw the broom"), 1U);
}

TEST_F(ModuleHostTest, ShutDownCleansUpTerminatingAndRefusesNewCalls) {
    start(plainLines);
    namesOf("A");
    void* const kept = dlopen(moduleFile("plainModule").c_str(), RTLD_NOW | RTLD_NOLOAD);
    plain("plainCleanupCode") = CMPI_RC_DO_NOT_UNLOAD;
    EXPECT_TRUE(host->shutDown());
    EXPECT_EQ(plain("plainCleanups"), 1);
    EXPECT_EQ(plain("plainLastTerminating"), 1);
    EXPECT_EQ(log.countOf("CMPI return code 50"), 1U) << "postponing is not allowed then";
    EXPECT_EQ(failureOf("A"), "28: the server is shutting down");
    EXPECT_EQ(failureOf("B"), "28: the server is shutting down");
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::notLoaded);
    EXPECT_TRUE(host->shutDown());
    EXPECT_EQ(plain("plainCleanups"), 1) << "once is enough";
    dlclose(kept);
    EXPECT_FALSE(isLoaded("plainModule"));
}

TEST_F(ModuleHostTest, ShutDownThatRunsOutOfPatienceLeavesWhatIsInUse) {
    start(plainLines);
    {
        const auto use = host->use<CMPIInstanceMI>(
            *host->registrations().find(ProviderType::instance, "root/test", "A"));
        EXPECT_FALSE(host->shutDown(std::chrono::milliseconds(0)));
        EXPECT_TRUE(isLoaded("plainModule"));
        EXPECT_EQ(plain("plainCleanups"), 0);
    }
    EXPECT_TRUE(host->shutDown(std::chrono::milliseconds(0)));
    EXPECT_FALSE(isLoaded("plainModule"));
}

/// The same with providers that are part of the test.
class StaticModules : public OperationsTest {
protected:
    void getFan(const std::string& className = "TST_Fan") {
        FoundInstances found;
        operations().getInstance(request(), named(className, "a"), {}, found);
    }

    int getCode(const std::string& className = "TST_Fan") {
        return errorCodeOf([&] { getFan(className); });
    }
};

TEST_F(StaticModules, ShutDownWaitsForTheCallInProgress) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    std::latch isInside(1);
    std::promise<void> mayLeave;
    std::atomic<bool> hasLeft = false;
    provider.getInstance = [&](const ProviderCalled&) {
        isInside.count_down();
        mayLeave.get_future().wait();
        hasLeft = true;
        return provider.fail(6);
    };
    bool wasCleanAfterwards = false;
    provider.cleanUp = [&](bool) {
        wasCleanAfterwards = hasLeft;
        return provider.succeed();
    };
    start();
    std::thread client([&] { EXPECT_EQ(getCode(), 6); });
    isInside.wait();
    std::thread stopper([&] { EXPECT_TRUE(host().shutDown()); });
    while (getCode("TST_FastFan") != 28) std::this_thread::yield();
    mayLeave.set_value();
    client.join();
    stopper.join();
    EXPECT_TRUE(wasCleanAfterwards);
}

TEST_F(StaticModules, UpCallsAreRefusedWhileShuttingDown) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled&) { return provider.fail(6); };
    CMPIrc answer = CMPI_RC_OK;
    provider.cleanUp = [&](bool) {
        RequestContext own;
        own.nameSpace = "root/test";
        CMPIStatus status{};
        handle()->bft->getInstance(handle(), makeContext(broker, own),
                                   makeObjectPath(broker, named("TST_Fan", "a")), nullptr, &status);
        answer = status.rc;
        return provider.succeed();
    };
    start();
    getCode();
    stop();
    EXPECT_EQ(answer, CMPI_RC_ERR_FAILED);
}

TEST_F(StaticModules, MisAreCleanedUpInReverseOrderOfCreation) {
    std::vector<std::string> order;
    for (const auto& [name, className] :
         {std::pair{"P", "TST_Fan"}, std::pair{"Q", "TST_System"}}) {
        ScriptedProvider& provider = serve(name, std::string(className) + " root/test instance");
        provider.getInstance = [&](const ProviderCalled&) { return provider.fail(6); };
        provider.cleanUp = [&order, &provider, name = std::string(name)](bool) {
            order.push_back(name);
            return provider.succeed();
        };
    }
    start();
    getCode("TST_System");
    getCode("TST_Fan");
    stop();
    EXPECT_THAT(order, ElementsAre("P", "Q"));
}

TEST_F(StaticModules, AnMiThatNobodyCalledIsNeitherMadeNorCleanedUp) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    bool isCleaned = false;
    provider.cleanUp = [&](bool) {
        isCleaned = true;
        return provider.succeed();
    };
    start();
    stop();
    EXPECT_FALSE(isCleaned);
}

TEST_F(StaticModules, AFactoryMayCallOtherProvidersButNotItself) {
    ScriptedProvider& other = serve("P", "TST_System root/test instance");
    other.getInstance = [&](const ProviderCalled&) { return other.fail(6, "no system"); };
    ScriptedProvider& provider = serve("Q", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled&) { return provider.fail(6, "no fan"); };
    start();
    std::vector<std::string> answers;
    host().addStatic("QModule",
                     {[&](const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
                          answers.push_back(errorOf([&] { getFan("TST_System"); }));
                          answers.push_back(errorOf([&] { getFan("TST_Fan"); }));
                          return provider.instanceMi();
                      },
                      nullptr, nullptr, nullptr});
    EXPECT_EQ(getCode(), 6);
    EXPECT_THAT(answers, ElementsAre("6: no system",
                                     "1: provider Q is called while it is made or cleaned up"));
}

TEST_F(StaticModules, ManyThreadsThatComeFirstMakeOneMi) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled&) { return provider.fail(6); };
    start();
    std::atomic<int> made = 0;
    host().addStatic("PModule", {[&](auto...) {
                                     ++made;
                                     return provider.instanceMi();
                                 },
                                 nullptr, nullptr, nullptr});
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) clients.emplace_back([&] { EXPECT_EQ(getCode(), 6); });
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(made, 1);
}

/// Providers P of TST_Fan and Q of TST_System whose factories a test writes.
class TwoFactories : public StaticModules {
protected:
    TwoFactories()
        : p(serve("P", "TST_Fan root/test instance")),
          q(serve("Q", "TST_System root/test instance")) {
        p.getInstance = [&](const ProviderCalled&) { return p.fail(6, "no fan"); };
        q.getInstance = [&](const ProviderCalled&) { return q.fail(6, "no system"); };
        start();
    }

    /// What P and Q run when they are made.
    void make(std::function<void()> makeP, std::function<void()> makeQ) {
        host().addStatic("PModule", {[this, makeP](auto...) {
                                         makeP();
                                         return p.instanceMi();
                                     },
                                     nullptr, nullptr, nullptr});
        host().addStatic("QModule", {[this, makeQ](auto...) {
                                         makeQ();
                                         return q.instanceMi();
                                     },
                                     nullptr, nullptr, nullptr});
    }

    std::string failureOf(const std::string& className) {
        return errorOf([&] { getFan(className); });
    }

    ScriptedProvider& p;
    ScriptedProvider& q;
    std::latch isMakingP{1};
    std::latch mayGoOn{1};
};

TEST_F(TwoFactories, OneThatHangsKeepsNoOther) {
    make([&] { isMakingP.count_down(), mayGoOn.wait(); }, [] {});
    std::thread client([&] { EXPECT_EQ(failureOf("TST_Fan"), "6: no fan"); });
    isMakingP.wait();
    std::future<int> other = std::async(std::launch::async, [&] { return getCode("TST_System"); });
    EXPECT_EQ(other.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    mayGoOn.count_down();
    client.join();
    EXPECT_EQ(other.get(), 6);
}

TEST_F(TwoFactories, OneThatHangsIsNotAwaitedForEver) {
    host().limitWaits(std::chrono::milliseconds(1));
    make([&] { isMakingP.count_down(), mayGoOn.wait(); }, [] {});
    std::thread client([&] { EXPECT_EQ(failureOf("TST_Fan"), "6: no fan"); });
    isMakingP.wait();
    EXPECT_EQ(failureOf("TST_Fan"),
              "1: provider P: its factory or cleanup has not returned for 0 s");
    mayGoOn.count_down();
    client.join();
    EXPECT_EQ(failureOf("TST_Fan"), "6: no fan") << "it is made by now";
}

TEST_F(TwoFactories, OneThatHangsDoesNotKeepTheEnd) {
    make([&] { isMakingP.count_down(), mayGoOn.wait(); }, [] {});
    getCode("TST_System");
    bool isClean = false;
    q.cleanUp = [&](bool) {
        isClean = true;
        return q.succeed();
    };
    bool isCleanLater = false;
    p.cleanUp = [&](bool) {
        isCleanLater = true;
        return p.succeed();
    };
    std::thread client([&] { EXPECT_EQ(getCode(), 28); });
    isMakingP.wait();
    EXPECT_EQ(host().unload("PModule"), UnloadOutcome::busy);
    EXPECT_FALSE(host().shutDown(std::chrono::milliseconds(0)));
    EXPECT_TRUE(isClean);
    EXPECT_FALSE(isCleanLater);
    mayGoOn.count_down();
    client.join();
    EXPECT_TRUE(host().shutDown());
    EXPECT_TRUE(isCleanLater);
}

TEST_F(TwoFactories, WhoseUpCallsCrossEachOtherEndWithARefusal) {
    std::latch areBothInside(2);
    std::string answerToP;
    std::string answerToQ;
    make(
        [&] {
            areBothInside.arrive_and_wait();
            answerToP = failureOf("TST_System");
        },
        [&] {
            areBothInside.arrive_and_wait();
            answerToQ = failureOf("TST_Fan");
        });
    std::thread client([&] { EXPECT_EQ(failureOf("TST_Fan"), "6: no fan"); });
    EXPECT_EQ(failureOf("TST_System"), "6: no system");
    client.join();
    // Who came last was refused; the other waited until that one was made.
    EXPECT_THAT(
        (std::vector{answerToP, answerToQ}),
        testing::AnyOf(
            ElementsAre("6: no system", "1: provider P is called while it is made or cleaned up"),
            ElementsAre("1: provider Q is called while it is made or cleaned up", "6: no fan")));
}

TEST_F(StaticModules, ATypeThatAModuleDoesNotOfferIsNamed) {
    serve("P", "TST_Fan root/test instance");
    start();
    host().addStatic("PModule", {});
    EXPECT_EQ(errorOf([&] { getFan(); }),
              "1: module PModule has no entry point P_Create_InstanceMI");
}

TEST_F(StaticModules, IndicationMisAreHostedToo) {
    serve("P", "TST_Fan root/test indication");
    start();
    const auto* const registration =
        host().registrations().find(ProviderType::indication, "root/test", "TST_Fan");
    ASSERT_NE(registration, nullptr);
    const auto mi = host().use<CMPIIndicationMI>(*registration);
    EXPECT_NE(mi.get()->ft, nullptr);
    EXPECT_EQ(mi.provider(), "P");
}

class ModulesAsSfcb : public ModuleHostTest {
protected:
    ModulesAsSfcb() : ModuleHostTest("sfcb") {}
};

TEST_F(ModulesAsSfcb, HasAnMiForEachClassAndCleansOneUp) {
    start(plainLines);
    namesOf("A");
    namesOf("B");
    EXPECT_EQ(plain("plainCreations"), 2);
    EXPECT_STREQ(&plain<char>("plainInitNameSpace"), "") << "a factory's context is empty";
    plain("plainCleanupCode") = CMPI_RC_DO_NOT_UNLOAD;
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::kept);
    EXPECT_EQ(plain("plainCleanups"), 1);
    namesOf("A");
    EXPECT_EQ(plain("plainCreations"), 2) << "it goes on with what it has";
    plain("plainCleanupCode") = CMPI_RC_OK;
    EXPECT_EQ(host->unload("plainModule"), UnloadOutcome::unloaded);
}

TEST_F(ModulesAsSfcb, LeavesAClassToTheModuleThatRegisteredItFirst) {
    start("A root/test Plain plainModule instance\nA root/test Other otherModule method\n");
    EXPECT_EQ(host->registrations().find(ProviderType::method, "root/test", "A"), nullptr);
    EXPECT_NE(host->registrations().find(ProviderType::instance, "root/test", "A"), nullptr);
}

}  // namespace
}  // namespace cimhost::test
