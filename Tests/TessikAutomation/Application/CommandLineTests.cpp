#include "TessikAutomation/Application/CommandLine.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

CommandLine parse(const char* arguments) {
    return CommandLine::parse(QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

TEST(CommandLine, ReadsOptionsAndASession) {
    const CommandLine line = parse("p --rig --log-cc Mix.tessik --tour out --check other.tessik");
    EXPECT_FALSE(line.ending);
    EXPECT_TRUE(line.rig && line.logCC);
    EXPECT_EQ(line.sessionFile, QStringLiteral("Mix.tessik"));
    EXPECT_EQ(line.tourFolder, QStringLiteral("out"));
    EXPECT_EQ(line.checkFile, QStringLiteral("other.tessik"));
    EXPECT_EQ(parse("p -- --rig").sessionFile, QStringLiteral("--rig"));
}

TEST(CommandLine, EndsWithALineAndStatus2OnWhatItDoesNotKnow) {
    for (const char* arguments : {"p --rigs", "p -x", "p --tour", "p --check", "p a.tessik b.tessik", "p --tour= x"}) {
        const CommandLine line = parse(arguments);
        ASSERT_TRUE(line.ending) << arguments;
        EXPECT_TRUE(line.ending->isError);
        EXPECT_EQ(line.ending->exitStatus, 2);
        EXPECT_EQ(line.ending->text.count(QLatin1Char('\n')), 1) << arguments;
    }
    for (const char* arguments : {"p --help", "p --version"}) {
        ASSERT_TRUE(parse(arguments).ending);
        EXPECT_EQ(parse(arguments).ending->exitStatus, 0);
    }
}

} // namespace
} // namespace tessik
