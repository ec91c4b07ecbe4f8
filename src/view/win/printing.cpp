// The displayed top node on paper: laid out anew in the printer's measures, cut into pages, drawn in black on white.
#include <windows.h>

#include <algorithm>
#include <string>

#include "entry/trace.h"
#include "entry/win/debug_channel.h"
#include "resources/resource.h"
#include "tools/win/drawing.h"
#include "tools/win/fonts.h"
#include "tools/win/locale.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/commit.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/pages.h"
#include "view/print_view.h"
#include "view/report.h"
#include "view/win/client_window.h"
#include "view/win/painting.h"

namespace vantrel {

namespace {

constexpr int ScreenDotsPerInch = 96;
constexpr int LinesInPoints =
    72; // a hairline that every printer shows: the 72nd part of an inch over this many
constexpr int HeaderPoints = 9;

// A device context that is deleted at the end, whatever becomes of the document.
class PrinterDc {
public:
    explicit PrinterDc(HDC dc) noexcept : dc_(dc) {}
    ~PrinterDc() { DeleteDC(dc_); }
    PrinterDc(const PrinterDc&) = delete;
    PrinterDc& operator=(const PrinterDc&) = delete;
    operator HDC() const noexcept { return dc_; }

private:
    HDC dc_;
};

struct Resolution {
    int x;
    int y;
};

Resolution ResolutionOf(HDC dc) noexcept
{
    return {GetDeviceCaps(dc, LOGPIXELSX), GetDeviceCaps(dc, LOGPIXELSY)};
}

// A font as large on paper as the given one is on the screen.
LOGFONTW PaperFont(HFONT font, const Resolution& printer) noexcept
{
    LOGFONTW logFont{};
    GetObjectW(font, sizeof logFont, &logFont);
    const WindowDc screen(nullptr);
    logFont.lfHeight = MulDiv(logFont.lfHeight, printer.y, std::max(GetDeviceCaps(screen, LOGPIXELSY), 1));
    logFont.lfWidth = 0;
    return logFont;
}

PaperSheet SheetOf(HDC printer, const RECT& margins, std::int64_t lineHeight) noexcept
{
    const Resolution dots = ResolutionOf(printer);
    const bool metric = IsMetric();
    PaperSheet sheet;
    sheet.paper = {GetDeviceCaps(printer, PHYSICALWIDTH), GetDeviceCaps(printer, PHYSICALHEIGHT)};
    const std::int64_t left = GetDeviceCaps(printer, PHYSICALOFFSETX);
    const std::int64_t top = GetDeviceCaps(printer, PHYSICALOFFSETY);
    sheet.printable = {left, top, left + GetDeviceCaps(printer, HORZRES),
                       top + GetDeviceCaps(printer, VERTRES)};
    sheet.margins = {MarginPixels(margins.left, metric, dots.x), MarginPixels(margins.top, metric, dots.y),
                     MarginPixels(margins.right, metric, dots.x),
                     MarginPixels(margins.bottom, metric, dots.y)};
    // Half a line of white between them and the array.
    sheet.headerHeight = sheet.footerHeight = lineHeight + lineHeight / 2;
    return sheet;
}

// Everything that the pages have in common.
struct PrintJob {
    HDC printer;
    View& view;
    HFONT font;
    HFONT headerFont;
    HPEN pen;
    PagePlan plan; // device coordinates: the printable area's corner is (0, 0)
    PageGrid pages;
    std::wstring title;
    RECT body{}; // of the page being printed
};

// --- one box ---

void DrawFrame(const PrintJob& job, const Rect64& frame)
{
    // Sides beyond the page are drawn beyond it, but no further than the system can count.
    const RECT rect = DrawableRect(frame);
    Rectangle(job.printer, rect.left, rect.top, rect.right, rect.bottom);
}

// Each axis beyond the second is one more line at the left.
void DrawFrames(const PrintJob& job, const Scdr& node, Rect64 box)
{
    const SelectedObject pen(job.printer, job.pen);
    const SelectedObject brush(job.printer, GetStockObject(NULL_BRUSH));
    for (std::int32_t axis = 2; axis <= std::max(node.Rank, 2); ++axis) {
        if (axis > 2) box.left += 2 * job.view.metrics.edge.width;
        DrawFrame(job, box);
    }
}

void DrawClosedBox(const PrintJob& job, const Rect64& box)
{
    const RECT rect = DrawableRect(box);
    FillRect(job.printer, &rect, static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH)));
}

bool DrawBox(void* state, Scdr& node, const Rect64& placed)
{
    const PrintJob& job = *static_cast<const PrintJob*>(state);
    const Rect64 box = Moved(placed, job.body.left, job.body.top);
    const std::int64_t margin = job.view.metrics.margin;
    const Rect64 frame = Shrunk(box, margin, margin);
    if ((node.Flags & FlagMinimized) != 0) {
        DrawClosedBox(job, frame);
        return false;
    }
    DrawFrames(job, node, frame);
    if (!IsSimple(node)) return true;
    DrawTextRows(job.printer, job.view, node, TextCorner(job.view, node, box), 0, job.body);
    return false;
}

// --- one page ---

void DrawLine(const PrintJob& job, const Rect64& place, const std::wstring& text, UINT format)
{
    RECT rect = ToRect(place);
    const SelectedObject font(job.printer, job.headerFont);
    DrawTextW(job.printer, text.c_str(), static_cast<int>(text.size()), &rect,
              DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS | format);
}

std::wstring PageText(std::int64_t page, std::int64_t pages)
{
    return L"Page " + std::to_wstring(page) + L" of " + std::to_wstring(pages);
}

void DrawPage(PrintJob& job, std::size_t column, std::size_t row)
{
    const std::int64_t left = job.pages.columns[column];
    const std::int64_t top = job.pages.rows[row];
    const Size64 part{job.pages.columns[column + 1] - left, job.pages.rows[row + 1] - top};
    const Rect64& body = job.plan.body;
    job.body = ToRect({body.left, body.top, body.left + part.width, body.top + part.height});
    job.view.scroll.horizontal.position = left;
    job.view.scroll.vertical.position = top;
    const int saved = SaveDC(job.printer);
    IntersectClipRect(job.printer, job.body.left, job.body.top, job.body.right, job.body.bottom);
    SetBkMode(job.printer, TRANSPARENT);
    SelectObject(job.printer, job.font);
    const RECT area{0, 0, static_cast<LONG>(part.width), static_cast<LONG>(part.height)};
    ForEachVisibleNode(job.view, area, &DrawBox, &job);
    RestoreDC(job.printer, saved);
}

// False to end the document.
bool PrintPage(PrintJob& job, std::size_t column, std::size_t row)
{
    const auto columns = static_cast<std::int64_t>(job.pages.columns.size() - 1);
    const std::int64_t page =
        static_cast<std::int64_t>(row) * columns + static_cast<std::int64_t>(column) + 1;
    if (StartPage(job.printer) <= 0) return false;
    DrawPage(job, column, row);
    DrawLine(job, job.plan.header, job.title, DT_LEFT | DT_TOP);
    DrawLine(job, job.plan.footer, PageText(page, job.pages.PageCount()), DT_RIGHT | DT_BOTTOM);
    return EndPage(job.printer) > 0 && !job.view.effects.isInterruptOrClosePending(job.view);
}

// From left to right, then from top to bottom.
bool PrintPages(PrintJob& job)
{
    for (std::size_t row = 0; row + 1 < job.pages.rows.size(); ++row) {
        for (std::size_t column = 0; column + 1 < job.pages.columns.size(); ++column) {
            if (!PrintPage(job, column, row)) return false;
        }
    }
    return true;
}

std::int32_t PrintDocument(PrintJob& job)
{
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = job.title.c_str();
    if (StartDocW(job.printer, &document) <= 0) {
        TraceText(__LINE__, "StartDoc failed");
        return 1;
    }
    if (!PrintPages(job)) {
        AbortDoc(job.printer);
        return 1;
    }
    if (EndDoc(job.printer) > 0) return 0;
    TraceText(__LINE__, "EndDoc failed");
    return 1;
}

// --- the whole ---

void UseFont(View& view, HWND window, HFONT font, FontMeasurer& measurer)
{
    const FontMetrics metrics = GetFontMetrics(window, font);
    view.edit.averageCharWidth = metrics.averageCharWidth;
    view.edit.lineHeight = metrics.lineHeight;
    measurer.Open(font, view.edit.widths);
}

void UseMeasures(View& view, const View& shown, const Resolution& dots) noexcept
{
    view.metrics.margin = MulDiv(static_cast<int>(shown.metrics.margin), dots.x, ScreenDotsPerInch);
    view.metrics.edge = {MulDiv(static_cast<int>(shown.metrics.edge.width), dots.x, ScreenDotsPerInch),
                         MulDiv(static_cast<int>(shown.metrics.edge.height), dots.y, ScreenDotsPerInch)};
}

LOGFONTW HeaderFont(LOGFONTW logFont, const Resolution& dots) noexcept
{
    logFont.lfHeight = -MulDiv(HeaderPoints, dots.y, LinesInPoints);
    logFont.lfWeight = FW_NORMAL;
    return logFont;
}

std::wstring TitleOf(HWND window)
{
    const HWND frame = GetTopWindowOf(window);
    std::wstring title(static_cast<std::size_t>(GetWindowTextLengthW(frame)) + 1, L'\0');
    const int length = GetWindowTextW(frame, title.data(), static_cast<int>(title.size()));
    title.resize(static_cast<std::size_t>(std::max(length, 0)));
    return title;
}

// 0 when all pages went to the printer. Where the array could not be laid out for it ErrorCode says why. Throws OutOfMemory.
std::int32_t PrintTree(ClientWindow& client, HDC printer, const RECT& margins)
{
    PrintView print;
    if (!CopyForPrinting(client.view, print)) return 1;
    const Resolution dots = ResolutionOf(printer);
    const LOGFONTW logFont = PaperFont(client.font, dots);
    const OwnFont font(logFont);
    const OwnFont headerFont(HeaderFont(logFont, dots));
    FontMeasurer measurer;
    UseMeasures(print.view, client.view, dots);
    UseFont(print.view, client.window, font.Get(), measurer);
    if (FormatScdr(print.view, *print.tree) != 0 || CalculateScdrSizes(print.view) != 0) return 1;
    const FontMetrics header = GetFontMetrics(client.window, headerFont.Get());
    const PagePlan onPaper = PlanPage(SheetOf(printer, margins, header.lineHeight));
    const std::int64_t dx = -GetDeviceCaps(printer, PHYSICALOFFSETX);
    const std::int64_t dy = -GetDeviceCaps(printer, PHYSICALOFFSETY);
    const PagePlan plan{Moved(onPaper.header, dx, dy), Moved(onPaper.body, dx, dy),
                        Moved(onPaper.footer, dx, dy)};
    const Size64 page{plan.body.right - plan.body.left, plan.body.bottom - plan.body.top};
    const OwnPen pen(std::max(dots.x / (2 * LinesInPoints), 1), RGB(0, 0, 0));
    PrintJob job{printer,   print.view, font.Get(), headerFont.Get(),
                 pen.Get(), plan,       {},         TitleOf(client.window)};
    job.pages = CutArrayIntoPages(print.view, page);
    return PrintDocument(job);
}

} // namespace

LRESULT OnPrintScdr(ClientWindow& client, HDC printer, const RECT* margins)
{
    const TraceScope trace("printing.cpp", "OnPrintScdr");
    const PrinterDc owned(printer);
    View& view = client.view;
    if (printer == nullptr || margins == nullptr || view.top == nullptr || CheckAndAlignScdr(view) == 0)
        return 1;
    const BusyMark busy(view);
    StatusMessage(client.window, IDS_FORMATTING_ARRAY, 0);
    std::int32_t result = 1;
    try {
        result = PrintTree(client, owned, *margins);
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
    }
    if (HasError(view.context)) {
        ReportHostError(view);
    } else {
        NotifyFrame(view, ViewNotifyState); // takes the message away
    }
    return result;
}

} // namespace vantrel
