// CREATE TABLE, CREATE INDEX, ALTER TABLE with ADD and DROP COLUMN, and DROP. A type is a word from a table,
// perhaps with a length; the table says what its numbers mean. Constraints become indexes: PRIMARY KEY and
// UNIQUE, behind a column or as an entry of their own; one without a name is given one that is free. Foreign
// keys, checks and defaults are refused, not passed over.
#include "jet/sql/parse/schemaParser.h"

#include "jet/sql/values/asciiUnits.h"
#include "jet/sql/values/sqlError.h"

#include <algorithm>

namespace vellums::jet::sql {

namespace {

constexpr std::uint64_t kLongestText = 255;
constexpr std::uint64_t kLongestBinary = 510;

// What the numbers in parentheses mean. TextOrMemo: a text with a length, a memo without.
enum class Length { None, Text, FixedText, TextOrMemo, Binary, Decimal, Counter };

struct TypeWord {
    std::u16string_view word;
    ColumnType type;
    Length length = Length::None;
};

// clang-format off
constexpr TypeWord kTypes[] = {
    {u"COUNTER", ColumnType::Long, Length::Counter},
    {u"AUTOINCREMENT", ColumnType::Long, Length::Counter},
    {u"IDENTITY", ColumnType::Long, Length::Counter},
    {u"INTEGER", ColumnType::Long},      {u"LONG", ColumnType::Long},         {u"INT", ColumnType::Long},
    {u"INTEGER4", ColumnType::Long},     {u"SMALLINT", ColumnType::Integer},  {u"SHORT", ColumnType::Integer},
    {u"INTEGER2", ColumnType::Integer},  {u"BYTE", ColumnType::Byte},         {u"TINYINT", ColumnType::Byte},
    {u"INTEGER1", ColumnType::Byte},     {u"SINGLE", ColumnType::Single},     {u"REAL", ColumnType::Single},
    {u"FLOAT4", ColumnType::Single},     {u"IEEESINGLE", ColumnType::Single}, {u"DOUBLE", ColumnType::Double},
    {u"FLOAT", ColumnType::Double},      {u"FLOAT8", ColumnType::Double},     {u"IEEEDOUBLE", ColumnType::Double},
    {u"NUMBER", ColumnType::Double},     {u"CURRENCY", ColumnType::Currency}, {u"MONEY", ColumnType::Currency},
    {u"DECIMAL", ColumnType::Decimal, Length::Decimal},
    {u"NUMERIC", ColumnType::Decimal, Length::Decimal},
    {u"DATETIME", ColumnType::Date},     {u"DATE", ColumnType::Date},         {u"TIME", ColumnType::Date},
    {u"TIMESTAMP", ColumnType::Date},    {u"BIT", ColumnType::Boolean},       {u"YESNO", ColumnType::Boolean},
    {u"LOGICAL", ColumnType::Boolean},   {u"BOOLEAN", ColumnType::Boolean},
    {u"VARCHAR", ColumnType::Text, Length::Text},
    {u"STRING", ColumnType::Text, Length::Text},
    {u"ALPHANUMERIC", ColumnType::Text, Length::Text},
    {u"NVARCHAR", ColumnType::Text, Length::Text},
    {u"TEXT", ColumnType::Text, Length::TextOrMemo},
    {u"CHAR", ColumnType::Text, Length::FixedText},
    {u"CHARACTER", ColumnType::Text, Length::FixedText},
    {u"NCHAR", ColumnType::Text, Length::FixedText},
    {u"MEMO", ColumnType::Memo},         {u"LONGTEXT", ColumnType::Memo},     {u"LONGCHAR", ColumnType::Memo},
    {u"NOTE", ColumnType::Memo},         {u"NTEXT", ColumnType::Memo},
    {u"GUID", ColumnType::Guid},         {u"UNIQUEIDENTIFIER", ColumnType::Guid},
    {u"BINARY", ColumnType::Binary, Length::Binary},
    {u"VARBINARY", ColumnType::Binary, Length::Binary},
    {u"LONGBINARY", ColumnType::Ole},    {u"IMAGE", ColumnType::Ole},         {u"GENERAL", ColumnType::Ole},
    {u"OLEOBJECT", ColumnType::Ole},
};
// clang-format on

std::u16string freeIndexName(const TableSpec& table, const std::u16string& wish)
{
    std::u16string name = wish;
    for (int number = 1;; ++number) {
        const bool taken = std::any_of(table.indexes.begin(), table.indexes.end(),
            [&](const IndexSpec& index) { return capitals(index.name) == capitals(name); });
        if (!taken)
            return name;
        const std::string digits = std::to_string(number);
        name = wish + std::u16string(digits.begin(), digits.end());
    }
}

class SchemaParser {
public:
    explicit SchemaParser(TokenCursor& cursor)
        : cursor_(cursor)
    {
    }

    Statement parse()
    {
        if (cursor_.skipWord(u"CREATE")) {
            const bool unique = cursor_.atWord(u"UNIQUE");
            if (unique || cursor_.atWord(u"INDEX"))
                return createIndex();
            cursor_.inStatement(3290, u"Syntax error in CREATE TABLE statement.");
            cursor_.expectWord(u"TABLE");
            return createTable();
        }
        if (cursor_.skipWord(u"ALTER"))
            return alterTable();
        cursor_.advance(); // DROP
        return drop();
    }

private:
    void inFieldDefinition() { cursor_.inStatement(3292, u"Syntax error in field definition."); }

    Statement createTable()
    {
        CreateTableStatement statement;
        TableSpec& table = statement.table;
        table.name = cursor_.expectName();
        cursor_.expectSymbol(u"(");
        do {
            if (cursor_.atWord(u"CONSTRAINT") || (cursor_.atWord(u"PRIMARY") && cursor_.atWord(u"KEY", 1)) ||
                (cursor_.atWord(u"UNIQUE") && cursor_.atSymbol(u"(", 1)))
                tableConstraint(table);
            else
                columnDefinition(table);
        } while (cursor_.skipSymbol(u","));
        cursor_.expectSymbol(u")");
        cursor_.expectEnd();
        return statement;
    }

    void columnDefinition(TableSpec& table)
    {
        inFieldDefinition();
        ColumnSpec column;
        column.name = cursor_.expectName();
        readType(column);
        table.columns.push_back(column);
        for (;;) {
            if (cursor_.skipWord(u"NOT")) {
                cursor_.expectWord(u"NULL");
                table.columns.back().required = true;
            } else if (cursor_.skipWord(u"NULL")) {
                continue;
            } else if (cursor_.atAnyWord({u"PRIMARY", u"UNIQUE", u"CONSTRAINT"})) {
                addConstraint(table, [&](IndexSpec& index) { index.columns.push_back({column.name, true}); });
            } else {
                refuseUnsupported();
                break;
            }
        }
        cursor_.inStatement(3290, u"Syntax error in CREATE TABLE statement.");
    }

    void tableConstraint(TableSpec& table)
    {
        addConstraint(table, [&](IndexSpec& index) { readIndexColumns(index); });
    }

    // The columns are the one just defined, or a list in parentheses.
    template <typename ReadColumns>
    void addConstraint(TableSpec& table, ReadColumns readColumns)
    {
        IndexSpec index;
        if (cursor_.skipWord(u"CONSTRAINT"))
            index.name = cursor_.expectName();
        refuseUnsupported();
        index.unique = true;
        index.primary = cursor_.skipWord(u"PRIMARY");
        if (index.primary)
            cursor_.expectWord(u"KEY");
        else
            cursor_.expectWord(u"UNIQUE");
        index.required = index.primary;
        readColumns(index);
        if (index.name.empty())
            index.name = freeIndexName(table,
                index.primary ? u"PrimaryKey" : u"Index_" + index.columns.front().column.substr(0, 50));
        if (index.primary &&
            std::any_of(table.indexes.begin(), table.indexes.end(),
                [](const IndexSpec& other) { return other.primary; }))
            throwSyntax(3283, u"Primary key already exists.");
        table.indexes.push_back(std::move(index));
    }

    void refuseUnsupported()
    {
        if (cursor_.atAnyWord({u"REFERENCES", u"FOREIGN", u"CHECK", u"DEFAULT"}))
            throwUnsupported(cursor_.token().keyword + u" is not supported in a table definition.");
    }

    void readIndexColumns(IndexSpec& index)
    {
        cursor_.expectSymbol(u"(");
        do {
            IndexSpec::Part part;
            part.column = cursor_.expectName();
            if (cursor_.skipWord(u"DESC"))
                part.ascending = false;
            else
                cursor_.skipWord(u"ASC");
            index.columns.push_back(std::move(part));
        } while (cursor_.skipSymbol(u","));
        cursor_.expectSymbol(u")");
    }

    void readType(ColumnSpec& column)
    {
        const auto* type = std::find_if(std::begin(kTypes), std::end(kTypes),
            [&](const TypeWord& known) { return cursor_.atWord(known.word); });
        if (type == std::end(kTypes))
            cursor_.fail();
        cursor_.advance();
        Length length = type->length;
        if (length == Length::FixedText && cursor_.skipWord(u"VARYING"))
            length = Length::Text;
        column.type = type->type;
        const bool hasLength = length != Length::None && cursor_.skipSymbol(u"(");
        if (hasLength)
            readLength(column, length);
        else if (length == Length::TextOrMemo)
            column.type = ColumnType::Memo;
        else if (length == Length::Text || length == Length::FixedText)
            column.length = static_cast<std::uint16_t>(kLongestText);
        else if (length == Length::Binary)
            column.length = static_cast<std::uint16_t>(kLongestBinary);
        column.autoNumber = length == Length::Counter;
        column.fixedText = length == Length::FixedText;
        // Changes nothing: texts of variable length are compressed anyway.
        if (cursor_.atWord(u"WITH") && (cursor_.atWord(u"COMPRESSION", 1) || cursor_.atWord(u"COMP", 1))) {
            cursor_.advance();
            cursor_.advance();
        }
    }

    // Behind the opening parenthesis: (start, step) of counters, (digits, decimals) of decimals, else a
    // length.
    void readLength(ColumnSpec& column, Length length)
    {
        const std::uint64_t first = cursor_.expectWholeNumber();
        if (length == Length::Counter || length == Length::Decimal) {
            const std::uint64_t second = cursor_.skipSymbol(u",") ? cursor_.expectWholeNumber()
                : length == Length::Counter                       ? 1
                                                                  : 0;
            if (length == Length::Counter && (first != 1 || second != 1))
                throwUnsupported(u"A counter that does not begin with 1 and grow by 1 is not supported.");
            if (length == Length::Decimal) {
                if (first < 1 || first > 28 || second > first)
                    cursor_.fail();
                column.precision = static_cast<std::uint8_t>(first);
                column.scale = static_cast<std::uint8_t>(second);
            }
        } else {
            if (first < 1)
                cursor_.fail();
            if (first > (length == Length::Binary ? kLongestBinary : kLongestText))
                throwSyntax(3319, u"Size of field '" + column.name + u"' is too long.");
            column.length = static_cast<std::uint16_t>(first);
        }
        cursor_.expectSymbol(u")");
    }

    Statement createIndex()
    {
        cursor_.inStatement(3291, u"Syntax error in CREATE INDEX statement.");
        CreateIndexStatement statement;
        statement.index.unique = cursor_.skipWord(u"UNIQUE");
        cursor_.expectWord(u"INDEX");
        statement.index.name = cursor_.expectName();
        cursor_.expectWord(u"ON");
        statement.table = cursor_.expectName();
        readIndexColumns(statement.index);
        if (cursor_.skipWord(u"WITH")) {
            if (cursor_.skipWord(u"PRIMARY")) {
                statement.index.primary = statement.index.unique = statement.index.required = true;
            } else if (cursor_.skipWord(u"DISALLOW")) {
                cursor_.expectWord(u"NULL");
                statement.index.required = true;
            } else {
                cursor_.expectWord(u"IGNORE");
                cursor_.expectWord(u"NULL");
                statement.index.ignoreNulls = true;
            }
        }
        cursor_.expectEnd();
        return statement;
    }

    Statement alterTable()
    {
        cursor_.inStatement(3293, u"Syntax error in ALTER TABLE statement.");
        cursor_.expectWord(u"TABLE");
        std::u16string table = cursor_.expectName();
        const bool drops = cursor_.skipWord(u"DROP");
        if (cursor_.atWord(u"ALTER") || (!drops && cursor_.atWord(u"CONSTRAINT", 1)) ||
            (drops && cursor_.atWord(u"CONSTRAINT")))
            throwUnsupported(u"ALTER TABLE can only add and drop a column.");
        if (!drops)
            cursor_.expectWord(u"ADD");
        cursor_.skipWord(u"COLUMN");
        if (!drops)
            return addColumn(std::move(table));
        DropColumnStatement statement{std::move(table), cursor_.expectName()};
        cursor_.expectEnd();
        return statement;
    }

    Statement addColumn(std::u16string table)
    {
        AddColumnStatement statement;
        statement.table = std::move(table);
        inFieldDefinition();
        statement.column.name = cursor_.expectName();
        readType(statement.column);
        cursor_.inStatement(3293, u"Syntax error in ALTER TABLE statement.");
        if (statement.column.autoNumber || cursor_.atAnyWord({u"NOT", u"PRIMARY", u"UNIQUE", u"CONSTRAINT"}))
            throwUnsupported(u"A column that is added must be a plain one that may be empty.");
        cursor_.skipWord(u"NULL");
        refuseUnsupported();
        cursor_.expectEnd();
        return statement;
    }

    Statement drop()
    {
        cursor_.inStatement(3295, u"Syntax error in DROP TABLE or DROP INDEX.");
        if (cursor_.skipWord(u"TABLE")) {
            DropTableStatement statement;
            statement.table = cursor_.expectName();
            cursor_.expectEnd();
            return statement;
        }
        cursor_.expectWord(u"INDEX");
        DropIndexStatement statement;
        statement.index = cursor_.expectName();
        cursor_.expectWord(u"ON");
        statement.table = cursor_.expectName();
        cursor_.expectEnd();
        return statement;
    }

    TokenCursor& cursor_;
};

} // namespace

Statement parseSchemaStatement(TokenCursor& cursor)
{
    return SchemaParser(cursor).parse();
}

} // namespace vellums::jet::sql
