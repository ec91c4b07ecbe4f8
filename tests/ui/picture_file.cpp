#include "ui/picture_file.h"

#include <windows.h>

#include <cstdio>
#include <vector>

#include "ui/driver.h"

namespace vantrel::ui {

void SavePictureFile(const Picture& picture, const wchar_t* name)
{
    std::FILE* const file = _wfopen(name, L"wb");
    if (file == nullptr) return;
    const auto width = picture.Width();
    const auto height = picture.Height();
    const DWORD bytes = static_cast<DWORD>(width * height) * 4;
    const DWORD offset = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    const BITMAPFILEHEADER fileHeader{0x4D42, offset + bytes, 0, 0, offset};
    const BITMAPINFOHEADER header{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, bytes, 0, 0, 0, 0};
    std::vector<DWORD> rows;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const COLORREF c = picture.At(x, y);
            rows.push_back(static_cast<DWORD>(GetRValue(c) << 16 | GetGValue(c) << 8 | GetBValue(c)));
        }
    }
    std::fwrite(&fileHeader, sizeof fileHeader, 1, file);
    std::fwrite(&header, sizeof header, 1, file);
    std::fwrite(rows.data(), 4, rows.size(), file);
    std::fclose(file);
}

} // namespace vantrel::ui
