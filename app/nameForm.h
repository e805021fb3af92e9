// What frmInput shows when it asks for the name of a new database or table.
#pragma once

#include "store/notebook.h"

#include <string>
#include <string_view>

namespace vellums {

// A form that is opened with this marker asks for a database, with any other for a table.
inline constexpr std::u16string_view kDatabaseMarker = u"@1#";

struct NameForm {
    std::u16string caption;
    std::u16string label;
    std::u16string text; // in the box at first: the time as "mmddhhmmss"
    std::u16string accept;
    std::u16string cancel;
};

NameForm nameForm(const Notebook& notebook, std::u16string_view marker);

// The form itself, modal.
class NameDialog {
public:
    virtual ~NameDialog() = default;
    // What the user left in the box, as it is; empty when cancelled.
    virtual std::u16string ask(const NameForm& form) = 0;
};

} // namespace vellums
