#include "samples.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace vantrel::ui {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int MostRounds = 200;
constexpr int FewestRounds = 3;
constexpr std::chrono::seconds LongestSeries(2);
constexpr UINT SetPickIndex = 32981;

double Milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

void PaintWhatIsDue(const User& user)
{
    RedrawWindow(user.Frame(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

double Percentile(const std::vector<double>& sorted, std::size_t percent)
{
    return sorted[(sorted.size() - 1) * percent / 100];
}

// Asks the frame again and again whether it answers, from before it is there until it is on show.
class SilenceWatch {
public:
    SilenceWatch() : thread_([this] { Watch(); }) {}
    ~SilenceWatch() { Stop(); }
    SilenceWatch(const SilenceWatch&) = delete;
    SilenceWatch& operator=(const SilenceWatch&) = delete;

    double Stop()
    {
        done_ = true;
        if (thread_.joinable()) thread_.join();
        return longest_;
    }

private:
    void Watch()
    {
        while (!done_) {
            HWND const frame = FindWindowW(L"quillmoor vantrel frame class", nullptr);
            const auto start = Clock::now();
            if (frame != nullptr) SendMessageW(frame, WM_NULL, 0, 0);
            longest_ = std::max(longest_, Milliseconds(Clock::now() - start));
            Sleep(1);
        }
    }

    std::atomic<bool> done_{false};
    double longest_ = 0;
    std::thread thread_;
};

} // namespace

void Measure(const User& user, const std::string& what, const std::function<void(int)>& act)
{
    std::vector<double> times;
    PaintWhatIsDue(user);
    const auto end = Clock::now() + LongestSeries;
    for (int round = 0; round < MostRounds && (round < FewestRounds || Clock::now() < end); ++round) {
        const auto start = Clock::now();
        act(round);
        PaintWhatIsDue(user);
        times.push_back(Milliseconds(Clock::now() - start));
    }
    std::sort(times.begin(), times.end());
    std::printf("  %-44s %10.3f %10.3f %8zu\n", what.c_str(), Percentile(times, 50), Percentile(times, 99),
                times.size());
    std::fflush(stdout);
}

void OpenAndMeasure(const std::string& what, const fake::Array& argument, const Script& script)
{
    fake::InterpreterOptions options;
    options.books.strict = false;
    fake::Interpreter interpreter(options);
    fake::EditOptions edit;
    edit.checkArgument = false;
    std::printf("%s\n  %-44s %10s %10s %8s\n", what.c_str(), "", "median ms", "p99 ms", "samples");
    SilenceWatch silence;
    const auto start = Clock::now();
    const auto measured = [&](User& user) {
        const double opened = Milliseconds(Clock::now() - start);
        std::printf("  %-44s %10.0f\n", "open, with the interpreter's own part", opened);
        std::printf("  %-44s %10.1f\n", "longest silence meanwhile", silence.Stop());
        Measure(user, "an empty message there and back",
                [&](int) { SendMessageW(user.Client(), WM_NULL, 0, 0); });
        script(user);
    };
    RunEdit(interpreter, argument, measured, edit);
}

void SelectIndex(const User& user, const std::u16string& index)
{
    SendMessageW(user.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(index.c_str()));
}

} // namespace vantrel::ui
