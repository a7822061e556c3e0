#include "cimhost/server/RegistrationCheck.h"

#include "cimhost/modules/Module.h"
#include "cimhost/modules/ModuleFile.h"
#include "cimhost/repository/NearestName.h"

#include <array>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

namespace cimhost {
namespace {

struct KindRow {
    ProviderType type;
    std::string_view word;  ///< as entry points have it
};

template <typename MI>
constexpr KindRow rowOf{MiKind<MI>::type, MiKind<MI>::word};

constexpr auto kinds = std::to_array<KindRow>({rowOf<CMPIInstanceMI>, rowOf<CMPIAssociationMI>,
                                               rowOf<CMPIMethodMI>, rowOf<CMPIIndicationMI>});
static_assert(kinds.size() == providerTypeCount);

/// One registration held against its class.
class ClassCheck {
public:
    ClassCheck(const Registrations& registrations, const Registration& registration,
               const Class& definition, Findings& findings)
        : _all(registrations),
          _registration(registration),
          _definition(definition),
          _findings(findings) {}

    void run() {
        if (_serves(ProviderType::instance)) _checkInstances();
        if (_serves(ProviderType::association) && !_definition.isAssociation) {
            _tell("association, but the class is none: it has no [Association]");
        }
        if (_serves(ProviderType::indication) && !_definition.isIndication) {
            _tell("indication, but the class is none: it has no [Indication]");
        }
        if (_serves(ProviderType::method) && _definition.methods.empty()) {
            _tell("method, but the class has no methods");
        }
    }

private:
    bool _serves(ProviderType type) const noexcept { return _registration.serves(type); }

    void _checkInstances() {
        if (_definition.isIndication) {
            return _tell("instance, but the class is an indication: register it as indication");
        }
        if (_definition.isAbstract) {
            return _tell("instance, but the class is abstract: nothing can be an instance of it");
        }
        if (!_definition.hasKeys()) {
            _tell("instance, but the class has no [Key]: no client could name an instance");
        }
        if (_definition.isAssociation && !_isWalked()) {
            _tell(
                "instance, but the class is an association: without association no client can "
                "follow it");
        }
    }

    bool _isWalked() const {
        return _all.find(ProviderType::association, _registration.nameSpace,
                         _registration.className) != nullptr;
    }

    void _tell(const char* what) {
        _findings.push_back(placed(
            _registration, "provider " + _registration.provider + " is registered for " +
                               _registration.nameSpace + ":" + _definition.name + " as " + what));
    }

    const Registrations& _all;
    const Registration& _registration;
    const Class& _definition;
    Findings& _findings;
};

std::string unknownClass(const Repository& repository, const Registration& registration) {
    std::string text = "provider " + registration.provider + " is registered for " +
                       registration.nameSpace + ":" + registration.className;
    const NameSpace* const nameSpace = repository.find(registration.nameSpace);
    text += nameSpace ? ", which does not exist" +
                            repository.meantClass(*nameSpace, registration.className)
                      : ", and no schema is in namespace " + registration.nameSpace +
                            repository.meantNameSpace(registration.nameSpace);
    return placed(registration, text);
}

std::string absentModule(const Registration& registration,
                         const std::vector<std::filesystem::path>& folders) {
    std::vector<std::string> names;
    std::string where;
    for (const std::filesystem::path& folder : folders) {
        where += (where.empty() ? " in " : ", ") + folder.string();
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("lib") && name.ends_with(".so") && name.size() > 6) {
                names.push_back(name.substr(3, name.size() - 6));
            }
        }
    }
    return placed(registration, "module " + registration.module + ": lib" + registration.module +
                                    ".so was not found" + where +
                                    didYouMean(registration.module, names));
}

/// The files of modules, each read once, and told of once.
class ModuleFiles {
public:
    ModuleFiles(const std::vector<std::filesystem::path>& folders, Findings& findings)
        : _folders(folders), _findings(findings) {}

    void check(const Registration& registration) {
        const ModuleFile* const file = _fileOf(registration);
        if (!file) return;
        for (const auto& [type, kind] : kinds) {
            if (!registration.serves(type)) continue;
            if (file->offers(registration.provider, kind)) continue;
            const std::string name = registration.provider + "_Create_" + std::string(kind) + "MI";
            if (!_told.insert(name).second) continue;
            _tell(registration, " has no entry point " + name + "; " + file->entryPointWords());
        }
    }

private:
    const ModuleFile* _fileOf(const Registration& registration) {
        const auto [known, isNew] = _files.try_emplace(registration.module);
        if (isNew) _read(registration, known->second);
        return known->second ? &*known->second : nullptr;
    }

    void _read(const Registration& registration, std::optional<ModuleFile>& file) {
        const std::filesystem::path path = Module::find(registration.module, _folders);
        if (path.empty()) return _findings.push_back(absentModule(registration, _folders));
        try {
            file = ModuleFile::read(path);
        } catch (const std::runtime_error& error) {
            _tell(registration, " cannot be loaded: " + path.string() + ": " + error.what());
        }
    }

    void _tell(const Registration& registration, const std::string& what) {
        _findings.push_back(placed(registration, "module " + registration.module + what));
    }

    const std::vector<std::filesystem::path>& _folders;
    Findings& _findings;
    std::map<std::string, std::optional<ModuleFile>> _files;  // none: told of already
    std::set<std::string> _told;
};

bool concerns(const Registration& registration, std::string_view module) noexcept {
    return module.empty() || registration.module == module;
}

}  // namespace

std::string placed(const Registration& registration, const std::string& text) {
    return registration.place.empty() ? text : registration.place + ": " + text;
}

Findings checkClasses(const Repository& repository, const Registrations& registrations,
                      std::string_view module) {
    Findings findings;
    for (const Registration& each : registrations.all()) {
        if (!concerns(each, module)) continue;
        const NameSpace* const nameSpace = repository.find(each.nameSpace);
        const Class* const definition = nameSpace ? nameSpace->findClass(each.className) : nullptr;
        if (definition) {
            ClassCheck(registrations, each, *definition, findings).run();
        } else {
            findings.push_back(unknownClass(repository, each));
        }
    }
    return findings;
}

Findings checkModuleFiles(const Registrations& registrations,
                          const std::vector<std::filesystem::path>& folders,
                          std::string_view module) {
    Findings findings;
    ModuleFiles files(folders, findings);
    for (const Registration& each : registrations.all()) {
        if (concerns(each, module)) files.check(each);
    }
    return findings;
}

}  // namespace cimhost
