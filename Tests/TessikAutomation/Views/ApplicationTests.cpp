#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Views/ApplicationFixture.h"

#include <QAbstractButton>
#include <QDirIterator>

namespace tessik {
namespace {

AutomationPass pass(const char* name) {
    return {.id = QUuid::createUuid(), .name = QLatin1String(name), .createdAt = currentSecond()};
}

TEST_F(ApplicationTest, TheTitleNamesWhatWasRecalledLast) {
    const auto title = [this] { return application.window.windowTitle(); };
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]"));
    const AutomationPass verse = pass("Verse [*]");
    application.passes.save(verse);
    application.passEngine.select(verse);
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Pass: Verse [*][*]"));
    application.passes.rename(verse.id, QStringLiteral("Chorus"));
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Pass: Chorus"));
    application.passEngine.select(std::nullopt);
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]"));

    application.snapshots.save(application.snapshotRecall.capture(QStringLiteral("Low"), currentSecond()));
    activate(application.window);
    auto* recall = application.window.findChild<QAbstractButton*>(QStringLiteral("recall"));
    auto* trash = application.window.findChild<QAbstractButton*>(QStringLiteral("trash"));
    ASSERT_TRUE(recall && trash);
    recall->click();
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Snapshot: Low"));
    application.passEngine.select(std::nullopt);
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Snapshot: Low")) << "no pass was let go of";
    trash->click();
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]")) << "what is gone is not named";
    QTest::keyClick(application.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]  —  Snapshot: Low"));

    application.session.newSession();
    EXPECT_EQ(title(), QStringLiteral("Untitled[*]"));
    QTest::keyClick(application.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(application.snapshots.snapshots.value().isEmpty()) << "nothing of another session comes back";
}

TEST_F(ApplicationTest, ATakeIsInTheRecoveryFileOnceItEndsAndAsLongAsItWaits) {
    const auto recovered = [this] { // names of the passes in the recovery file
        application.session.finishSaving();
        QDirIterator files(folder.path(), {QStringLiteral("*.tessik")}, QDir::Files, QDirIterator::Subdirectories);
        QStringList names;
        while (files.hasNext()) {
            const auto document = readSession(files.next(), currentSecond()).document.value();
            for (const AutomationPass& pass : document.passes)
                names.append(pass.name);
        }
        return names;
    };
    application.passEngine.recordingPass = pass("Take");
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
    application.passEngine.select(pass("Another"));
    application.session.newSession();
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
    application.passEngine.onTakeSuperseded(*application.passEngine.recordingPass.value());
    application.passEngine.recordingPass = pass("Next");
    EXPECT_EQ(recovered(), (QStringList{QStringLiteral("Next"), QStringLiteral("Take")}));
    EXPECT_FALSE(application.passEngine.selectedPass.value());
    application.passEngine.discardTake();
    application.session.recoveryTick();
    EXPECT_EQ(recovered(), QStringList{QStringLiteral("Take")});
}

} // namespace
} // namespace tessik
