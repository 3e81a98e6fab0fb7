#pragma once

#include <gtest/gtest.h>

#include <cstdint>

namespace tessik::test {

/// How often each truth was tested: a run that never reached it proves nothing.
struct Tally {
    std::int64_t lanes = 0;   ///< lanes whose desk was compared with the believed one
    std::int64_t screens = 0; ///< lanes whose screen was compared with it
    std::int64_t played = 0;  ///< lanes of a rolling READ, compared with the pass
    std::int64_t nulled = 0;  ///< the same under NULL
    std::int64_t handed = 0;  ///< faders under NULL whose screen was compared with the hand's
    std::int64_t written = 0; ///< lanes of a WRITE take, compared with what the desk had held
    std::int64_t updated = 0; ///< lanes of an UPDATE take
    std::int64_t ridden = 0;  ///< of these, lanes that differ from the old pass
    std::int64_t seconds = 0; ///< of tape, about

    /// Expects each more often than once per session.
    void expectEach(std::int64_t sessions) const {
        for (const auto& [what, count] : {std::pair{"lanes", lanes},
                                          {"screens", screens},
                                          {"played", played},
                                          {"nulled", nulled},
                                          {"written", written},
                                          {"updated", updated},
                                          {"ridden", ridden},
                                          {"handed", handed},
                                          {"seconds", seconds}}) {
            EXPECT_GT(count, sessions) << what;
            testing::Test::RecordProperty(what, std::to_string(count));
        }
    }
};

} // namespace tessik::test
