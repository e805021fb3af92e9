#include "io/importLog.h"

#include "io/modTextUTF.h"
#include "platform/clock.h"
#include "platform/text.h"

namespace vellums::io {

void appendLog(const std::u16string& logFile, const std::u16string& message)
{
    using platform::decimal;
    if (logFile.empty())
        return;
    const platform::LocalTime now = platform::localNow();
    const std::u16string date =
        decimal(now.year, 4) + u"-" + decimal(now.month, 2) + u"-" + decimal(now.day, 2);
    const std::u16string time =
        decimal(now.hour, 2) + u":" + decimal(now.minute, 2) + u":" + decimal(now.second, 2);
    Encoding encoding = Encoding::Detect;
    writeTextFile(
        logFile, date + u" " + time + u"\t" + message + u"\r\n", encoding, {true, Encoding::Ansi, false});
}

} // namespace vellums::io
