#include "entry/trace.h"
#include "model/primitives.h"

namespace vantrel {
namespace {

// Every numeric type has the Boolean 0 as its fill.
std::uint32_t FillType(std::uint32_t type) noexcept
{
    return type == TypeNested || type == TypeCharacter ? type : static_cast<std::uint32_t>(TypeBoolean);
}

ScdrPtr PrototypeOfItem(EditContext* context, Scdr* parent, const Scdr& item)
{
    ScdrPtr prototype = AllocateScdr(context, parent, FillType(item.Type), item.Rank, item.Shape, true);
    for (std::int64_t i = 0; i < ChildCount(*prototype); ++i) {
        ScdrPtr child = CopyScdrInner(context, prototype.get(), *Children(item)[i]);
        ZeroScdr(*child);
        SetChild(*prototype, i, std::move(child));
    }
    return prototype;
}

} // namespace

ScdrPtr Prototype(EditContext* context, Scdr* parent, const Scdr& source)
{
    TraceScope trace("prototype.cpp", "Prototype");
    ScdrPtr prototype = IsSimple(source)
                            ? AllocateScdr(context, parent, FillType(source.Type), 0, nullptr, true)
                            : PrototypeOfItem(context, parent, *Children(source)[0]);
    SetSimplestType(*prototype);
    return prototype;
}

} // namespace vantrel
