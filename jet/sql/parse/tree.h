// Statements and expressions as the parser gives them and execution completes them.
#pragma once

#include "jet/catalogue/catalogue.h"
#include "jet/sql/values/functions.h"
#include "jet/sql/values/likePattern.h"
#include "jet/sql/values/operators.h"
#include "jet/table/value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vellums::jet::sql {

// The operands of each kind stand in Expression::operands, from left to right.
enum class ExpressionKind {
    Literal,
    Name,       // a column; bare names may also be constants or functions without parentheses
    Negate,     // -a
    Plus,       // +a
    Arithmetic, // a op b
    Concat,     // a & b & ...
    Compare,    // a op b
    Like,       // a LIKE b; a NOT LIKE b when negated, and so for the next three
    In,         // a IN (b, ...)
    Between,    // a BETWEEN b AND c
    IsNull,     // a IS NULL
    Not,
    And, // a AND b AND ...
    Or,
    Xor,
    Eqv,
    Imp,
    Call,
    Aggregate, // no operand: COUNT(*)
};

struct Expression {
    ExpressionKind kind = ExpressionKind::Literal;
    Operator op = Operator::None;
    Function function = Function::None;
    bool negated = false;
    bool bare = false; // a name without brackets
    Value literal;
    std::u16string qualifier;
    std::u16string name;
    std::vector<Expression> operands;
    int depth = 1;
    std::u16string source; // as written; of names, calls and aggregates only

    // Filled in by bind().
    std::optional<std::size_t> column;          // names: index of the table's column
    std::optional<std::size_t> aggregate;       // aggregates: index of the value
    std::shared_ptr<const LikePattern> pattern; // LIKE with a constant pattern
};

struct TableReference {
    std::u16string name;
    std::u16string alias; // empty: none
};

struct SelectItem {
    bool all = false; // * or t.*
    std::u16string qualifier;
    Expression expression;
    std::u16string alias; // empty: none
};

struct OrderItem {
    Expression expression;
    bool descending = false;
    std::u16string source;
};

struct SelectStatement {
    bool distinct = false;
    std::optional<std::uint64_t> top;
    std::vector<SelectItem> items;
    std::optional<std::u16string> into;
    std::optional<TableReference> from;
    std::optional<Expression> where;
    std::vector<OrderItem> order;
};

// SELECT @@IDENTITY
struct IdentityStatement { };

struct InsertStatement {
    std::u16string table;
    std::vector<std::u16string> columns; // empty: no list
    std::vector<Expression> values;      // VALUES
    std::optional<SelectStatement> select;
};

struct UpdateStatement {
    struct Change {
        std::u16string qualifier;
        std::u16string column;
        Expression value;
    };
    TableReference table;
    std::vector<Change> changes;
    std::optional<Expression> where;
};

struct DeleteStatement {
    TableReference table;
    std::optional<Expression> where;
};

struct CreateTableStatement {
    TableSpec table;
};

struct AddColumnStatement {
    std::u16string table;
    ColumnSpec column;
};

struct DropColumnStatement {
    std::u16string table;
    std::u16string column;
};

struct DropTableStatement {
    std::u16string table;
};

struct CreateIndexStatement {
    std::u16string table;
    IndexSpec index;
};

struct DropIndexStatement {
    std::u16string table;
    std::u16string index;
};

using Statement = std::variant<SelectStatement, IdentityStatement, InsertStatement, UpdateStatement,
    DeleteStatement, CreateTableStatement, AddColumnStatement, DropColumnStatement, DropTableStatement,
    CreateIndexStatement, DropIndexStatement>;

// True when the statement changes the file.
bool writes(const Statement& statement);
// True when the statement needs no file at all.
bool needsNoFile(const Statement& statement);

} // namespace vellums::jet::sql
