// Runs the benchmarks and says how each compares to its floor: the benchmark "x" to the one named "x_floor".
// Absolute times of a shared machine mean nothing; the ratio of two medians of one run means something.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace
{

class RatioReporter : public benchmark::ConsoleReporter
{
  public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medians_[run.run_name.function_name + arguments(run)] = {run.GetAdjustedRealTime(),
                                                                         run.GetAdjustedCPUTime()};
            }
        }
    }

    void print_ratios() const
    {
        std::puts(
            "\nMedians as a multiple of the floor of the same run, by the clock and in processor time:");
        for (const auto& [name, time] : medians_) {
            const std::size_t slash = name.find('/');
            const std::string floor_name =
                name.substr(0, slash) + "_floor" + (slash == std::string::npos ? "" : name.substr(slash));
            const auto floor = medians_.find(floor_name);
            if (floor == medians_.end()) continue;
            std::printf("  %-48s %6.2f %6.2f\n", name.c_str(), time.real / floor->second.real,
                        time.processor / floor->second.processor);
        }
    }

  private:
    static std::string arguments(const Run& run)
    {
        return run.run_name.args.empty() ? "" : "/" + run.run_name.args;
    }

    struct Median {
        double real;
        double processor;
    };
    std::map<std::string, Median> medians_;
};

} // namespace

int main(int argc, char** argv)
{
    std::string repetitions = "--benchmark_repetitions=9";
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::string time = "--benchmark_min_time=0.2";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, {repetitions.data(), interleave.data(), time.data()});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_ratios();
    return 0;
}
