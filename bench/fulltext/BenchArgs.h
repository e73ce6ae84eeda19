// What the benchmarks' programs share beyond Google Benchmark: the register
// sizes given on the command line, and a percentile of sorted timings.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace corvina20::bench {

// Takes "--sizes=10000,1000000" out of the arguments: returns the sizes
// (`defaults` when the option is absent) and leaves in `rest` every other
// argument, for benchmark::Initialize.
inline std::vector<long> TakeSizes(int argc, char** argv, std::vector<long> defaults,
                                   std::vector<char*>& rest) {
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    if (a.rfind("--sizes=", 0) != 0) {
      rest.push_back(argv[i]);
      continue;
    }
    defaults.clear();
    std::stringstream list(a.substr(8));
    for (std::string item; std::getline(list, item, ',');) defaults.push_back(std::stol(item));
  }
  return defaults;
}

// The value at quantile `q` (0..1) of `sorted` timings; REQUIRES: not empty.
inline double Percentile(const std::vector<double>& sorted, double q) {
  return sorted[std::min(sorted.size() - 1, static_cast<std::size_t>(q * static_cast<double>(sorted.size())))];
}

}  // namespace corvina20::bench
