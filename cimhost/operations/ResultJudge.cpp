#include "cimhost/operations/ResultJudge.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ValueConversion.h"

#include <utility>

namespace cimhost {

namespace {

// A provider that makes names up as it goes is not told of for ever.
constexpr std::size_t mostTold = 10000;

std::string typeOf(const Value& value) { return typeText(value.type(), value.isArray()); }

std::string typeOf(const ClassRules::Property& declared) {
    return typeText(declared.type, declared.isArray);
}

// What is wrong with a key of a path; empty when nothing is.
std::string faultOf(const ClassRules& rules, const KeyBinding& key) {
    const ClassRules::Property* const declared = rules.find(key.name);
    const std::string given = "key " + key.name.str();
    if (!declared || !declared->isKey) return given + ", which is none of the class";
    if (declared->takesAsKey(key.value)) return {};
    if (key.value.isNull()) return given + " NULL";
    return given + " as " + typeOf(key.value) + ", which is declared as " + typeOf(*declared);
}

std::string faultOf(const ClassRules& rules, const ObjectPath& path) {
    for (const KeyBinding& key : path.keys) {
        if (std::string fault = faultOf(rules, key); !fault.empty()) return "with " + fault;
    }
    for (const ClassRules::Property& property : rules.properties()) {
        if (property.isKey && !path.findKey(property.name)) {
            return "without key " + std::string(property.name);
        }
    }
    return {};
}

std::string meantKey(const ClassRules& rules, const ObjectPath& path) {
    for (const KeyBinding& key : path.keys) {
        const ClassRules::Property* const declared = rules.find(key.name);
        if (!declared || !declared->isKey) return rules.definition().meantKey(key.name);
    }
    return {};
}

// What is wrong with a property; empty when nothing is.
std::string faultOf(const ClassRules& rules, const PropertyValue& property) {
    const ClassRules::Property* const declared = rules.find(property.name);
    if (declared && declared->takes(property.value)) return {};
    std::string fault = rules.definition().name + "." + property.name + " as " +
                        typeOf(property.value) + ", which ";
    if (!declared) return fault + "the class does not declare";
    return fault + "is declared as " + typeOf(*declared);
}

}  // namespace

const ClassRules& ResultJudge::rulesOf(const Class& definition) const {
    {
        const std::shared_lock lock(_rulesMutex);
        const auto found = _rules.find(&definition);
        if (found != _rules.end()) return *found->second;
    }
    auto rules = std::make_unique<const ClassRules>(definition);
    const std::lock_guard lock(_rulesMutex);
    return *_rules.emplace(&definition, std::move(rules)).first->second;
}

std::optional<Instance> ResultJudge::mend(std::string_view provider, const ClassRules& rules,
                                          const Instance& instance) const {
    if (tellKeys(provider, rules, instance.path)) return std::nullopt;
    Instance mended{instance.path, {}};
    mended.properties.reserve(instance.properties.size());
    for (const PropertyValue& property : instance.properties) {
        const std::string fault = faultOf(rules, property);
        if (fault.empty()) {
            mended.properties.push_back(property);
        } else {
            _tell(provider, fault, "the property is left out", [&] {
                const bool isKnown = rules.find(property.name) != nullptr;
                return isKnown ? std::string() : rules.definition().meantProperty(property.name);
            });
        }
    }
    return mended;
}

bool ResultJudge::tellKeys(std::string_view provider, const ClassRules& rules,
                           const ObjectPath& path) const {
    const std::string fault = faultOf(rules, path);
    if (fault.empty()) return false;
    _tell(provider, "an object of class " + rules.definition().name + " " + fault, "it is left out",
          [&] { return meantKey(rules, path); });
    return true;
}

void ResultJudge::tellUnknownClass(std::string_view provider, const ObjectPath& path,
                                   const NameSpace* nameSpace) const {
    _tell(provider,
          "an object of class " + path.className + ", which namespace " + path.nameSpace +
              " does not have",
          "it is left out",
          [&] { return nameSpace ? nameSpace->meantClass(path.className) : std::string(); });
}

void ResultJudge::tellOtherClass(std::string_view provider, const Class& given,
                                 const Class& asked) const {
    _tell(provider, "an object of class " + given.name + " for one of " + asked.name,
          "it is left out", [] { return std::string(); });
}

template <typename Meant>
void ResultJudge::_tell(std::string_view provider, const std::string& what, const char* consequence,
                        Meant&& meant) const {
    const std::string words = "provider " + std::string(provider) + " delivered " + what;
    if (_policy == ResultPolicy::refuse) throw CimError(CimCode::failed, words + meant());
    {
        const std::lock_guard lock(_toldMutex);
        if (_told.size() == mostTold || !_told.insert(words).second) return;
    }
    _log.write(BrokerLog::Level::warning, provider, words + "; " + consequence + meant());
}

}  // namespace cimhost
