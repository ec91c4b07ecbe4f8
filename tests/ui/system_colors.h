// System colours of the test's own, as a user with a high-contrast theme has them.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <utility>
#include <vector>

namespace vantrel::ui {

// System colours for as long as it lives.
class SystemColors {
public:
    using Color = std::pair<int, COLORREF>; // of an element, COLOR_...

    SystemColors(std::initializer_list<Color> colors) : SystemColors(colors.begin(), colors.end()) {}
    template <std::size_t Count>
    explicit SystemColors(const Color (&colors)[Count]) : SystemColors(colors, colors + Count)
    {
    }
    ~SystemColors() { Set(before_); }
    SystemColors(const SystemColors&) = delete;
    SystemColors& operator=(const SystemColors&) = delete;

private:
    SystemColors(const Color* first, const Color* last)
    {
        for (; first != last; ++first) {
            elements_.push_back(first->first);
            before_.push_back(GetSysColor(first->first));
            now_.push_back(first->second);
        }
        Set(now_);
    }
    void Set(const std::vector<COLORREF>& colors)
    {
        SetSysColors(static_cast<int>(elements_.size()), elements_.data(), colors.data());
    }
    std::vector<int> elements_;
    std::vector<COLORREF> before_;
    std::vector<COLORREF> now_;
};

} // namespace vantrel::ui
