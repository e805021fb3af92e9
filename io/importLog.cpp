#include "io/importLog.h"

#include "formats/modTextUTF.h"
#include "platform/clock.h"
#include "text/oleDate.h"

namespace vellums {

void appendLog(const std::u16string& logFile, const std::u16string& message)
{
    if (logFile.empty())
        return;
    const std::u16string line = text::isoDateTime(platform::localNow()) + u"\t" + message + u"\r\n";
    // A log that somebody has saved in another encoding goes on in that one.
    formats::Encoding encoding = formats::Encoding::Detect;
    formats::writeTextFile(logFile, line, encoding, {true, formats::Encoding::Ansi, false});
}

} // namespace vellums
