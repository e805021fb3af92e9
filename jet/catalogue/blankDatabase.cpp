// A file from nothing: the pages are laid out by hand, each table a few pages, with all rows that it needs.
//
//   page    holds
//   0       header
//   1       map of free pages, and a second map that stays empty
//   2-5     definitions of MSysObjects, MSysACEs, MSysQueries, MSysRelationships
//   6-8     maps of MSysObjects, roots of its two indexes
//   9-10    maps and root of MSysACEs
//   11-12   of MSysQueries
//   13-16   maps of MSysRelationships, roots of its three indexes
//   17      rows of MSysObjects
//   .mdb
//   18      rows of MSysACEs
//   .accdb
//   18-22   definition, maps and three roots of MSysComplexColumns
//   23-40   definition and maps of each of nine MSysComplexType_... tables
//   41      rows of MSysACEs
//
// Everything fits: rows of a table on one page, entries of an index in its root. The writer that tables have
// needs an open file with a catalogue in it, so it cannot help here.
#include "jet/catalogue/blankDatabase.h"

#include "jet/catalogue/definitionBuilder.h"
#include "jet/catalogue/systemRows.h"
#include "jet/file/dataPage.h"
#include "jet/file/maps/mapRow.h"
#include "jet/index/indexPage.h"
#include "jet/index/key.h"
#include "jet/table/rowCodec.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::uint32_t kSystemFlag = 0x80000000;
constexpr PageNo kObjectRows = 17; // where the rows of MSysObjects lie

Bytes fromHex(std::string_view hex)
{
    const auto digit = [](char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10); };
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(digit(hex[i]) << 4 | digit(hex[i + 1])));
    return bytes;
}

// The owners of objects and permissions are coded by a stream of bytes that goes with the creation
// date in page 0, so these belong together and are the same in every file that is made here.
struct Identity {
    Bytes created; // date, eight bytes
    std::uint32_t build;
    Bytes engine;
    Bytes admin;
    Bytes users;
    Bytes creator;
    Bytes admins; // the group; empty: it has no permissions
};

Identity identityOf(FileFormat format)
{
    if (format == FileFormat::Jet4)
        return {fromHex("3E85D33B3EABE440"), 9756, fromHex("6589"), fromHex("648B"), fromHex("658B"),
            fromHex("658E"), {}};
    return {fromHex("524A578236E3E440"), 4518, fromHex("A25D"), fromHex("A35F"), fromHex("A25F"),
        fromHex("A25A"),
        fromHex("A18565351FA5B94D576B1F9153CEF99876A0BF8183DE2665358246E190870122"
                "6F8A2AF0E56639C7F4DC46884E4D986C0289A9B3498C353484B76ED968D84776"
                "5FC584E3F93BC1336347378C1B0DDD001174C9281F43EA2182A724B6B28420C7"
                "C564C730F248")};
}

template <typename T>
Bytes stored(T value)
{
    Bytes bytes;
    append<T>(bytes, value);
    return bytes;
}

// A row and the values of its columns by column number.
using Values = std::vector<std::optional<Bytes>>;

class Builder {
public:
    Builder(FileFormat format, double now)
        : format_(format)
        , identity_(identityOf(format))
        , now_(now)
    {
    }

    Bytes build()
    {
        std::vector<SystemTable> tables = coreTables(order_);
        place(tables[0], 2, 6, {7, 8});
        place(tables[1], 3, 9, {10});
        place(tables[2], 4, 11, {12});
        place(tables[3], 5, 13, {14, 15, 16});
        if (format_ == FileFormat::Ace12)
            addComplexTables(tables);
        const PageNo permissionRows = format_ == FileFormat::Ace12 ? 41 : 18;
        page(permissionRows);
        std::vector<Values> objects = objectRows(tables);
        std::vector<Values> permissions = permissionRowsFor(tables);
        for (SystemTable& table : tables) {
            const PageNo number = table.definition.page;
            // Rows of the other tables come with queries, relationships and complex columns.
            if (number == kObjectsPage)
                writeTable(table, objects, kObjectRows);
            else if (number == kPermissionsPage)
                writeTable(table, permissions, permissionRows);
            else
                writeTable(table, {}, 0);
        }
        writeHeader();
        writeFreePages();
        return std::move(bytes_);
    }

private:
    // The pages grow with the highest that is asked for. A range is good until the next call.
    MutableBytes page(PageNo number)
    {
        const std::size_t end = (std::size_t{number} + 1) * kPageSize;
        if (bytes_.size() < end)
            bytes_.resize(end);
        return MutableBytes(bytes_).subspan(end - kPageSize, kPageSize);
    }

    void place(SystemTable& table, PageNo definition, PageNo maps, const std::vector<PageNo>& roots)
    {
        table.definition.page = definition;
        for (std::size_t i = 0; i < roots.size(); ++i)
            table.definition.physicalIndexes[i].root = roots[i];
        placeMaps(table.definition, {maps});
    }

    void addComplexTables(std::vector<SystemTable>& tables)
    {
        std::vector<SystemTable> more = complexTables(order_);
        place(more[0], 18, 19, {20, 21, 22});
        PageNo next = 23;
        for (std::size_t i = 1; i < more.size(); ++i, next += 2)
            place(more[i], next, next + 1, {});
        std::move(more.begin(), more.end(), std::back_inserter(tables));
    }

    Values object(std::int32_t id, std::int32_t parent, const std::u16string& name, std::int16_t type,
        std::uint32_t flags, std::optional<Bytes> owner) const
    {
        Values row(17);
        row[0] = stored(id);
        row[1] = stored(parent);
        const ByteView text = std::as_bytes(std::span(name.data(), name.size()));
        row[2] = Bytes(text.begin(), text.end());
        row[3] = stored(type);
        row[4] = stored(now_);
        row[5] = stored(now_);
        row[6] = std::move(owner);
        row[7] = stored(flags);
        return row;
    }

    std::vector<Values> objectRows(const std::vector<SystemTable>& tables) const
    {
        std::vector<Values> rows;
        rows.push_back(object(kTablesId, kRootId, u"Tables", 3, kSystemFlag, identity_.engine));
        rows.push_back(object(kDatabasesId, kRootId, u"Databases", 3, kSystemFlag, identity_.engine));
        rows.push_back(object(kRelationshipsId, kRootId, u"Relationships", 3, kSystemFlag, identity_.engine));
        rows.push_back(object(kDatabaseId, kDatabasesId, u"MSysDb", 2, kSystemFlag, identity_.admin));
        for (const SystemTable& table : tables) {
            const auto id = static_cast<std::int32_t>(table.definition.page);
            const bool core = id <= 5;
            const std::uint32_t flags = core || id == 18 ? kSystemFlag : kSystemFlag | 0x30000;
            rows.push_back(object(
                id, kTablesId, table.name, 1, flags, core ? std::optional(identity_.engine) : std::nullopt));
        }
        return rows;
    }

    struct Grant {
        std::int32_t object;
        const Bytes& who;
        std::int32_t rights;
        bool inheritable = false;
    };

    static Values permission(const Grant& grant)
    {
        Values row(4);
        row[0] = stored(grant.object);
        row[1] = grant.who;
        row[2] = stored(grant.rights);
        if (grant.inheritable)
            row[3] = Bytes();
        return row;
    }

    std::vector<Values> permissionRowsFor(const std::vector<SystemTable>& tables) const
    {
        const bool ace = format_ == FileFormat::Ace12;
        const auto& [created, build, engine, admin, users, creator, admins] = identity_;
        std::vector<Values> rows;
        const auto grant = [&rows](const Grant& g) { rows.push_back(permission(g)); };
        const auto onComplexTables = [&](const Bytes& who, std::int32_t rights) {
            for (const SystemTable& table : tables)
                if (table.definition.page > kRelationshipsPage)
                    grant({static_cast<std::int32_t>(table.definition.page), who, rights});
        };
        const auto onAce = [&](const Grant& g) {
            if (ace)
                grant(g);
        };
        grant({2, admin, 0x60000});
        onComplexTables(admin, 0x60000);
        grant({3, admin, 0x60000});
        grant({4, admin, 0x60000});
        grant({5, admin, 0xE0000});
        grant({kTablesId, creator, 0xF00FE, true});
        grant({kTablesId, admin, 0x60001});
        grant({kRelationshipsId, creator, 0xF00FE, true});
        grant({kRelationshipsId, admin, 0x60001});
        grant({kDatabasesId, admin, 0x60000});
        grant({kDatabaseId, admin, 0x6000E});
        grant({kDatabaseId, users, 0xE});
        onAce({kDatabaseId, admins, 0x6000E});
        onAce({2, admins, 0x60014});
        onComplexTables(admins, 0x60014);
        onAce({3, admins, 0x60000});
        onAce({4, admins, 0x60014});
        grant({4, users, 0x14});
        onAce({5, admins, 0x60014});
        grant({5, users, 0x14});
        grant({2, users, 0x14});
        onComplexTables(users, 0x14);
        onAce({kTablesId, admins, 0xFFEFF, true});
        grant({kTablesId, users, 0xFFEFF, true});
        onAce({kRelationshipsId, admins, 0xFFFFF, true});
        grant({kRelationshipsId, users, 0xFFFFF, true});
        return rows;
    }

    // Definition, maps, index roots and rows of one table. The definition comes last: it has the counters.
    void writeTable(SystemTable& table, const std::vector<Values>& rows, PageNo rowPage)
    {
        TableDefinition& definition = table.definition;
        writeMapPage(page(definition.ownedMap.page), definition.ownedMap.page, definition);
        std::vector<std::uint32_t> distinctKeys;
        for (const PhysicalIndex& index : definition.physicalIndexes)
            distinctKeys.push_back(writeIndex(definition, index, rows, rowPage));
        if (!rows.empty()) {
            initDataPage(page(rowPage), definition.page);
            for (const Values& row : rows)
                appendRow(page(rowPage), encodeRow(definition, byRecord(definition, row)), 0);
            for (const RowRef map : {definition.ownedMap, definition.freeMap}) {
                Bytes bits(kMapRowBytes);
                bits[5 + rowPage / 8] = static_cast<std::byte>(1U << rowPage % 8);
                replaceRow(page(map.page), map.row, bits, 0);
            }
        }
        definition.rowCount = static_cast<std::uint32_t>(rows.size());
        encodeDefinition(definition, distinctKeys);
        assert(definition.joined.size() <= kPageSize - 8); // one page
        const MutableBytes out = page(definition.page);
        std::copy(definition.joined.begin(), definition.joined.end(), out.begin());
        store<std::uint16_t>(out, 2, static_cast<std::uint16_t>(kPageSize - 8 - definition.joined.size()));
    }

    static RowContent byRecord(const TableDefinition& definition, const Values& row)
    {
        RowContent content;
        for (const Column& column : definition.columns)
            content.push_back(row[column.number]);
        return content;
    }

    // Gives the number of different keys.
    std::uint32_t writeIndex(const TableDefinition& definition, const PhysicalIndex& index,
        const std::vector<Values>& rows, PageNo rowPage)
    {
        std::vector<Bytes> entries;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            Bytes key;
            for (const IndexColumn& part : index.columns) {
                const Column& column = *definition.columnByNumber(part.number);
                KeyValue value;
                value.bytes = *rows[i][part.number];
                if (isText(column.type)) {
                    value.text.resize(value.bytes.size() / 2);
                    std::memcpy(value.text.data(), value.bytes.data(), value.bytes.size());
                }
                appendKeyPart(key, {column.type, true, order_, false}, value);
            }
            entries.push_back(leafEntry(key, {rowPage, static_cast<std::uint8_t>(i)}));
        }
        std::sort(entries.begin(), entries.end());
        IndexPage leaf(index.root, true);
        std::uint32_t distinct = 0;
        for (const Bytes& entry : entries) {
            const bool isNew = leaf.entries.empty() ||
                compareBytes(keyOf(leaf.entries.at(leaf.entries.size() - 1)), keyOf(entry)) != 0;
            distinct += isNew ? 1 : 0;
            leaf.entries.add(entry);
        }
        writeIndexPage(page(index.root), leaf, definition.page);
        return distinct;
    }

    // Page 0. What lies from 0x18 to 0x97 is put under its mask before the rest follows.
    void writeHeader()
    {
        const MutableBytes header = page(0);
        store<std::uint32_t>(header, 0, 0x100);
        const std::string_view name = format_ == FileFormat::Jet4 ? "Standard Jet DB" : "Standard ACE DB";
        std::memcpy(header.data() + 4, name.data(), name.size());
        header[0x14] = format_ == FileFormat::Jet4 ? std::byte{1} : std::byte{2};
        const std::uint32_t pointers[] = {
            0x100, 0x101, kObjectsPage, kPermissionsPage, kQueriesPage, kRelationshipsPage};
        for (std::size_t i = 0; i < std::size(pointers); ++i)
            store<std::uint32_t>(header, 0x18 + 4 * i, pointers[i]);
        store<std::uint16_t>(header, 0x3C, 1252); // code page
        // No password, covered by the day of creation.
        const auto day = static_cast<std::int32_t>(load<double>(identity_.created, 0));
        for (std::size_t i = 0; i < 10; ++i)
            store<std::int32_t>(header, 0x42 + 4 * i, day);
        store<std::uint32_t>(header, 0x6A, identity_.build);
        store<std::uint16_t>(header, 0x6E, order_.lcid);
        store<std::uint8_t>(header, 0x71, order_.version);
        std::copy(identity_.created.begin(), identity_.created.end(), header.begin() + 0x72);
        maskHeader(header);
        store<std::uint32_t>(header, 0x98, 0x654);
        std::memcpy(header.data() + 0x9C, "4.0", 3);
        // Commit marks of 256 users; the first one stands for exclusive use.
        for (std::size_t at = 0xE00; at < kPageSize; at += 2)
            store<std::uint16_t>(header, at, at == 0xE00 ? 0x0101 : 0x0100);
    }

    // A set bit is a free page, those beyond the end of the file too.
    void writeFreePages()
    {
        assert(bytes_.size() / kPageSize < (kMapRowBytes - 5) * 8);
        const std::size_t pages = bytes_.size() / kPageSize;
        Bytes map(kMapRowBytes);
        for (std::size_t i = pages; i < (kMapRowBytes - 5) * 8; ++i)
            map[5 + i / 8] |= static_cast<std::byte>(1U << i % 8);
        initDataPage(page(1), 1);
        appendRow(page(1), map, 0);
        appendRow(page(1), Bytes(kMapRowBytes), 0);
    }

    FileFormat format_;
    Identity identity_;
    double now_;
    SortOrder order_{1033, 0};
    Bytes bytes_;
};

[[noreturn]] void throwFileError(const platform::FileError& error, const std::u16string& path)
{
    switch (error.fault) {
    case platform::FileFault::Exists:
        throw Error(3204, kFail, u"Database already exists.");
    case platform::FileFault::NotFound:
    case platform::FileFault::FolderNotFound:
        throw Error(3044, kFail,
            u"'" + path +
                u"' is not a valid path. Make sure that the path name is spelled correctly and that you are "
                u"connected to the server on which the file resides.");
    case platform::FileFault::DiskFull:
        throw Error(3026, kFail, u"Not enough space on disk.");
    default:
        throw Error(3051, kFail,
            u"The database engine cannot open or write to the file '" + path +
                u"'. It is already opened exclusively by another user, or you need permission to view "
                u"its data.");
    }
}

} // namespace

Bytes blankDatabase(FileFormat format, double now)
{
    return Builder(format, now).build();
}

void createDatabase(const std::u16string& path, FileFormat format, double now)
{
    if (platform::fileExists(path) || platform::folderExists(path))
        throwFileError({platform::FileFault::Exists, 0}, path);
    // Written under another name and then moved, so that no half of a database ever has this one.
    const std::u16string temporary = platform::unusedPath(path, u".new");
    try {
        const Bytes bytes = blankDatabase(format, now);
        try {
            {
                platform::File file(temporary, platform::Access::Create);
                file.writeAt(0, bytes);
                file.sync();
            }
            platform::replaceFile(temporary, path);
            platform::syncFolderOf(path);
        } catch (...) {
            platform::removeFile(temporary);
            throw;
        }
    } catch (const platform::FileError& error) {
        throwFileError(error, path);
    }
}

} // namespace vellums::jet
