#include "frame/win/tool_pictures.h"

#include <algorithm>
#include <memory>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/png.h"

namespace vantrel {
namespace {

// GDI+ for as long as it lives.
class GdiplusScope {
public:
    GdiplusScope() noexcept
    {
        const Gdiplus::GdiplusStartupInput input;
        if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
    }
    ~GdiplusScope()
    {
        if (token_ != 0) Gdiplus::GdiplusShutdown(token_);
    }
    GdiplusScope(const GdiplusScope&) = delete;
    GdiplusScope& operator=(const GdiplusScope&) = delete;

private:
    ULONG_PTR token_ = 0;
};

UINT StripOfSize(int size) noexcept
{
    switch (size) {
    case 20: return IDP_TOOLS_20;
    case 24: return IDP_TOOLS_24;
    case 32: return IDP_TOOLS_32;
    case 36: return IDP_TOOLS_36;
    case 48: return IDP_TOOLS_48;
    default: return IDP_TOOLS_16;
    }
}

BYTE Mixed(BYTE from, BYTE to, UINT share) noexcept
{
    return static_cast<BYTE>((from * (255 - share) + to * share) / 255);
}

COLORREF Mixed(COLORREF from, COLORREF to, UINT share) noexcept
{
    return RGB(Mixed(GetRValue(from), GetRValue(to), share), Mixed(GetGValue(from), GetGValue(to), share),
               Mixed(GetBValue(from), GetBValue(to), share));
}

// Opacity is the drawing, red the share of the accent colour; the result is opaque, as every version of the image list can show it.
UINT32 Coloured(UINT32 drawn, COLORREF paper, COLORREF ink, COLORREF accent) noexcept
{
    const COLORREF color = Mixed(paper, Mixed(ink, accent, (drawn >> 16) & 0xFF), drawn >> 24);
    return static_cast<UINT32>(GetRValue(color)) << 16 | static_cast<UINT32>(GetGValue(color)) << 8 |
           GetBValue(color);
}

// A bitmap of the strip in real colours; the caller deletes it.
HBITMAP ColourStrip(Gdiplus::Bitmap& strip, const PictureColors& colors)
{
    const int width = static_cast<int>(strip.GetWidth());
    const int height = static_cast<int>(strip.GetHeight());
    Gdiplus::BitmapData data{};
    const Gdiplus::Rect all(0, 0, width, height);
    if (strip.LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB, &data) != Gdiplus::Ok)
        return nullptr;
    BITMAPINFO format{};
    format.bmiHeader = {sizeof format.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HBITMAP const bitmap = CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (bitmap != nullptr) {
        const COLORREF paper = GetSysColor(COLOR_3DFACE);
        const COLORREF ink = GetSysColor(colors.ink);
        const COLORREF accent = GetSysColor(colors.accent);
        auto* to = static_cast<UINT32*>(bits);
        for (int y = 0; y < height; ++y) {
            const auto* const from =
                reinterpret_cast<const UINT32*>(static_cast<const BYTE*>(data.Scan0) + y * data.Stride);
            to = std::transform(from, from + width, to,
                                [&](UINT32 drawn) { return Coloured(drawn, paper, ink, accent); });
        }
    }
    strip.UnlockBits(&data);
    return bitmap;
}

} // namespace

HIMAGELIST LoadToolPictures(int size, const PictureColors& colors)
{
    TraceScope trace("tool_pictures.cpp", "LoadToolPictures");
    const GdiplusScope gdiplus;
    const std::unique_ptr<Gdiplus::Bitmap> strip = LoadPng(StripOfSize(size));
    if (strip == nullptr) return nullptr;
    HBITMAP const bitmap = ColourStrip(*strip, colors);
    if (bitmap == nullptr) return nullptr;
    HIMAGELIST const list =
        ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, static_cast<int>(strip->GetWidth()) / size, 0);
    // What has the colour of the paper lets the bar show through, and with it its looks under the mouse.
    if (list != nullptr) ImageList_AddMasked(list, bitmap, GetSysColor(COLOR_3DFACE));
    DeleteObject(bitmap);
    return list;
}

} // namespace vantrel
