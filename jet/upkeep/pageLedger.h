// Who owns which page, and what is wrong with the file: what the parts of the checker write into.
#pragma once

#include "jet/file/pageFile.h"
#include "text/decimal.h"

#include <string>
#include <vector>

namespace vellums::jet {

using text::decimal;
// "page 12, row 3"
std::u16string placeText(RowRef place);

class PageLedger {
public:
    explicit PageLedger(PageFile& file);

    PageFile& file() { return file_; }

    void fault(std::u16string text);
    // Runs a part of the check; an error that it meets is a fault of `what`.
    template <typename Part>
    void attempt(const std::u16string& what, Part&& part)
    {
        try {
            part();
        } catch (const Error& error) {
            fault(what + u": " + error.description);
        }
    }

    // Enters the owner of a page; a second one is a fault.
    void claim(PageNo page, const std::u16string& owner);
    // The page holds usage maps, perhaps of several tables.
    void claimMapPage(PageNo page);
    bool isClaimed(PageNo page) const;

    // Gives the pages of a map and enters its own pages. `place` with page 0 is an absent map.
    std::vector<PageNo> mapPages(RowRef place, const std::u16string& owner);

    // Pages that are owned and marked free. Pages that are neither are lost until the file is compacted,
    // which real files bear without harm.
    void settle();

    std::vector<std::u16string> takeFaults() { return std::move(faults_); }

private:
    PageFile& file_;
    std::vector<std::u16string> faults_;
    std::vector<std::u16string> owners_; // names; page entries hold an index, 0: nobody
    std::vector<std::uint32_t> ownerOf_;
};

} // namespace vellums::jet
