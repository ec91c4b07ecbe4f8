#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/session/hosts.h"

// One run of the workbench: read the file, play the interpreter for one edit, write what was saved.
namespace vantrel::workbench {

// What a run needs of the platform. Texts are UTF-8, file names as the command line gave them.
struct Platform {
    void* state = nullptr;
    // False with the reason. Reads the whole file.
    bool (*readFile)(void* state, const std::u16string& name, std::string& bytes,
                     std::string& reason) = nullptr;
    // False with the reason; the file is then as it was before.
    bool (*writeFile)(void* state, const std::u16string& name, const std::string& bytes,
                      std::string& reason) = nullptr;
    bool (*loadLibrary)(void* state, EditorLibrary& library, std::string& reason) = nullptr;
    void (*print)(void* state, std::string_view bytes) = nullptr; // the standard output, bytes as they are
    void (*complain)(void* state,
                     std::string_view line) = nullptr; // the standard error, one line without its end
};

// Returns the exit code. `arguments` without the program's name.
int RunWorkbench(const std::vector<std::u16string>& arguments, const Platform& platform);

} // namespace vantrel::workbench
