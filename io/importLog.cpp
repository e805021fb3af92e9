#include "io/importLog.h"

#include "io/modTextUTF.h"
#include "platform/clock.h"
#include "text/oleDate.h"

namespace vellums::io {

void appendLog(const std::u16string& logFile, const std::u16string& message)
{
    if (logFile.empty())
        return;
    const std::u16string line = text::isoDateTime(platform::localNow()) + u"\t" + message + u"\r\n";
    Encoding encoding = Encoding::Detect;
    writeTextFile(logFile, line, encoding, {true, Encoding::Ansi, false});
}

} // namespace vellums::io
