// Queries: a text is refused for what is wrong with it, or it is a query whose normal forms hold
// of an instance exactly when the query itself does.
#include "cimhost/query/WqlEvaluation.h"
#include "cimhost/query/WqlNormalForm.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using cimhost::CimCode;
using cimhost::CimType;
using cimhost::Instance;
using cimhost::Truth;
using cimhost::Value;

/// Values of all kinds under the short names that mutations find: a number, a negative one, a real
/// one, a text, a truth, a datetime, an array, an embedded instance.
Instance instanceOf(std::uint64_t number, const std::string& text) {
    Instance inner;
    inner.path.className = "TEST_Inner";
    inner.set("a", Value::unsignedInteger(CimType::uint16, number));
    inner.set("t", Value::string(text));
    Instance instance;
    instance.path.className = "TEST_Pump";
    instance.set("a", Value::unsignedInteger(CimType::uint32, number));
    instance.set("n", Value::signedInteger(CimType::sint64, -static_cast<std::int64_t>(number)));
    instance.set("r", Value(CimType::real64, static_cast<double>(number) / 2));
    instance.set("t", Value::string(text));
    instance.set("b", Value::boolean(number % 2 == 0));
    instance.set("e", Value::instance(inner));
    instance.set("s", Value::array(CimType::string, {Value::string(text)}));
    return instance;
}

Truth ofTerm(const cimhost::WqlTerm& term, bool isAny, const Instance& instance) {
    cimhost::InstanceValues values(instance);
    Truth folded = isAny ? Truth::no : Truth::yes;
    for (const auto& predicate : term) {
        const Truth one = cimhost::evaluate(predicate, values, nullptr);
        folded = isAny ? std::max(folded, one) : std::min(folded, one);
    }
    return folded;
}

Truth ofTerms(const std::vector<cimhost::WqlTerm>& terms, bool isAnyOfTerms,
              const Instance& instance) {
    Truth folded = isAnyOfTerms ? Truth::no : Truth::yes;
    for (const auto& term : terms) {
        const Truth one = ofTerm(term, !isAnyOfTerms, instance);
        folded = isAnyOfTerms ? std::max(folded, one) : std::min(folded, one);
    }
    return folded;
}

void requireEqualForms(const cimhost::WqlQuery& query, const Instance& instance) {
    using cimhost::NormalForm;
    cimhost::InstanceValues values(instance);
    const Truth plain =
        query.condition ? cimhost::evaluate(*query.condition, values, nullptr) : Truth::yes;
    require(cimhost::meetsCondition(query, values, nullptr) == (plain == Truth::yes),
            "a query selects what its condition is true of");
    if (const auto terms = cimhost::normalForm(query.condition, NormalForm::disjunctive)) {
        require(ofTerms(*terms, true, instance) == plain, "the OR of ANDs means the same");
    }
    if (const auto terms = cimhost::normalForm(query.condition, NormalForm::conjunctive)) {
        require(ofTerms(*terms, false, instance) == plain, "the AND of ORs means the same");
    }
}

bool isRefusal(CimCode code) {
    return code == CimCode::invalidQuery || code == CimCode::queryFeatureNotSupported;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static const Instance instances[] = {instanceOf(0, ""), instanceOf(7, "abc"),
                                         instanceOf(18, "20261121120000.000000+000"), Instance()};
    for (const char* const language : {"WQL", "DMTF:CQL"}) {
        try {
            const cimhost::WqlQuery query = cimhost::parseQuery(language, text);
            for (const Instance& instance : instances) requireEqualForms(query, instance);
        } catch (const cimhost::CimError& error) {
            require(isRefusal(error.code()), "a refusal says what is wrong with the query");
        }
    }
    return 0;
}
