#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Which of the four operations: results as class and first key, or as the class for references.
enum class Walk { associators, associatorNames, references, referenceNames };

class AssociationOperations : public OperationsTest, public testing::WithParamInterface<Walk> {
protected:
    /// Delivers what is given, once for each call.
    void deliverFrom(ScriptedProvider& provider, const std::string& name,
                     std::vector<ObjectPath> paths) {
        const auto giveInstances = [this, &provider, name, paths](const ProviderCalled& called) {
            _note(name, called);
            for (const ObjectPath& path : paths) {
                Instance instance;
                instance.path = path;
                instance.set("Caption", Value::string("c"));
                instance.set("Slot", uint16Value(1));
                provider.deliver(called.result, instance);
            }
            return provider.succeed();
        };
        const auto givePaths = [this, &provider, name, paths](const ProviderCalled& called) {
            _note(name, called);
            for (const ObjectPath& path : paths) provider.deliver(called.result, path);
            return provider.succeed();
        };
        provider.associators = giveInstances;
        provider.references = giveInstances;
        provider.associatorNames = givePaths;
        provider.referenceNames = givePaths;
    }

    /// Runs the operation of the parameter. Reference operations take the association class as
    /// result class.
    std::vector<std::string> walk(const ObjectPath& source, const AssociationFilter& filter = {},
                                  const InstanceOptions& options = {}) {
        AssociationFilter own = filter;
        if (isReference()) own.resultClass = filter.associationClass;
        FoundInstances instances;
        FoundPaths paths;
        switch (GetParam()) {
            case Walk::associators:
                operations().associators(request(), source, own, options, instances);
                break;
            case Walk::associatorNames:
                operations().associatorNames(request(), source, own, paths);
                break;
            case Walk::references:
                operations().references(request(), source, own, options, instances);
                break;
            case Walk::referenceNames:
                operations().referenceNames(request(), source, own, paths);
                break;
        }
        std::vector<std::string> texts = paths.texts();
        for (const FoundInstance& each : instances.all) {
            texts.push_back(textOf(each.instance.path));
            shown = each.shown;
        }
        return texts;
    }

    bool isReference() const {
        return GetParam() == Walk::references || GetParam() == Walk::referenceNames;
    }

    std::vector<std::string> asked;  ///< the providers, in order
    ProviderCalled last;
    CMPIFlags flags = 0;
    std::vector<std::string> shown;
    const ObjectPath box = named("TST_System", "box");

private:
    void _note(const std::string& name, const ProviderCalled& called) {
        asked.push_back(name);
        last = called;
        flags = called.request().flags;
    }
};

INSTANTIATE_TEST_SUITE_P(EveryWalk, AssociationOperations,
                         testing::Values(Walk::associators, Walk::associatorNames, Walk::references,
                                         Walk::referenceNames));

TEST_P(AssociationOperations, AsksWithTheSourceAndNoFilters) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {named("TST_Link", "x")});
    start();
    EXPECT_THAT(walk(named("tst_system", "box")), ElementsAre("TST_Link.x"));
    EXPECT_EQ(textOf(last.path), "TST_System.box");
    EXPECT_EQ(last.path.nameSpace, "root/test");
    for (const auto& text : last.texts) EXPECT_FALSE(text.has_value());
    EXPECT_FALSE(last.propertyList.has_value());
    EXPECT_EQ(flags, 0U);
}

TEST_P(AssociationOperations, PassesFiltersOnAsTheClientGaveThem) {
    deliverFrom(serve("P", "TST_FanLink root/test association"), "P", {});
    start();
    walk(box, {"tst_LINK", "TST_Element", "Whole", "Part"});
    if (isReference()) {
        EXPECT_THAT(last.texts, ElementsAre("tst_LINK", "Whole"));
    } else {
        EXPECT_THAT(last.texts, ElementsAre("tst_LINK", "TST_Element", "Whole", "Part"));
    }
}

TEST_P(AssociationOperations, AsksAProviderOnceForAllItsAssociations) {
    ScriptedProvider& provider = serve("P", "TST_Link root/test association");
    serve("P", "TST_FanLink root/test association");
    deliverFrom(provider, "P", {named("TST_Link", "x"), named("TST_FanLink", "y")});
    start();
    EXPECT_THAT(walk(box), ElementsAre("TST_Link.x", "TST_FanLink.y"));
    EXPECT_THAT(asked, ElementsAre("P"));
}

TEST_P(AssociationOperations, AsksAllProvidersThatMayKnowTheSource) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {named("TST_Link", "p")});
    deliverFrom(serve("Q", "TST_FanLink root/test association"), "Q", {named("TST_FanLink", "q")});
    deliverFrom(serve("R", "TST_CoolingLink root/test association"), "R", {});
    start();
    EXPECT_THAT(walk(box), ElementsAre("TST_Link.p", "TST_FanLink.q"));
    EXPECT_THAT(asked, ElementsAre("P", "Q"));
    asked.clear();
    walk(named("TST_TurboFan", "t"));
    EXPECT_THAT(asked, ElementsAre("P", "Q", "R"));
}

TEST_P(AssociationOperations, AsksAboutUndeclaredAssociationsToo) {
    deliverFrom(serve("P", "TST_Undeclared root/test association"), "P", {});
    start();
    EXPECT_THAT(walk(box), IsEmpty());
    EXPECT_THAT(asked, ElementsAre("P"));
}

TEST_P(AssociationOperations, AnAssociationClassChoosesItAndItsSubclasses) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {});
    deliverFrom(serve("Q", "TST_FanLink root/test association"), "Q", {});
    start();
    walk(named("TST_Fan", "f"), {"TST_Link", {}, {}, {}});
    EXPECT_THAT(asked, ElementsAre("P", "Q"));
    asked.clear();
    walk(named("TST_Fan", "f"), {"TST_FanLink", {}, {}, {}});
    EXPECT_THAT(asked, ElementsAre("Q"));
    asked.clear();
    walk(named("TST_Fan", "f"), {"TST_CoolingLink", {}, {}, {}});
    EXPECT_THAT(asked, IsEmpty());
}

TEST_P(AssociationOperations, AnUnregisteredAssociationClassIsItsNearestAncestorsBusiness) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {});
    start();
    walk(box, {"TST_FanLink", {}, {}, {}});
    EXPECT_THAT(asked, ElementsAre("P"));
}

TEST_P(AssociationOperations, FiltersByUnknownClassesAreRefused) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {});
    start();
    EXPECT_EQ(errorCodeOf([&] { walk(box, {"TST_None", {}, {}, {}}); }), 4);
    if (!isReference()) {
        EXPECT_EQ(errorOf([&] {
                      walk(box, {{}, "TST_None", {}, {}});
                  }),
                  "4: namespace root/test has no class 'TST_None' to filter by");
    }
    EXPECT_THAT(asked, IsEmpty());
}

TEST_P(AssociationOperations, TheSourceIsCheckedFirst) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {});
    start();
    EXPECT_EQ(errorCodeOf([&] { walk(classPath("TST_System")); }), 4);
    EXPECT_EQ(errorCodeOf([&] { walk(named("TST_None", "a")); }), 5);
    EXPECT_EQ(errorCodeOf([&] { walk(named("TST_System", "a", "root/none")); }), 3);
    EXPECT_THAT(asked, IsEmpty());
}

TEST_P(AssociationOperations, ResultsOfOtherClassesAreLeftOut) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P",
                {named("TST_TurboFan", "a"), named("TST_Fan", "b"), named("TST_System", "c"),
                 named("TST_Undeclared", "d"), named("TST_FanLink", "e")});
    start();
    if (isReference()) {
        EXPECT_THAT(walk(box, {"TST_Link", {}, {}, {}}),
                    ElementsAre("TST_Undeclared.d", "TST_FanLink.e"));
    } else {
        EXPECT_THAT(walk(box, {{}, "TST_Fan", {}, {}}),
                    ElementsAre("TST_TurboFan.a", "TST_Fan.b", "TST_Undeclared.d"));
    }
}

TEST_P(AssociationOperations, AProvidersRefusalReachesTheClient) {
    ScriptedProvider& provider = serve("P", "TST_Link root/test association");
    provider.associators = [&](const ProviderCalled&) {
        return provider.fail(7, "roles are not supported");
    };
    provider.associatorNames = provider.references = provider.referenceNames = provider.associators;
    start();
    EXPECT_EQ(errorOf([&] { walk(box, {{}, {}, "Whole", {}}); }), "7: roles are not supported");
}

TEST_P(AssociationOperations, NotFoundFromOneProviderDoesNotLoseTheOthers) {
    ScriptedProvider& provider = serve("P", "TST_Link root/test association");
    provider.associators = [&](const ProviderCalled&) { return provider.fail(6); };
    provider.associatorNames = provider.references = provider.referenceNames = provider.associators;
    deliverFrom(serve("Q", "TST_FanLink root/test association"), "Q", {named("TST_FanLink", "q")});
    start();
    EXPECT_THAT(walk(box), ElementsAre("TST_FanLink.q"));
}

TEST_P(AssociationOperations, WithoutProvidersThereIsNothing) {
    start();
    EXPECT_THAT(walk(box), IsEmpty());
}

TEST_P(AssociationOperations, ANullSlotIsNotSupported) {
    serve("P", "TST_Link root/test association");
    start();
    EXPECT_EQ(errorCodeOf([&] { walk(box); }), 7);
}

/// The operations that deliver instances.
class InstanceWalks : public AssociationOperations {};

INSTANTIATE_TEST_SUITE_P(EveryWalk, InstanceWalks,
                         testing::Values(Walk::associators, Walk::references));

TEST_P(InstanceWalks, ThePropertyListIsAppliedHereAndNotPassedOn) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P", {named("TST_FanLink", "x")});
    start();
    InstanceOptions options;
    options.propertyList = {"slot"};
    options.includeClassOrigin = true;
    walk(box, {}, options);
    EXPECT_THAT(shown, ElementsAre("Slot"));
    EXPECT_FALSE(last.propertyList.has_value());
    EXPECT_EQ(flags, static_cast<CMPIFlags>(CMPI_FLAG_IncludeClassOrigin));
}

/// The operations that lead to the objects at the other end.
class FarWalks : public AssociationOperations {};

INSTANTIATE_TEST_SUITE_P(EveryWalk, FarWalks,
                         testing::Values(Walk::associators, Walk::associatorNames));

TEST_P(FarWalks, ResultsInOtherNamespacesAreLookedUpThere) {
    deliverFrom(serve("P", "TST_Link root/test association"), "P",
                {named("CIM_Namespace", "n", "interop"), named("TST_Fan", "f")});
    start();
    EXPECT_THAT(walk(box), ElementsAre("CIM_Namespace.n", "TST_Fan.f"));
    EXPECT_THAT(walk(box, {{}, "TST_Fan", {}, {}}), ElementsAre("TST_Fan.f"));
}

}  // namespace
}  // namespace cimhost::test
