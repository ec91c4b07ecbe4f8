#include "entry/win/window_classes.h"

#include "editor/win/edit_window.h"
#include "entry/trace.h"
#include "frame/win/frame.h"
#include "view/win/client.h"

namespace vantrel {

bool RegisterEditorClasses()
{
    TraceScope trace("window_classes.cpp", "RegisterEditorClasses");
    return RegisterFrameClass() && RegisterClientClass() && RegisterEditClass();
}

void UnregisterEditorClasses()
{
    TraceScope trace("window_classes.cpp", "UnregisterEditorClasses");
    UnregisterFrameClass();
    UnregisterClientClass();
    UnregisterEditClass();
}

} // namespace vantrel
