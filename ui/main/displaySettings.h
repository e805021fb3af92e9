// Font, size and colours of the record text: the lists to choose from, their menus, the settings file.
#pragma once

#include "app/start/settings.h"
#include "ui/controls/recordText.h"
#include "ui/main/menus.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vellums::ui {

// A rule by itself, for the tests. Whether a font is offered: one of the fixed names, or a name whose first
// character is two bytes in the ANSI code page and one of those that Chinese fonts begin with.
bool isOfferedFont(std::u16string_view name);
// "Tahoma" where it is installed, else "MS Sans Serif".
std::u16string defaultFontName();

class DisplaySettings {
public:
    DisplaySettings(const std::u16string& settingsFile, Menus& menus, RecordText& text);
    DisplaySettings(const DisplaySettings&) = delete;
    DisplaySettings& operator=(const DisplaySettings&) = delete;

    // Makes the two lists, which nobody sees, and their menus; applies the saved settings.
    void create(HWND parent, int dpi);
    // A change of the screen's resolution, or of the system's colours.
    void setDpi(int dpi);
    void systemColoursChanged();

    // The commands of the menu of sizes: 0 smaller, 1 reset, 2 larger, from 4 on an entry of the list.
    void clickmnusizes(int index);
    void chooseFont(int index);
    // Something was selected in a list; false: the control is none of the two.
    bool onListSelection(int controlId);

    // "Load default display settings?" Yes lets Reset go on.
    std::function<bool()> confirmReset;
    // The colours have changed: everything that has them is to be painted anew.
    std::function<void()> coloursChanged;

    COLORREF foreColor() const;
    COLORREF backColor() const;
    HBRUSH backBrush() const { return brush_.get(); }

private:
    void fillFonts();
    void fillSizes();
    void readColours();
    void onFontSelected();
    void onSizeSelected();
    void selectSize(int index);
    void selectFont(const std::u16string& name);
    void applyFont();
    void makeBrush();
    void reset();
    std::u16string selectedText(HWND list) const;

    const std::u16string& settingsFile_;
    Menus& menus_;
    RecordText& text_;
    HWND lstFontNames_ = nullptr;
    HWND lstFontSizes_ = nullptr;
    MenuArray mnu_fonts_;
    MenuArray mnu_sizes_; // the sizes alone, behind the commands
    int dpi_ = 96;
    std::uint32_t foreColor_ = kForeColorSetting.otherwise;
    std::uint32_t backColor_ = kBackColorSetting.otherwise;
    bool coloursChosen_ = false; // the user has others than those of the program
    OwnedBrush brush_;
};

} // namespace vellums::ui
