#pragma once

#include "Support/SessionCopy.h"
#include "Support/Sessions.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tessik::test {

struct SessionControllerTest : testing::Test {
    QTemporaryDir folder;
    const QString state = folder.filePath(QStringLiteral("%1 and %2")); // no name may take another's place in a text
    const QString recovery = state + QStringLiteral("/recovery");
    qint64 time = 0;
    std::unique_ptr<Copy> program = start();

    std::unique_ptr<Copy> start() {
        return std::make_unique<Copy>(recovery, [this] { return second(time); });
    }
    QString file(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }
    void open(const QString& path) { program->controller.open(QUrl::fromLocalFile(path)); }
    SessionDocument onDisk(const QString& path) const {
        const SessionReadResult result = readSession(path, second(-1));
        EXPECT_TRUE(result.document) << qUtf8Printable(result.error);
        return result.document.value_or(SessionDocument());
    }
    /// Saves under a new name, which must succeed.
    void saveAs(const QString& path) {
        program->dialogs.whereToSave = path;
        program->controller.saveAs();
        program->controller.finishSaving();
        EXPECT_FALSE(program->isDirty());
        program->dialogs.taken();
    }
    QString labelOnDisk(const QString& path) const {
        return onDisk(path).channelLabels.value(QStringLiteral("input-1")).name;
    }
    /// Excludes those of replaced sessions.
    QStringList recoveryFiles(const char* pattern = "*.tessik") const {
        QStringList files;
        for (const QFileInfo& run : QDir(recovery).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
            if (run.fileName() != QLatin1String("replaced"))
                for (const QString& name : QDir(run.filePath()).entryList({QLatin1String(pattern)}))
                    files << run.filePath() + QLatin1Char('/') + name;
        return files;
    }
    QStringList replacedNames() const {
        QStringList names;
        for (const ReplacedSession& session : program->controller.replacedSessions())
            names << session.origin.name();
        return names;
    }
    static QList<TimedEvent> moves(int from, int to) {
        QList<TimedEvent> list;
        for (int i = from; i < to; ++i)
            list.append({i, ChannelKind::input(1), PassEventValue::fader(i % 128)});
        return list;
    }
    AutomationPass take(int events) const {
        AutomationPass pass{.id = QUuid(QStringLiteral("{0f8fad5b-d9cb-469f-a165-70867728950e}")),
                            .createdAt = second(5)};
        for (int i = 0; i < events; ++i)
            pass.events.append({events - i, ChannelKind::input(1), PassEventValue::fader(i)});
        return pass;
    }
};

} // namespace tessik::test
