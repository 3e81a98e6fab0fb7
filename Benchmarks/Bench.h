#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tessik::bench {

/// One measured number. Lower is better where there is a goal.
struct Figure {
    std::string name; ///< dotted where a benchmark gives several: "mtc_lock_error_us.25fps.jitter1500.rms"
    double value;
    std::string unit;
    std::optional<double> goal;
};

using Report = std::function<void(const Figure&)>;

/// A benchmark registers itself by name at start; it runs when all are asked for or this one is named.
struct Benchmark {
    Benchmark(std::string name, std::function<void(const Report&)> run);
};

} // namespace tessik::bench
