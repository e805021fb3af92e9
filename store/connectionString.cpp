// A connection string is not parsed as the list of properties that it is. What is looked for stands behind
// "Data Source=" and ends with a known extension that is followed by ";" or by the end, the extensions being
// tried in the order of the list: so a path may itself hold ";" or an extension in the middle, and strings of
// any provider are understood. Where no such extension follows, what stands there is a server, up to the next
// ";". The password of a file is the one other value that is looked for; it stands outside of the path.
#include "store/connectionString.h"

#include "platform/files.h"
#include "text/letterCase.h"
#include "text/path.h"
#include "text/pieces.h"

#include <algorithm>
#include <optional>

namespace vellums {
namespace {

using text::lowerCase;

constexpr std::u16string_view kDataSource = u"Data Source=";
constexpr std::u16string_view kJetProperties = u"jet oledb:";
constexpr std::u16string_view kPassword = u"jet oledb:database password";
constexpr std::u16string_view kSampleFile = u"Vellums.accdb";
constexpr std::u16string_view kExtensions[] = {u"mdb", u"accdb", u"xls", u"xlsx", u"xlsb", u"csv", u"dbf"};

// Where the file reference of a connection string lies.
struct Reference {
    std::size_t start;
    std::size_t length;
    bool isFile; // false: a server
};

std::optional<Reference> findReference(std::u16string_view connectionString)
{
    const std::size_t found = connectionString.find(kDataSource);
    if (found == std::u16string_view::npos)
        return std::nullopt;
    const std::size_t start = found + kDataSource.size();
    std::u16string rest = lowerCase(connectionString.substr(start));
    rest.resize(std::min(rest.find(kJetProperties), rest.size())); // a password may end as a file does
    for (const std::u16string_view extension : kExtensions) {
        const std::u16string ending = u"." + std::u16string(extension);
        for (std::size_t at = rest.find(ending); at != std::u16string::npos; at = rest.find(ending, at + 1)) {
            const std::size_t end = at + ending.size();
            if (end == rest.size() || rest[end] == u';')
                return Reference{start, end, true};
        }
    }
    return Reference{start, std::min(rest.find(u';'), rest.size()), false};
}

// Takes the value off the front, and the ";" behind it. In quotes, double or single, it may hold ";", and the
// quote itself doubled.
std::u16string takeValue(std::u16string_view& rest)
{
    const char16_t quote = rest.empty() ? u'\0' : rest.front();
    std::u16string value;
    if (quote == u'"' || quote == u'\'') {
        rest.remove_prefix(1);
        while (!rest.empty()) {
            const bool isQuote = rest.front() == quote;
            if (isQuote && (rest.size() == 1 || rest[1] != quote))
                break;
            value += rest.front();
            rest.remove_prefix(isQuote ? 2 : 1);
        }
    }
    const std::size_t end = std::min(rest.find(u';'), rest.size());
    if (quote != u'"' && quote != u'\'')
        value = text::trimBlanks(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return value;
}

// From a drive or a root on; any other path counts from the data folder, folders in it or not.
bool isAbsolute(std::u16string_view path)
{
    return path.starts_with(u'\\') || path.starts_with(u'/') || (path.size() > 1 && path[1] == u':');
}

// The template of the provider id ("101" to "104"): a connection string for a sample file.
std::u16string connectionTemplate(std::u16string_view providerId)
{
    if (providerId == u"101")
        return u"Provider=SQLOLEDB.1;Persist Security Info=True;Data Source=(LOCAL)\\MSSQL;"
               u"Initial Catalog=Vellums;User ID=kvrn;Password=ferret";
    if (providerId == u"102")
        return u"Provider=SQLOLEDB.1;Persist Security Info=False;Data Source=(LOCAL)\\MSSQL;"
               u"Initial Catalog=Vellums;Integrated Security=SSPI";
    if (providerId == u"103")
        return u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=Vellums.mdb";
    return u"Provider=Microsoft.ACE.OLEDB.12.0; Data Source=Vellums.accdb";
}

} // namespace

std::u16string fileOf(std::u16string_view connectionString)
{
    const std::optional<Reference> reference = findReference(connectionString);
    return reference ? std::u16string(connectionString.substr(reference->start, reference->length)) : u"";
}

std::u16string databasePassword(std::u16string_view connectionString)
{
    std::u16string outside(connectionString);
    if (const std::optional<Reference> reference = findReference(connectionString))
        outside.erase(reference->start, reference->length);
    std::u16string_view rest = outside;
    while (!rest.empty()) {
        const std::size_t equals = rest.find_first_of(u"=;");
        if (equals == std::u16string_view::npos)
            return {};
        const std::u16string keyword = lowerCase(text::trimBlanks(rest.substr(0, equals)));
        const bool hasValue = rest[equals] == u'=';
        rest.remove_prefix(equals + 1);
        if (!hasValue)
            continue;
        rest.remove_prefix(std::min(rest.find_first_not_of(u' '), rest.size()));
        std::u16string value = takeValue(rest);
        if (keyword == kPassword)
            return value;
    }
    return {};
}

std::u16string connectionStringFor(const Notebook& notebook, std::u16string_view file)
{
    const std::u16string base = connectionTemplate(notebook.providerId);
    const std::size_t dot = file.rfind(u'.');
    const std::u16string extension = dot == std::u16string_view::npos ? u"" : lowerCase(file.substr(dot + 1));
    if (extension != u"mdb" && extension != u"accdb")
        return base;
    // Only the template of one provider names the sample file that is replaced; the other provider opens
    // its own sample whatever is asked for.
    return text::replaceAll(base, kSampleFile, file);
}

std::u16string getConnPart(const Notebook& notebook, const std::u16string& connectionString, ConnPart part)
{
    const std::optional<Reference> reference = findReference(connectionString);
    const std::u16string folder = platform::withSeparator(notebook.dbParent);
    if (part == ConnPart::WithBareName)
        return folder.empty() ? connectionString : text::replaceAllNoCase(connectionString, folder, u"");
    if (!reference)
        return {};
    const std::u16string file = connectionString.substr(reference->start, reference->length);
    if (!reference->isFile)
        return file;
    if (part == ConnPart::FileName)
        return std::u16string(text::nameOf(file));
    return file.empty() || isAbsolute(file) ? file : folder + file;
}

bool namesRelativeFile(std::u16string_view connectionString)
{
    const std::optional<Reference> reference = findReference(connectionString);
    return reference && reference->isFile &&
        !isAbsolute(connectionString.substr(reference->start, reference->length));
}

std::u16string expandedConnection(const Notebook& notebook, const std::u16string& connectionString)
{
    const std::optional<Reference> reference = findReference(connectionString);
    if (!reference || !reference->isFile)
        return connectionString;
    std::u16string expanded = connectionString;
    expanded.replace(
        reference->start, reference->length, getConnPart(notebook, connectionString, ConnPart::FullPath));
    return expanded;
}

} // namespace vellums
