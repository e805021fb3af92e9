// Where everything in the main window stands, computed in twips (1440 to an inch) and given in pixels.
#pragma once

#include <windows.h>

namespace vellums::ui {

// Twips and pixels of one screen.
class Scale {
public:
    explicit Scale(UINT dpi = 96)
        : dpi_(static_cast<int>(dpi))
    {
    }
    int dpi() const { return dpi_; }
    double twipsPerPixel() const { return 1440.0 / dpi_; }
    int pixels(double twips) const;
    double twips(int pixels) const { return pixels * twipsPerPixel(); }

private:
    int dpi_;
};

// What is measured or chosen outside; widths and positions in twips.
struct LayoutInput {
    double width = 0; // of the client area
    double height = 0;
    double rowHeight = 0; // of the boxes of one line
    double searchLabelWidth = 0;
    double findLabelWidth = 0;
    double dateWidth = 0;
    double splitterLeft = 0;
    bool resultsShown = false;
};

struct Layout {
    RECT lblSearch;
    RECT txtKey;
    RECT lblFind;
    RECT txtInline;
    RECT lblDate;
    RECT txtType;
    RECT chkSort;
    RECT lstHeads;
    RECT fraSplitter;
    RECT text; // both text boxes
    RECT lstInLineSrch;
    RECT ucStatusLeft;
    RECT ucStatusRight;
    RECT lblStaticBorder;
    RECT shpEdge;
};

Layout computeLayout(const LayoutInput& input, const Scale& scale);

// The splitter as resizing keeps it: between a quarter and three quarters of the width (twips).
double splitterInWindow(double left, double width);
// The splitter as a drag moves it: from the left edge to three quarters of the width.
double splitterInDrag(double left, double width);

inline constexpr double kFirstSplitterLeft = 4500;
inline constexpr double kSplitterWidth = 75;

} // namespace vellums::ui
