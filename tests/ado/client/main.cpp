// The main of the notebook's tests under Windows. With --client=ado they run through the ADO client,
// against doubles of ADO, ADOX and DAO; after each test every object must have been released and every
// connection closed.
#include "platform/win32/comObject.h"
#include "store/ado/adoProvider.h"
#include "tests/ado/registration.h"
#include "tests/support/client.h"

#include <gmock/gmock.h>

#include <string_view>

namespace {

using namespace vellums;

// Each test answers for its own objects alone.
class NothingLeft : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override
    {
        alive_ = tests::ado::world().alive;
        connections_ = tests::ado::world().connections();
    }
    void OnTestEnd(const testing::TestInfo&) override
    {
        EXPECT_EQ(tests::ado::world().alive, alive_) << "objects that were never released";
        EXPECT_EQ(tests::ado::world().connections(), connections_) << "connections that were never closed";
    }
    int alive_ = 0;
    int connections_ = 0;
};

int runThroughAdo()
{
    const platform::ComApartment apartment;
    const tests::ado::InstalledAccess installed;
    const AdoProvider provider(u"104");
    tests::runThrough(provider);
    testing::UnitTest::GetInstance()->listeners().Append(new NothingLeft);
    return RUN_ALL_TESTS();
}

} // namespace

int main(int count, char** arguments)
{
    testing::InitGoogleMock(&count, arguments);
    const bool ado = count > 1 && std::string_view(arguments[1]) == "--client=ado";
    return ado ? runThroughAdo() : RUN_ALL_TESTS();
}
