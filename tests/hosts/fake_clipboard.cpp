#include "hosts/fake_clipboard.h"

#include <cstring>
#include <memory>
#include <utility>

namespace vantrel::fake {
namespace {

Clipboard* newest = nullptr;

} // namespace

struct Clipboard::Calls {
    static Clipboard& Now() { return *newest; }
    static void Expect(bool right, const char* complaint)
    {
        if (!right) Now().complaints_.emplace_back(complaint);
    }

    static ClipboardFormat BestFormat()
    {
        if (Now().Has(ClipboardFormat::Ccdr)) return ClipboardFormat::Ccdr;
        return Now().Has(ClipboardFormat::UnicodeText) ? ClipboardFormat::UnicodeText : ClipboardFormat::None;
    }
    static bool Open(WindowHandle)
    {
        Expect(!Now().open_, "opened twice");
        if (Now().heldByAnother) return false;
        ++Now().timesOpened;
        return Now().open_ = true;
    }
    static bool Empty()
    {
        Expect(Now().open_, "emptied while closed");
        Now().data_.clear();
        return true;
    }
    static void Close()
    {
        Expect(Now().open_, "closed while closed");
        Expect(Now().locks_ == 0, "closed with locked data");
        Now().open_ = false;
    }
    static const void* Lock(ClipboardFormat format, std::int64_t* size)
    {
        Expect(Now().open_, "read while closed");
        if (!Now().Has(format)) return nullptr;
        ++Now().locks_;
        *size = static_cast<std::int64_t>(Now().data_[format].size());
        return Now().data_[format].data();
    }
    static void Unlock(ClipboardFormat)
    {
        Expect(Now().locks_ > 0, "unlocked without a lock");
        --Now().locks_;
    }
    static ClipboardBlock Allocate(std::int64_t size)
    {
        if (Now().allocationsUntilFailure == 0) return {};
        if (Now().allocationsUntilFailure > 0) --Now().allocationsUntilFailure;
        auto bytes = std::make_unique<std::vector<std::uint8_t>>(static_cast<std::size_t>(size));
        const ClipboardBlock block{bytes.get(), bytes->data()};
        Now().blocks_[block.handle] = bytes.release();
        return block;
    }
    static std::unique_ptr<std::vector<std::uint8_t>> Take(ClipboardBlock block)
    {
        const auto found = Now().blocks_.find(block.handle);
        Expect(found != Now().blocks_.end(), "a block that is not out");
        if (found == Now().blocks_.end()) return std::make_unique<std::vector<std::uint8_t>>();
        std::unique_ptr<std::vector<std::uint8_t>> bytes(found->second);
        Now().blocks_.erase(found);
        return bytes;
    }
    static bool Put(ClipboardFormat format, ClipboardBlock block)
    {
        Expect(Now().open_, "filled while closed");
        Now().data_[format] = std::move(*Take(block));
        return true;
    }
    static void Release(ClipboardBlock block) { Take(block); }
};

Clipboard::Clipboard() : previous_(std::exchange(newest, this)) {}

Clipboard::~Clipboard()
{
    for (const auto& block : blocks_)
        delete block.second;
    newest = previous_;
}

const ClipboardPlatform& Clipboard::Table() noexcept
{
    static constexpr ClipboardPlatform table = {Calls::BestFormat, Calls::Open, Calls::Empty,
                                                Calls::Close,      Calls::Lock, Calls::Unlock,
                                                Calls::Allocate,   Calls::Put,  Calls::Release};
    return table;
}

void Clipboard::Set(ClipboardFormat format, std::vector<std::uint8_t> bytes)
{
    data_[format] = std::move(bytes);
}

void Clipboard::SetText(const std::u16string& text)
{
    std::vector<std::uint8_t> bytes((text.size() + 1) * sizeof(char16_t));
    std::memcpy(bytes.data(), text.c_str(), bytes.size());
    Set(ClipboardFormat::UnicodeText, std::move(bytes));
}

void Clipboard::Clear()
{
    data_.clear();
}

bool Clipboard::Has(ClipboardFormat format) const
{
    return data_.count(format) != 0;
}

const std::vector<std::uint8_t>& Clipboard::Bytes(ClipboardFormat format) const
{
    return data_.at(format);
}

std::u16string Clipboard::Text() const
{
    const std::vector<std::uint8_t>& bytes = Bytes(ClipboardFormat::UnicodeText);
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    return text.substr(0, text.find(u'\0'));
}

std::vector<std::string> Clipboard::Complaints() const
{
    std::vector<std::string> all = complaints_;
    if (open_) all.emplace_back("left open");
    if (!blocks_.empty()) all.emplace_back("blocks neither handed over nor given back");
    return all;
}

} // namespace vantrel::fake
