// The doubles in the place of the installed classes, in this process only.
#pragma once

#include "tests/ado/double.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellums::tests::ado {

// One class, from its construction to its destruction. A name that the system lacks is written into the
// registry and removed again.
class Registration {
public:
    Registration(std::u16string progId, std::u16string_view classId, std::function<Double*()> make);
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration();

private:
    std::u16string progId_;
    bool wroteName_ = false;
    DWORD cookie_ = 0;
    IClassFactory* factory_ = nullptr;
};

// ADO, ADOX, DAO and the ACE provider, which the registry names as well.
class InstalledAccess {
public:
    InstalledAccess();
    InstalledAccess(const InstalledAccess&) = delete;
    InstalledAccess& operator=(const InstalledAccess&) = delete;
    ~InstalledAccess();

    // As if a class had never been installed. Gone until the end.
    void remove(std::u16string_view progId);

private:
    std::vector<std::pair<std::u16string, std::unique_ptr<Registration>>> classes_;
};

} // namespace vellums::tests::ado
