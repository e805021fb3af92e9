// A small file of Access 97, put together by rules of its own: nothing of the engine writes such files.
#pragma once

#include "jet/file/bytes.h"

#include <optional>
#include <string>
#include <vector>

namespace vellums::tests {

// A row whose variable slots hold these values. The mask has a bit for each of `columns`; which are set
// stands in `present`, by column number.
jet::Bytes jet3Row(std::uint8_t columns, const jet::Bytes& fixed, const std::vector<std::string>& slots,
    const std::vector<bool>& present);

// Of page 0 of a file.
jet::Bytes jet3Header(const std::string& password = {});

// The file: a table "Umsätze" (code page 1252) with the columns ID, Größe (text), Flag (yes/no), Notiz (memo)
// and Rest (text), and these rows:
//
//   1   "Tür"        true    "kurz é"            NULL
//   2   NULL         false   NULL                ""
//   3   200 x "a"    true    700 x "ü"           200 x "b", so that offsets pass 256; the row has moved
//   4   "x"          false   3000 x "€", chained "y"
jet::Bytes jet3File();

} // namespace vellums::tests
