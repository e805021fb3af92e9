// Each file is looked at alone: it becomes a record, or one line of the log says why not, and the next one
// follows. Only what would make every further record fail as well ends the run. Records become lasting in
// batches; none is open while a question waits for a person.
#include "io/fileImport.h"

#include "formats/charCleaner.h"
#include "formats/modTextUTF.h"
#include "io/clsFolderScan.h"
#include "io/importLog.h"
#include "maint/delDupRec.h"
#include "platform/files.h"
#include "platform/sharedFile.h"
#include "store/databases/fileReason.h"
#include "store/records/batches.h"
#include "text/decimal.h"
#include "text/letterCase.h"
#include "text/path.h"
#include "text/pieces.h"
#include "text/titles.h"

#include <new>
#include <optional>
#include <utility>

namespace vellums {
namespace {

using platform::SharedFile;

// Between commas, also at both ends: an extension is looked for with its commas, and one that holds a comma
// itself is none of these.
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

// A value that does not fit into its column; any other error would meet the next record as well.
bool concernsOneRecord(const ProviderError& error)
{
    return error.number == jet::kCantConvertValue || error.number == jet::kErrorsOccurred ||
        error.number == jet::kDataOverflow;
}

} // namespace

FileKind fileKind(std::u16string_view path)
{
    const std::u16string_view name = text::nameOf(path);
    const std::size_t dot = name.rfind(u'.');
    if (dot == std::u16string_view::npos || dot == 0)
        return FileKind::Other;
    const std::u16string extension = text::lowerCase(name.substr(dot + 1));
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
    return withoutEmptyLineRuns(formats::cleanCharacters(text::trimBlanks(text)));
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
        Batches batches(*connection, [this] { stored(); });
        try {
            for (const std::u16string& path : paths) {
                current = path;
                if (stopped())
                    break;
                batches.step();
                addFile(*connection, batches, path);
            }
            batches.finish();
        } catch (const std::bad_alloc&) { // perhaps in the middle of a file
            batches.giveUp();
            added_ = 0;
            throw;
        }
        return true;
    } catch (const ProviderError& e) {
        added_ = 0;
        notebook_.status.failed(u"importFile - " + current + u" > " + reasonOf(e));
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
    for (const clsFolderScan::Missed& missed : scan.Unlisted())
        notTaken(u"Folder cannot be listed: " + missed.path + u" (" +
            (missed.fault ? fileReason(notebook_, *missed.fault)
                          : notebook_.say(u"the code page lacks a character of its name",
                                u"名称含有代码页之外的字符")) +
            u")");
    // Nothing is asked in the midst of a folder: large files are told to the log.
    Dialogs* const askable = std::exchange(dialogs_, nullptr);
    const bool done = importFiles(scan.Files());
    dialogs_ = askable;
    if (stopped())
        return done;
    const Duplicates duplicates = delDupRec(notebook_, events_.duplicates);
    duplicatesTold_ = duplicatesTold_ || duplicates.removed > 0;
    return done && duplicates.done;
}

void FileImport::tellCount() const
{
    if (duplicatesTold_ || taken_ + notTaken_ == 0)
        return;
    const std::u16string made = text::decimal(static_cast<std::int64_t>(taken_));
    const std::u16string left = text::decimal(static_cast<std::int64_t>(notTaken_));
    if (notTaken_ == 0) {
        notebook_.status.done(
            notebook_.say(made + (taken_ == 1 ? u" record imported." : u" records imported."),
                u"已导入 " + made + u" 条记录"));
        return;
    }
    const std::u16string log(text::nameOf(notebook_.logFile));
    notebook_.status.done(
        notebook_.say(made + (taken_ == 1 ? u" record imported, " : u" records imported, ") + left +
                (notTaken_ == 1 ? u" file" : u" files") + u" not taken (see " + log + u").",
            u"已导入 " + made + u" 条记录, " + left + u" 个文件未导入 (见 " + log + u")"));
}

// Opened before anything is said of it, and held while it is read: a file that is there and cannot be opened,
// or has a name that the code page cannot hold, is told as one that is missing.
void FileImport::addFile(Connection& connection, Batches& batches, const std::u16string& path)
{
    const FileKind kind = fileKind(path);
    std::optional<SharedFile> file;
    if (kind != FileKind::Other)
        file = SharedFile::open(path, SharedFile::Mode::Read);
    if (!platform::fileExists(path) || (kind != FileKind::Other && !file))
        notTaken(u"File can't not be retrieved: " + path);
    else if (kind == FileKind::Text)
        addTextFile(connection, batches, path, *file);
    else if (kind != FileKind::Other)
        notTaken(u"Office documents cannot be read: " + path);
}

// The size is that of the opened file: a link has one of its own.
void FileImport::addTextFile(
    Connection& connection, Batches& batches, const std::u16string& path, const SharedFile& file)
{
    const std::uint64_t size = file.size().value_or(0);
    if (size > kLargestText && !mayLoad(batches, path, size)) {
        notTaken(u"Over Sized:\t" + path);
        return;
    }
    formats::Encoding encoding = formats::Encoding::Detect;
    NewRecord record;
    const formats::TextRead read = formats::readTextFileWhole(path, encoding);
    if (!read.whole) {
        const bool utf32 = encoding == formats::Encoding::Utf32Le || encoding == formats::Encoding::Utf32Be;
        notTaken((utf32 ? u"UTF-32 cannot be read: " : u"File can't not be retrieved: ") + path);
        return;
    }
    record.text = importedText(read.text);
    record.title = text::titleFromPath(path);
    record.link = path;
    try {
        const AddedRecord added = addRecord(connection, notebook_.dbTable, record);
        ++added_;
        if (events_.added)
            events_.added(added, path);
    } catch (const ProviderError& e) {
        if (!concernsOneRecord(e))
            throw;
        notTaken(reasonOf(e) + u": " + path);
    }
}

bool FileImport::mayLoad(Batches& batches, const std::u16string& path, std::uint64_t size) const
{
    if (dialogs_ == nullptr)
        return false;
    const std::u16string question =
        notebook_.say(u"Are you sure you want to load this large file?", u"文件过大，请确认是否继续导入?");
    batches.finish(); // others may use the database while the question stands
    const Answer answer = dialogs_->askYesNo(
        question + u"\r\n\r\n\r\n" + path + u" (" + text::kilobytes(size - kLargestText) + u")",
        QuestionIcon::Information);
    batches.step();
    return answer == Answer::Yes;
}

void FileImport::stored()
{
    taken_ += std::exchange(added_, 0);
    if (events_.stored)
        events_.stored();
}

void FileImport::notTaken(const std::u16string& message)
{
    ++notTaken_;
    appendLog(notebook_.logFile, message);
    if (events_.logged)
        events_.logged(message);
}

} // namespace vellums
