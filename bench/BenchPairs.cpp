#include "BenchPairs.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

double medianOf(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

double benchCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double benchTime(const std::function<void()>& work) {
    const double start = benchCpuSeconds();
    work();
    return benchCpuSeconds() - start;
}

double BenchRatio::median() const { return medianOf(ratios); }
double BenchRatio::low() const { return ratios.empty() ? 0 : *std::min_element(ratios.begin(), ratios.end()); }
double BenchRatio::high() const { return ratios.empty() ? 0 : *std::max_element(ratios.begin(), ratios.end()); }

BenchRatio benchPairs(const std::string& name, const std::string& size, int pairs,
                      const std::function<void()>& first, const std::function<void()>& second) {
    BenchRatio result;
    result.name = name;
    result.size = size;
    std::vector<double> firstTimes;
    std::vector<double> secondTimes;
    for (int pair = 0; pair < pairs; ++pair) {
        double a = 0;
        double b = 0;
        if (pair % 2 == 0) {
            a = benchTime(first);
            b = benchTime(second);
        } else {
            b = benchTime(second);
            a = benchTime(first);
        }
        firstTimes.push_back(a);
        secondTimes.push_back(b);
        result.ratios.push_back(b > 0 ? a / b : 0);
    }
    result.first = medianOf(firstTimes);
    result.second = medianOf(secondTimes);
    return result;
}

std::vector<BenchRatio> benchRounds(const std::string& size, int rounds, const std::function<void()>& first,
                                    const std::vector<BenchSide>& others) {
    std::vector<BenchRatio> rows(others.size());
    std::vector<std::vector<double>> firstTimes(others.size()), otherTimes(others.size());
    for (size_t i = 0; i < others.size(); ++i) {
        rows[i].name = others[i].name;
        rows[i].size = size;
    }
    std::vector<double> times(others.size());
    for (int round = 0; round < rounds; ++round) {
        double mine = 0;
        if (round % 2 == 0) {
            mine = benchTime(first);
            for (size_t i = 0; i < others.size(); ++i) times[i] = benchTime(others[i].work);
        } else {
            for (size_t i = others.size(); i-- > 0;) times[i] = benchTime(others[i].work);
            mine = benchTime(first);
        }
        for (size_t i = 0; i < others.size(); ++i) {
            firstTimes[i].push_back(mine);
            otherTimes[i].push_back(times[i]);
            rows[i].ratios.push_back(times[i] > 0 ? mine / times[i] : 0);
        }
    }
    for (size_t i = 0; i < others.size(); ++i) {
        rows[i].first = medianOf(firstTimes[i]);
        rows[i].second = medianOf(otherTimes[i]);
    }
    return rows;
}

void benchPrint(const BenchRatio& ratio) {
    std::printf("%s\t%s\t%zu\t%.3f\t%.3f\t%.3f\t%.9g\t%.9g\n", ratio.name.c_str(), ratio.size.c_str(),
                ratio.ratios.size(), ratio.median(), ratio.low(), ratio.high(), ratio.first, ratio.second);
    std::fflush(stdout);
}
