#include "jet/upkeep/checker.h"

#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"
#include "jet/upkeep/catalogueChecker.h"
#include "jet/upkeep/tableChecker.h"

namespace vellums::jet {
namespace {

// Page 0, and page 1 with the map of free pages and a second map of unknown use.
void claimGlobalPages(PageLedger& ledger)
{
    const std::u16string label = u"the map of free pages";
    ledger.claim(0, u"the header");
    ledger.claim(1, label);
    ledger.attempt(label, [&] {
        for (const PageNo page : FreePages(ledger.file()).bitmapPages())
            ledger.claim(page, label);
        for (const PageNo page : UsageMap(ledger.file(), {1, 1}).bitmapPages())
            ledger.claim(page, label);
    });
}

} // namespace

// The pages are settled last, when every table has said what it owns.
std::vector<std::u16string> checkFile(PageFile& file)
{
    PageLedger ledger(file);
    claimGlobalPages(ledger);
    const std::vector<CatalogueObject> objects = readObjects(ledger);
    for (const CatalogueObject& object : objects)
        if (object.hasDefinition())
            ledger.attempt(u"table '" + object.name + u"'",
                [&] { checkTable(ledger, static_cast<PageNo>(object.id), object.name); });
    checkCatalogue(ledger, objects);
    ledger.attempt(u"the map of free pages", [&] { ledger.settle(); });
    return ledger.takeFaults();
}

} // namespace vellums::jet
