#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/fake_primitives.h"
#include "unit/hosts_fake/small_client.h"

namespace vantrel::fake {
namespace {

InterpreterOptions Guarded()
{
    InterpreterOptions options;
    options.books.guardBytes = 32;
    return options;
}

Array Sample()
{
    return NestedArray({2}, {Text(u"abc"), NumericArray({3}, {1, 0, 1})});
}

// True where one complaint contains the words.
bool Has(const std::vector<std::string>& complaints, const std::string& words)
{
    return std::any_of(complaints.begin(), complaints.end(), [&](const std::string& complaint) {
        return complaint.find(words) != std::string::npos;
    });
}

std::string Joined(const std::vector<std::string>& complaints)
{
    std::string all;
    for (const std::string& complaint : complaints)
        all += complaint + "\n";
    return all;
}

// Runs one edit of the sample with the given library behaviour.
EditResult EditWith(std::function<void(SmallClient&, Block*, Block**)> body, const EditOptions& options = {},
                    const InterpreterOptions& interpreterOptions = Guarded(), Array argument = Sample())
{
    Interpreter interpreter(interpreterOptions);
    SmallClient& client = SmallClient::Get();
    client.body = [&](Block* block, Block** slot) { body(client, block, slot); };
    return interpreter.Edit(SmallClient::Entries(), argument, options);
}

void ReturnArgument(SmallClient& client, Block* argument, Block** slot)
{
    client.Store(slot, argument);
}

TEST(FakeDyalog, GivesTheArgumentBackUnchanged)
{
    const EditResult result = EditWith(ReturnArgument);
    EXPECT_TRUE(result.hasResult);
    EXPECT_TRUE(result.unchanged);
    EXPECT_TRUE(IdenticalArrays(result.result, Sample()));
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, EveryElementTypeGoesInAndOut)
{
    const std::vector<Array> arrays = {
        CharacterArray(ElementType::AtomicCharacter, {3}, U"\x01\x10\xFF"),
        BooleanArray({9}, {1, 0, 1, 0, 1, 0, 1, 0, 1}),
        IntegerArray(ElementType::Int8, {2}, {-128, 127}),
        IntegerArray(ElementType::Int16, {2}, {-32768, 32767}),
        IntegerArray(ElementType::Int32, {1, 2}, {-2147483648, 2147483647}),
        FloatArray({2}, {0.1, -1e300}),
        CharacterArray(ElementType::Char8, {}, U"\xE9"),
        CharacterArray(ElementType::Char16, {2}, U"\u2373\u2374"),
        CharacterArray(ElementType::Char32, {1}, U"\U0001F600"),
        ComplexArray({1}, {{1, 2}}),
        RawArray(ElementType::Rational, {1}, std::vector<std::uint8_t>(16, 7)),
        DecimalArray({2}, {"1.5", "2"}),
        EmptyNestedArray({0, 3}, Text(u"xy")),
        NestedArray({}, {NestedArray({1}, {EmptyVector()})}),
    };
    for (const Array& array : arrays) {
        const EditResult result = EditWith(ReturnArgument, {}, Guarded(), array);
        EXPECT_TRUE(IdenticalArrays(result.result, array))
            << Dump(array) << " became " << Dump(result.result);
        EXPECT_EQ(Joined(result.complaints), "");
    }
}

TEST(FakeDyalog, TakesANewArrayThroughALocalp)
{
    const EditResult result = EditWith([](SmallClient& client, Block*, Block** slot) {
        const auto localp = client.NewVector(7, -9);
        client.Store(slot, localp->block);
        client.FreeLocalp(localp.get());
    });
    EXPECT_FALSE(result.unchanged);
    EXPECT_EQ(Dump(result.result), "int32[2](7 -9)");
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, TakesANestedArrayWhoseItemsAreHeldByIt)
{
    const EditResult result = EditWith([](SmallClient& client, Block*, Block** slot) {
        const auto outer = client.NewLocalp();
        Block* block = client.Allocate(ElementType::Nested, {1}, outer.get());
        const auto inner = client.NewVector(1, 2);
        std::memcpy(ShapeOf(block) + 1, &inner->block, 8);
        ++inner->block->count;
        client.FreeLocalp(inner.get());
        client.Finish(block);
        client.Store(slot, block);
        client.FreeLocalp(outer.get());
    });
    EXPECT_EQ(Dump(result.result), "nested[1](int32[2](1 2))");
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, ReleasesTheArrayThatStoodInTheSlot)
{
    EditOptions options;
    options.resultBefore = Text(u"old");
    const auto bySlot = [](SmallClient& client, Block* argument, Block** slot) {
        client.Call<void>(1, 4, static_cast<void*>(slot));
        *slot = argument;
        ++argument->count;
    };
    EXPECT_EQ(Joined(EditWith(ReturnArgument, options).complaints), "");
    EXPECT_EQ(Joined(EditWith(bySlot, options).complaints), "");
    const EditResult kept = EditWith(
        [](SmallClient&, Block* argument, Block** slot) {
            *slot = argument;
            ++argument->count;
        },
        options);
    EXPECT_TRUE(Has(kept.complaints, "leaked")) << Joined(kept.complaints);
}

TEST(FakeDyalog, RefusesATableThatIsTooSmall)
{
    Interpreter interpreter;
    interpreter.SetTableSize(47);
    bool called = false;
    SmallClient::Get().body = [&](Block*, Block**) { called = true; };
    EXPECT_EQ(interpreter.Edit(SmallClient::Entries(), Sample()).handshake, 16);
    EXPECT_FALSE(called);
}

TEST(FakeDyalog, PassesTheTitle)
{
    EditOptions options;
    options.title = u"Planets";
    EditWith(ReturnArgument, options);
    EXPECT_EQ(SmallClient::Get().lastTitle, u"Planets");
}

TEST(FakeDyalog, LeavesAFailedAllocationThroughTheTrap)
{
    Interpreter interpreter(Guarded());
    SmallClient& client = SmallClient::Get();
    Block* first = nullptr;
    Block* second = nullptr;
    client.body = [&](Block* argument, Block** slot) {
        const auto localp = client.NewLocalp();
        first = client.Allocate(ElementType::Float, {4}, localp.get());
        second = client.Allocate(ElementType::Float, {4}, localp.get());
        client.FreeLocalp(localp.get());
        client.Store(slot, argument);
    };
    interpreter.FailAllocation(2);
    const EditResult result = interpreter.Edit(SmallClient::Entries(), Sample());
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(client.trapCode, ErrorNumber::WsFull);
    EXPECT_EQ(interpreter.FailedAllocations(), 1);
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, FailsEveryLaterAllocationWhereAsked)
{
    Interpreter interpreter(Guarded());
    SmallClient& client = SmallClient::Get();
    int allocated = 0;
    client.body = [&](Block*, Block**) {
        for (int i = 0; i < 4; ++i) {
            const auto localp = client.NewLocalp();
            allocated += client.Allocate(ElementType::Bit, {1}, localp.get()) != nullptr;
            client.FreeLocalp(localp.get());
        }
    };
    interpreter.FailAllocation(2, ErrorNumber::Limit, true);
    interpreter.Edit(SmallClient::Entries(), Sample());
    EXPECT_EQ(allocated, 1);
    EXPECT_EQ(client.trapCode, ErrorNumber::Limit);
    EXPECT_EQ(interpreter.FailedAllocations(), 3);
}

TEST(FakeDyalog, RefusesAbsurdAllocations)
{
    struct Row {
        std::int64_t type;
        Shape shape;
        std::int64_t code;
    };
    const Row rows[] = {
        {ElementType::Float, {std::int64_t{1} << 50}, ErrorNumber::WsFull},
        {ElementType::Float, {std::int64_t{1} << 40, std::int64_t{1} << 40}, ErrorNumber::WsFull},
        {ElementType::Float, {-1}, ErrorNumber::Length},
        {ElementType::Float, Shape(16, 1), ErrorNumber::Rank},
        {13, {1}, ErrorNumber::Limit}};
    EditWith([&](SmallClient& client, Block*, Block**) {
        for (const Row& row : rows) {
            const auto localp = client.NewLocalp();
            EXPECT_EQ(client.Allocate(row.type, row.shape, localp.get()), nullptr);
            EXPECT_EQ(client.trapCode, row.code);
            client.FreeLocalp(localp.get());
        }
    });
}

// --- every rule that a library can break ---

struct Offence {
    const char* name;
    std::function<void(SmallClient&, Block*, Block**)> body;
    const char* words;
};

void StoreVector(SmallClient& client, Block** slot)
{
    const auto localp = client.NewVector(1, 2);
    client.Store(slot, localp->block);
    client.FreeLocalp(localp.get());
}

const Offence offences[] = {
    {"a count without a holder",
     [](SmallClient& client, Block* argument, Block** slot) {
         ReturnArgument(client, argument, slot);
         ++argument->count;
     },
     "reference count 3, holders 2"},
    {"a holder without a count", [](SmallClient&, Block* argument, Block** slot) { *slot = argument; },
     "reference count 1, holders 2"},
    {"a leaked localp",
     [](SmallClient& client, Block*, Block** slot) {
         static Localp leaked;
         leaked = Localp{};
         client.Call<void>(1, 2, &leaked);
         StoreVector(client, slot);
     },
     "never unregistered"},
    {"a localp unregistered twice",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewLocalp();
         client.FreeLocalp(localp.get());
         client.FreeLocalp(localp.get());
     },
     "not registered"},
    {"a localp that is not zeroed",
     [](SmallClient& client, Block*, Block**) {
         Localp localp{nullptr, {1, 2, 3, 4}};
         client.Call<void>(1, 2, &localp);
         client.FreeLocalp(&localp);
     },
     "not zeroed"},
    {"a localp whose array was swapped",
     [](SmallClient& client, Block* argument, Block**) {
         const auto localp = client.NewVector(1, 2);
         localp->block = argument;
         client.FreeLocalp(localp.get());
     },
     "changed by the client"},
    {"an array that was never finished",
     [](SmallClient& client, Block*, Block** slot) {
         const auto localp = client.NewLocalp();
         Block* block = client.Allocate(ElementType::Int32, {1}, localp.get());
         client.Store(slot, block);
         client.FreeLocalp(localp.get());
     },
     "never finished"},
    {"an array that was never written",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewLocalp();
         client.Finish(client.Allocate(ElementType::Float, {2}, localp.get()));
         client.FreeLocalp(localp.get());
     },
     "never written"},
    {"a nested array with a null item",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewLocalp();
         client.Finish(client.Allocate(ElementType::Nested, {1}, localp.get()));
         client.FreeLocalp(localp.get());
     },
     "pointer is null"},
    {"an item that is no block",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewLocalp();
         Block* block = client.Allocate(ElementType::Nested, {1}, localp.get());
         const void* stray = &client;
         std::memcpy(ShapeOf(block) + 1, &stray, 8);
         client.Finish(block);
         std::memset(ShapeOf(block) + 1, 0, 8);
         client.FreeLocalp(localp.get());
     },
     "not a live array block"},
    {"writing behind a block",
     [](SmallClient& client, Block*, Block** slot) {
         const auto localp = client.NewVector(1, 2);
         reinterpret_cast<std::uint8_t*>(ShapeOf(localp->block) + 1)[8] = 0;
         client.Store(slot, localp->block);
         client.FreeLocalp(localp.get());
     },
     "memory behind the block was overwritten"},
    {"writing before a block",
     [](SmallClient& client, Block*, Block** slot) {
         const auto localp = client.NewVector(1, 2);
         reinterpret_cast<std::uint8_t*>(localp->block)[-1] = 0;
         client.Store(slot, localp->block);
         client.FreeLocalp(localp.get());
     },
     "memory before the block was overwritten"},
    {"writing into a freed block",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewVector(1, 2);
         Block* block = localp->block;
         client.FreeLocalp(localp.get());
         ++block->count;
     },
     "written after it was freed"},
    {"releasing a freed block",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewVector(1, 2);
         Block* block = localp->block;
         client.FreeLocalp(localp.get());
         client.Call<void>(1, 4, static_cast<void*>(block));
     },
     "not a live array block"},
    {"changing the argument's data",
     [](SmallClient& client, Block* argument, Block** slot) {
         Block* text = reinterpret_cast<Block**>(ShapeOf(argument) + 1)[0];
         reinterpret_cast<char*>(ShapeOf(text) + 1)[0] = 'x';
         ReturnArgument(client, argument, slot);
     },
     "of the argument was changed"},
    {"changing the interpreter's own word",
     [](SmallClient& client, Block*, Block** slot) {
         const auto localp = client.NewVector(1, 2);
         localp->block->own = 0;
         client.Store(slot, localp->block);
         client.FreeLocalp(localp.get());
     },
     "own word was changed"},
    {"keeping the trap",
     [](SmallClient& client, Block* argument, Block** slot) {
         *client.Call<std::uint64_t*>(1, 8) = 0;
         ReturnArgument(client, argument, slot);
     },
     "error-trap word was not restored"},
    {"an unknown service",
     [](SmallClient& client, Block* argument, Block** slot) {
         client.Call<std::int64_t>(2, 3);
         ReturnArgument(client, argument, slot);
     },
     "service 2.3"},
    {"a primitive with other fixed arguments",
     [](SmallClient& client, Block*, Block**) {
         const auto localp = client.NewVector(1, 2);
         const auto made = client.NewLocalp();
         client.Call<std::int64_t>(3, 1, PrimitiveCode::Ravel, std::int64_t{2}, std::int64_t{0}, localp.get(),
                                   std::int64_t{0}, made.get(), std::uint8_t{1});
         client.FreeLocalp(made.get());
         client.FreeLocalp(localp.get());
     },
     "fixed arguments"},
    {"an information record without its length",
     [](SmallClient& client, Block*, Block**) {
         std::uint32_t record[8] = {};
         client.Call<void>(5, 2, static_cast<void*>(record));
     },
     "information record"},
    {"a character outside the atomic vector",
     [](SmallClient& client, Block*, Block**) {
         const char16_t unit = 0x416;
         std::uint8_t position = 0;
         client.Call<void>(3, 8, &position, &unit, std::int64_t{1});
     },
     "atomic vector lacks"},
};

TEST(FakeDyalog, ComplainsAboutEveryBrokenRule)
{
    for (const Offence& offence : offences) {
        Interpreter interpreter(Guarded());
        SmallClient& client = SmallClient::Get();
        client.body = [&](Block* block, Block** slot) { offence.body(client, block, slot); };
        std::vector<std::string> complaints = interpreter.Edit(SmallClient::Entries(), Sample()).complaints;
        interpreter.TheBooks().ComplainAboutLeftovers();
        complaints = interpreter.Complaints();
        EXPECT_TRUE(Has(complaints, offence.words)) << offence.name << ":\n" << Joined(complaints);
    }
}

// --- errors ---

struct TestErrorBlock {
    std::uint32_t kind;
    std::uint32_t number;
    std::uint32_t flag;
    const void* vendor;
    const void* message;
    const void* product;
    const void* supportAddress;
};

TEST(FakeDyalog, ReadsTheErrorBlockOfAUnicodeEdition)
{
    const EditResult result = EditWith([](SmallClient& client, Block*, Block**) {
        const TestErrorBlock block{7, 11, 1, u"Maker", u"No good", u"Editor", u"help@maker.example"};
        client.Call<void>(1, 18, static_cast<const void*>(&block));
    });
    EXPECT_TRUE(result.error.signalled);
    EXPECT_EQ(result.error.number, 11u);
    EXPECT_EQ(result.error.kind, 7u);
    EXPECT_EQ(result.error.vendor, u"Maker");
    EXPECT_EQ(result.error.message, u"No good");
    EXPECT_EQ(result.error.product, u"Editor");
    EXPECT_EQ(result.error.supportAddress, u"help@maker.example");
    EXPECT_FALSE(result.hasResult);
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, ReadsTheErrorBlockOfAClassicEdition)
{
    InterpreterOptions options = Guarded();
    options.unicode = false;
    const EditResult result = EditWith(
        [](SmallClient& client, Block*, Block**) {
            const TestErrorBlock block{5, 5, 1, "Maker", nullptr, "Editor", nullptr};
            client.Call<void>(1, 18, static_cast<const void*>(&block));
        },
        {}, options, Number(1));
    EXPECT_FALSE(result.error.hasMessage);
    EXPECT_EQ(result.error.vendor, u"Maker");
    EXPECT_EQ(Joined(result.complaints), "");
}

TEST(FakeDyalog, ComplainsAboutAnErrorBlockThatContradictsItself)
{
    const EditResult result = EditWith([](SmallClient& client, Block* argument, Block** slot) {
        ReturnArgument(client, argument, slot);
        const TestErrorBlock block{7, 0, 0, u"Maker", nullptr, u"Editor", nullptr};
        client.Call<void>(1, 18, static_cast<const void*>(&block));
    });
    EXPECT_TRUE(Has(result.complaints, "kind of the error block"));
    EXPECT_TRUE(Has(result.complaints, "without an error number"));
    EXPECT_TRUE(Has(result.complaints, "flag"));
}

// --- services ---

TEST(FakeDyalog, AnswersSystemVariablesMessagesAndInterrupt)
{
    InterpreterOptions options = Guarded();
    options.indexOrigin = 0;
    options.printPrecision = 17;
    Interpreter interpreter(options);
    SmallClient& client = SmallClient::Get();
    client.table = static_cast<std::uint64_t*>(interpreter.Table());
    std::int64_t origin = -1;
    std::int64_t precision = -1;
    client.Call<void>(3, 2, &origin, &precision);
    EXPECT_EQ(origin, 0);
    EXPECT_EQ(precision, 17);
    EXPECT_EQ(client.Call<std::int64_t>(3, 3, std::int64_t{11}, static_cast<void*>(nullptr), std::int64_t{0}),
              12);
    char16_t text[13] = {};
    client.Call<std::int64_t>(3, 3, std::int64_t{11}, static_cast<void*>(text), std::int64_t{12});
    EXPECT_EQ(std::u16string(text), u"DOMAIN ERROR");
    EXPECT_EQ(client.Call<std::int64_t>(3, 4) & 1, 0);
    interpreter.SetInterrupt(true);
    EXPECT_EQ(client.Call<std::int64_t>(3, 4) & 1, 1);
    EXPECT_EQ(interpreter.Calls(Service::PollInterrupt), 2);
}

TEST(FakeDyalog, ReadsSettingsInTheEditionsCharacters)
{
    for (const bool unicode : {true, false}) {
        InterpreterOptions options;
        options.unicode = unicode;
        Interpreter interpreter(options);
        interpreter.SetSetting(u"DyalogHelpDir", u"C:\\Help");
        SmallClient& client = SmallClient::Get();
        client.table = static_cast<std::uint64_t*>(interpreter.Table());
        const void* name = unicode ? static_cast<const void*>(u"DyalogHelpDir") : "DyalogHelpDir";
        const void* none = unicode ? static_cast<const void*>(u"") : "";
        char16_t wide[260] = {};
        const std::int64_t length =
            client.Call<std::int64_t>(5, 1, name, none, static_cast<void*>(wide), std::int64_t{260});
        EXPECT_EQ(length, 7);
        if (unicode)
            EXPECT_EQ(std::u16string(wide), u"C:\\Help");
        else
            EXPECT_STREQ(reinterpret_cast<const char*>(wide), "C:\\Help");
        EXPECT_EQ(Joined(interpreter.Complaints()), "");
    }
}

TEST(FakeDyalog, TellsTheEdition)
{
    for (const bool unicode : {true, false}) {
        InterpreterOptions options;
        options.unicode = unicode;
        Interpreter interpreter(options);
        SmallClient& client = SmallClient::Get();
        client.table = static_cast<std::uint64_t*>(interpreter.Table());
        std::uint32_t record[8] = {32};
        client.Call<void>(5, 2, static_cast<void*>(record));
        EXPECT_EQ(record[7] != 0, unicode);
        EXPECT_EQ(Joined(interpreter.Complaints()), "");
    }
}

TEST(FakeDyalog, KeepsACopyBuffer)
{
    Interpreter interpreter(Guarded());
    SmallClient& client = SmallClient::Get();
    client.table = static_cast<std::uint64_t*>(interpreter.Table());
    EXPECT_EQ(client.Call<std::int64_t>(4, 3), 0);
    const auto put = client.NewVector(3, 4);
    EXPECT_EQ(client.Call<std::int64_t>(4, 1, put.get()), 0);
    client.FreeLocalp(put.get());
    EXPECT_NE(client.Call<std::int64_t>(4, 3), 0);
    EXPECT_EQ(Dump(*interpreter.CopyBuffer()), "int32[2](3 4)");
    const auto got = client.NewLocalp();
    EXPECT_EQ(client.Call<std::int64_t>(4, 2, got.get()), 0);
    EXPECT_EQ(Dump(interpreter.ValueOf(got.get())), "int32[2](3 4)");
    client.FreeLocalp(got.get());
    interpreter.ForceStatus(Service::GetCopyBuffer, 16);
    EXPECT_EQ(client.Call<std::int64_t>(4, 2, got.get()), 16);
    interpreter.ClearCopyBuffer();
    interpreter.TheBooks().ComplainAboutLeftovers();
    EXPECT_EQ(Joined(interpreter.CheckBooks()), "");
}

TEST(FakeDyalog, ComputesAPrimitiveIntoALocalp)
{
    Interpreter interpreter(Guarded());
    SmallClient& client = SmallClient::Get();
    client.table = static_cast<std::uint64_t*>(interpreter.Table());
    Localp* argument = interpreter.MakeLocalp(NumericArray({2, 2}, {1, 2, 3, 4}));
    const auto result = client.NewLocalp();
    const auto call = [&](std::int64_t code) {
        return client.Call<std::int64_t>(3, 1, code, std::int64_t{3}, std::int64_t{0}, argument,
                                         std::int64_t{0}, result.get(), std::uint8_t{1});
    };
    EXPECT_EQ(call(PrimitiveCode::Ravel), 0);
    EXPECT_EQ(Dump(interpreter.ValueOf(result.get())), "int8[4](1 2 3 4)");
    EXPECT_EQ(call(1), ErrorNumber::Nonce);
    interpreter.ForceStatus(Service::CallPrimitive, 6);
    EXPECT_EQ(call(PrimitiveCode::Ravel), 6);
    client.FreeLocalp(result.get());
    interpreter.FreeLocalp(argument);
    interpreter.TheBooks().ComplainAboutLeftovers();
    EXPECT_EQ(Joined(interpreter.CheckBooks()), "");
}

TEST(FakeDyalog, TracesAndCountsCalls)
{
    Interpreter interpreter(Guarded());
    interpreter.SetTrace(true);
    SmallClient& client = SmallClient::Get();
    client.body = [&](Block*, Block** slot) { StoreVector(client, slot); };
    interpreter.Edit(SmallClient::Entries(), Sample());
    EXPECT_EQ(interpreter.Trace(),
              (std::vector<std::string>{"RegisterLocalp", "ErrorTrap", "AllocateArray type 4", "ErrorTrap",
                                        "FinishArray", "UnregisterLocalp"}));
    EXPECT_EQ(interpreter.Calls(Service::ErrorTrap), 2);
}

TEST(FakeDyalog, LetsATestSpoilTheArgument)
{
    EditOptions options;
    options.patchArgument = [](Block* block) { block->typeWord = block->typeWord & ~0xFu; };
    std::uint32_t seen = 99;
    EditWith([&](SmallClient&, Block* argument, Block**) { seen = argument->typeWord & 0xF; }, options);
    EXPECT_EQ(seen, 0u);
}

TEST(FakeDyalog, TheInterpreterMadeLastAnswers)
{
    InterpreterOptions options;
    options.indexOrigin = 1;
    Interpreter outer(options);
    SmallClient& client = SmallClient::Get();
    client.table = static_cast<std::uint64_t*>(outer.Table());
    std::int64_t origin = -1;
    std::int64_t precision = -1;
    {
        options.indexOrigin = 0;
        Interpreter inner(options);
        client.Call<void>(3, 2, &origin, &precision);
        EXPECT_EQ(origin, 0);
    }
    client.Call<void>(3, 2, &origin, &precision);
    EXPECT_EQ(origin, 1);
}

} // namespace
} // namespace vantrel::fake
