// Properties are read to be obeyed and written back as they were. All of them are kept, in their order, also
// those that mean nothing here; five names are obeyed. What breaks a rule of the form gives no set at all,
// since writing back half of one would lose the rest: the table is then only read.
//
// Names stand once, in the first block, and properties name them by number. New ones are added at the end,
// so numbers that are in use stay true.
#include "jet/catalogue/propertySet.h"

#include "jet/index/collation.h"
#include "jet/table/tableDefinition.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::uint32_t kMagic = 0x0032524D; // "MR2"
constexpr std::uint16_t kNamePool = 0x80;
constexpr std::uint16_t kTableBlock = 0;
constexpr std::uint16_t kColumnBlock = 1;
constexpr std::size_t kBlockHead = 6;
constexpr std::size_t kRecordHead = 8;

constexpr std::u16string_view kRequired = u"Required";
constexpr std::u16string_view kAllowZeroLength = u"AllowZeroLength";
constexpr std::u16string_view kUnicodeCompression = u"UnicodeCompression";
constexpr std::u16string_view kValidationRule = u"ValidationRule";

std::u16string textOf(ByteView bytes)
{
    std::u16string text(bytes.size() / 2, u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * 2);
    return text;
}

} // namespace

PropertySet::PropertySet()
    : names_(
          {std::u16string(kRequired), std::u16string(kAllowZeroLength), std::u16string(kUnicodeCompression)})
{
}

std::optional<PropertySet> PropertySet::parse(ByteView bytes)
{
    PropertySet set;
    set.names_.clear();
    try {
        if (load<std::uint32_t>(bytes, 0) != kMagic)
            return std::nullopt;
        for (std::size_t at = 4; at < bytes.size();) {
            const std::size_t length = load<std::uint32_t>(bytes, at);
            const auto kind = load<std::uint16_t>(bytes, at + 4);
            // The names come first and once.
            if (length < kBlockHead || (kind == kNamePool) != (at == 4))
                return std::nullopt;
            if (!set.parseBlock(kind, slice(bytes, at, length).subspan(kBlockHead)))
                return std::nullopt;
            at += length;
        }
    } catch (const Error&) {
        return std::nullopt;
    }
    return set;
}

bool PropertySet::parseBlock(std::uint16_t kind, ByteView content)
{
    if (kind == kNamePool) {
        for (std::size_t at = 0; at < content.size();) {
            const std::size_t length = load<std::uint16_t>(content, at);
            names_.push_back(textOf(slice(content, at + 2, length)));
            if (length % 2 != 0)
                return false;
            at += 2 + length;
        }
        return true;
    }
    if (kind != kTableBlock && kind != kColumnBlock)
        return false;
    Block block;
    block.column = kind == kColumnBlock;
    const std::size_t head = load<std::uint32_t>(content, 0);
    const std::size_t nameLength = load<std::uint16_t>(content, 4);
    if (head != kBlockHead + nameLength || nameLength % 2 != 0)
        return false;
    block.name = textOf(slice(content, kBlockHead, nameLength));
    for (std::size_t at = head; at < content.size();) {
        const std::size_t length = load<std::uint16_t>(content, at);
        const std::size_t valueLength = load<std::uint16_t>(content, at + 6);
        Property property;
        property.definition = load<std::uint8_t>(content, at + 2);
        property.type = static_cast<ColumnType>(load<std::uint8_t>(content, at + 3));
        property.name = load<std::uint16_t>(content, at + 4);
        if (length != kRecordHead + valueLength || property.name >= names_.size())
            return false;
        const ByteView value = slice(content, at + kRecordHead, valueLength);
        property.value.assign(value.begin(), value.end());
        block.properties.push_back(std::move(property));
        at += length;
    }
    blocks_.push_back(std::move(block));
    return true;
}

Bytes PropertySet::encode() const
{
    Bytes bytes;
    append<std::uint32_t>(bytes, kMagic);
    const auto appendBlock = [&bytes](std::uint16_t kind, const Bytes& content) {
        append<std::uint32_t>(bytes, static_cast<std::uint32_t>(kBlockHead + content.size()));
        append<std::uint16_t>(bytes, kind);
        append(bytes, content);
    };
    Bytes pool;
    for (const std::u16string& name : names_)
        appendName(pool, name);
    // A value that ends behind the first four bytes has no block of names either.
    if (!pool.empty() || !blocks_.empty())
        appendBlock(kNamePool, pool);
    for (const Block& block : blocks_) {
        Bytes content;
        append<std::uint32_t>(content, static_cast<std::uint32_t>(kBlockHead + block.name.size() * 2));
        appendName(content, block.name);
        for (const Property& property : block.properties) {
            append<std::uint16_t>(content, static_cast<std::uint16_t>(kRecordHead + property.value.size()));
            append<std::uint8_t>(content, property.definition);
            append<std::uint8_t>(content, static_cast<std::uint8_t>(property.type));
            append<std::uint16_t>(content, property.name);
            append<std::uint16_t>(content, static_cast<std::uint16_t>(property.value.size()));
            append(content, property.value);
        }
        appendBlock(block.column ? kColumnBlock : kTableBlock, content);
    }
    return bytes;
}

void PropertySet::applyTo(ColumnRule& rule, const Property& property) const
{
    const std::u16string& name = names_[property.name];
    const bool set =
        property.type == ColumnType::Boolean && !property.value.empty() && property.value[0] != std::byte{0};
    if (name == kRequired)
        rule.required = set;
    else if (name == kAllowZeroLength)
        rule.allowsEmpty = set;
    else if (name == u"DefaultValue" && isText(property.type))
        rule.defaultValue = textOf(property.value);
    else if (name == u"ResultType" && !property.value.empty() && property.value[0] != std::byte{0})
        rule.resultType = static_cast<ColumnType>(property.value[0]);
    else if (name == kValidationRule && isText(property.type))
        rule.validationRule = textOf(property.value);
}

ColumnRule PropertySet::ruleFor(std::u16string_view column, SortOrder order) const
{
    ColumnRule rule;
    for (const Block& block : blocks_)
        if (block.column && compareTexts(block.name, column, order) == 0)
            for (const Property& property : block.properties)
                applyTo(rule, property);
    return rule;
}

// As if the table were a column.
std::u16string PropertySet::tableRule() const
{
    ColumnRule rule;
    for (const Block& block : blocks_)
        if (!block.column)
            for (const Property& property : block.properties)
                applyTo(rule, property);
    return rule.validationRule;
}

std::vector<std::u16string> PropertySet::columns() const
{
    std::vector<std::u16string> names;
    for (const Block& block : blocks_)
        if (block.column)
            names.push_back(block.name);
    return names;
}

std::uint16_t PropertySet::nameNumber(std::u16string_view name)
{
    auto found = std::find(names_.begin(), names_.end(), name);
    if (found == names_.end())
        found = names_.insert(found, std::u16string(name));
    return static_cast<std::uint16_t>(found - names_.begin());
}

void PropertySet::addBoolean(Block& block, std::u16string_view name, bool value)
{
    block.properties.push_back(
        {1, ColumnType::Boolean, nameNumber(name), {value ? std::byte{1} : std::byte{0}}});
}

void PropertySet::addColumn(const std::u16string& column, ColumnType type, bool required)
{
    Block block;
    block.column = true;
    block.name = column;
    if (isText(type))
        addBoolean(block, kAllowZeroLength, true);
    addBoolean(block, kRequired, required);
    if (isText(type))
        addBoolean(block, kUnicodeCompression, true);
    blocks_.push_back(std::move(block));
}

void PropertySet::removeColumn(std::u16string_view column, SortOrder order)
{
    std::erase_if(blocks_,
        [&](const Block& block) { return block.column && compareTexts(block.name, column, order) == 0; });
}

} // namespace vellums::jet
