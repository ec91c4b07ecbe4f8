// Reads what a PostScript document of Wine's printer driver shows: it names each character by its number in the face.
#include <cstdlib>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>

#include "ui/test_printer.h"

namespace vantrel::ui {
namespace {

constexpr char First = ' ';
constexpr char Last = '~';

// The characters of a face by their numbers in it.
std::map<int, char> CharactersOf(HFONT font)
{
    std::map<int, char> characters;
    HDC const dc = CreateCompatibleDC(nullptr);
    HGDIOBJ const previous = SelectObject(dc, font);
    for (char character = First; character <= Last; ++character) {
        const auto wide = static_cast<wchar_t>(character);
        WORD number = 0;
        GetGlyphIndicesW(dc, &wide, 1, &number, GGI_MARK_NONEXISTING_GLYPHS);
        characters[number] = character;
    }
    SelectObject(dc, previous);
    DeleteDC(dc);
    return characters;
}

// The state of a page while its operators are read one after the other.
class Page {
public:
    explicit Page(const std::map<int, char>& characters) : characters_(characters) {}

    void Take(const std::vector<std::string>& words)
    {
        const std::string& name = words.back();
        if (name == "gsave") clips_.push_back(clips_.back());
        if (name == "grestore" && clips_.size() > 1) clips_.pop_back();
        if (name == "rectclip" && words.size() == 5) Clip(words);
        if (name == "moveto" && words.size() == 3) at_ = {NumberOf(words[0]), NumberOf(words[1])};
        if (name == "glyphshow" && words.size() == 2) Show(words[0]);
    }

    [[nodiscard]] PrintedLines Lines() const
    {
        PrintedLines lines;
        for (const auto& [y, row] : rows_) {
            lines.emplace_back();
            for (const auto& [x, character] : row)
                lines.back() += character;
        }
        return lines;
    }

private:
    static int NumberOf(const std::string& word) { return std::atoi(word.c_str()); }

    void Clip(const std::vector<std::string>& words)
    {
        const int left = NumberOf(words[0]);
        const int top = NumberOf(words[1]);
        clips_.back() = {left, top, left + NumberOf(words[2]), top + NumberOf(words[3])};
    }

    void Show(const std::string& glyph)
    {
        const auto found = characters_.find(static_cast<int>(std::strtol(glyph.c_str() + 2, nullptr, 16)));
        if (found != characters_.end() && PtInRect(&clips_.back(), at_)) rows_[at_.y][at_.x] = found->second;
        ++at_.x; // where no place is given, the next one follows at once
    }

    const std::map<int, char>& characters_;
    std::vector<RECT> clips_{{-100000, -100000, 100000, 100000}};
    POINT at_{};
    std::map<int, std::map<int, char>> rows_;
};

} // namespace

std::vector<PrintedLines> ReadPages(const std::string& postScript, HFONT font)
{
    constexpr std::string_view PageMark = "%%Page: ";
    const std::map<int, char> characters = CharactersOf(font);
    std::vector<PrintedLines> pages;
    for (std::size_t at = postScript.find(PageMark); at != postScript.npos;) {
        const std::size_t next = postScript.find(PageMark, at + 1);
        std::istringstream text(postScript.substr(at, next == postScript.npos ? next : next - at));
        Page page(characters);
        for (std::string line; std::getline(text, line);) {
            std::istringstream words(line);
            const std::vector<std::string> all{std::istream_iterator<std::string>(words), {}};
            if (!all.empty()) page.Take(all);
        }
        pages.push_back(page.Lines());
        at = next;
    }
    return pages;
}

} // namespace vantrel::ui
