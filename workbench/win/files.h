#pragma once

#include <string>

// Files and texts by way of Windows.
namespace vantrel::workbench {

// False with the reason.
bool ReadWholeFile(const std::u16string& name, std::string& bytes, std::string& reason);
// Writes beside the file under another name, then renames: whoever reads the file sees all of the old or all of the new
// bytes. False with the reason; the file is then as it was.
bool ReplaceFileContents(const std::u16string& name, const std::string& bytes, std::string& reason);
// What Windows says about the calling thread's last error.
std::string LastErrorText();

} // namespace vantrel::workbench
