// Text that the session's end would have lost: kept in a file beside the settings file, offered at the
// next start.
//
// The file is "<program>.unsaved", or "<program>.2.unsaved" and so on where an earlier one has not been
// taken back yet. It holds, numbers in four bytes, little-endian:
//
//   offset  size  holds
//        0     8  the letters VLUNSAV1
//        8     4  the record's ID, negative for a new record
//       12        eight texts, each as the number of its code units and these in UTF-16: connection
//                 string, data folder, table, title and text as they were loaded, title and text as they
//                 were in the boxes, link
//                 32 hexadecimal digits: MD5 over all bytes before
#pragma once

#include "store/notebook.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellums {

struct UnsavedText {
    std::u16string conn; // of the database it belongs to
    std::u16string parent;
    std::u16string table;
    std::int32_t id = -1;
    std::u16string titleBefore; // as the record was when it was loaded
    std::u16string textBefore;
    std::u16string title;
    std::u16string text;
    std::u16string link; // for a new record

    bool operator==(const UnsavedText&) const = default;
};

// Writes it, flushed to the disk. False: it could not be written.
[[nodiscard]] bool keepUnsavedText(const Notebook& notebook, const UnsavedText& text);

// The files that are there, the oldest name first.
std::vector<std::u16string> unsavedTextFiles(const Notebook& notebook);
// What such a file holds; nothing where it is not whole.
std::optional<UnsavedText> readUnsavedText(const std::u16string& file);

// Puts the text into the database: into the record it came from where that still is as it was, else as a
// new record. Nothing: it failed, and the reason is told. `added`: it became a new record.
struct TakenBack {
    std::int32_t id = 0;
    bool added = false;
};
std::optional<TakenBack> takeBack(const Notebook& notebook, const UnsavedText& text);

} // namespace vellums
