// The errors of statements, worded and numbered as the providers word and number them.
#pragma once

#include "jet/file/error.h"

#include <string>
#include <string_view>

namespace vellums::jet::sql {

// A statement that cannot be read; `native` is the engine's own number.
[[noreturn]] void throwSyntax(int native, std::u16string sentence);

// Errors about an expression quote it, shortened when it is long (a whole note may stand in it).
[[noreturn]] void throwExpressionSyntax(std::u16string_view expression);   // 3075
[[noreturn]] void throwMissingOperator(std::u16string_view expression);    // 3075
[[noreturn]] void throwMissingParenthesis(std::u16string_view expression); // 3075
[[noreturn]] void throwExtraParenthesis(std::u16string_view expression);   // 3075
[[noreturn]] void throwStringSyntax(std::u16string_view expression);       // 3075
[[noreturn]] void throwDateSyntax(std::u16string_view literal);            // 3075
[[noreturn]] void throwArgumentCount(std::u16string_view expression);      // 3075
[[noreturn]] void throwUndefinedFunction(std::u16string_view name);        // 3085

[[noreturn]] void throwTooComplex();                                     // 3360
[[noreturn]] void throwMissingParameter();                               // 3061
[[noreturn]] void throwNoInputTable(const std::u16string& name);         // 3078
[[noreturn]] void throwNoOutputTable(const std::u16string& name);        // 3192
[[noreturn]] void throwNoTableToDrop(const std::u16string& name);        // 3376
[[noreturn]] void throwUnknownInsertField(const std::u16string& name);   // 3127
[[noreturn]] void throwDuplicateDestination(const std::u16string& name); // 3063
[[noreturn]] void throwValueCount();                                     // 3346
[[noreturn]] void throwNotUpdateable(const std::u16string& column);      // 3164
[[noreturn]] void throwNotAggregated(std::u16string_view expression);    // 3122
[[noreturn]] void throwAggregateInWhere(std::u16string_view expression); // 3096
[[noreturn]] void throwOrderConflict(std::u16string_view expression);    // 3093
[[noreturn]] void throwInvalidCall();                                    // 5
[[noreturn]] void throwOverflow();                                       // 3349
[[noreturn]] void throwCanceled();                                       // 3059

} // namespace vellums::jet::sql
