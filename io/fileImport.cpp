#include "io/fileImport.h"

#include "io/clsFolderScan.h"
#include "io/importLog.h"
#include "io/modTextUTF.h"
#include "io/textCleanup.h"
#include "maint/charCleaner.h"
#include "maint/delDupRec.h"
#include "platform/files.h"
#include "platform/sharedFile.h"
#include "platform/text.h"
#include "store/batches.h"

#include <cstdio>
#include <optional>
#include <utility>

namespace vellums::io {
namespace {

using platform::SharedFile;

constexpr std::u16string_view kTextTypes = u",txt,csv,ini,inf,cmd,bat,vbs,js,au3,asp,aspx,vbp,frm,nfo,vb,css,"
                                           u"htm,html,jsp,php,h,c,cs,nsi,cfg,bas,log,reg,mhtml,xml,";
constexpr std::u16string_view kWordTypes = u",doc,docx,docm,dotx,dotm,dot,rtf,mht,";
constexpr std::u16string_view kExcelTypes = u",xls,xlsx,xlsb,xlsm,";
constexpr std::uint64_t kLargestText = 524288;

// Runs of three line ends become two, until there is none of them.
std::u16string withoutEmptyLineRuns(std::u16string_view text)
{
    constexpr std::u16string_view kLineEnd = u"\r\n";
    std::u16string out;
    out.reserve(text.size());
    int lineEnds = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text.substr(i, 2) != kLineEnd) {
            lineEnds = 0;
            out.push_back(text[i++]);
            continue;
        }
        if (++lineEnds <= 2)
            out.append(kLineEnd);
        i += 2;
    }
    return out;
}

// Two decimals, a comma between thousands.
std::u16string grouped(double value)
{
    char digits[400];
    std::snprintf(digits, sizeof digits, "%.2f", value);
    std::string text(digits);
    for (std::size_t at = text.find('.'); at > 3; at -= 3)
        text.insert(at - 3, ",");
    return std::u16string(text.begin(), text.end());
}

} // namespace

FileKind fileKind(std::u16string_view path)
{
    const std::size_t folder = platform::lastSeparator(path);
    const std::u16string_view name = folder == std::u16string_view::npos ? path : path.substr(folder + 1);
    const std::size_t dot = name.rfind(u'.');
    if (dot == std::u16string_view::npos || dot == 0)
        return FileKind::Other;
    const std::u16string extension = platform::lowerCase(name.substr(dot + 1));
    if (extension.empty() || extension.find(u',') != std::u16string::npos)
        return FileKind::Other;
    const std::u16string entry = u"," + extension + u",";
    if (kTextTypes.find(entry) != std::u16string_view::npos)
        return FileKind::Text;
    if (kWordTypes.find(entry) != std::u16string_view::npos)
        return FileKind::Word;
    return kExcelTypes.find(entry) != std::u16string_view::npos ? FileKind::Excel : FileKind::Other;
}

std::u16string importedText(std::u16string_view text)
{
    return withoutEmptyLineRuns(maint::cleanCharacters(platform::trimBlanks(text)));
}

FileImport::FileImport(const Notebook& notebook, Dialogs* dialogs, ImportEvents events)
    : notebook_(notebook)
    , dialogs_(dialogs)
    , events_(std::move(events))
{
}

bool FileImport::importFiles(const std::vector<std::u16string>& paths)
{
    std::u16string current;
    try {
        const std::unique_ptr<Connection> connection = notebook_.connect();
        Batches batches(*connection, events_.stored);
        for (const std::u16string& path : paths) {
            current = path;
            if (stopped())
                break;
            if (dialogs_ == nullptr)
                batches.step();
            addFile(*connection, path);
            if (dialogs_ != nullptr && events_.stored)
                events_.stored();
        }
        batches.finish();
        return true;
    } catch (const ProviderError& e) {
        notebook_.status.failed(
            u"importFile - " + current + u" > " + e.description + u" (" + platform::decimal(e.number) + u")");
        return false;
    }
}

bool FileImport::importFolder(const std::u16string& folder)
{
    clsFolderScan scan;
    scan.FullPath = true;
    scan.Events = true;
    scan.EntryFound = [&](const clsFolderScan::Entry&) {
        if (stopped())
            scan.Abort();
    };
    scan.ScanFolder(folder);
    Dialogs* const askable = std::exchange(dialogs_, nullptr);
    const bool done = importFiles(scan.Files());
    dialogs_ = askable;
    // After an error its line stays the last one.
    if (!done || stopped())
        return done;
    return maint::delDupRec(notebook_, events_.duplicates, events_.refreshList).done;
}

void FileImport::addFile(Connection& connection, const std::u16string& path)
{
    const FileKind kind = fileKind(path);
    const bool readable = platform::fileExists(path) &&
        (kind == FileKind::Other || SharedFile::open(path, SharedFile::Mode::Read));
    if (!readable)
        log(u"File can't not be retrieved: " + path);
    else if (kind == FileKind::Text)
        addTextFile(connection, path);
    else if (kind != FileKind::Other)
        log(u"Office documents cannot be read: " + path);
}

void FileImport::addTextFile(Connection& connection, const std::u16string& path)
{
    const std::uint64_t size = platform::fileSize(path).value_or(0);
    if (size > kLargestText && !mayLoad(path, size)) {
        log(u"Over Sized:\t" + path);
        return;
    }
    Encoding encoding = Encoding::Detect;
    NewRecord record;
    record.text = importedText(readTextFile(path, encoding));
    record.title = titleFromPath(path);
    record.link = path;
    const AddedRecord added = addRecord(connection, notebook_.dbTable, record);
    if (events_.added)
        events_.added(added, path);
}

bool FileImport::mayLoad(const std::u16string& path, std::uint64_t size) const
{
    if (dialogs_ == nullptr)
        return false;
    const double excess = static_cast<double>(size - kLargestText) / 1024.0;
    const std::u16string question =
        notebook_.say(u"Are you sure you want to load this large file?", u"文件过大，请确认是否继续导入?");
    return dialogs_->askYesNo(question + u"\r\n\r\n\r\n" + path + u" (" + grouped(excess) + u"KB)",
               QuestionIcon::Information) == Answer::Yes;
}

void FileImport::log(const std::u16string& message) const
{
    appendLog(notebook_.logFile, message);
    if (events_.logged)
        events_.logged(message);
}

} // namespace vellums::io
