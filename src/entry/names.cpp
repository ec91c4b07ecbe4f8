#include "entry/names.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "entry/trace.h"

namespace vantrel {
namespace {

// Marks a build in every title; empty in a release.
constexpr std::u16string_view TitleSuffix = u"";

constexpr char16_t Delta = u'∆';

std::u16string_view TrimBlanks(std::u16string_view text) noexcept
{
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// S∆name and T∆name are the stop and trace controls of APL functions, never variables.
bool IsStopOrTraceControl(std::u16string_view name) noexcept
{
    return name.size() > 2 && name[1] == Delta && (name[0] == u'T' || name[0] == u'S');
}

bool IsNameByCharacters(std::u16string_view name, const LangEnv& environment) noexcept
{
    const std::u16string_view valid(environment.ValidNameCharacters);
    const std::u16string_view leadingForbidden(environment.LeadingForbiddenCharacters);
    return leadingForbidden.find(name.front()) == std::u16string_view::npos &&
           name.find_first_not_of(valid) == std::u16string_view::npos;
}

// Writes pieces into a title, cut at its end.
class TitleWriter {
public:
    explicit TitleWriter(char16_t (&title)[TitleSize]) noexcept : title_(title) { title_[0] = 0; }

    TitleWriter& operator<<(std::u16string_view piece) noexcept
    {
        const std::size_t room = static_cast<std::size_t>(TitleSize) - 1 - used_;
        const std::size_t taken = std::min(room, piece.size());
        std::copy_n(piece.data(), taken, title_ + used_);
        used_ += taken;
        title_[used_] = 0;
        return *this;
    }

    TitleWriter& operator<<(std::int64_t number) noexcept
    {
        char16_t digits[21];
        std::size_t at = std::size(digits);
        const bool negative = number < 0;
        auto rest = negative ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
        do {
            digits[--at] = static_cast<char16_t>(u'0' + rest % 10);
            rest /= 10;
        } while (rest != 0);
        if (negative) digits[--at] = u'-';
        return *this << std::u16string_view(digits + at, std::size(digits) - at);
    }

private:
    char16_t* title_;
    std::size_t used_ = 0;
};

} // namespace

std::int32_t IsValidName(const char16_t* text, std::int64_t length, const LangEnv& environment) noexcept
{
    TraceScope trace("names.cpp", "IsValidName");
    const std::u16string_view name = TrimBlanks({text, static_cast<std::size_t>(length)});
    if (name.empty() || name.size() > static_cast<std::size_t>(environment.LongestName)) return 0;
    if (IsStopOrTraceControl(name)) return 0;
    return IsNameByCharacters(name, environment) ? 1 : 0;
}

std::int32_t IsUnicodeValidName(const char16_t* text, const LangEnv& environment) noexcept
{
    TraceScope trace("names.cpp", "IsUnicodeValidName");
    return IsValidName(text, static_cast<std::int64_t>(std::char_traits<char16_t>::length(text)),
                       environment);
}

void GetArrayTitle(const EditContext* context, char16_t (&title)[TitleSize]) noexcept
{
    TraceScope trace("names.cpp", "GetArrayTitle");
    const LangEnv& environment = *context->langEnv;
    TitleWriter writer(title);
    if (environment.Title != nullptr) {
        writer << environment.Title;
        return;
    }
    switch (environment.DialectKind) {
    case Dialect::Apl2:
        writer << u"Vantrel for APL2® - " << context->accountNumber << u" " << TitleSuffix;
        break;
    case Dialect::Aplx: writer << u"Vantrel for APLX" << TitleSuffix; break;
    case Dialect::Dyalog: writer << u"Vantrel for Dyalog" << TitleSuffix; break;
    case Dialect::Matlab: writer << u"Vantrel for MATLAB®" << TitleSuffix; break;
    }
}

void MakeVariableTitle(const EditContext* context, const char16_t* name, std::int64_t length,
                       char16_t (&title)[TitleSize]) noexcept
{
    TraceScope trace("names.cpp", "MakeVariableTitle");
    TitleWriter writer(title);
    switch (context->langEnv->DialectKind) {
    case Dialect::Apl2: writer << u"Variable Editor for APL2® - " << context->accountNumber << u" - "; break;
    case Dialect::Aplx: writer << u"Variable Editor for APLX - "; break;
    case Dialect::Dyalog: writer << u"Variable Editor for Dyalog - "; break;
    case Dialect::Matlab: writer << u"Variable Editor for MATLAB® - "; break;
    }
    writer << std::u16string_view(name, static_cast<std::size_t>(length)) << TitleSuffix;
}

const char16_t* DialectName(Dialect dialect) noexcept
{
    switch (dialect) {
    case Dialect::Apl2: return u"APL2";
    case Dialect::Aplx: return u"APLX";
    case Dialect::Dyalog: return u"Dyalog";
    case Dialect::Matlab: return u"MATLAB";
    }
    return u"";
}

} // namespace vantrel
