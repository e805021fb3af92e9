// ADO's objects, answered by the embedded engine.
#pragma once

#include "jet/database.h"
#include "tests/ado/double.h"

#include <memory>
#include <set>
#include <string>

namespace vellums::tests::ado {

class RecordsetDouble;

// The value of a keyword in a connection string, quotes taken off; empty when it is missing.
std::u16string keyword(std::u16string_view connectionString, std::u16string_view name);

class ConnectionDouble : public Double {
public:
    ConnectionDouble();
    ~ConnectionDouble() override;

    void open(const std::u16string& connectionString);
    void close(); // its recordsets, too
    bool isOpen() const { return open_; }
    jet::Database& database() { return *database_; } // of an open one

private:
    friend class RecordsetDouble;
    std::u16string connectionString_;
    std::u16string place_; // file or server, lower case
    bool open_ = false;
    std::unique_ptr<jet::Database> database_;
    std::set<RecordsetDouble*> recordsets_; // the open ones

    void openSchema(const Call& call);
};

class CommandDouble : public Double {
public:
    CommandDouble();

private:
    Ref<ConnectionDouble> connection_;
    std::u16string text_;

    void execute(const Call& call);
};

class RecordsetDouble : public Double {
public:
    // Closed when there are no rows to give.
    RecordsetDouble(jet::Result result, Ref<ConnectionDouble> connection);
    ~RecordsetDouble() override;

    void close();
    const jet::Result& rows() const { return result_; }

private:
    jet::Result result_;
    Ref<ConnectionDouble> connection_;
    bool open_;
    std::size_t row_ = 0;

    void requireOpen() const;
    void getRows(const Call& call);
};

} // namespace vellums::tests::ado
