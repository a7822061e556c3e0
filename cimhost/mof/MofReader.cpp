#include "cimhost/mof/MofReader.h"

#include "cimhost/mof/MofCompilation.h"
#include "cimhost/mof/MofInstances.h"
#include "cimhost/mof/MofValueParser.h"

#include <utility>

namespace cimhost {

std::vector<DeclaredInstance> readInstances(const Repository& repository, std::string_view text,
                                            const std::string& name) {
    MofCursor cursor(text, name);
    MofInstances instances;
    const NameSpace* nameSpace = nullptr;
    while (cursor.peek().kind != MofToken::Kind::end) {
        if (cursor.acceptSymbol('#')) {
            cursor.expectKeyword("pragma", "after '#'");
            cursor.expectKeyword("namespace", "after 'pragma'");
            const MofPragmaParameter parameter = parsePragmaParameter(cursor);
            nameSpace =
                atPosition(parameter.position, [&] { return &repository.get(parameter.text); });
        } else {
            if (!nameSpace) cursor.unexpected("a namespace for the instances");
            cursor.expectKeyword("instance", "at the start of an instance");
            instances.add(parseInstance(cursor, *nameSpace));
        }
    }
    std::vector<DeclaredInstance> result;
    instances.resolve([&](const MofInstance& declared, Instance instance) {
        instance.path.nameSpace = declared.nameSpace->name();
        result.push_back({declared.position, std::move(instance)});
    });
    return result;
}

MofReader::MofReader(Repository& repository, std::string nameSpace)
    : _repository(repository), _nameSpace(std::move(nameSpace)) {}

void MofReader::addSearchPath(std::filesystem::path folder) {
    _searchPaths.push_back(std::move(folder));
}

void MofReader::readFile(const std::filesystem::path& file) {
    MofCompilation compilation(_repository, _searchPaths, _nameSpace, _complaints);
    compilation.compileFile(file);
    compilation.finish();
}

void MofReader::readText(std::string_view text, const std::string& name) {
    MofCompilation compilation(_repository, _searchPaths, _nameSpace, _complaints);
    compilation.compileText(text, name);
    compilation.finish();
}

}  // namespace cimhost
