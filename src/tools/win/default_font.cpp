#include "tools/win/default_font.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/options.h"
#include "tools/win/window.h"

namespace vantrel {

namespace {

constexpr char DefaultFace[] = "APL385 Unicode";

static_assert(sizeof(LOGFONTA) == 60, "the size is part of the stored value");

HANDLE g_carriedFont = nullptr;

LOGFONTA StoredLogFont() noexcept
{
    LOGFONTA logFont{};
    if (ReadOption(nullptr, u"Font", &logFont, sizeof logFont) != 0) logFont = GetDefaultLogFont();
    logFont.lfFaceName[LF_FACESIZE - 1] = '\0';
    ValidateLogFontA(logFont);
    return logFont;
}

bool IsDefaultFaceInstalled() noexcept
{
    // The font that will be used, but of a size that nobody uses: the system remembers the substitute that it chose for a missing face, and would go
    // on using it for that size after the carried font is there.
    LOGFONTA probe = StoredLogFont();
    probe.lfHeight = 997;
    const HFONT font = CreateFontIndirectA(&probe);
    char face[LF_FACESIZE] = "";
    TEXTMETRICA metrics{};
    {
        const WindowDc dc(nullptr);
        const SelectedObject selected(dc, font);
        GetTextFaceA(dc, LF_FACESIZE, face);
        GetTextMetricsA(dc, &metrics);
    }
    DeleteObject(font);
    return std::strcmp(face, DefaultFace) == 0 && metrics.tmWeight == FW_NORMAL && metrics.tmItalic == 0 &&
           metrics.tmUnderlined == 0 && metrics.tmStruckOut == 0;
}

} // namespace

LOGFONTA GetDefaultLogFont() noexcept
{
    const WindowDc screen(nullptr);
    LOGFONTA logFont{};
    logFont.lfHeight = MulDiv(12, GetDeviceCaps(screen, LOGPIXELSY), 72);
    logFont.lfWeight = FW_NORMAL;
    logFont.lfPitchAndFamily = FIXED_PITCH;
    std::memcpy(logFont.lfFaceName, DefaultFace, sizeof DefaultFace);
    return logFont;
}

HFONT GetDefaultFont() noexcept
{
    const TraceScope trace("default_font.cpp", "GetDefaultFont");
    const LOGFONTA logFont = StoredLogFont();
    return CreateFontIndirectA(&logFont);
}

void ValidateLogFontA(LOGFONTA& logFont) noexcept
{
    // Their glyphs sit at code points of an old host code page, not at Unicode's.
    static constexpr const char* Unusable[] = {"APL2", "APL2 Image", "Courier APL2", "Courier APL2 Bold"};
    const auto isFace = [&logFont](const char* face) { return std::strcmp(logFont.lfFaceName, face) == 0; };
    if (std::any_of(std::begin(Unusable), std::end(Unusable), isFace)) logFont = GetDefaultLogFont();
}

bool DefaultFontLoad() noexcept
{
    const TraceScope trace("default_font.cpp", "DefaultFontLoad");
    if (g_carriedFont != nullptr || IsDefaultFaceInstalled()) return true;
    const HINSTANCE module = ModuleInstance();
    const HRSRC resource =
        FindResourceW(module, MAKEINTRESOURCEW(IDF_DEFAULT_FONT), MAKEINTRESOURCEW(8)); // RT_FONT
    if (resource == nullptr) return false;
    void* bytes = LockResource(LoadResource(module, resource));
    if (bytes == nullptr) return false;
    DWORD fonts = 0;
    g_carriedFont = AddFontMemResourceEx(bytes, SizeofResource(module, resource), nullptr, &fonts);
    return g_carriedFont != nullptr;
}

void DefaultFontRelease() noexcept
{
    if (g_carriedFont == nullptr) return;
    RemoveFontMemResourceEx(g_carriedFont);
    g_carriedFont = nullptr;
}

} // namespace vantrel
