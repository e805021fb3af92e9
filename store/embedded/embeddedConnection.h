// A connection served by the embedded engine.
#pragma once

#include "jet/database.h"
#include "store/connection.h"

namespace vellums {

class EmbeddedConnection : public Connection {
public:
    // The full path of the file, and its password if it has one. Throws ProviderError.
    explicit EmbeddedConnection(const std::u16string& path, const std::u16string& password = {});

    std::unique_ptr<Recordset> query(std::u16string_view sql) override;
    void stopWhen(const std::function<bool()>& wanted) override { database_->stopWhen(wanted); }
    std::int32_t execute(std::u16string_view sql) override;
    std::u16string takeJournalSetAside() override { return database_->takeJournalSetAside(); }
    std::vector<SchemaTable> tables() override;
    void beginBatch() override;
    void endBatch() override;

    // For what no statement says: creation and checks.
    jet::Database& database() { return *database_; }

private:
    std::unique_ptr<jet::Database> database_;
};

// Runs the work and turns the engine's errors into ProviderError.
template <typename Work>
auto asProvider(Work&& work)
{
    try {
        return work();
    } catch (const jet::Error& e) {
        throw ProviderError(e.description, e.number);
    }
}

} // namespace vellums
