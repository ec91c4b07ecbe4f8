// Pictures as BMP files, which every viewer reads and nothing has to encode.
#pragma once

namespace vantrel::ui {

class Picture;
void SavePictureFile(const Picture& picture, const wchar_t* name);

} // namespace vantrel::ui
