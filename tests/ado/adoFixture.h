// Tests against an Access that seems to be installed.
#pragma once

#include "platform/win32/comObject.h"
#include "store/ado/adoProvider.h"
#include "store/embedded/embeddedProvider.h"
#include "tests/ado/registration.h"
#include "tests/support/client.h"
#include "tests/support/testNotebook.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace vellums::tests::ado {

class WithAccess : public testing::Test {
protected:
    WithAccess() { runThrough(provider); }
    ~WithAccess() override
    {
        runThrough(embedded);
        EXPECT_EQ(world().alive, 0) << "objects that were never released";
        EXPECT_EQ(world().connections(), 0) << "connections that were never closed";
        world().recording = false;
    }

    // What the work asked of the objects.
    template <typename Work>
    std::vector<std::string> callsOf(Work work)
    {
        world().calls.clear();
        world().recording = true;
        work();
        world().recording = false;
        return std::move(world().calls);
    }

    platform::ComApartment apartment;
    InstalledAccess installed;
    AdoProvider provider{u"104"};

private:
    EmbeddedProvider embedded;
};

} // namespace vellums::tests::ado
