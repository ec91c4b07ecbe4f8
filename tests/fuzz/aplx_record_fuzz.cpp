// Hostile records: whatever an interpreter assigns, the reader answers with a sound tree or a code, and a tree that it accepts is written
// to one well-formed record that reads as the same tree.
//
// The input is the record itself, in memory of exactly its size, so that the address sanitizer sees every step too far. Its length field is
// first cut to the bytes that there are, since nothing else says how long a record is.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "hosts/aplx_host.h"
#include "hosts/fake_aplx.h"
#include "model/ccdr_layout.h"

namespace {

using namespace vantrel;

void Require(bool holds)
{
    if (!holds) std::abort();
}

bool SameTree(const Scdr& a, const Scdr& b)
{
    if (a.Type != b.Type || a.Rank != b.Rank || a.ElementCount != b.ElementCount) return false;
    if (a.Rank > 0 && std::memcmp(a.Shape, b.Shape, static_cast<std::size_t>(a.Rank) * 8) != 0) return false;
    if (a.Type != TypeNested) {
        return a.ElementCount == 0 || std::memcmp(a.data, b.data, DataSize(a.Type, a.ElementCount)) == 0;
    }
    for (std::int64_t i = 0; i < ChildCount(a); ++i) {
        Require(Children(a)[i]->parent == &a);
        if (!SameTree(*Children(a)[i], *Children(b)[i])) return false;
    }
    return true;
}

bool HasHighRank(const Scdr& tree)
{
    if (tree.Rank > 63) return true;
    for (std::int64_t i = 0; i < ChildCount(tree); ++i) {
        if (HasHighRank(*Children(tree)[i])) return true;
    }
    return false;
}

// The interpreter's own reader is strict, but cannot hold as many axes as ours.
void CheckRecord(const std::uint8_t* record, std::int64_t length)
{
    std::vector<std::string> complaints;
    fake::ArrayOfAplxRecord({record, record + length}, complaints);
    Require(complaints.empty());
}

void WriteAndReadAgain(EditContext* context, const Scdr& tree)
{
    const auto* record = static_cast<const std::uint8_t*>(aplx::ScdrToObject(context, &tree));
    if (record == nullptr)
        return Require(HasHighRank(tree) && context->langEnv->ErrorCode == VTERROR_CODE::RankError);
    CheckRecord(record, LoadNumber<std::int64_t>(record + aplx::RecordLengthAt));
    const ScdrPtr again(aplx::ObjectToScdr(context, const_cast<std::uint8_t*>(record)));
    Require(again != nullptr && SameTree(tree, *again));
}

void Run(std::uint8_t* record)
{
    aplx::AplxHost& host = aplx::TheAplxHost();
    aplx::Instance instance{};
    host.running = &instance;
    aplx::CreateLangEnv(host);
    EditContext context;
    context.langEnv = &host.langEnv;
    context.host = static_cast<Host*>(&host);
    const ScdrPtr tree(aplx::ObjectToScdr(&context, record));
    Require((tree == nullptr) == HasError(&context));
    if (tree != nullptr) WriteAndReadAgain(&context, *tree);
    host.running = nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < static_cast<std::size_t>(aplx::RecordHeaderSize)) return 0;
    const std::unique_ptr<std::uint8_t, void (*)(void*)> record(static_cast<std::uint8_t*>(std::malloc(size)),
                                                                std::free);
    std::memcpy(record.get(), data, size);
    const auto length = LoadNumber<std::int64_t>(data + aplx::RecordLengthAt);
    if (length > static_cast<std::int64_t>(size))
        StoreNumber(record.get() + aplx::RecordLengthAt, static_cast<std::int64_t>(size));
    const std::int64_t live = LiveAllocations();
    Run(record.get());
    Require(LiveAllocations() == live);
    return 0;
}
