#pragma once

#include "cimhost/mof/MofComplaints.h"
#include "cimhost/mof/MofCursor.h"
#include "cimhost/mof/MofInstances.h"
#include "cimhost/repository/Repository.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// One run of the reader over a file or text and all that it includes.
class MofCompilation {
public:
    /// All must outlive the compilation. With complaints it throws nothing, tells them what it
    /// would throw, and goes on with what follows.
    MofCompilation(Repository& repository, const std::vector<std::filesystem::path>& searchPaths,
                   const std::string& nameSpace, MofComplaints* complaints = nullptr);

    /// Throws MofError.
    void compileFile(const std::filesystem::path& file);
    void compileText(std::string_view text, const std::string& name);

    /// Adds the instances, once everything is read.
    void finish();

private:
    template <typename Work>
    bool _succeeds(Work&& work);
    void _compile(std::string_view text, const std::string& name,
                  const std::filesystem::path& folder);
    void _compileIncluded(const std::filesystem::path& file, const MofPosition& position);
    void _production(MofCursor& cursor, const std::filesystem::path& folder);
    void _qualified(MofCursor& cursor);
    void _pragma(MofCursor& cursor, const std::filesystem::path& folder);
    void _include(const std::string& name, const MofPosition& position,
                  const std::filesystem::path& folder);

    Repository& _repository;
    const std::vector<std::filesystem::path>& _searchPaths;
    NameSpace* _nameSpace;
    MofComplaints* const _complaints;
    std::string _className;  ///< of the class that is being read
    MofInstances _instances;
    std::deque<std::string> _names;                 ///< files' names as messages show them
    std::vector<std::filesystem::path> _openFiles;  ///< each included by the one before it
    std::size_t _fileCount = 0;
    std::size_t _byteCount = 0;
};

}  // namespace cimhost
