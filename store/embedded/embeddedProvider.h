// The embedded engine as a provider. It takes the file from the connection string, whatever provider
// the string names.
#pragma once

#include "store/connection.h"

namespace vellums {

class EmbeddedProvider : public Provider {
public:
    std::unique_ptr<Connection> open(const std::u16string& connectionString) const override;
    // .accdb files get the ACE format, all others that of Jet 4.
    void createDatabase(const std::u16string& path, const std::u16string& table) const override;
    void compact(const std::u16string& source, const std::u16string& destination) const override;
    bool compactInPlace(const std::u16string& file, const std::u16string& password) const override;
};

} // namespace vellums
