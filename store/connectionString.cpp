// A connection string is not parsed as the list of properties that it is. What is looked for stands behind
// "Data Source=" and ends with a known extension that is followed by ";" or by the end, the extensions being
// tried in the order of the list: so a path may itself hold ";" or an extension in the middle, and strings of
// any provider are understood. Where no such extension follows, what stands there is a server, up to the next
// ";".
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
    const std::u16string rest = lowerCase(connectionString.substr(start));
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

// From a drive or a root on; any other path counts from the data folder, folders in it or not.
bool isAbsolute(std::u16string_view path)
{
    return path.starts_with(u'\\') || path.starts_with(u'/') || (path.size() > 1 && path[1] == u':');
}

// The template of the provider id ("101" to "104"): a connection string for a sample file.
std::u16string connectionTemplate(std::u16string_view providerId)
{
    if (providerId == u"101")
        return u"Provider=SQLOLEDB.1;Persist Security Info=True;Data Source=(LOCAL)\\MSSQL;Initial "
               u"Catalog=Vellums;"
               u"User ID=kvrn;Password=ferret";
    if (providerId == u"102")
        return u"Provider=SQLOLEDB.1;Persist Security Info=False;Data Source=(LOCAL)\\MSSQL;Initial "
               u"Catalog=Vellums;"
               u"Integrated Security=SSPI";
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
    if (part == ConnPart::FileName) {
        const std::size_t last = text::lastSeparator(file);
        return last == std::u16string::npos ? file : file.substr(last + 1);
    }
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
