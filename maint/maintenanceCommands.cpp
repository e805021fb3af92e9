#include "maint/maintenanceCommands.h"

#include "app/bulkWork.h"
#include "maint/delDupRec.h"
#include "store/connectionString.h"
#include "store/databases/compaction.h"

namespace vellums {

MaintenanceCommands::MaintenanceCommands(
    Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records)
    : notebook_(notebook)
    , progress_(progress)
    , dialogs_(dialogs)
    , records_(records)
{
}

void MaintenanceCommands::removeDuplicates()
{
    if (!records_.leaveRecord())
        return;
    {
        BulkWork work(
            notebook_, progress_, dialogs_, notebook_.say(u"Removing duplicates", u"正在删除重复项"));
        delDupRec(notebook_, work.user());
    }
    records_.refresh();
}

void MaintenanceCommands::compactData()
{
    const std::u16string file = getConnPart(notebook_, notebook_.dbConn, ConnPart::FullPath);
    Compaction result;
    {
        const LongWork work(progress_, notebook_.say(u"Compacting", u"正在压缩"));
        result = compactDatabase(notebook_, file);
    }
    // The report waits for an answer, so it comes when the work is over and the boxes are open again.
    dialogs_.tell(result.report, result.done);
}

} // namespace vellums
