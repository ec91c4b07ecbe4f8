// Runs the benchmarks and ends with a table of the figures that have a target.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Figure {
    std::string name;
    std::string what;
    double best; // milliseconds, 0 = not compared with a floor
    double floor;
    double value;
    double target;
};

class FigureReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            Collect(run);
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        if (figures_.empty()) return;
        std::printf("\n%-32s %10s %10s %16s %9s %8s\n", "figure", "time ms", "floor ms", "", "value",
                    "target");
        for (const Figure& figure : figures_)
            Print(figure);
    }

private:
    static double Counter(const Run& run, const std::string& name)
    {
        const auto found = run.counters.find(name);
        return found != run.counters.end() ? found->second.value : 0.0;
    }
    void Collect(const Run& run)
    {
        static const std::string suffix = "_target";
        for (const auto& [name, target] : run.counters) {
            if (!name.ends_with(suffix)) continue;
            const std::string what = name.substr(0, name.size() - suffix.size());
            figures_.push_back({run.run_name.function_name, what, Counter(run, "best_ms"),
                                Counter(run, "floor_ms"), Counter(run, what), target.value});
        }
    }
    static void Print(const Figure& figure)
    {
        std::printf("%-32s %10.2f %10.2f %16s %9.2f %8.2f%s\n", figure.name.c_str(), figure.best,
                    figure.floor, figure.what.c_str(), figure.value, figure.target,
                    figure.value > figure.target ? "  OVER" : "");
    }

    std::vector<Figure> figures_;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    FigureReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
