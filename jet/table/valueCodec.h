// Values as bytes: numbers, dates and texts as columns hold them.
#pragma once

#include "jet/table/table.h"

#include <optional>
#include <string_view>

namespace vellums::jet {

// The value of a column (of any type but memo and OLE) from its stored bytes. Throws (damaged file)
// when the length does not fit the type.
Value decodeValue(const Column& column, ByteView bytes);

// A decimal as calculated columns hold it: two bytes, scale, 80 when negative, then three numbers of four
// bytes, the most significant one first and the least one second.
inline constexpr std::size_t kPlainDecimalBytes = 16;
Decimal decodePlainDecimal(ByteView bytes);

// The bytes of a value that is neither NULL nor a boolean, for a column that is neither memo nor OLE.
// Throws: field too small, type mismatch (the value is of another type or out of range).
Bytes encodeValue(const Column& column, const Value& value);

// Splits off the mark of a compressed text. Texts that switch between one and two bytes are decoded
// into `scratch`.
StoredText storedText(ByteView bytes, Bytes& scratch);
// The same for a text in a code page, which is converted where it is not of ASCII alone.
StoredText storedCodePageText(ByteView bytes, std::uint16_t codePage, Bytes& scratch);
std::u16string toText(const StoredText& text);

// The bytes of a text, compressed when `compress` is set and all of more than two characters are
// within U+0001 to U+00FF.
Bytes encodeText(std::u16string_view text, bool compress);

} // namespace vellums::jet
