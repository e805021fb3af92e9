#include "store/databases/fileReason.h"

namespace vellums {

std::u16string fileReason(const Notebook& notebook, platform::FileFault fault)
{
    using platform::FileFault;
    switch (fault) {
    case FileFault::NotFound:
    case FileFault::FolderNotFound:
        return notebook.say(u"The file is not there.", u"文件不存在。");
    case FileFault::InUse:
        return notebook.say(u"Another program has the file open.", u"另一程序正在使用该文件。");
    case FileFault::DiskFull:
        return notebook.say(u"The disk is full.", u"磁盘已满。");
    default:
        return notebook.say(u"The file cannot be written.", u"无法写入该文件。");
    }
}

} // namespace vellums
