// A connection served by ADO.
#pragma once

#include "platform/win32/comObject.h"
#include "store/connection.h"

#include <memory>
#include <string>
#include <vector>

namespace vellums {

// Open from its construction to its destruction; its recordsets must be gone before. Statements are
// lasting one by one.
class AdoConnection : public Connection {
public:
    // Throws ProviderError; nothing is left open then.
    explicit AdoConnection(const std::u16string& connectionString);
    AdoConnection(const AdoConnection&) = delete;
    AdoConnection& operator=(const AdoConnection&) = delete;
    ~AdoConnection() override;

    std::unique_ptr<Recordset> query(std::u16string_view sql) override;
    // -1 where the provider does not tell the number of rows.
    std::int32_t execute(std::u16string_view sql) override;
    std::vector<SchemaTable> tables() override;

private:
    platform::ComObject connection_;

    platform::ComObject command(std::u16string_view sql) const;
};

} // namespace vellums
