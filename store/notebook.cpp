#include "store/notebook.h"

#include "store/connectionString.h"

namespace vellums {

std::unique_ptr<Connection> Notebook::connect(const std::u16string& connectionString) const
{
    std::unique_ptr<Connection> connection = provider->open(expandedConnection(*this, connectionString));
    if (const std::u16string journal = connection->takeJournalSetAside(); !journal.empty())
        status.noticed(say(u"A journal of another state of the database was set aside: ",
                           u"发现不属于此数据库当前状态的日志, 已另存为: ") +
            journal);
    return connection;
}

} // namespace vellums
