// Everything is computed in twips and becomes pixels at the very end, so that borders which meet in twips
// meet in pixels: both sides round the same number. From the top:
//
//   lblStaticBorder -----------------------------------------------------------
//   lblSearch [ txtKey            ] lblFind [ txtInline         ]  lblDate
//   [ txtType                                                   ]       chkSort
//   lstHeads            | f | text
//                       | r |
//                       | a | lstInLineSrch, while there are results
//   shpEdge -------------------------------------------------------------------
//   ucStatusLeft            | ucStatusRight
//
// The rows of boxes and the panels have fixed heights; list and text take what is left. In the first row the
// labels and the date are as wide as their texts, and the two boxes share the rest. Where the window is too
// small for all of it, rectangles become empty, never negative.
#include "ui/main/layout.h"

#include <algorithm>
#include <cmath>

namespace vellums::ui {
namespace {

constexpr double kGap = 60;
constexpr double kStatusHeight = 330;
constexpr double kCheckWidth = 240;    // the box alone: its caption is never drawn
constexpr int kLinePixels = 2;         // an etched line, as the system draws it at any resolution
constexpr double kStatusShare = 0.382; // the golden section
constexpr double kLeastShare = 0.25;
constexpr double kMostShare = 0.75;
constexpr double kResultsShare = 0.25; // of the height of the text, at its bottom

RECT rectangle(const Scale& scale, double left, double top, double right, double bottom)
{
    RECT rect{scale.pixels(left), scale.pixels(top), scale.pixels(right), scale.pixels(bottom)};
    rect.right = std::max(rect.left, rect.right);
    rect.bottom = std::max(rect.top, rect.bottom);
    return rect;
}

} // namespace

int Scale::pixels(double twips) const
{
    return static_cast<int>(std::lround(twips / twipsPerPixel()));
}

double splitterInWindow(double left, double width)
{
    return std::clamp(left, width * kLeastShare, width * kMostShare);
}

double splitterInDrag(double left, double width)
{
    return std::clamp(left, 0.0, width * kMostShare);
}

Layout computeLayout(const LayoutInput& in, const Scale& scale)
{
    const auto place = [&scale](double left, double top, double right, double bottom) {
        return rectangle(scale, left, top, right, bottom);
    };
    Layout out{};

    const double lineHeight = scale.twips(kLinePixels);
    const double statusTop = in.height - kStatusHeight;
    const double leftPanel = in.width * kStatusShare;
    out.ucStatusLeft = place(0, statusTop, leftPanel, in.height);
    out.ucStatusRight = place(leftPanel + 2 * scale.twipsPerPixel(), statusTop, in.width, in.height);

    const double rowTop = kGap;
    const double rowBottom = rowTop + in.rowHeight;
    const double dateLeft = in.width - kGap - in.dateWidth;
    const double keyLeft = kGap + in.searchLabelWidth;
    // The two boxes share what the labels and the date leave.
    const double shared = std::max(0.0, dateLeft - kGap - keyLeft - kGap - in.findLabelWidth);
    const double keyRight = keyLeft + shared / 2;
    const double findLeft = keyRight + kGap + in.findLabelWidth;
    out.lblStaticBorder = place(0, 0, in.width, lineHeight);
    out.lblSearch = place(kGap, rowTop, keyLeft, rowBottom);
    out.txtKey = place(keyLeft, rowTop, keyRight, rowBottom);
    out.lblFind = place(keyRight + kGap, rowTop, findLeft, rowBottom);
    out.txtInline = place(findLeft, rowTop, dateLeft - kGap, rowBottom);
    out.lblDate = place(dateLeft, rowTop, in.width - kGap, rowBottom);

    const double titleTop = rowBottom + kGap;
    const double titleBottom = titleTop + in.rowHeight;
    const double checkLeft = in.width - kGap - kCheckWidth;
    out.txtType = place(kGap, titleTop, dateLeft - kGap, titleBottom);
    out.chkSort = place(checkLeft, titleTop, in.width - kGap, titleBottom);

    const double bodyTop = titleBottom + kGap;
    const double bodyBottom = std::max(bodyTop, statusTop - lineHeight);
    const double textLeft = in.splitterLeft + kSplitterWidth;
    out.shpEdge = place(0, bodyBottom, in.width, statusTop);
    out.lstHeads = place(kGap, bodyTop, in.splitterLeft, bodyBottom);
    out.fraSplitter = place(in.splitterLeft, bodyTop, textLeft, bodyBottom);
    const double resultsTop =
        in.resultsShown ? bodyBottom - (bodyBottom - bodyTop) * kResultsShare : bodyBottom;
    out.text = place(textLeft, bodyTop, in.width - kGap, resultsTop);
    out.lstInLineSrch = place(textLeft, resultsTop, in.width - kGap, bodyBottom);
    return out;
}

} // namespace vellums::ui
