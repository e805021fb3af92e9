// The choice lives in two list boxes that nobody sees; menus, settings file and font follow them. Every way
// to change it ends in a selection in one of the lists and the routine for it (onFontSelected,
// onSizeSelected), as whoever selects by message gets no notification from the control and has to call it; a
// program from outside that selects and notifies comes by onListSelection().
//
// Colours that are those of the program count as not chosen, and give way to high contrast. So a user who
// wants exactly these in high contrast cannot have them, but nobody is left with a text that cannot be read.
#include "ui/main/displaySettings.h"

#include "app/start/settings.h"
#include "platform/codePage.h"
#include "ui/ids.h"
#include "ui/windows/border.h"
#include "ui/windows/childWindow.h"
#include "ui/windows/deviceContext.h"
#include "ui/windows/systemLook.h"
#include "ui/windows/wide.h"

#include <algorithm>
#include <iterator>

namespace vellums::ui {
namespace {

constexpr std::u16string_view kOfferedFonts[] = {u"Tahoma", u"Candara", u"Courier New", u"Courier",
    u"Calibri", u"Consolas", u"Times New Roman", u"Verdana", u"Century Gothic", u"Corbel", u"Arial",
    u"Arial Narrow", u"Segoe UI", u"Cambria", u"LiHei Pro"};
constexpr std::u16string_view kChineseFontsBegin = u"楷隶行圆黑碑魏宋仿简繁";
constexpr int kFirstSizeItem = ID_mnu_sizes_First - ID_mnu_sizes;

int CALLBACK collectFont(const LOGFONTW* font, const TEXTMETRICW* /*metrics*/, DWORD /*type*/, LPARAM into)
{
    return border::guarded(0, [&] {
        auto& names = *reinterpret_cast<std::vector<std::u16string>*>(into);
        std::u16string name = fromWide(font->lfFaceName);
        // A face comes once for each script.
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(std::move(name));
        return 1;
    });
}

// In the order in which the system enumerates them.
std::vector<std::u16string> installedFonts()
{
    std::vector<std::u16string> names;
    LOGFONTW every{};
    every.lfCharSet = DEFAULT_CHARSET;
    const DeviceContext screen(nullptr);
    EnumFontFamiliesExW(screen.get(), &every, collectFont, reinterpret_cast<LPARAM>(&names), 0);
    return names;
}

int selectedIn(HWND list)
{
    return static_cast<int>(SendMessageW(list, LB_GETCURSEL, 0, 0));
}

int countIn(HWND list)
{
    return static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
}

// The sizes in points, as they stand in the list.
const std::vector<std::u16string>& fontSizeTexts()
{
    static const std::vector<std::u16string> texts = {u"6", u"6.5", u"7.5", u"8", u"9", u"10", u"10.5", u"11",
        u"12", u"13", u"13.5", u"14", u"16", u"18", u"20", u"24", u"26", u"28", u"32", u"36", u"48", u"56",
        u"64", u"72"};
    return texts;
}

} // namespace

bool isOfferedFont(std::u16string_view name)
{
    if (std::find(std::begin(kOfferedFonts), std::end(kOfferedFonts), name) != std::end(kOfferedFonts))
        return true;
    return !name.empty() && kChineseFontsBegin.find(name.front()) != std::u16string_view::npos &&
        platform::ansiCode(name.front()) < 0; // in UTF-8 every such character counts
}

std::u16string defaultFontName()
{
    static const bool hasTahoma = [] {
        const std::vector<std::u16string> fonts = installedFonts();
        return std::find(fonts.begin(), fonts.end(), u"Tahoma") != fonts.end();
    }();
    return hasTahoma ? u"Tahoma" : u"MS Sans Serif";
}

DisplaySettings::DisplaySettings(const std::u16string& settingsFile, Menus& menus, RecordText& text)
    : settingsFile_(settingsFile)
    , menus_(menus)
    , text_(text)
{
}

void DisplaySettings::create(HWND parent, int dpi)
{
    dpi_ = dpi;
    lstFontNames_ = createChild(parent, L"LISTBOX", ID_lstFontNames, LBS_NOTIFY | LBS_HASSTRINGS);
    lstFontSizes_ = createChild(parent, L"LISTBOX", ID_lstFontSizes, LBS_NOTIFY | LBS_HASSTRINGS);
    mnu_fonts_.attach(menus_.popUpOf(ID_mnu_fontfaces), ID_mnu_fonts, 256, MenuArray::Captions::Names);
    mnu_sizes_.attach(menus_.popUpOf(ID_mnu_fontsizes), ID_mnu_sizes_First, 32, MenuArray::Captions::Names);
    fillFonts();
    fillSizes();
    readColours();
    selectFont(readSetting(settingsFile_, kFontNameSetting));
    SendMessageW(lstFontSizes_, LB_SETCURSEL, readSetting(settingsFile_, kFontSizeSetting), 0);
    if (selectedIn(lstFontNames_) >= 0)
        mnu_fonts_.checkOnly(static_cast<std::size_t>(selectedIn(lstFontNames_)));
    selectSize(selectedIn(lstFontSizes_));
    applyFont();
}

void DisplaySettings::fillFonts()
{
    std::size_t index = 0;
    for (const std::u16string& name : installedFonts()) {
        if (!isOfferedFont(name))
            continue;
        SendMessageW(lstFontNames_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(name)));
        mnu_fonts_.set(index++, {name, u"", false, true});
    }
}

void DisplaySettings::fillSizes()
{
    std::size_t index = 0;
    for (const std::u16string& size : fontSizeTexts()) {
        SendMessageW(lstFontSizes_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(size)));
        mnu_sizes_.set(index++, {size, u"", false, true});
    }
}

// The saved name, else the default font, else the first of the list.
void DisplaySettings::selectFont(const std::u16string& name)
{
    for (const std::u16string& wanted : {name, defaultFontName()}) {
        const LRESULT at = SendMessageW(lstFontNames_, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
            reinterpret_cast<LPARAM>(wide(wanted)));
        if (at == LB_ERR)
            continue;
        SendMessageW(lstFontNames_, LB_SETCURSEL, static_cast<WPARAM>(at), 0);
        return;
    }
    SendMessageW(lstFontNames_, LB_SETCURSEL, 0, 0);
}

void DisplaySettings::readColours()
{
    foreColor_ = readSetting(settingsFile_, kForeColorSetting);
    backColor_ = readSetting(settingsFile_, kBackColorSetting);
    coloursChosen_ = foreColor_ != kForeColorSetting.otherwise || backColor_ != kBackColorSetting.otherwise;
    makeBrush();
}

// High contrast comes before colours that nobody chose.
COLORREF DisplaySettings::foreColor() const
{
    return !coloursChosen_ && isHighContrast() ? GetSysColor(COLOR_WINDOWTEXT) : foreColor_;
}

COLORREF DisplaySettings::backColor() const
{
    return !coloursChosen_ && isHighContrast() ? GetSysColor(COLOR_WINDOW) : backColor_;
}

void DisplaySettings::makeBrush()
{
    brush_.reset(CreateSolidBrush(backColor()));
    if (coloursChanged)
        coloursChanged();
}

void DisplaySettings::systemColoursChanged()
{
    makeBrush();
}

void DisplaySettings::setDpi(int dpi)
{
    dpi_ = dpi;
    applyFont();
}

void DisplaySettings::applyFont()
{
    std::u16string name = selectedText(lstFontNames_);
    if (name.empty())
        name = defaultFontName();
    const std::u16string size = selectedText(lstFontSizes_);
    // The texts of the list are ours, so each is a number.
    text_.setFont(name, std::stod(std::string(size.begin(), size.end())), dpi_);
}

bool DisplaySettings::onListSelection(int controlId)
{
    if (controlId == ID_lstFontNames)
        onFontSelected();
    else if (controlId == ID_lstFontSizes)
        onSizeSelected();
    else
        return false;
    return true;
}

void DisplaySettings::onFontSelected()
{
    const int index = selectedIn(lstFontNames_);
    if (index < 0)
        return;
    mnu_fonts_.checkOnly(static_cast<std::size_t>(index));
    writeSetting(settingsFile_, kFontNameSetting, selectedText(lstFontNames_));
    applyFont();
}

void DisplaySettings::onSizeSelected()
{
    const int index = selectedIn(lstFontSizes_);
    if (index < 0)
        return;
    selectSize(index);
    writeSetting(settingsFile_, kFontSizeSetting, static_cast<std::uint32_t>(index));
    applyFont();
}

// The menu follows the list.
void DisplaySettings::selectSize(int index)
{
    menus_.setEnabled(ID_mnu_sizes_Smaller, index > 0);
    menus_.setEnabled(ID_mnu_sizes_Larger, index < countIn(lstFontSizes_) - 1);
    mnu_sizes_.checkOnly(static_cast<std::size_t>(index));
}

void DisplaySettings::chooseFont(int index)
{
    if (index < 0 || index >= countIn(lstFontNames_) || index == selectedIn(lstFontNames_))
        return;
    SendMessageW(lstFontNames_, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    onFontSelected();
}

void DisplaySettings::clickmnusizes(int index)
{
    const int before = selectedIn(lstFontSizes_);
    int wanted = before;
    switch (index) {
    case 0:
        wanted = std::max(0, before - 1);
        break;
    case 1:
        reset();
        return;
    case 2:
        wanted = std::min(countIn(lstFontSizes_) - 1, before + 1);
        break;
    default:
        if (index >= kFirstSizeItem && index - kFirstSizeItem < countIn(lstFontSizes_))
            wanted = index - kFirstSizeItem;
        break;
    }
    if (wanted == before)
        return;
    SendMessageW(lstFontSizes_, LB_SETCURSEL, static_cast<WPARAM>(wanted), 0);
    onSizeSelected();
}

void DisplaySettings::reset()
{
    if (confirmReset && !confirmReset())
        return;
    selectFont(defaultFontName());
    onFontSelected();
    SendMessageW(lstFontSizes_, LB_SETCURSEL, kFontSizeSetting.otherwise, 0);
    onSizeSelected();
    writeSetting(settingsFile_, kForeColorSetting, kForeColorSetting.otherwise);
    writeSetting(settingsFile_, kBackColorSetting, kBackColorSetting.otherwise);
    readColours();
}

std::u16string DisplaySettings::selectedText(HWND list) const
{
    const int index = selectedIn(list);
    if (index < 0)
        return {};
    const auto at = static_cast<WPARAM>(index);
    // The control writes a terminator behind the text, where a string has room for one.
    std::u16string text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, at, 0)), u'\0');
    SendMessageW(list, LB_GETTEXT, at, reinterpret_cast<LPARAM>(text.data()));
    return text;
}

} // namespace vellums::ui
