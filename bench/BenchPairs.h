#ifndef BenchPairs_H
#define BenchPairs_H

#include <functional>
#include <string>
#include <vector>

// Ratios measured in pairs: the two sides run one after the other, in
// alternating order, and each pair gives one ratio. On a shared machine the
// load changes from second to second; a pair sees the same load on both
// sides, and the median of the pair ratios ignores the pairs that did not.

// Processor time of this process (user + system), in seconds: what the
// process itself did, whatever else the machine runs.
double benchCpuSeconds();
// The time `work` takes, in processor seconds.
double benchTime(const std::function<void()>& work);

struct BenchRatio {
    std::string name;  // the row's name in the table
    std::string size;  // the size it was measured at
    std::vector<double> ratios;
    double first = 0;  // median time of the first side, seconds
    double second = 0; // median time of the second side, seconds
    double median() const;
    double low() const;
    double high() const;
};

// Times `first` and `second` `pairs` times, alternating which goes first.
BenchRatio benchPairs(const std::string& name, const std::string& size, int pairs,
                      const std::function<void()>& first, const std::function<void()>& second);

// One side against several: each round times `first` and every other side
// once, in an order that reverses from one round to the next, and gives one
// ratio per row. The costly side runs once per round instead of once per row.
struct BenchSide {
    std::string name;
    std::function<void()> work;
};
std::vector<BenchRatio> benchRounds(const std::string& size, int rounds, const std::function<void()>& first,
                                    const std::vector<BenchSide>& others);

// One row of the table, tab-separated: name, size, pairs, median, low, high,
// first, second. scripts/bench.sh gathers the rows.
void benchPrint(const BenchRatio& ratio);

#endif
