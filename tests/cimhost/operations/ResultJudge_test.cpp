#include "cimhost/operations/ResultJudge.h"

#include "cimhost/repository/Names.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A provider P of TST_Fan that delivers what a test gives it.
class Verdicts : public OperationsTest {
protected:
    Verdicts() {
        readMof(R"(
            class TST_Part { uint32 Number; };
            [Association] class TST_Box {
                string Caption;
                [Key] string Name; [Key] uint16 Slot;
                [EmbeddedInstance("TST_Part")] string Part;
                TST_Fan REF Fan; TST_Fan REF Other;
            };)");
        serve("P", "TST_Fan root/test instance");
        serve("P", "TST_Box root/test instance");
        ScriptedProvider& provider = serve("P", "TST_Link root/test association");
        provider.enumerateInstances = provider.getInstance = [&](const ProviderCalled& called) {
            for (const Instance& each : instances) provider.deliver(called.result, each);
            return ScriptedProvider::succeed();
        };
        provider.createInstance = [&](const ProviderCalled& called) {
            for (const Instance& each : instances) provider.deliver(called.result, each.path);
            return ScriptedProvider::succeed();
        };
        provider.enumerateInstanceNames =
            provider.associatorNames = [&](const ProviderCalled& called) {
                for (const Instance& each : instances) provider.deliver(called.result, each.path);
                return ScriptedProvider::succeed();
            };
    }

    Instance fan(std::string_view name = "a") const {
        Instance fan;
        fan.path = named("TST_Fan", std::string(name), "root/test");
        fan.set("Name", Value::string(name));
        fan.set("Speed", uint16Value(3));
        return fan;
    }

    Instance box() const {
        Instance box;
        box.path = named("TST_Box", "a", "root/test");
        box.path.setKey("Slot", uint16Value(1));
        box.set("Caption", Value::string("a box"));
        return box;
    }

    /// The properties of each instance that comes, as "Name Speed".
    std::vector<std::string> enumerate(const std::string& className = "TST_Fan") {
        FoundInstances found;
        operations().enumerateInstances(request(), classPath(className), {}, found);
        std::vector<std::string> texts;
        for (const FoundInstance& each : found.all) {
            std::string text;
            for (const std::string& name : each.shown) text += (text.empty() ? "" : " ") + name;
            texts.push_back(text);
        }
        return texts;
    }

    std::vector<std::string> enumerateNames(const std::string& className = "TST_Fan") {
        FoundPaths found;
        operations().enumerateInstanceNames(request(), classPath(className), found);
        return found.texts();
    }

    std::string failureOfGet() {
        FoundInstances found;
        return errorOf(
            [&] { operations().getInstance(request(), named("TST_Fan", "a"), {}, found); });
    }

    std::string failureOfCreate() {
        Instance wanted;
        wanted.path = classPath("TST_Fan");
        wanted.set("Name", Value::string("a"));
        return errorOf([&] { operations().createInstance(request(), wanted); });
    }

    std::vector<std::string> warnings() const {
        std::vector<std::string> texts;
        for (const auto& line : log.lines()) {
            if (line.level == BrokerLog::Level::warning) texts.push_back(line.message);
        }
        return texts;
    }

    std::vector<Instance> instances;
};

TEST_F(Verdicts, CleanResultsPassInSilence) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b")};
    instances[1].set("SPEED", Value::null(CimType::string));
    instances[1].set("Levels", Value::array(CimType::uint8, {}));
    EXPECT_THAT(enumerate(), ElementsAre("Name Speed", "Name Speed Levels"));
    EXPECT_THAT(enumerateNames(), ElementsAre("TST_Fan.a", "TST_Fan.b"));
    instances.resize(1);
    EXPECT_EQ(failureOfGet(), "");
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(Verdicts, UndeclaredPropertiesAreLeftOutAndToldOnce) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b"), fan("c")};
    for (Instance& each : instances) each.set("Colour", Value::string("red"));
    EXPECT_THAT(enumerate(), ElementsAre("Name Speed", "Name Speed", "Name Speed"));
    instances.resize(1);
    EXPECT_EQ(failureOfGet(), "");
    EXPECT_THAT(warnings(),
                ElementsAre("provider P delivered TST_Fan.Colour as string, which the class does "
                            "not declare; the property is left out"));
}

TEST_F(Verdicts, PropertiesOfAnotherTypeAreLeftOutAndToldOnceEach) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b")};
    for (Instance& each : instances) {
        each.set("Speed", uint32Value(1));
        each.set("Levels", Value::unsignedInteger(CimType::uint8, 1));
        each.set("Since", Value::string("00000001000000.000000:000"));
    }
    EXPECT_THAT(enumerate(), ElementsAre("Name", "Name"));
    EXPECT_THAT(
        warnings(),
        ElementsAre("provider P delivered TST_Fan.Speed as uint32, which is declared as uint16; "
                    "the property is left out",
                    "provider P delivered TST_Fan.Levels as uint8, which is declared as uint8[]; "
                    "the property is left out",
                    "provider P delivered TST_Fan.Since as string, which is declared as datetime; "
                    "the property is left out"));
}

TEST_F(Verdicts, AWrongPropertyIsFoundWhateverCameBefore) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b"), fan("c")};
    instances[1].properties[1].name = "Sped";
    instances[2].properties.pop_back();
    EXPECT_THAT(enumerate(), ElementsAre("Name Speed", "Name", "Name"));
    EXPECT_EQ(warnings().size(), 1U);
}

TEST_F(Verdicts, EmbeddedInstancesAndReferencesPassAsDeclared) {
    start(ResultPolicy::warn);
    Instance part;
    part.path.className = "TST_Part";
    instances = {box(), box()};
    instances[0].set("Part", Value::instance(part));
    instances[0].set("Fan", Value::reference(fan().path));
    instances[1].set("Part", Value::string("<INSTANCE CLASSNAME='TST_Part'/>"));
    instances[1].set("Caption", Value::instance(part));
    EXPECT_THAT(enumerate("TST_Box"), ElementsAre("Caption Part Fan", "Part"));
    EXPECT_THAT(warnings(), ElementsAre(HasSubstr("TST_Box.Caption as string, which")))
        << "an embedded instance is a string, but not every string is one";
}

TEST_F(Verdicts, KeysAreThoseOfTheClassAndOfTheirKind) {
    start(ResultPolicy::warn);
    instances = {box(), box(), box(), box(), box()};
    instances[0].path.setKey("slot", Value::signedInteger(CimType::sint64, 1));
    instances[1].path.keys.pop_back();
    instances[2].path.setKey("Colour", Value::string("red"));
    instances[3].path.setKey("Slot", Value::string("1"));
    instances[4].path.keys[0] = {"Caption", Value::string("a")};
    EXPECT_THAT(enumerateNames("TST_Box"), ElementsAre("TST_Box.a"));
    EXPECT_THAT(
        warnings(),
        ElementsAre("provider P delivered an object of class TST_Box without key Slot; it is left "
                    "out",
                    "provider P delivered an object of class TST_Box with key Colour, which is "
                    "none of the class; it is left out",
                    "provider P delivered an object of class TST_Box with key Slot as string, "
                    "which is declared as uint16; it is left out",
                    "provider P delivered an object of class TST_Box with key Caption, which is "
                    "none of the class; it is left out"));
    EXPECT_THAT(enumerate("TST_Box"), ElementsAre("Caption"));
    EXPECT_EQ(warnings().size(), 4U) << "paths and instances are told in the same words";
}

TEST_F(Verdicts, ObjectsOfOtherClassesAreLeftOutAndToldOnce) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b"), fan("c"), fan("d")};
    instances[1].path.className = "TST_System";
    instances[2].path.className = "TST_FastFan";
    instances[3].path.className = "TST_Nothing";
    EXPECT_THAT(enumerateNames(), ElementsAre("TST_Fan.a", "TST_FastFan.c"));
    EXPECT_EQ(enumerate().size(), 2U);
    EXPECT_THAT(
        warnings(),
        testing::UnorderedElementsAre(
            "provider P delivered an object of class TST_System for one of TST_Fan; it is left out",
            "provider P delivered an object of class TST_Nothing, which namespace root/test does "
            "not have; it is left out"));
}

TEST_F(Verdicts, ObjectsOfOtherNamespacesAreOfTheClassAskedForToo) {
    readMof(R"(
        class TST_Fan { [Key] string Name; uint16 Speed; };
        class TST_SlowFan : TST_Fan {};
        class TST_Other { [Key] string Name; uint16 Speed; };)",
            "interop");
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b"), fan("c"), fan("d")};
    for (Instance& each : instances) each.path.nameSpace = "interop";
    instances[1].path.className = "TST_SlowFan";
    instances[2].path.className = "TST_Other";
    instances[3].path.nameSpace = "root/far";
    instances[3].path.className = "TST_Other";
    EXPECT_THAT(enumerateNames(), ElementsAre("TST_Fan.a", "TST_SlowFan.b", "TST_Other.d"))
        << "what classes a namespace has that is not here cannot be known";
    EXPECT_EQ(enumerate().size(), 3U);
    EXPECT_THAT(warnings(), ElementsAre("provider P delivered an object of class TST_Other for one "
                                        "of TST_Fan; it is left out"));
}

TEST_F(Verdicts, APathOfWhatWasCreatedThatWouldBeLeftOutIsAnError) {
    start(ResultPolicy::warn);
    instances = {fan()};
    EXPECT_EQ(failureOfCreate(), "");
    instances[0].path.className = "TST_FastFan";
    EXPECT_EQ(failureOfCreate(), "");
    instances[0].path = named("TST_Nothing", "a", "root/far");
    EXPECT_EQ(failureOfCreate(), "");
    EXPECT_THAT(warnings(), IsEmpty());
    instances[0].path = named("TST_Nothing", "a");
    EXPECT_EQ(failureOfCreate(), "1: provider P delivered a path of unknown class TST_Nothing");
    instances[0].path.className = "TST_System";
    EXPECT_EQ(failureOfCreate(), "1: provider P delivered a path of TST_System for one of TST_Fan");
    instances[0].path = pathOf("TST_Fan", "Name", uint32Value(1));
    EXPECT_EQ(failureOfCreate(),
              "1: provider P delivered a path of TST_Fan with other keys than the class");
    instances[0].path.keys.clear();
    EXPECT_EQ(failureOfCreate(),
              "1: provider P delivered a path of TST_Fan with other keys than the class");
    EXPECT_EQ(warnings().size(), 4U);
}

TEST_F(Verdicts, ASingleInstanceThatWouldBeLeftOutIsAnError) {
    start(ResultPolicy::warn);
    instances = {fan()};
    instances[0].path.className = "TST_Nothing";
    EXPECT_EQ(failureOfGet(), "1: provider P delivered an instance of unknown class TST_Nothing");
    instances = {fan()};
    instances[0].path.setKey("Speed", uint16Value(3));
    EXPECT_EQ(failureOfGet(),
              "1: provider P delivered an instance of TST_Fan with other keys than the class");
    instances[0].path.keys.clear();
    EXPECT_EQ(failureOfGet(), "") << "the keys are those asked for";
}

TEST_F(Verdicts, RefusingSaysTheSameToTheClient) {
    start(ResultPolicy::refuse);
    instances = {fan()};
    instances[0].set("Colour", Value::string("red"));
    const std::string words =
        "1: provider P delivered TST_Fan.Colour as string, which the class does not declare";
    EXPECT_EQ(errorOf([&] { enumerate(); }), words);
    EXPECT_EQ(failureOfGet(), words);
    instances = {fan()};
    instances[0].path.keys.clear();
    instances[0].properties.clear();
    EXPECT_EQ(errorOf([&] { enumerateNames(); }),
              "1: provider P delivered an object of class TST_Fan without key Name");
    EXPECT_EQ(failureOfCreate(),
              "1: provider P delivered an object of class TST_Fan without key Name");
    instances[0].path.className = "TST_Nothing";
    EXPECT_EQ(errorOf([&] { enumerateNames(); }),
              "1: provider P delivered an object of class TST_Nothing, which namespace root/test "
              "does not have");
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(Verdicts, PassingLetsEverythingPass) {
    start(ResultPolicy::pass);
    instances = {fan("a"), fan("b")};
    instances[0].set("Colour", uint32Value(1));
    instances[1].path.className = "TST_Nothing";
    EXPECT_THAT(enumerate("TST_Fan"), testing::Contains("Name Speed Colour"));
    EXPECT_THAT(enumerateNames(), testing::Contains("TST_Nothing.b"));
    instances.resize(1);
    instances[0].path.keys.clear();
    EXPECT_EQ(failureOfCreate(), "");
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(Verdicts, ResultsOfAssociationsAreJudgedByTheirOwnClasses) {
    start(ResultPolicy::warn);
    instances = {fan("a"), fan("b"), fan("c")};
    instances[1].path.setKey("Speed", uint16Value(1));
    instances[2].path = named("TST_Nothing", "c", "root/far");
    FoundPaths found;
    operations().associatorNames(request(), named("TST_System", "s"), {}, found);
    EXPECT_THAT(found.texts(), ElementsAre("TST_Fan.a", "TST_Nothing.c"))
        << "other namespaces than those here are none of its business";
    EXPECT_EQ(warnings().size(), 1U);
}

TEST_F(Verdicts, WhatAnotherProviderAskedForIsNotJudged) {
    start(ResultPolicy::refuse);
    instances = {fan()};
    instances[0].set("Colour", Value::string("red"));
    RequestContext upCall = request();
    upCall.isProviders = true;
    FoundInstances found;
    operations().getInstance(upCall, named("TST_Fan", "a"), {}, found);
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_THAT(found.all[0].shown, ElementsAre("Name", "Speed", "Colour"));
}

TEST(ClassRules, FindWhatTheClassFinds) {
    Class definition;
    for (int each = 0; each < 300; ++each) {
        auto property = std::make_shared<PropertyDefinition>();
        // Many of the same length, with the same first, middle and last characters.
        property->name = "P" + std::to_string(each % 7) + "m" + std::to_string(each) + "e";
        property->type = CimType::uint32;
        definition.properties.push_back(std::move(property));
    }
    const ClassRules rules(definition);
    for (const auto& property : definition.properties) {
        const ClassRules::Property* const found = rules.find(property->name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->name, property->name);
        std::string otherCase = property->name;
        otherCase[0] = 'p';
        EXPECT_EQ(rules.find(otherCase), found);
    }
    for (const char* const none : {"", "P", "Pe", "P0m0E0", "Q0m0e"}) {
        EXPECT_EQ(rules.find(none), nullptr);
    }
    EXPECT_EQ(ClassRules(Class()).find("any"), nullptr);
}

}  // namespace
}  // namespace cimhost::test
