#include "cimhost/modules/Registration.h"

#include "cimhost/repository/Names.h"
#include "cimhost/repository/NearestName.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <tuple>
#include <utility>

namespace cimhost {

namespace {

constexpr auto typeNames =
    std::to_array<std::string_view>({"instance", "association", "method", "indication"});
static_assert(typeNames.size() == providerTypeCount);

constexpr auto fieldNames =
    std::to_array<const char*>({"class", "namespace", "provider", "module", "type"});

constexpr std::string_view blanks = " \t\r";

[[noreturn]] void refuse(const std::string& message) { throw RegistrationError(message); }

std::vector<std::string_view> splitFields(std::string_view line) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t begin = line.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return fields;
        line.remove_prefix(begin);
        fields.push_back(line.substr(0, line.find_first_of(blanks)));
        line.remove_prefix(fields.back().size());
    }
}

std::size_t typeFromText(std::string_view text) {
    for (std::size_t type = 0; type < typeNames.size(); ++type) {
        if (equalNames(typeNames[type], text)) return type;
    }
    refuse("unknown type '" + std::string(text) +
           "' (known are instance, association, method, indication)" + didYouMean(text, typeNames));
}

std::bitset<providerTypeCount> typesFrom(std::span<const std::string_view> words) {
    std::bitset<providerTypeCount> types;
    for (const std::string_view word : words) {
        const std::size_t type = typeFromText(word);
        if (types[type]) refuse("type '" + std::string(typeNames[type]) + "' is given twice");
        types.set(type);
    }
    return types;
}

Registration registrationFrom(const std::vector<std::string_view>& fields) {
    if (fields.size() < fieldNames.size()) {
        refuse(std::string("the ") + fieldNames[fields.size()] +
               " is missing (Class Namespace Provider Module type...)");
    }
    return {std::string(fields[0]), std::string(trimmedSlashes(fields[1])), std::string(fields[2]),
            std::string(fields[3]), typesFrom(std::span(fields).subspan(4))};
}

// The last four are of no use here.
constexpr auto sectionKeys = std::to_array<std::string_view>(
    {"provider", "location", "type", "namespace", "unload", "parameters", "group", "user"});
enum SectionKey : std::size_t { provider, location, type, nameSpace, neededKeys };

/// What a section says so far, in the words of the file.
struct Section {
    std::string place;
    std::string_view className;
    std::array<std::string_view, sectionKeys.size()> values;
};

Section sectionFrom(std::string_view head, const std::string& place) {
    if (!head.ends_with(']')) refuse("'" + std::string(head) + "' is no section '[Class]'");
    return {place, trimmed(head.substr(1, head.size() - 2), blanks), {}};
}

void readSectionLine(Section& section, std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        refuse("'" + std::string(line) + "' is no line 'key: value'");
    }
    const std::string_view key = trimmed(line.substr(0, colon), blanks);
    const auto known = std::ranges::find_if(
        sectionKeys, [key](std::string_view name) { return equalNames(name, key); });
    if (known == sectionKeys.end()) {
        refuse(
            "unknown key '" + std::string(key) +
            "' (known are provider, location, type, namespace, unload, parameters, group, user)" +
            didYouMean(key, sectionKeys));
    }
    const auto index = static_cast<std::size_t>(known - sectionKeys.begin());
    if (!section.values[index].empty()) refuse("the " + std::string(*known) + " is given twice");
    section.values[index] = trimmed(line.substr(colon + 1), blanks);
    if (index == type) typesFrom(splitFields(section.values[type]));
}

/// One for each namespace.
std::vector<Registration> registrationsFrom(const Section& section) {
    for (std::size_t key = 0; key < neededKeys; ++key) {
        if (section.values[key].empty()) {
            refuse("the " + std::string(sectionKeys[key]) + " is missing in [" +
                   std::string(section.className) + "]");
        }
    }
    std::vector<Registration> registrations;
    for (const std::string_view name : splitFields(section.values[nameSpace])) {
        registrations.push_back({std::string(section.className), std::string(trimmedSlashes(name)),
                                 std::string(section.values[provider]),
                                 std::string(section.values[location]),
                                 typesFrom(splitFields(section.values[type]))});
    }
    return registrations;
}

/// Puts the place before what `body` is refused for.
void readAt(const std::string& place, auto&& body) try {
    body();
} catch (const RegistrationError& error) {
    refuse(place + ": " + error.what());
}

bool isIdentifier(std::string_view text) noexcept {
    return !text.empty() && findNameEnd(text) == text.size();
}

bool isNameSpace(std::string_view text) noexcept {
    return !text.empty() && std::ranges::all_of(text, [](unsigned char character) {
        return character > ' ' && character != 0x7f && character != ':';
    });
}

// The name becomes part of a file name: it must not lead out of the folders of modules.
bool isModuleName(std::string_view text) noexcept {
    return !text.empty() && std::ranges::all_of(text, [](unsigned char character) {
        return character > ' ' && character != 0x7f && character != '/';
    });
}

void checkFields(const Registration& registration) {
    if (!isIdentifier(registration.className)) {
        refuse("'" + registration.className + "' is not a class name");
    }
    if (!isNameSpace(registration.nameSpace)) {
        refuse("'" + registration.nameSpace + "' is not a namespace");
    }
    if (!isIdentifier(registration.provider)) {
        refuse("'" + registration.provider + "' is not a provider name");
    }
    if (!isModuleName(registration.module)) {
        refuse("'" + registration.module + "' is not the base name of a module");
    }
    if (registration.types.none()) refuse("the type is missing");
}

// Two providers cannot both answer for an instance or a method.
bool takesOneProvider(std::size_t type) noexcept {
    return type == static_cast<std::size_t>(ProviderType::instance) ||
           type == static_cast<std::size_t>(ProviderType::method);
}

std::string subjectText(const Registration& registration, std::size_t type) {
    return std::string(typeNames[type]) + " of class " + registration.className + " in namespace " +
           registration.nameSpace;
}

}  // namespace

bool Registration::operator==(const Registration& other) const noexcept {
    return std::tie(className, nameSpace, provider, module) ==
               std::tie(other.className, other.nameSpace, other.provider, other.module) &&
           types == other.types;
}

template <typename Work>
void Registrations::_tryTo(Work&& work) try {
    work();
} catch (const RegistrationError& error) {
    if (!_keepsErrors) throw;
    _errors.emplace_back(error.what());
}

void Registrations::readFile(const std::filesystem::path& file) {
    std::string text;
    try {
        std::ifstream stream;
        stream.exceptions(std::ios::failbit);
        stream.open(file, std::ios::binary);
        stream.exceptions(std::ios::badbit);
        text.assign(std::istreambuf_iterator<char>(stream), {});
    } catch (const std::ios_base::failure&) {
        const std::string reason = std::strerror(errno);
        return _tryTo([&] { refuse(file.string() + ": cannot be read: " + reason); });
    }
    readText(text, file.string());
}

void Registrations::readText(std::string_view text, const std::string& name) {
    std::vector<Section> sections;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line = trimmed(line.substr(0, line.find('#')), blanks);
        if (line.empty()) continue;
        const std::string place = name + ":" + std::to_string(number);
        _tryTo([&] {
            readAt(place, [&] {
                if (line.front() == '[') {
                    sections.push_back(sectionFrom(line, place));
                } else if (!sections.empty()) {
                    readSectionLine(sections.back(), line);
                } else {
                    _read(registrationFrom(splitFields(line)), place);
                }
            });
        });
    }
    for (const Section& section : sections) {
        _tryTo([&] {
            readAt(section.place, [&] {
                for (Registration& registration : registrationsFrom(section)) {
                    _read(std::move(registration), section.place);
                }
            });
        });
    }
}

void Registrations::_read(Registration registration, const std::string& place) {
    if (std::ranges::find(_registrations, registration) != _registrations.end()) {
        _warnings.emplace_back(registration.module, place + ": class " + registration.className +
                                                        " in namespace " + registration.nameSpace +
                                                        " is registered in these words already");
    } else {
        registration.place = place;
        add(std::move(registration));
    }
}

std::vector<std::string> Registrations::warnings(std::string_view module) const {
    std::vector<std::string> texts;
    for (const auto& [concerned, text] : _warnings) {
        if (module.empty() || concerned == module) texts.push_back(text);
    }
    return texts;
}

Registrations Registrations::clone() const {
    Registrations copy;
    for (const Registration& each : _registrations) copy.add(each);
    copy._warnings = _warnings;
    return copy;
}

void Registrations::add(Registration registration) {
    registration.nameSpace = trimmedSlashes(registration.nameSpace);
    checkFields(registration);
    _check(registration);
    const Registration& added = _registrations.emplace_back(std::move(registration));
    _modules.emplace(added.provider, added.module);
    Indexes& indexes = _nameSpaces[added.nameSpace];
    for (std::size_t type = 0; type < providerTypeCount; ++type) {
        if (!added.types[type]) continue;
        indexes[type].inOrder.push_back(&added);
        indexes[type].byClass.emplace(added.className, &added);
    }
}

void Registrations::_check(const Registration& registration) const {
    const auto module = _modules.find(registration.provider);
    if (module != _modules.end() && module->second != registration.module) {
        refuse("provider " + registration.provider + " is registered in module " + module->second +
               " already");
    }
    for (std::size_t type = 0; type < providerTypeCount; ++type) {
        if (!registration.types[type]) continue;
        for (const Registration* const other :
             all(static_cast<ProviderType>(type), registration.nameSpace)) {
            if (!equalNames(other->className, registration.className)) continue;
            if (other->provider == registration.provider || takesOneProvider(type)) {
                refuse(subjectText(registration, type) + " is registered for provider " +
                       other->provider + " already");
            }
        }
    }
}

const Registrations::Index* Registrations::_find(ProviderType type,
                                                 std::string_view nameSpace) const noexcept {
    const auto found = _nameSpaces.find(trimmedSlashes(nameSpace));
    return found == _nameSpaces.end() ? nullptr : &found->second[static_cast<std::size_t>(type)];
}

const Registration* Registrations::find(ProviderType type, std::string_view nameSpace,
                                        std::string_view className) const noexcept {
    const Index* const index = _find(type, nameSpace);
    if (!index) return nullptr;
    const auto found = index->byClass.find(className);
    return found == index->byClass.end() ? nullptr : found->second;
}

const std::vector<const Registration*>& Registrations::all(
    ProviderType type, std::string_view nameSpace) const noexcept {
    static const std::vector<const Registration*> none;
    const Index* const index = _find(type, nameSpace);
    return index ? index->inOrder : none;
}

}  // namespace cimhost
