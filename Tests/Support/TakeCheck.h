#pragma once

#include "Support/PassWalk.h"
#include "Support/TruthTally.h"

#include <map>
#include <string>
#include <vector>

namespace tessik::test {

/// What the desk held at instants of a take, to be compared with the take once it has ended.
class TakeCheck {
public:
    struct Sample {
        double frame = 0;                      // of the tape
        std::optional<AutomationPass> updated; // the pass that the take rides over
        std::map<int, int> values;             // by controller number
    };

    /// Forgets those of any other take.
    void add(QUuid take, Sample sample) {
        if (std::exchange(_take, take) != take) _samples.clear();
        _samples.push_back(std::move(sample));
    }

    /// The first sample that the take contradicts, in words. Left out is what lies within `tolerance` frames of an
    /// event: it may have been heard on either side.
    std::optional<std::string> contradiction(const AutomationPass& take, const QList<ChannelSnapshot>& defaults,
                                             double tolerance, Tally& tally) const {
        if (take.id != _take) return std::nullopt;
        for (const Sample& sample : _samples)
            for (const auto& [cc, value] : sample.values) {
                const double offset = offsetIn(take, sample.frame);
                const Said said = whatItSays(take, defaults, cc, offset);
                if (offset <= 0 || !said.value || said.nearestEvent <= tolerance) continue;
                ++(sample.updated ? tally.updated : tally.written);
                if (sample.updated && whatItSays(*sample.updated, defaults, cc, offset).value != said.value)
                    ++tally.ridden;
                if (*said.value != value)
                    return "take: controller " + std::to_string(cc) + " at frame " + std::to_string(sample.frame) +
                           ": desk " + std::to_string(value) + " take " + std::to_string(*said.value);
            }
        return std::nullopt;
    }

private:
    QUuid _take;
    std::vector<Sample> _samples;
};

} // namespace tessik::test
