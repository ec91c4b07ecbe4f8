#include "tools/win/png.h"

#include <shlwapi.h>

#include "tools/win/window.h"

namespace vantrel {

std::unique_ptr<Gdiplus::Bitmap> LoadPng(UINT id)
{
    HINSTANCE const module = ModuleInstance();
    HRSRC const resource = FindResourceW(module, MAKEINTRESOURCEW(id), L"PNG");
    if (resource == nullptr) return nullptr;
    const void* const bytes = LockResource(LoadResource(module, resource));
    IStream* const stream =
        SHCreateMemStream(static_cast<const BYTE*>(bytes), SizeofResource(module, resource));
    if (stream == nullptr) return nullptr;
    auto bitmap = std::make_unique<Gdiplus::Bitmap>(stream);
    stream->Release(); // the bitmap has a reference of its own
    return bitmap->GetLastStatus() == Gdiplus::Ok ? std::move(bitmap) : nullptr;
}

} // namespace vantrel
