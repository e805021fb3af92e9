// Pages: 0 header, 1 map of free pages, 2 MSysObjects, 3 usage maps, 4 rows of MSysObjects, 5 the table,
// 6 and 10 its rows, 7 to 9 long values.
#include "tests/support/jet3File.h"

#include "jet/file/header.h"

#include <algorithm>
#include <string_view>

namespace vellums::tests {
namespace {

using jet::append;
using jet::Bytes;
using jet::store;

constexpr std::size_t kPage = 2048;
constexpr std::uint32_t kLongValues = 0x4C41564C;
constexpr int kPages = 11;

Bytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void appendText(Bytes& bytes, std::string_view text)
{
    append(bytes, std::as_bytes(std::span(text)));
}

struct StoredRow {
    Bytes bytes;
    std::uint16_t flags = 0;
};

Bytes dataPage(std::uint32_t owner, const std::vector<StoredRow>& rows)
{
    Bytes page(kPage);
    store<std::uint16_t>(page, 0, 0x0101);
    store<std::uint32_t>(page, 4, owner);
    store<std::uint16_t>(page, 8, static_cast<std::uint16_t>(rows.size()));
    std::size_t low = kPage;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        low -= rows[i].bytes.size();
        std::copy(
            rows[i].bytes.begin(), rows[i].bytes.end(), page.begin() + static_cast<std::ptrdiff_t>(low));
        store<std::uint16_t>(page, 10 + 2 * i, static_cast<std::uint16_t>(low | rows[i].flags));
    }
    store<std::uint16_t>(page, 2, static_cast<std::uint16_t>(low - 10 - 2 * rows.size()));
    return page;
}

StoredRow map(const std::vector<int>& pages)
{
    Bytes row(133);
    for (const int page : pages)
        row[5 + static_cast<std::size_t>(page) / 8] |= static_cast<std::byte>(1u << (page % 8));
    return {row};
}

struct ColumnShape {
    std::string_view name;
    std::uint8_t type;
    std::uint16_t place; // offset when fixed, else slot
    bool fixed;
    std::uint16_t length;
};

// With an index, which is to be passed over. The pair of maps for each long value follows that of the table.
Bytes definitionPage(const std::vector<ColumnShape>& columns, std::uint16_t slots, std::uint8_t firstMap)
{
    Bytes page(43);
    store<std::uint32_t>(page, 0, 0x43560102); // and "VC"
    page[20] = std::byte{0x4E};
    store<std::uint16_t>(page, 21, static_cast<std::uint16_t>(columns.size()));
    store<std::uint16_t>(page, 23, slots);
    store<std::uint16_t>(page, 25, static_cast<std::uint16_t>(columns.size()));
    store<std::uint32_t>(page, 27, 1);
    store<std::uint32_t>(page, 31, 1);
    store<std::uint32_t>(page, 35, 0x300u + firstMap);
    store<std::uint32_t>(page, 39, 0x301u + firstMap);
    page.resize(page.size() + 8, std::byte{0x77});
    for (std::size_t i = 0; i < columns.size(); ++i) {
        Bytes record(18);
        const ColumnShape& c = columns[i];
        record[0] = std::byte{c.type};
        store<std::uint16_t>(record, 1, static_cast<std::uint16_t>(i));
        store<std::uint16_t>(record, 3, c.fixed ? std::uint16_t{0} : c.place);
        store<std::uint16_t>(record, 5, static_cast<std::uint16_t>(i));
        store<std::uint32_t>(record, 9, 0x04E40409);
        record[13] = c.fixed ? std::byte{3} : std::byte{2};
        store<std::uint16_t>(record, 14, c.fixed ? c.place : std::uint16_t{0});
        store<std::uint16_t>(record, 16, c.length);
        append(page, record);
    }
    for (const ColumnShape& c : columns) {
        page.push_back(static_cast<std::byte>(c.name.size()));
        appendText(page, c.name);
    }
    page.resize(page.size() + 39 + 20, std::byte{0x77});
    appendText(page, "\3idx");
    std::uint8_t nextMap = firstMap;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].type == 0x0B || columns[i].type == 0x0C) {
            nextMap = static_cast<std::uint8_t>(nextMap + 2);
            append<std::uint16_t>(page, static_cast<std::uint16_t>(i));
            append<std::uint32_t>(page, 0x300u + nextMap);
            append<std::uint32_t>(page, 0x301u + nextMap);
        }
    append<std::uint16_t>(page, 0xFFFF);
    store<std::uint32_t>(page, 8, static_cast<std::uint32_t>(page.size()));
    page.resize(kPage);
    return page;
}

std::string longValue(std::uint32_t lengthAndForm, std::uint32_t pointer, std::string_view inlined = {})
{
    Bytes bytes;
    append<std::uint32_t>(bytes, lengthAndForm);
    append<std::uint32_t>(bytes, pointer);
    append<std::uint32_t>(bytes, 0);
    appendText(bytes, inlined);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Bytes numbers(std::initializer_list<std::int32_t> values)
{
    Bytes bytes;
    for (const std::int32_t value : values)
        append<std::int32_t>(bytes, value);
    return bytes;
}

StoredRow object(std::int32_t id, std::string_view name)
{
    return {
        jet3Row(6, numbers({id, 0x0F000001, 1, 0}), {std::string(name), ""}, {true, true, true, true, true})};
}

Bytes linked(std::uint32_t next, std::size_t length)
{
    Bytes row;
    append<std::uint32_t>(row, next);
    row.resize(4 + length, std::byte{0x80}); // the euro sign
    return row;
}

} // namespace

Bytes jet3Row(std::uint8_t columns, const Bytes& fixed, const std::vector<std::string>& slots,
    const std::vector<bool>& present)
{
    Bytes row{std::byte{columns}};
    append(row, fixed);
    std::vector<std::size_t> offsets;
    for (const std::string& value : slots) {
        offsets.push_back(row.size());
        appendText(row, value);
    }
    offsets.push_back(row.size());
    if (!slots.empty()) {
        std::vector<std::byte> jumps; // by the slot from which on 256 more count
        for (std::size_t slot = 0; slot < offsets.size(); ++slot)
            jumps.resize(offsets[slot] / 256, static_cast<std::byte>(slot));
        for (std::size_t i = offsets.size(); i-- > 0;)
            row.push_back(static_cast<std::byte>(offsets[i] & 0xFF));
        // As many as the finished row has full 256 bytes; one too many is a dummy.
        const std::size_t rest = 1 + (std::size_t{columns} + 7) / 8;
        while ((row.size() + jumps.size() + rest - 1) / 256 > jumps.size())
            jumps.push_back(std::byte{0});
        row.insert(row.end(), jumps.rbegin(), jumps.rend());
        row.push_back(static_cast<std::byte>(slots.size()));
    }
    Bytes mask((std::size_t{columns} + 7) / 8);
    for (std::size_t i = 0; i < present.size(); ++i)
        if (present[i])
            mask[i / 8] |= static_cast<std::byte>(1u << (i % 8));
    append(row, mask);
    return row;
}

Bytes jet3Header(const std::string& password)
{
    Bytes page(kPage);
    store<std::uint32_t>(page, 0, 0x100);
    const Bytes name = bytesOf("Standard Jet DB");
    std::copy(name.begin(), name.end(), page.begin() + 4);
    store<std::uint32_t>(page, 0x3A, 0x04E40409);
    for (std::size_t i = 0; i < password.size(); ++i)
        page[0x42 + i] = static_cast<std::byte>(password[i]);
    jet::maskHeader(page);
    return page;
}

Bytes jet3File()
{
    StoredRow free = map({});
    std::fill(free.bytes.begin() + 5 + 2, free.bytes.end(), std::byte{0xFF});
    free.bytes[5 + 1] = std::byte{0xF8}; // pages 0 to 10 are used
    const std::string single(700, '\xFC');
    const std::vector<ColumnShape> objects = {{"Id", 4, 0, true, 4}, {"ParentId", 4, 4, true, 4},
        {"Type", 4, 8, true, 4}, {"Flags", 4, 12, true, 4}, {"Name", 10, 0, false, 255},
        {"LvProp", 11, 1, false, 0}};
    const std::vector<ColumnShape> columns = {{"ID", 4, 0, true, 4},
        {"Gr\xF6\xDF"
         "e",
            10, 0, false, 255},
        {"Flag", 1, 4, true, 1}, {"Notiz", 12, 1, false, 0}, {"Rest", 10, 2, false, 255}};
    const std::vector<StoredRow> rows = {
        {jet3Row(5, numbers({1}), {"T\xFCr", longValue(0x80000006, 0, "kurz \xE9"), ""},
            {true, true, true, true, false})},
        {jet3Row(5, numbers({2}), {"", "", ""}, {true, false, false, false, true})},
        {numbers({0xA00}), 0x4000},
        {jet3Row(5, numbers({4}), {"x", longValue(3000, 0x800), "y"}, {true, true, false, true, true})},
    };
    const Bytes moved =
        jet3Row(5, numbers({3}), {std::string(200, 'a'), longValue(0x400002BC, 0x700), std::string(200, 'b')},
            {true, true, true, true, true});

    Bytes file = jet3Header();
    append(file, dataPage(1, {free, map({})}));
    append(file, definitionPage(objects, 2, 0));
    append(file,
        dataPage(0, {map({4}), map({}), map({}), map({}), map({6, 10}), map({}), map({7, 8, 9}), map({})}));
    append(file, dataPage(2, {object(2, "MSysObjects"), object(5, "Ums\xE4tze")}));
    append(file, definitionPage(columns, 3, 4));
    append(file, dataPage(5, rows));
    append(file, dataPage(kLongValues, {{bytesOf(single)}}));
    append(file, dataPage(kLongValues, {{linked(0x900, 2032)}}));
    append(file, dataPage(kLongValues, {{linked(0, 968)}}));
    append(file, dataPage(5, {{moved, 0x8000}}));
    return file;
}

} // namespace vellums::tests
