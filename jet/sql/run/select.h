// Runs SELECT.
//
// First the places of the rows are fixed, in their order; then each row is computed. So only the rows
// of the answer are decoded, and rows that are inserted meanwhile do not show.
#pragma once

#include "jet/sql/run/rowFilter.h"

#include <deque>
#include <functional>
#include <memory>

namespace vellums::jet::sql {

class Select {
public:
    struct Output {
        const Expression* expression = nullptr;
        std::u16string name;
        ColumnType type = ColumnType::Long;
    };

    // Opens the table and binds the statement, which must outlive the object; so must the interruption, where
    // there is one. Throws Error.
    Select(PageFile& file, SelectStatement& statement, Date now, Interruption* interruption = nullptr);
    Select(const Select&) = delete;
    Select& operator=(const Select&) = delete;

    const std::vector<Output>& outputs() const { return outputs_; }
    // The table that is read; null: none.
    const Table* table() const { return table_ ? &*table_ : nullptr; }

    // Calls back for each row of the answer, in its order.
    void run(const std::function<void(std::vector<Value>)>& callback);

private:
    // A key of ORDER BY.
    struct Key {
        const Expression* expression;
        bool descending;
    };

    void openTable(PageFile& file);
    void bindItems();
    void addColumns(const SelectItem& item);
    void addExpression(SelectItem& item);
    void bindOrder();
    const Expression& orderExpression(OrderItem& item);
    void checkAggregates() const;
    void checkDistinctOrder(const OrderItem& item, const Expression& expression) const;
    std::vector<RowRef> sortedHomes() const;
    std::vector<RowRef> distinctHomes() const;
    std::string sortKey(const Row& row) const;
    std::vector<RowRef> homes() const;
    void appendKeyPart(std::string& key, const Expression& expression, const Row& row, bool descending) const;
    void runAggregated(const std::function<void(std::vector<Value>)>& callback) const;
    std::vector<Value> computed(const Row* row, const std::vector<Value>* aggregates) const;

    SelectStatement& statement_;
    std::optional<Table> table_;
    Scope scope_;
    std::deque<Expression> ownExpressions_; // the columns that * stands for
    std::vector<Output> outputs_;
    std::vector<Key> keys_;
    std::vector<const Expression*> aggregates_;
    int unnamed_ = 0; // expressions without a name so far
};

} // namespace vellums::jet::sql
