#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/options.h"
#include "tools/win/window.h"
#include "view/busy.h"
#include "view/find.h"
#include "view/win/client_window.h"

namespace vantrel {

namespace {

constexpr char16_t IgnoreCaseName[] = u"Ignore case";
constexpr char16_t NumericName[] = u"Numeric";
constexpr char16_t FindTextName[] = u"Find text";

void ReadFindOption(FindState& state, const char16_t* name, FindOption bit) noexcept
{
    if (ReadBooleanOption(name, false)) state.options = static_cast<std::uint16_t>(state.options | bit);
}

// A numeric find locks and greys character arrays, those on show included.
void FollowFindOptions(ClientWindow& client)
{
    View& view = client.view;
    const bool numeric = IsNumericFind(view.edit.find);
    if (client.numericFind == numeric) return;
    client.numericFind = numeric;
    view.effects.invalidate(view);
    if (client.activeEdit != nullptr) InvalidateRect(client.activeEdit, nullptr, FALSE);
}

// Opening closed boxes on the way to a match takes the keyboard. Who searched from elsewhere goes on there: the next Enter is meant for the
// find bar, and would break a line of the array.
class KeyboardElsewhere {
public:
    explicit KeyboardElsewhere(const ClientWindow& client) noexcept : focus_(GetFocus())
    {
        if (focus_ == client.window || IsChild(client.window, focus_)) focus_ = nullptr;
    }
    ~KeyboardElsewhere()
    {
        if (focus_ != nullptr && GetFocus() != focus_) SetFocus(focus_);
    }
    KeyboardElsewhere(const KeyboardElsewhere&) = delete;
    KeyboardElsewhere& operator=(const KeyboardElsewhere&) = delete;

private:
    HWND focus_;
};

// The match is drawn only while the keyboard is elsewhere, so it has to be drawn again.
void Search(ClientWindow& client, bool forward)
{
    View& view = client.view;
    const BusyMark busy(view);
    const KeyboardElsewhere keyboard(client);
    const FindResult result = FindNextMatch(view, forward);
    if (result == FindResult::NotFound) StatusMessage(client.window, IDS_NOT_FOUND, MB_ICONEXCLAMATION);
    if (client.activeEdit != nullptr) InvalidateRect(client.activeEdit, nullptr, FALSE);
}

} // namespace

LRESULT OnFind(ClientWindow& client, FindRequest request)
{
    const TraceScope trace("client_find.cpp", "OnFind");
    if (request == FindRequest::OptionsChanged) {
        FollowFindOptions(client);
    } else if ((client.view.flags & ViewBusy) != 0) {
        StatusMessage(client.window, IDS_EDITOR_IS_BUSY, 0);
    } else {
        Search(client, request == FindRequest::Next);
    }
    return 0;
}

void ReadFindOptions(View& view)
{
    ReadFindOption(view.edit.find, IgnoreCaseName, FindIgnoreCase);
    ReadFindOption(view.edit.find, NumericName, FindNumeric);
    ReadOption(nullptr, FindTextName, view.edit.find.text, sizeof view.edit.find.text);
    view.edit.find.text[FindTextSize - 1] = u'\0';
}

void SaveFindOptions(const View& view)
{
    SaveBooleanOption(IgnoreCaseName, (view.edit.find.options & FindIgnoreCase) != 0);
    SaveBooleanOption(NumericName, (view.edit.find.options & FindNumeric) != 0);
    SaveOption(nullptr, FindTextName, view.edit.find.text, sizeof view.edit.find.text);
}

} // namespace vantrel
