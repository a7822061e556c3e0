#include "cimhost/mof/MofReader.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gtest/gtest.h>

#include <optional>

namespace cimhost::test {
namespace {

constexpr const char* guestClasses = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
class TST_Thing { [Key] string Name; uint32 Number; };
class TST_Guest {
    [Key] string Name;
    string MakePathWithoutNameSpace();
};
)";

constexpr const char* registrationLines = "TST_Guest root/test MethodGuest methodGuest method\n";

/// A host that has loaded the guests.
class Guests : public testing::Test {
protected:
    Guests() {
        request.nameSpace = "root/test";
        MofReader(repository, "root/test").readText(guestClasses, "guests");
        Registrations registrations;
        registrations.readText(registrationLines, "guests");
        host.emplace(broker, std::move(registrations),
                     std::vector<std::filesystem::path>{GUEST_FOLDER});
        operations.emplace(broker, *host);
        broker.setOperations(&*operations);
    }

    ~Guests() override {
        broker.setOperations(nullptr);
        host.reset();
    }

    /// What the guest's method answers.
    std::string ask(const std::string& method, const Arguments& in = {}) {
        const MethodResult result =
            operations->invokeMethod(request, named("TST_Guest", "g"), method, in);
        return std::string(std::string_view(*result.returnValue.get<Text>()));
    }

    Repository repository;
    CapturingLog log;
    Broker broker{repository, log, fillUpCalls};
    RequestContext request;
    std::optional<ModuleHost> host;
    std::optional<Operations> operations;
};

TEST_F(Guests, MakePathsWithoutANameSpace) {
    EXPECT_EQ(ask("MakePathWithoutNameSpace"), "|root/test:TST_Thing");
}

}  // namespace
}  // namespace cimhost::test
