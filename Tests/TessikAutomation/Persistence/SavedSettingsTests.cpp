#include "Support/CleanSettings.h"
#include "TessikAutomation/Persistence/SavedSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <gtest/gtest.h>

namespace tessik {
namespace {

using namespace SavedSettings;

TEST(SavedSettings, TellsAbsenceFromZeroAndKeepsNumbersInRange) {
    EXPECT_EQ(uniqueID(Key::consoleSourceID), std::nullopt);
    setUniqueID(Key::consoleSourceID, 0);
    EXPECT_EQ(uniqueID(Key::consoleSourceID), 0);
    setUniqueID(Key::consoleSourceID, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(uniqueID(Key::consoleSourceID), std::numeric_limits<std::int32_t>::min());
    setUniqueID(Key::consoleSourceID, std::nullopt);
    EXPECT_EQ(uniqueID(Key::consoleSourceID), std::nullopt);

    EXPECT_EQ(mmcDeviceID(), std::nullopt);
    for (const auto& [stored, read] :
         {std::pair<std::int64_t, int>{0, 0}, {127, 127}, {300, 255}, {-4, 0}, {(std::int64_t(1) << 32) + 5, 255}}) {
        setInteger(Key::mmcDeviceID, stored);
        EXPECT_EQ(mmcDeviceID(), read) << stored;
    }
    EXPECT_EQ(midiChannel(), std::nullopt);
    setInteger(Key::midiChannel, 999);
    EXPECT_EQ(midiChannel(), 999);
    setString(Key::midiChannel, QStringLiteral("nonsense"));
    EXPECT_EQ(midiChannel(), std::nullopt);
}

TEST(SavedSettingsDeathTest, StopsOnANumberThatIsNoPort) {
    setInteger(Key::timecodeSourceID, std::int64_t(1) << 31);
    EXPECT_DEATH(uniqueID(Key::timecodeSourceID), "timecodeSourceID holds 2147483648");
    remove(Key::timecodeSourceID);
}

/// Where the settings are, of a format.
QString storeFile(QSettings::Format format) {
    const QString name = QStringLiteral("TessikAutomation");
    return QSettings(format, QSettings::UserScope, name, name).fileName();
}

TEST(SavedSettings, AWriteThatFailsIsToldAndMadeGoodByTheNext) {
    setInteger(Key::midiChannel, 3);
    QCoreApplication::processEvents();
    EXPECT_EQ(lastWrite().value().problem, QString());
    {
        const UnwritableSettings broken;
        setInteger(Key::midiChannel, 4);
        QCoreApplication::processEvents();
        EXPECT_NE(lastWrite().value().problem, QString());
        EXPECT_EQ(midiChannel(), 4) << "for this run";
    }
    setInteger(Key::deskZoom, 100);
    QCoreApplication::processEvents();
    EXPECT_EQ(lastWrite().value().problem, QString());
    EXPECT_EQ(midiChannel(), 4);
    remove(Key::deskZoom);
    remove(Key::midiChannel);
}

TEST(SavedSettingsDeathTest, ADamagedSuiteGivesWayToTheStandardStore) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process that has opened no store yet
    EXPECT_EXIT(
        {
            const QFileInfo suite(storeFile(QSettings::IniFormat));
            QDir().mkpath(suite.path());
            QFile file(suite.filePath());
            file.open(QIODevice::WriteOnly);
            file.write("[section\nno ini file");
            file.close();
            setInteger(Key::midiChannel, 7);
            const bool isKept = QFile::exists(storeFile(QSettings::NativeFormat)) && midiChannel() == 7;
            std::_Exit(isKept ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    GTEST_FLAG_SET(death_test_style, "fast");
}

TEST(SavedSettings, RecentSessionsAreFewAndTheLatestFirst) {
    EXPECT_TRUE(recentSessions().isEmpty());
    const QString odd = QStringLiteral("/a, \"b\"/Mix; 3 ü.tessik");
    addRecentSession(odd);
    EXPECT_EQ(recentSessions(), QStringList(odd));
    for (int n = 0; n < 12; ++n)
        addRecentSession(QStringLiteral("/%1").arg(n));
    addRecentSession(QStringLiteral("/5"));
    EXPECT_EQ(recentSessions().join(QLatin1Char(' ')), QStringLiteral("/5 /11 /10 /9 /8 /7 /6 /4 /3 /2"));
    remove(Key::recentSessions);
    EXPECT_TRUE(recentSessions().isEmpty());
}

} // namespace
} // namespace tessik
