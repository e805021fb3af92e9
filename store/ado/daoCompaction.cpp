#include "store/ado/daoCompaction.h"

#include "platform/files.h"
#include "store/ado/throughCom.h"
#include "text/letterCase.h"

namespace vellums {
namespace {

using platform::ComObject;
using platform::Variant;

constexpr char16_t kJetEngine[] = u"DAO.DBEngine.36";
constexpr char16_t kAceEngine[] = u"DAO.DBEngine.120";

constexpr std::int32_t kCannotCreate = 429;
constexpr std::int32_t kUnknownFormat = 3343;

// The engine of Jet is missing in every 64-bit process, and does not know the files that ACE has made
// under the older extension; that of ACE compacts both formats.
void compactMdb(const std::u16string& source, const std::u16string& destination)
{
    try {
        ComObject::create(kJetEngine).call(u"CompactDatabase", {source, destination});
        return;
    } catch (const platform::ComError& e) {
        if ((e.number != kCannotCreate && e.number != kUnknownFormat) || !platform::canCreate(kAceEngine))
            throw;
    }
    // What the first engine has begun would be in the way of the second.
    platform::removeFile(destination);
    ComObject::create(kAceEngine).call(u"CompactDatabase", {source, destination});
}

void compactAccdb(const std::u16string& source, const std::u16string& destination)
{
    constexpr std::int32_t kVersion12 = 128;
    ComObject::create(kAceEngine)
        .call(u"CompactDatabase", {source, destination, Variant::missing(), kVersion12});
}

} // namespace

void compactWithDao(const std::u16string& source, const std::u16string& destination)
{
    const std::u16string lower = text::lowerCase(source);
    throughCom([&] {
        if (lower.ends_with(u".mdb"))
            compactMdb(source, destination);
        else if (lower.ends_with(u".accdb"))
            compactAccdb(source, destination);
        else
            throw platform::ComError(E_INVALIDARG, u"Only .mdb and .accdb files can be compacted.");
    });
}

} // namespace vellums
