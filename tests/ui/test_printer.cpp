#include "ui/test_printer.h"

#include <winspool.h>

#include <cstdio>

namespace vantrel::ui {
namespace {

constexpr wchar_t DriverName[] = L"Vantrel test driver";
constexpr wchar_t PrinterName[] = L"Vantrel test printer";

// A4 and Letter at 600 dots an inch, with margins of a quarter of an inch that cannot be printed on.
constexpr char Description[] = R"PPD(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "VANTREL.PPD"
*Manufacturer: "Vantrel"
*Product: "(Vantrel)"
*ModelName: "Vantrel test driver"
*ShortNickName: "Vantrel test driver"
*NickName: "Vantrel test driver"
*PSVersion: "(3010) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*TTRasterizer: Type42
*DefaultResolution: 600dpi
*Resolution 600dpi/600 DPI: "<</HWResolution[600 600]>>setpagedevice"
*OpenUI *PageSize/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]/ImagingBBox null>>setpagedevice"
*PageSize Letter/US Letter: "<</PageSize[612 792]/ImagingBBox null>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]/ImagingBBox null>>setpagedevice"
*PageRegion Letter/US Letter: "<</PageSize[612 792]/ImagingBBox null>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "18 18 577 824"
*ImageableArea Letter/US Letter: "18 18 594 774"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*PaperDimension Letter/US Letter: "612 792"
*DefaultFont: Courier
*Font Courier: Standard "(002.004S)" Standard ROM
)PPD";

std::wstring TemporaryFile(const wchar_t* name)
{
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + name;
}

bool WriteDescription(const std::wstring& path)
{
    std::FILE* const file = _wfopen(path.c_str(), L"wb");
    if (file == nullptr) return false;
    std::fwrite(Description, 1, sizeof Description - 1, file);
    return std::fclose(file) == 0;
}

bool AddDriver(std::wstring description)
{
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = const_cast<wchar_t*>(DriverName);
    driver.pEnvironment = const_cast<wchar_t*>(L"Windows x64");
    driver.pDriverPath = const_cast<wchar_t*>(L"wineps.drv");
    driver.pConfigFile = const_cast<wchar_t*>(L"wineps.drv");
    driver.pDataFile = description.data();
    driver.pDefaultDataType = const_cast<wchar_t*>(L"RAW");
    return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                               APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY) != FALSE;
}

HANDLE AddTestPrinter(std::wstring port)
{
    PRINTER_INFO_2W printer{};
    printer.pPrinterName = const_cast<wchar_t*>(PrinterName);
    printer.pPortName = port.data();
    printer.pDriverName = const_cast<wchar_t*>(DriverName);
    printer.pPrintProcessor = const_cast<wchar_t*>(L"winprint");
    printer.pDatatype = const_cast<wchar_t*>(L"RAW");
    return AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
}

std::string ReadFile(const std::wstring& path)
{
    std::string text;
    std::FILE* const file = _wfopen(path.c_str(), L"rb");
    if (file == nullptr) return text;
    char block[65536];
    for (std::size_t got = 0; (got = std::fread(block, 1, sizeof block, file)) > 0;)
        text.append(block, got);
    std::fclose(file);
    return text;
}

} // namespace

TestPrinter::TestPrinter()
    : description_(TemporaryFile(L"vantrel-test.ppd")), output_(TemporaryFile(L"vantrel-test.ps"))
{
    DeleteFileW(output_.c_str());
    if (!WriteDescription(description_) || !AddDriver(description_)) return;
    printer_ = AddTestPrinter(output_);
    if (printer_ != nullptr) SetDefaultPrinterW(PrinterName);
}

TestPrinter::~TestPrinter()
{
    if (printer_ != nullptr) {
        DeletePrinter(printer_);
        ClosePrinter(printer_);
    }
    DeleteFileW(description_.c_str());
    DeleteFileW(output_.c_str());
}

std::string TestPrinter::Output() const
{
    for (int waited = 0; waited < 10000; waited += 50) {
        std::string text = ReadFile(output_);
        if (text.find("%%EOF") != text.npos) return text;
        Sleep(50);
    }
    return {};
}

std::string TestPrinter::OutputNow() const
{
    return ReadFile(output_);
}

int CountPages(const std::string& postScript)
{
    int pages = 0;
    for (std::size_t at = 0; (at = postScript.find("%%Page: ", at)) != postScript.npos; ++at)
        ++pages;
    return pages;
}

} // namespace vantrel::ui
