#include "maint/maintenanceCommands.h"

#include "app/bulkWork.h"
#include "maint/delDupRec.h"
#include "store/connectionString.h"
#include "store/databases/compaction.h"

namespace vellums {

MaintenanceCommands::MaintenanceCommands(Notebook& notebook, WindowPorts window, RecordCommands& records)
    : notebook_(notebook)
    , window_(window)
    , records_(records)
{
}

void MaintenanceCommands::removeDuplicates()
{
    if (!records_.leaveRecord())
        return;
    {
        BulkWork work(notebook_, window_.progress, &window_.dialogs,
            notebook_.say(u"Removing duplicates", u"正在删除重复项"));
        delDupRec(notebook_, work.user());
    }
    records_.refresh();
}

void MaintenanceCommands::compactData()
{
    const std::u16string file = getConnPart(notebook_, notebook_.dbConn, ConnPart::FullPath);
    Compaction result;
    {
        const LongWork work(window_.progress, notebook_.say(u"Compacting", u"正在压缩"));
        result = compactDatabase(notebook_, file);
    }
    // The report waits for an answer, so it comes when the work is over and the boxes are open again.
    window_.dialogs.tell(result.report, result.done);
}

} // namespace vellums
