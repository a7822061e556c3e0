#include "cimhost/server/ModuleCatalogue.h"

#include "cimhost/mof/MofReader.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/ConsoleClasses.h"
#include "cimhost/server/ConsoleLog.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* lines =
    "TST_Fan root/test FanProvider fans instance\n"
    "tst_fan ROOT/test FanProvider fans method\n"
    "TST_Belt root/test BeltProvider belts instance\n"
    "TST_Belt root/test BeltProvider belts instance\n";

struct ModuleCatalogueTest : testing::Test {
    ModuleCatalogueTest() {
        addConsoleClasses(repository);
        Registrations registrations;
        registrations.readText(lines, "r");
        modules.emplace(broker, std::move(registrations), folders);
        catalogue.emplace(repository, *modules, nullptr, folders);
    }

    Target target(const char* className) const {
        const NameSpace& nameSpace = repository.get("root/cimhost");
        return {nameSpace, *nameSpace.findClass(className)};
    }

    std::vector<Instance> all(const char* className) const {
        std::vector<Instance> found;
        catalogue->visit(target(className),
                         [&found](const Instance& each, const Class&) { found.push_back(each); });
        return found;
    }

    static std::vector<std::string> textsOf(const Instance& instance, const char* property) {
        std::vector<std::string> texts;
        for (const Value& each : *instance.find(property)->value.get<Value::Array>()) {
            texts.push_back(each.get<Text>()->str());
        }
        return texts;
    }

    static std::string textOf(const Instance& instance, const char* property) {
        const auto* const text = instance.find(property)->value.get<Text>();
        return text ? text->str() : "NULL";
    }

    static bool isSet(const Instance& instance, const char* property) {
        return *instance.find(property)->value.get<bool>();
    }

    Instance module(const std::string& name) const {
        ObjectPath path{{}, "root/cimhost", "CIMHOST_Module", {}};
        path.setKey("Module", Value::string(name));
        return catalogue->find(path).value();
    }

    TemporaryFolder folder;
    std::vector<std::filesystem::path> folders{folder / "modules"};
    ConsoleLog log{BrokerLog::Level::error};
    Repository repository;
    Broker broker{repository, log, fillUpCalls};
    std::optional<ModuleHost> modules;
    std::optional<ModuleCatalogue> catalogue;
};

TEST_F(ModuleCatalogueTest, HasAnInstanceForEachModule) {
    const auto found = all("CIMHOST_Module");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(textOf(found[0], "Module"), "belts");
    const Instance fans = module("fans");
    EXPECT_EQ(textOf(fans, "Module"), "fans");
    EXPECT_EQ(textOf(fans, "File"), "NULL");
    EXPECT_EQ(textOf(fans, "State"), "not running");
    EXPECT_FALSE(isSet(fans, "Loaded"));
    EXPECT_FALSE(isSet(fans, "Isolated"));
    for (const char* const each : {"ProcessID", "Starts", "Crashes", "LastWords"}) {
        EXPECT_TRUE(fans.find(each)->value.isNull()) << each;
    }
}

TEST_F(ModuleCatalogueTest, HasAProviderOfAClassOnceWithAllItsKinds) {
    const auto found = all("CIMHOST_Provider");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(textOf(found[0], "ClassName"), "TST_Fan");
    EXPECT_EQ(textOf(found[0], "NameSpace"), "root/test");
    EXPECT_EQ(textOf(found[0], "Module"), "fans");
    EXPECT_THAT(textsOf(found[0], "Kinds"), ElementsAre("instance", "method"));
    ObjectPath path = found[0].path;
    EXPECT_EQ(textOf(catalogue->find(path).value(), "Provider"), "FanProvider");
    path.setKey("ClassName", Value::string("TST_fan"));
    EXPECT_TRUE(catalogue->find(path)) << "names of classes have no case";
    path.setKey("Provider", Value::string("fanprovider"));
    EXPECT_FALSE(catalogue->find(path));
}

TEST_F(ModuleCatalogueTest, FindsWhatIsWrongWithEachModule) {
    EXPECT_THAT(textsOf(module("belts"), "Findings"),
                ElementsAre("r:4: class TST_Belt in namespace root/test is registered in these "
                            "words already",
                            StartsWith("r:3: provider BeltProvider is registered for "
                                       "root/test:TST_Belt, and no schema is in namespace"),
                            StartsWith("r:3: module belts: libbelts.so was not found in ")));
    folder.write("modules/libbelts.so", "not a library");
    EXPECT_THAT(textsOf(module("belts"), "Findings").back(),
                StartsWith("r:3: module belts cannot be loaded: "));
    EXPECT_THAT(textOf(module("belts"), "File"), testing::EndsWith("/modules/libbelts.so"));
    MofReader(repository, "root/test")
        .readText(
            "Qualifier Key : boolean = false, Scope(property);\n"
            "class TST_Belt { [Key] string Name; };\n"
            "class TST_Fan { [Key] string Name; uint32 Spin(); };",
            "test");
    EXPECT_THAT(textsOf(module("fans"), "Findings"),
                ElementsAre(StartsWith("r:1: module fans: libfans.so was not found in ")));
}

TEST_F(ModuleCatalogueTest, RemembersWhatAModuleCouldNotBeLoadedFor) {
    const Registration& registration = modules->registrations().all().front();
    EXPECT_THROW(modules->use<CMPIInstanceMI>(registration), CimError);
    EXPECT_THAT(textsOf(module("fans"), "Findings").back(),
                StartsWith("module fans cannot be loaded: libfans.so was not found"));
    modules->renew({}, {"fans"}, [](const std::string&) { return std::nullopt; });
    EXPECT_THAT(textsOf(module("fans"), "Findings").back(), StartsWith("r:1: ")) << "another file";
    EXPECT_THAT(textsOf(module("belts"), "Findings").front(), StartsWith("r:4: "))
        << "what was repeated is known still";
}

TEST_F(ModuleCatalogueTest, RemembersWhyAnMiWasNotMadeUntilItIs) {
    CMPIInstanceMIFT table{};
    CMPIInstanceMI mi{nullptr, &table};
    bool isRefused = true;
    const MiFactory<CMPIInstanceMI> factory = [&](auto&&...) { return isRefused ? nullptr : &mi; };
    modules->addStatic("fans", {factory, {}, {}, {}});
    const Registration& registration = modules->registrations().all().front();
    EXPECT_THROW(modules->use<CMPIInstanceMI>(registration), CimError);
    EXPECT_THAT(textsOf(module("fans"), "Findings").back(),
                HasSubstr("provider FanProvider made no Instance MI"));
    EXPECT_TRUE(isSet(module("fans"), "Loaded"));
    EXPECT_EQ(*module("fans").find("ProcessID")->value.get<std::uint64_t>(),
              static_cast<std::uint64_t>(getpid()));
    isRefused = false;
    modules->use<CMPIInstanceMI>(registration);
    EXPECT_THAT(textsOf(module("fans"), "Findings").back(), StartsWith("r:1: "));
    catalogue.reset();
    modules.reset();
}

TEST_F(ModuleCatalogueTest, ServesItsOwnClassesOnly) {
    EXPECT_TRUE(catalogue->serves(target("CIMHOST_Module")));
    EXPECT_TRUE(catalogue->serves(target("CIMHOST_Provider")));
    EXPECT_FALSE(catalogue->serves(target("CIMHOST_ModuleProcess")));
    EXPECT_THAT(all("CIMHOST_ModuleProcess"), IsEmpty());
    EXPECT_FALSE(catalogue->find({{}, "root/cimhost", "CIMHOST_Module", {}}));
}

TEST(ConsoleClasses, LeaveWhatIsDeclaredAlready) {
    Repository repository;
    MofReader(repository, "root/cimhost")
        .readText(
            "Qualifier Key : boolean = false, Scope(property);\n"
            "Qualifier Description : string = null, Scope(any);\n"
            "Qualifier ValueMap : string[] = null, Scope(property);\n"
            "class CIMHOST_Module { [Key] string Module; string Mine; };",
            "mine");
    addConsoleClasses(repository);
    const NameSpace& nameSpace = repository.get("root/cimhost");
    EXPECT_TRUE(nameSpace.findClass("CIMHOST_Module")->findProperty("Mine"));
    EXPECT_TRUE(nameSpace.findClass("CIMHOST_Provider"));
    EXPECT_TRUE(nameSpace.findClass("CIMHOST_ModuleProcess"));
    EXPECT_FALSE(nameSpace.findQualifier("Association"));
}

TEST(ConsoleClasses, HaveTheStandardQualifiersWhereThereAreNone) {
    Repository repository;
    addConsoleClasses(repository);
    EXPECT_THAT(repository.names(), ElementsAre("root/cimhost"));
    EXPECT_TRUE(repository.get("root/cimhost").findQualifier("Association"));
}

}  // namespace
}  // namespace cimhost
