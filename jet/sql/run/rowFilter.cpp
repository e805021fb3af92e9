// A pass over a table takes one of three ways. A condition without columns is computed once. One that asks
// for a number in an indexed Long column, alone or as a term of AND, is looked up, and the whole condition
// then checked on the rows found. Everything else reads all rows; in a large file several threads share the
// pages, without a lock between them: nothing is changed while a statement reads, and each has an evaluator,
// and what it collects, for itself.
//
// Rows come in the order of the table on all three ways. Where threads fail, the fault that is told is that
// of the first part in the order of the table, so a statement fails the same way every time.
#include "jet/sql/run/rowFilter.h"

#include "jet/sql/values/conversion.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>

namespace vellums::jet::sql {

namespace {

// A thread is worth its start from so many pages of the file on, long values included.
constexpr PageNo kPagesForThread = 2000;
constexpr std::size_t kMostThreads = 8;

// A comparison of a Long column with a number, as the index of the column can answer it.
struct Lookup {
    std::size_t column;
    std::int32_t number;
};

std::optional<Lookup> asLookup(const Expression& node, const Scope& scope)
{
    if (node.kind != ExpressionKind::Compare || node.op != Operator::Equal)
        return std::nullopt;
    const bool columnFirst = node.operands[0].column.has_value();
    const Expression& column = node.operands[columnFirst ? 0 : 1];
    const Expression& constant = node.operands[columnFirst ? 1 : 0];
    if (!column.column || !isConstant(constant) || kindOf(constant.literal) != ValueKind::Number ||
        scope.table->definition().columns[*column.column].type != ColumnType::Long)
        return std::nullopt;
    const double number = numberOf(constant.literal);
    // 1.5 has no key in the index; the scan that follows finds nothing either.
    const std::optional<std::int32_t> whole = roundedLong(number);
    if (!whole || *whole != number)
        return std::nullopt;
    return Lookup{*column.column, *whole};
}

} // namespace

RowFilter::RowFilter(const Scope& scope, const Expression* where)
    : scope_(scope)
    , where_(where)
    , evaluator_(scope)
{
}

bool RowFilter::constantResult() const
{
    return !where_ || evaluator_.truth(*where_, nullptr) == Truth::True;
}

// Through the first condition of an AND that an index answers.
std::optional<std::vector<RowRef>> RowFilter::lookUp() const
{
    const auto tryOne = [&](const Expression& node) -> std::optional<std::vector<RowRef>> {
        const std::optional<Lookup> lookup = asLookup(node, scope_);
        return lookup ? scope_.table->findLong(lookup->column, lookup->number) : std::nullopt;
    };
    std::optional<std::vector<RowRef>> found;
    if (isConstantCondition())
        return found;
    if (where_->kind == ExpressionKind::And) {
        for (const Expression& operand : where_->operands)
            if (!found)
                found = tryOne(operand);
    } else {
        found = tryOne(*where_);
    }
    if (found)
        std::sort(found->begin(), found->end());
    return found;
}

std::size_t RowFilter::partCount() const
{
    const std::size_t machine = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t parts =
        std::min({std::size_t{scope_.filePages} / kPagesForThread, machine, kMostThreads});
    return parts < 2 || isConstantCondition() || lookUp() ? 1 : parts;
}

void RowFilter::runParts(std::size_t parts, const std::function<void(std::size_t)>& work)
{
    std::vector<std::exception_ptr> faults(parts);
    const auto guarded = [&](std::size_t part) {
        try {
            work(part);
        } catch (...) {
            faults[part] = std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t part = 1; part < parts; ++part) {
        try {
            threads.emplace_back(guarded, part);
        } catch (const std::system_error&) { // no more threads: this one does it
            guarded(part);
        }
    }
    guarded(0);
    for (std::thread& thread : threads)
        thread.join();
    for (const std::exception_ptr& fault : faults)
        if (fault)
            std::rethrow_exception(fault);
}

std::vector<RowRef> RowFilter::homes(std::uint64_t most) const
{
    std::vector<RowRef> rows;
    if (most == 0)
        return rows;
    if (most < kAllRows) { // in one thread, since it ends early
        forEach([&](const Row& row) {
            rows.push_back(row.home());
            return rows.size() < most;
        });
        return rows;
    }
    std::vector<std::vector<RowRef>> parts;
    forEachInParts(
        parts, {}, [](const Row& row, std::vector<RowRef>& found) { found.push_back(row.home()); });
    for (const std::vector<RowRef>& part : parts)
        rows.insert(rows.end(), part.begin(), part.end());
    return rows;
}

} // namespace vellums::jet::sql
