#include "store/ado/adoProvider.h"

#include "platform/win32/comObject.h"
#include "store/ado/adoConnection.h"
#include "store/ado/adoxCreation.h"
#include "store/ado/daoCompaction.h"
#include "store/ado/sourceValue.h"

#include <utility>

namespace vellums {

AdoProvider::AdoProvider(std::u16string providerId)
    : providerId_(std::move(providerId))
{
}

bool AdoProvider::usable(std::u16string_view providerId)
{
    return platform::canCreate(
               providerId == u"103" ? u"Microsoft.Jet.OLEDB.4.0" : u"Microsoft.ACE.OLEDB.12.0") &&
        platform::canCreate(u"ADODB.Connection");
}

std::unique_ptr<Connection> AdoProvider::open(const std::u16string& connectionString) const
{
    return std::make_unique<AdoConnection>(withQuotedSource(connectionString));
}

void AdoProvider::createDatabase(const std::u16string& path, const std::u16string& table) const
{
    createWithAdox(providerId_, path, table);
}

void AdoProvider::compact(const std::u16string& source, const std::u16string& destination) const
{
    compactWithDao(source, destination);
}

} // namespace vellums
