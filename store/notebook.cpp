#include "store/notebook.h"

#include "store/connectionString.h"

namespace vellums {

std::unique_ptr<Connection> Notebook::connect(const std::u16string& connectionString) const
{
    return provider->open(expandedConnection(*this, connectionString));
}

} // namespace vellums
