#pragma once

#include "cimhost/mof/MofComplaints.h"
#include "cimhost/mof/MofError.h"
#include "cimhost/repository/Repository.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// An instance that a text declares.
struct DeclaredInstance {
    MofPosition position;  ///< of the name of its class
    Instance instance;     ///< class and namespace in its path, which has no keys
};

/// Reads a text of `#pragma namespace` and instances, which are added nowhere, from one thread.
/// `name` stands for the file in messages and outlives what is returned. Throws MofError, also for
/// a namespace that is not there, and for anything else than instances.
std::vector<DeclaredInstance> readInstances(const Repository& repository, std::string_view text,
                                            const std::string& name);

/// Reads MOF (DSP0004, annex A) into a repository.
///
/// Not safe from several threads. A text that fails leaves the classes and qualifiers before the
/// error in the repository. Instances are added last, when every alias is known, up to the one that
/// fails. What a text may ask for is bounded: 32 levels of includes, 32 MiB of text, and the
/// repository's memory budget. References and embedded instances nest no deeper than 16.
class MofReader {
public:
    /// Definitions go into `nameSpace` until a `#pragma namespace` says otherwise. Such a pragma
    /// holds to the end of its file. CimError invalidNamespace from reading when the name is empty.
    MofReader(Repository& repository, std::string nameSpace);

    /// Folders where `#pragma include` looks after the including file's own.
    void addSearchPath(std::filesystem::path folder);

    /// From now on reading throws nothing: what is refused is told here, and the rest read. The
    /// complaints outlive the reader; several readers may have the same.
    void keepErrors(MofComplaints& complaints) noexcept { _complaints = &complaints; }

    /// Throws MofError; a file that cannot be read is one too.
    void readFile(const std::filesystem::path& file);

    /// `name` stands for the file in messages; includes are looked for in the current folder first.
    void readText(std::string_view text, const std::string& name);

private:
    Repository& _repository;
    std::string _nameSpace;
    std::vector<std::filesystem::path> _searchPaths;
    MofComplaints* _complaints = nullptr;
};

}  // namespace cimhost
