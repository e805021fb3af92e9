#include "jet/database.h"
#include "platform/files.h"
#include "tests/ado/adoxDoubles.h"
#include "text/letterCase.h"

#include <array>

namespace vellums::tests::ado {
namespace {

bool isJet4(const std::u16string& path)
{
    std::array<std::byte, 0x15> start{};
    platform::File(path, platform::Access::Read).readAt(0, start);
    return start[0x14] == std::byte{1};
}

// DAO's numbers are those of its engine.
class EngineDouble : public Double {
public:
    explicit EngineDouble(bool jetOnly)
        : Double(jetOnly ? "DBEngine.36" : "DBEngine.120")
        , jetOnly_(jetOnly)
    {
        method(L"CompactDatabase", 2, 5, [this](const Call& call) { compact(call); });
    }

private:
    bool jetOnly_;

    void compact(const Call& call) const
    {
        const std::u16string source = call.text(0);
        const std::u16string destination = call.text(1);
        constexpr std::int32_t kVersion12 = 128;
        if (call.has(2) || (call.has(3) && (jetOnly_ || call.number(3) != kVersion12)))
            refuse(3001, u"Invalid argument.");
        if (!platform::fileExists(source))
            refuse(3024, u"Could not find file '" + source + u"'.");
        if (platform::fileExists(destination))
            refuse(3204, u"Database already exists.");
        if (world().open.count(text::lowerCase(source)) != 0)
            refuse(3356, u"You attempted to open a database that is already opened exclusively by user.");
        try {
            if (jetOnly_ && !isJet4(source))
                refuse(3343, u"Unrecognized database format '" + source + u"'.");
            platform::copyFile(source, destination);
        } catch (const platform::FileError&) {
            refuse(3045, u"Could not use '" + source + u"'; file already in use.");
        }
    }
};

} // namespace

Double* newJetEngine()
{
    return new EngineDouble(true);
}

Double* newAceEngine()
{
    return new EngineDouble(false);
}

} // namespace vellums::tests::ado
