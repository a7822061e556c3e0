#include "cimhost/mof/MofCompilation.h"

#include "cimhost/mof/MofClassParser.h"
#include "cimhost/mof/MofInstanceParser.h"
#include "cimhost/mof/MofQualifierParser.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

constexpr std::size_t deepestInclude = 32;

// The whole of a large published schema is some 2,000 files of 15 MB together.
constexpr std::size_t mostFiles = 16384;
constexpr std::size_t mostBytes = std::size_t{32} << 20U;

[[noreturn]] void refuseFile(const std::filesystem::path& file, const MofPosition& position,
                             const std::string& reason) {
    failAt(position, "the file '" + file.string() + "' cannot be read: " + reason);
}

std::string readRegularFile(const std::filesystem::path& file, const MofPosition& position,
                            std::size_t mostToRead) {
    std::error_code error;
    // A pipe or a terminal could keep us waiting for ever.
    if (!std::filesystem::is_regular_file(file, error)) {
        refuseFile(file, position, error ? error.message() : "it is not a regular file");
    }
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    const std::streamoff size = stream ? static_cast<std::streamoff>(stream.tellg()) : -1;
    if (size < 0) refuseFile(file, position, std::generic_category().message(errno));
    std::string text(std::min(static_cast<std::size_t>(size), mostToRead), '\0');
    stream.seekg(0);
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

std::filesystem::path identity(const std::filesystem::path& file) {
    std::error_code error;
    std::filesystem::path canonical = std::filesystem::weakly_canonical(file, error);
    return error ? file : canonical;
}

bool isThere(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

// Behind the name of a pragma that means nothing here.
void skipPragmaParameters(MofCursor& cursor) {
    if (!cursor.acceptSymbol('(')) return;
    for (std::size_t open = 1; open > 0;) {
        if (cursor.peek().kind == MofToken::Kind::end) cursor.unexpected("')' after the pragma");
        const MofToken token = cursor.take();
        if (token.isSymbol('(')) ++open;
        if (token.isSymbol(')')) --open;
    }
}

bool beginsProduction(const MofToken& token) noexcept {
    return token.isSymbol('#') || token.isName("class") || token.isName("instance") ||
           token.isName("qualifier");
}

// To where the next one begins, as far as that can be told from the middle of a broken one.
void skipProduction(MofCursor& cursor) {
    bool closes = false;
    while (cursor.peek().kind != MofToken::Kind::end && !beginsProduction(cursor.peek())) {
        const MofToken token = cursor.take();
        if (token.isSymbol(';') && closes) return;
        closes = token.isSymbol('}');
    }
}

}  // namespace

MofCompilation::MofCompilation(Repository& repository,
                               const std::vector<std::filesystem::path>& searchPaths,
                               const std::string& nameSpace, MofComplaints* complaints)
    : _repository(repository),
      _searchPaths(searchPaths),
      _nameSpace(&repository.make(nameSpace)),
      _complaints(complaints) {}

// False when the work was refused and the complaints know.
template <typename Work>
bool MofCompilation::_succeeds(Work&& work) try {
    work();
    return true;
} catch (const MofError& error) {
    if (!_complaints) throw;
    _complaints->add(error.what(), _className);
    return false;
}

void MofCompilation::compileFile(const std::filesystem::path& file) {
    _names.push_back(file.string());
    _succeeds([&] { _compileIncluded(file, {&_names.back(), 1, 1}); });
}

void MofCompilation::compileText(std::string_view text, const std::string& name) {
    _names.push_back(name);
    _succeeds([&] { _compile(text, _names.back(), {}); });
}

void MofCompilation::finish() {
    _succeeds([&] {
        _instances.resolve([this](const MofInstance& declared, Instance instance) {
            _repository.make(declared.nameSpace->name()).addInstance(std::move(instance));
        });
    });
}

void MofCompilation::_compileIncluded(const std::filesystem::path& file,
                                      const MofPosition& position) {
    const std::filesystem::path id = identity(file);
    if (std::ranges::find(_openFiles, id) != _openFiles.end()) {
        failAt(position, "the file '" + file.string() + "' includes itself");
    }
    if (_openFiles.size() > deepestInclude) {
        failAt(position, "files include each other deeper than " + std::to_string(deepestInclude));
    }
    if (++_fileCount > mostFiles) {
        failAt(position, "more than " + std::to_string(mostFiles) + " files are included");
    }
    const std::string text = readRegularFile(file, position, mostBytes - _byteCount + 1);
    _openFiles.push_back(id);
    _names.push_back(file.string());
    NameSpace* const before = _nameSpace;
    _compile(text, _names.back(), file.parent_path());
    _nameSpace = before;
    _openFiles.pop_back();
}

void MofCompilation::_compile(std::string_view text, const std::string& name,
                              const std::filesystem::path& folder) {
    _byteCount += text.size();
    if (_byteCount > mostBytes) {
        failAt({&name, 1, 1},
               "the texts have more than " + std::to_string(mostBytes >> 20U) + " MiB");
    }
    MofCursor cursor(text, name);
    while (cursor.peek().kind != MofToken::Kind::end) {
        _className.clear();
        const bool isPragma = cursor.peek().isSymbol('#');
        const std::size_t openFiles = _openFiles.size();
        NameSpace* const before = _nameSpace;
        if (_succeeds([&] { _production(cursor, folder); })) continue;
        _openFiles.resize(openFiles);
        _nameSpace = before;
        if (!isPragma) skipProduction(cursor);
    }
}

void MofCompilation::_production(MofCursor& cursor, const std::filesystem::path& folder) {
    if (cursor.acceptSymbol('#')) return _pragma(cursor, folder);
    if (cursor.acceptKeyword("qualifier")) {
        return _nameSpace->setQualifier(parseQualifierDeclaration(cursor, *_nameSpace));
    }
    _qualified(cursor);
}

void MofCompilation::_qualified(MofCursor& cursor) {
    const bool hasQualifiers = cursor.peek().isSymbol('[');
    MofQualifiers qualifiers = parseQualifiers(cursor, *_nameSpace);
    if (cursor.acceptKeyword("class")) {
        _className = cursor.peek().text;
        return parseClass(cursor, *_nameSpace, std::move(qualifiers));
    }
    if (cursor.acceptKeyword("instance")) return _instances.add(parseInstance(cursor, *_nameSpace));
    cursor.unexpected(hasQualifiers ? "'class' or 'instance' after the qualifiers"
                                    : "a class, an instance, a qualifier declaration or a pragma");
}

void MofCompilation::_pragma(MofCursor& cursor, const std::filesystem::path& folder) {
    cursor.expectKeyword("pragma", "after '#'");
    const MofToken pragma = cursor.expectName("the name of a pragma");
    const bool isInclude = pragma.isName("include");
    if (!isInclude && !pragma.isName("namespace")) return skipPragmaParameters(cursor);
    if (isInclude) {
        const MofPragmaParameter file = parseFilePragma(cursor);
        return _include(file.text, file.position, folder);
    }
    const MofPragmaParameter parameter = parsePragmaParameter(cursor);
    _nameSpace = atPosition(parameter.position, [&] { return &_repository.make(parameter.text); });
}

void MofCompilation::_include(const std::string& name, const MofPosition& position,
                              const std::filesystem::path& folder) {
    std::filesystem::path file = folder / name;
    for (const std::filesystem::path& searchPath : _searchPaths) {
        if (isThere(file)) break;
        if (isThere(searchPath / name)) file = searchPath / name;
    }
    if (!isThere(file)) failAt(position, "the included file '" + name + "' is not found");
    _compileIncluded(file, position);
}

}  // namespace cimhost
