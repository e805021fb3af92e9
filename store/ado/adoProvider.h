// The installed provider of Access files: ADO for statements, ADOX for new files, DAO for compaction.
#pragma once

#include "store/connection.h"

#include <string>
#include <string_view>

namespace vellums {

// The thread that uses it holds a ComApartment, or has called OleInitialize, for longer than it lives.
class AdoProvider : public Provider {
public:
    // The id tells which engine makes new files: "103" Jet 4, "104" ACE.
    explicit AdoProvider(std::u16string providerId);

    // Whether the provider of that id and ADO can really be created in this process. What the registry
    // says proves neither that the files are there nor that they have the bitness of the process.
    static bool usable(std::u16string_view providerId);

    // Any connection string, also that of a server.
    std::unique_ptr<Connection> open(const std::u16string& connectionString) const override;
    void createDatabase(const std::u16string& path, const std::u16string& table) const override;
    void compact(const std::u16string& source, const std::u16string& destination) const override;

private:
    std::u16string providerId_;
};

} // namespace vellums
