// The printer's settings, which last as long as the process, and the system's dialogs about them.
#include <windows.h>

#include <objbase.h>

#include <commdlg.h>
#include <winspool.h>

#include "entry/trace.h"
#include "frame/win/frame_window.h"
#include "tools/win/guard.h"
#include "tools/win/locale.h"
#include "view/messages.h"

namespace vantrel {
namespace {

struct PrinterSettings {
    PAGESETUPDLGW pageSetup{};
    PRINTDLGEXW printDialog{};
    RECT margins{}; // in the unit of the user's country: hundredths of a millimetre or thousandths of an inch
    bool initialized = false;
    bool settingUp = false; // each dialog is open at most once
    bool printing = false;
};
PrinterSettings g_printer;

// Holds a re-entry guard for as long as a dialog is open.
class OpenScope {
public:
    explicit OpenScope(bool& open) noexcept : open_(open) { open_ = true; }
    ~OpenScope() { open_ = false; }
    OpenScope(const OpenScope&) = delete;
    OpenScope& operator=(const OpenScope&) = delete;

private:
    bool& open_;
};

bool HasDefaultPrinter() noexcept
{
    DWORD length = 0;
    return GetDefaultPrinterW(nullptr, &length) || GetLastError() != ERROR_FILE_NOT_FOUND;
}

void ShareDeviceHandles() noexcept
{
    g_printer.printDialog.hDevMode = g_printer.pageSetup.hDevMode;
    g_printer.printDialog.hDevNames = g_printer.pageSetup.hDevNames;
}

// An inch on every side is what Windows answers at first; a system that answers none leaves it to the program.
RECT DefaultMargins(const RECT& answered) noexcept
{
    if (answered.left != 0 || answered.top != 0 || answered.right != 0 || answered.bottom != 0)
        return answered;
    const LONG inch = IsMetric() ? 2540 : 1000;
    return {inch, inch, inch, inch};
}

// The printer that the user wants to print on, as the dialog has set it up; null: cancelled.
HDC AskForPrinter(FrameWindow& frame)
{
    const AskingScope asking(frame);
    PRINTDLGEXW& dialog = g_printer.printDialog;
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = frame.window;
    dialog.Flags =
        PD_NOCURRENTPAGE | PD_USEDEVMODECOPIESANDCOLLATE | PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION;
    dialog.nStartPage = START_PAGE_GENERAL;
    dialog.nMaxPageRanges = 0;
    dialog.lpPageRanges = nullptr;
    dialog.nCopies = 1;
    dialog.hDC = nullptr;
    const HRESULT shown = PrintDlgExW(&dialog);
    RethrowEscapedException();
    // The dialog may have exchanged them for those of another printer.
    g_printer.pageSetup.hDevMode = dialog.hDevMode;
    g_printer.pageSetup.hDevNames = dialog.hDevNames;
    if (shown != S_OK || dialog.hDC == nullptr) return nullptr;
    if (dialog.dwResultAction == PD_RESULT_PRINT) return dialog.hDC;
    DeleteDC(dialog.hDC);
    return nullptr;
}

} // namespace

std::int32_t PrinterInitializeInfo()
{
    TraceScope trace("printer.cpp", "PrinterInitializeInfo");
    if (g_printer.initialized) return 1;
    if (!HasDefaultPrinter()) return 0;
    PAGESETUPDLGW& setup = g_printer.pageSetup;
    setup.lStructSize = sizeof setup;
    setup.Flags = PSD_RETURNDEFAULT;
    if (PageSetupDlgW(&setup)) {
        g_printer.margins = DefaultMargins(setup.rtMargin);
        ShareDeviceHandles();
    }
    g_printer.initialized = true;
    return 1;
}

void PrinterSetupPage(FrameWindow& frame)
{
    TraceScope trace("printer.cpp", "PrinterSetupPage");
    if (PrinterInitializeInfo() == 0 || g_printer.settingUp) return;
    const OpenScope open(g_printer.settingUp);
    const AskingScope asking(frame);
    PAGESETUPDLGW& setup = g_printer.pageSetup;
    setup.hwndOwner = frame.window;
    setup.Flags = PSD_MINMARGINS | PSD_MARGINS;
    setup.rtMargin = g_printer.margins;
    const bool accepted = PageSetupDlgW(&setup) != 0;
    RethrowEscapedException();
    if (!accepted) return;
    g_printer.margins = setup.rtMargin;
    ShareDeviceHandles();
}

void Print(FrameWindow& frame)
{
    TraceScope trace("printer.cpp", "Print");
    if (PrinterInitializeInfo() == 0 || g_printer.printing) return;
    const OpenScope open(g_printer.printing);
    HDC const printer = AskForPrinter(frame);
    if (printer == nullptr) return;
    // From here on the user may close the window: the pages are given up for it.
    SendMessageW(frame.client, ViewPrintScdr, reinterpret_cast<WPARAM>(printer),
                 reinterpret_cast<LPARAM>(&g_printer.margins));
    RethrowEscapedException();
}

} // namespace vantrel
