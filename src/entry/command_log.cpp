#include "entry/command_log.h"

#include <algorithm>
#include <iterator>

#include "entry/product.h"
#include "entry/trace.h"

namespace vantrel {
namespace {

constexpr std::uint32_t MessageCommand = 273; // WM_COMMAND
constexpr std::uint32_t MessageSetArray = 0x7FC4;
constexpr std::uint32_t MessageSetArrayAgain = 0x7FC7;

struct NamedCommand {
    std::int32_t id;
    const char* name;
};

// Sorted by id. The spellings are read by support scripts and stay as they are.
constexpr NamedCommand Commands[] = {
    {4001, "Popup undo"},
    {4002, "Popup redo"},
    {4003, "Popup cut"},
    {4004, "Popup copy"},
    {4005, "Popup paste"},
    {4006, "Popup delete"},
    {4007, "Popup select all"},
    {4008, "Popup help"},
    {4101, "Revert"},
    {4102, "Save"},
    {4103, "Save As"},
    {4104, "Save and Close"},
    {4105, "Exit"},
    {4106, "Open"},
    {4107, "Page setup"},
    {4108, "Print"},
    {4109, "Open object"},
    {4110, "Exit force"},
    {4201, "Cut array"},
    {4202, "Copy Array"},
    {4203, "Paste Array"},
    {4204, "Undo Array"},
    {4205, "Redo Array"},
    {4206, "Find"},
    {4207, "Check and align"},
    {4208, "Empty undo buffer"},
    {4209, "Find next"},
    {4210, "Find previous"},
    {4301, "Options toolbar"},
    {4302, "Options status"},
    {4303, "Options font"},
    {4304, "Options confirm close"},
    {4305, "Options size to definition"},
    {4306, "Options top most"},
    {4307, "Options small icons"},
    {4308, "Options small margins"},
    {4309, "Options 3d edges"},
    {4310, "Options whole cell"},
    {4311, "Options overtype"},
    {4312, "Options reject bad data"},
    {4313, "Options line numbers"},
    {4314, "Options ruler"},
    {4315, "Options scrollbar"},
    {4316, "Options enable Undo array"},
    {4501, "Help general"},
    {4502, "Help keys"},
    {4503, "Help about"},
    {4504, "Debug"},
    {4601, "Size to definition"},
    {4602, "Reset size"},
    {4603, "Reset all sizes"},
    {4604, "Restore"},
    {4605, "Minimize"},
    {4606, "Maximize"},
    {4607, "Format"},
    {4608, "Convert to numeric"},
    {4609, "Ravel"},
    {4610, "First"},
    {4611, "Disclose"},
    {4612, "Enclose"},
    {4613, "Enlist"},
    {4614, "Reverse"},
    {4615, "Reverse along first axis"},
    {4616, "Transpose"},
    {4617, "Grade up"},
    {4618, "Grade down"},
    {4619, "Matrix rows"},
    {4621, "Array or rows"},
    {4622, "Plane up"},
    {4623, "Plane down"},
    {4624, "Plane first"},
    {4625, "Plane last"},
    {4626, "Plane page up"},
    {4627, "Plane page down"},
    {4628, "Reorder axes"},
    {4629, "Execute"},
    {4701, "Insert item left"},
    {4702, "Insert item right"},
    {4703, "Insert column left"},
    {4704, "Insert column right"},
    {4705, "Insert row above"},
    {4706, "Insert row below"},
    {4901, "Graphics area"},
    {4902, "Graphics bar"},
    {4903, "Graphics contour"},
    {4904, "Graphics histogram"},
    {4905, "Graphics mesh"},
    {4906, "Graphics pie"},
    {4907, "Graphics plot"},
    {4908, "Graphics surface"},
};

constexpr char UnknownName[] = "Unknown";

} // namespace

void BeginCommandLog(CommandLog& log) noexcept
{
    TraceScope trace("command_log.cpp", "BeginCommandLog");
    try {
        log = "Vantrel Command Log\r\nVersion: ";
        log += ProductVersion;
        log += "\r\nBuild date: " __DATE__ " Time: " __TIME__ "\r\n";
    } catch (...) { // an edit without its log is better than none
        log.clear();
    }
}

const char* CommandName(std::uint32_t message, std::int32_t commandId) noexcept
{
    if (message == MessageSetArray || message == MessageSetArrayAgain) return "Set array";
    if (message != MessageCommand) return UnknownName;
    const auto found =
        std::lower_bound(std::begin(Commands), std::end(Commands), commandId,
                         [](const NamedCommand& command, std::int32_t id) { return command.id < id; });
    return found != std::end(Commands) && found->id == commandId ? found->name : UnknownName;
}

void LogLine(EditContext* context, const char* line) noexcept
{
    if (context == nullptr || context->commandLog == nullptr) return;
    try {
        *context->commandLog += line;
        *context->commandLog += "\r\n";
    } catch (...) { // a log that cannot grow must not stop the user's command
    }
}

void LogCommand(EditContext* context, std::uint32_t message, std::int32_t commandId) noexcept
{
    TraceScope trace("command_log.cpp", "LogCommand");
    LogLine(context, CommandName(message, commandId));
}

} // namespace vantrel
