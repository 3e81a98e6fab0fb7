// The part of the session controller that keeps recovery files.
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikKit/MIDI/Log.h"

#include <QFileInfo>
#include <QLocale>

#include <utility>

namespace tessik {

RecoveryFile SessionController::newRecoveryFile() {
    if (!_recoveryFolder) _recoveryFolder = RecoveryFolder::create(_recoveryRoot);
    if (!_recoveryFolder) return {};
    return {.folder = _recoveryFolder,
            .path = QStringLiteral("%1/%2.tessik").arg(_recoveryFolder->path).arg(++_recoveryFiles)};
}

RecoveryOrigin SessionController::origin() const {
    const std::optional<QUrl> url = fileURL.value();
    return {.sessionPath = url ? url->toLocalFile() : QString(), .stamp = _stamp};
}

void SessionController::recoveryTick() {
    const std::optional<PendingTake> take = pendingTake ? pendingTake() : std::nullopt;
    if (!hasUnsavedChanges.value() && !take) {
        removeRecovery(std::exchange(_recovery, {}));
        _recovered.reset();
    } else if (_recoveryWrites == 0) { // else the disk is slow: the next tick sees to it
        writeRecovery(take);
    }
}

void SessionController::takeEnded() { writeRecovery(pendingTake ? pendingTake() : std::nullopt); }

void SessionController::writeRecovery(const std::optional<PendingTake>& take) {
    const RecoveryState state{.changes = _changes,
                              .take = take ? take->pass.id : QUuid(),
                              .takeEvents = take ? take->eventCount() : 0,
                              .ridesEnd = take && take->rides && !take->chunks.isEmpty() ? take->rides->end : -1,
                              .origin = origin()};
    if (_recovered == state) return;
    if (!_recovery.folder) _recovery = newRecoveryFile();
    _recovered = state;
    ++_recoveryWrites;
    _writer.post([this, file = _recovery, copy = document(), take, state]() -> BackgroundWriter::Completion {
        const QString problem = file.write(copy, take, state.origin);
        return [this, problem, state] {
            --_recoveryWrites;
            if (!problem.isEmpty() && problem != recoveryProblem.value()) logLine(QStringLiteral("Recovery"), problem);
            recoveryProblem = problem;
            if (!problem.isEmpty() && _recovered == state) _recovered.reset(); // the next tick tries again
        };
    });
}

void SessionController::removeRecovery(const RecoveryFile& file) {
    if (!file.folder) return;
    _writer.post([file]() -> BackgroundWriter::Completion {
        file.remove();
        return {};
    });
}

void SessionController::offerRecovery() {
    for (const RecoveryOffer& offer : findRecoveries(_recoveryRoot)) {
        const QString& path = offer.origin.sessionPath;
        const QString name = path.isEmpty() ? QStringLiteral("Untitled") : QFileInfo(path).completeBaseName();
        const QString text =
            QStringLiteral("The program ended without saving “%1”. A copy of %2 is there, with all "
                           "changes and takes up to then.")
                .arg(name, QLocale::c().toString(offer.writtenAt, QStringLiteral("MMM d, h:mm:ss AP")));
        switch (_dialogs.askRecovery(QStringLiteral("Recover “%1”?").arg(name), text)) {
        case SessionDialogs::Recovery::later: continue;
        case SessionDialogs::Recovery::discard: removeRecovery(offer.file); continue;
        case SessionDialogs::Recovery::recover: break;
        }
        SessionReadResult read = readSession(offer.file.path, _clock());
        if (!read.document) {
            fail(QStringLiteral("Couldn't open session"), read.error);
            continue;
        }
        replace({.document = std::move(*read.document),
                 .url = path.isEmpty() ? std::nullopt : std::optional(QUrl::fromLocalFile(path)),
                 .stamp = offer.origin.stamp,
                 .recovery = offer.file});
        noteChange();
        return;
    }
}

} // namespace tessik
