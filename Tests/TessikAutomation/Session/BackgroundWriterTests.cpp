#include "TessikAutomation/Session/BackgroundWriter.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(BackgroundWriter, WritesWhatStillWaitsWhenItGoes) {
    std::atomic<bool> goes = false;
    int written = 0;
    {
        BackgroundWriter writer;
        writer.post([&]() -> BackgroundWriter::Completion {
            goes.wait(false);
            return {};
        });
        for (int i = 0; i < 1000; ++i)
            writer.post([&]() -> BackgroundWriter::Completion {
                ++written;
                return {};
            });
        goes = true;
        goes.notify_all();
    }
    EXPECT_EQ(written, 1000);
}

} // namespace
} // namespace tessik
