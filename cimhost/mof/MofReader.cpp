#include "cimhost/mof/MofReader.h"

#include "cimhost/mof/MofCompilation.h"

#include <utility>

namespace cimhost {

MofReader::MofReader(Repository& repository, std::string nameSpace)
    : _repository(repository), _nameSpace(std::move(nameSpace)) {}

void MofReader::addSearchPath(std::filesystem::path folder) {
    _searchPaths.push_back(std::move(folder));
}

void MofReader::readFile(const std::filesystem::path& file) {
    MofCompilation compilation(_repository, _searchPaths, _nameSpace);
    compilation.compileFile(file);
    compilation.finish();
}

void MofReader::readText(std::string_view text, const std::string& name) {
    MofCompilation compilation(_repository, _searchPaths, _nameSpace);
    compilation.compileText(text, name);
    compilation.finish();
}

}  // namespace cimhost
