// A notebook in a window without a screen, with the commands for its records.
#pragma once

#include "app/gate.h"
#include "app/recordCommands.h"
#include "tests/support/memoryControls.h"
#include "tests/support/testNotebook.h"

#include <string>
#include <string_view>
#include <vector>

namespace vellums::tests {

class WindowNotebook {
public:
    explicit WindowNotebook(bool chinese = false);

    // The records 1 "apple", 2 "banana" and 3 "cherry" of 2001, 2002 and 2003; the bodies are "body of ...".
    void addFruits();
    // The fields of a snippet table that are searched.
    void offerFields();

    std::u16string say(std::u16string_view english, std::u16string_view chinese) const;
    // The question about unsaved changes with its buttons.
    std::u16string saveQuestion(std::u16string_view buttons) const;
    std::u16string lastShown() const { return notes.shown().empty() ? u"" : notes.shown().back(); }

    TestNotebook notes;
    MemoryWindow window;
    WindowPorts ports = window.ports();
    Moments moments;
    RecordCommands records{*notes, ports, moments};
    std::vector<std::u16string> gateShown;
    Gate gate{*notes, notes.collected(),
        {[this](const std::u16string& line) { gateShown.push_back(line); }, [] {}}};
};

} // namespace vellums::tests
