#include "Support/Sessions.h"
#include "TessikAutomation/Session/SessionCheck.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessik {
namespace {

TEST(SessionCheck, SaysWhatAFileHoldsAndWhatFellBack) {
    const SessionCheckResult clean = checkSession(testData("full.tessik"));
    EXPECT_EQ(clean.exitCode, 0) << qUtf8Printable(clean.text);
    for (const char* line :
         {"  2 snapshots\n", "  default snapshot: “Verse”\n",
          "  “Mar 4, 9:05 PM”: from 01:00:00:00 at 29.97 fps (drop), 5 events, starting state of 2 channels\n",
          "  “”: from 00:59:59:24 at 25 fps, 0 events, no starting state\n", "  3 channel labels\n",
          "  manual settings of 3 channels\n", "  master section set, with 4 effects returns\n",
          "  END locator: 23:59:59:23 at 24 fps\n", "\nclean\n"})
        EXPECT_TRUE(clean.text.contains(QString::fromUtf8(line))) << line << qUtf8Printable(clean.text);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("x"));
    ASSERT_TRUE(writeFile(path, "{\"extra\": 1,\n\"passes\": [{\n}]}"));
    const SessionCheckResult broken = checkSession(path);
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(broken.text.contains(
        QStringLiteral("\"passes\" fell back to its default: passes[0]: the key \"id\" is missing (line 2)\n")));
    EXPECT_TRUE(broken.text.contains(QStringLiteral("unknown key \"extra\": ignored\n")));
    EXPECT_TRUE(broken.text.contains(QStringLiteral("\"snapshots\" fell back to its default: the key is missing\n")));
    ASSERT_TRUE(writeFile(path, "{"));
    EXPECT_EQ(checkSession(path).exitCode, 2);
}

} // namespace
} // namespace tessik
