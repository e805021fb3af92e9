// Each part of the checker claims the pages that it finds to be its own. A page that is claimed twice is a
// fault at that moment; at the end those that are claimed and marked free are. So no part needs to know of
// the others, and the whole takes four bytes for a page and one name for an owner.
#include "jet/upkeep/pageLedger.h"

#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"

namespace vellums::jet {
namespace {

constexpr std::size_t kMostFaults = 1000; // a ruined file would fill the memory
const char16_t* const kMaps = u"usage maps";

} // namespace

std::u16string placeText(RowRef place)
{
    return u"page " + decimal(place.page) + u", row " + decimal(place.row);
}

PageLedger::PageLedger(PageFile& file)
    : file_(file)
    , owners_({u"nobody"})
    , ownerOf_(file.pageCount())
{
}

void PageLedger::fault(std::u16string text)
{
    if (faults_.size() < kMostFaults)
        faults_.push_back(std::move(text));
    else if (faults_.size() == kMostFaults)
        faults_.push_back(u"There are more faults.");
}

void PageLedger::claim(PageNo page, const std::u16string& owner)
{
    if (page >= ownerOf_.size())
        return fault(owner + u": page " + decimal(page) + u" lies beyond the end of the file");
    if (ownerOf_[page] != 0)
        return fault(
            u"Page " + decimal(page) + u" has two owners: " + owners_[ownerOf_[page]] + u" and " + owner);
    // An owner claims its pages one after the other, so most often its name stands at the end.
    if (owners_.back() != owner)
        owners_.push_back(owner);
    ownerOf_[page] = static_cast<std::uint32_t>(owners_.size() - 1);
}

// Maps of several tables may share a page, and those of page 1 are claimed with the map of free pages.
void PageLedger::claimMapPage(PageNo page)
{
    if (page == 1 || (isClaimed(page) && owners_[ownerOf_[page]] == kMaps))
        return;
    claim(page, kMaps);
}

bool PageLedger::isClaimed(PageNo page) const
{
    return page < ownerOf_.size() && ownerOf_[page] != 0;
}

std::vector<PageNo> PageLedger::mapPages(RowRef place, const std::u16string& owner)
{
    std::vector<PageNo> pages;
    if (place.page == 0)
        return pages;
    attempt(owner, [&] {
        const UsageMap map(file_, place);
        claimMapPage(place.page);
        for (const PageNo page : map.bitmapPages())
            claim(page, owner + u" (bitmap)");
        pages = map.pages();
    });
    return pages;
}

void PageLedger::settle()
{
    const FreePages free(file_);
    for (PageNo page = 0; page < ownerOf_.size(); ++page) {
        if (isClaimed(page) && free.isFree(page))
            fault(u"Page " + decimal(page) + u" is marked free but belongs to " + owners_[ownerOf_[page]]);
    }
}

} // namespace vellums::jet
