#include "cli/session.h"

#include "app/start/startUp.h"
#include "cli/output.h"
#include "platform/files.h"
#include "platform/programPath.h"
#include "store/databases/schema.h"
#include "text/path.h"

namespace vellums::cli {
namespace {

std::unique_ptr<EmbeddedConnection> openFile(const std::u16string& file, const std::u16string& password)
{
    auto connection = std::make_unique<EmbeddedConnection>(file, password);
    if (const std::u16string journal = connection->takeJournalSetAside(); !journal.empty())
        complain(u"vellums-cli: a journal of another state of the database was set aside: " + journal);
    return connection;
}

} // namespace

Session::Session(const std::u16string& file, const std::u16string& password)
    : file_(platform::absolutePath(file))
    , password_(password)
    , provider_(file_, password_)
    , notebook_(outcome_)
{
    useProgramFolder(notebook_, platform::programFolder(), platform::programName());
    notebook_.provider = &provider_;
    notebook_.dbParent = text::folderOf(file_);
    // Connections go by the file that the provider knows. Only the safety copy takes the path out of this
    // string.
    notebook_.dbConn = u"Data Source=" + file_;
}

std::unique_ptr<EmbeddedConnection> Session::open() const
{
    return openFile(file_, password_);
}

void Session::chooseTable(const std::optional<std::u16string>& table)
{
    const std::unique_ptr<EmbeddedConnection> connection = open(); // also to see that the file can be read
    notebook_.dbTable = table ? *table : firstSnippetTable(*connection);
    if (notebook_.dbTable.empty())
        throw Failure{u"There is no snippet table in " + file_ + u"."};
}

void Session::fail() const
{
    throw Failure{outcome_.hasFailed() ? outcome_.line(false) : u"The operation failed."};
}

std::unique_ptr<Connection> Session::OneFile::open(const std::u16string&) const
{
    return openFile(file_, password_);
}

} // namespace vellums::cli
