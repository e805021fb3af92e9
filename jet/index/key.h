// Index keys: for each column a flag byte and the value in a form that sorts by plain byte comparison.
#pragma once

#include "jet/file/columnType.h"
#include "jet/file/header.h"

#include <optional>
#include <string>

namespace vellums::jet {

struct KeyColumn {
    ColumnType type = ColumnType::Long;
    bool ascending = true;
    SortOrder sortOrder; // texts
    bool ace = false;    // ACE file (descending decimals differ)
};

// The value of one column as a row holds it.
struct KeyValue {
    ByteView bytes;      // the stored bytes, for numbers, dates, GUIDs, binaries, decimals
    std::u16string text; // text and memo (the first 255 units suffice)
    bool boolean = false;
};

// Appends the part of one column; nullopt is NULL. False: no key can be made, `key` is as before.
bool appendKeyPart(Bytes& key, const KeyColumn& column, const std::optional<KeyValue>& value);

} // namespace vellums::jet
