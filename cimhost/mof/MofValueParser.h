#pragma once

#include "cimhost/mof/MofCursor.h"
#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Schema.h"
#include "cimhost/repository/Value.h"

#include <functional>
#include <string>
#include <vector>

namespace cimhost {

/// A literal as written, or an alias.
struct MofElement {
    Value literal;      ///< in the type of its form; NULL has type none
    std::string alias;  ///< with its '$'; empty for a literal
    MofPosition position;
};

/// What stands behind '=' or in a qualifier: one element, or those between braces.
struct MofInitializer {
    bool isArray = false;
    std::vector<MofElement> elements;
    MofPosition position;
};

/// Strings next to each other are one. Throws MofError.
MofElement parseElement(MofCursor& cursor);

/// `{...}` with its elements; the cursor is at the brace.
MofInitializer parseArray(MofCursor& cursor, MemoryBudget& budget);

MofInitializer parseInitializer(MofCursor& cursor, MemoryBudget& budget);

/// The string literal that must be here, joined with those that follow it.
std::string parseString(MofCursor& cursor, const char* what);

struct MofPragmaParameter {
    std::string text;
    MofPosition position;
};

/// `("text")` behind the name of a pragma.
MofPragmaParameter parsePragmaParameter(MofCursor& cursor);

/// The same where the text is the name of a file: nothing in it is an escape, and backslashes part
/// folders, as in schemas that were packed on other systems.
MofPragmaParameter parseFilePragma(MofCursor& cursor);

/// What an element stands for, in the given type. Throws MofError at the element.
using ElementConverter = std::function<Value(const MofElement&, CimType)>;

/// For literals; an alias is an error, since only an instance may use one.
Value convertLiteral(const MofElement& element, CimType type);

/// The whole initializer as the declared type. Throws MofError at the element that does not fit.
Value convertInitializer(const MofInitializer& initializer, const DeclaredType& type,
                         const ElementConverter& convert = convertLiteral);

/// `[]`, `[5]` or nothing behind a name.
void parseArrayMark(MofCursor& cursor, DeclaredType& type);

}  // namespace cimhost
