// The part of the session controller that keeps recovery files.
#include "TessikAutomation/Session/SessionController.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikKit/MIDI/Log.h"

#include <QFileInfo>
#include <QLocale>

#include <utility>

namespace tessik {

namespace {

void callEach(const std::vector<std::function<void()>>& functions) {
    for (const auto& function : functions)
        function();
}

} // namespace

/// False if no folder can be made for it.
bool SessionController::makeRecoveryFile() {
    if (_recovery.folder) return true;
    if (!_recoveryFolder) _recoveryFolder = RecoveryFolder::create(_recoveryRoot);
    if (!_recoveryFolder) return false;
    _recovery = {.folder = _recoveryFolder,
                 .path = QStringLiteral("%1/%2.tessik").arg(_recoveryFolder->path, QString::number(++_recoveryFiles))};
    return true;
}

RecoveryOrigin SessionController::origin() const {
    const std::optional<QUrl> url = fileURL.value();
    return {.sessionPath = url ? url->toLocalFile() : QString(), .stamp = _stamp};
}

std::optional<PendingTake> SessionController::unsavedTake() const { return pendingTake ? pendingTake() : std::nullopt; }

void SessionController::noteProblem(QString& of, const QString& problem) {
    if (!problem.isEmpty() && problem != of) logLine(QStringLiteral("Recovery"), problem);
    of = problem;
    recoveryProblem = _copyProblem.isEmpty() ? _journalProblem : _copyProblem;
}

// MARK: the copy of the session

void SessionController::recoveryTick() {
    const std::optional<PendingTake> take = unsavedTake();
    if (!hasUnsavedChanges.value() && !take)
        dropRecovery();
    else if (_recoveryWrites == 0) // otherwise the disk is slow, and the next tick takes care of it
        writeRecovery(isTakeGrowing() ? std::nullopt : take);
}

/// `take` goes into the copy; a growing one is in its journal instead.
void SessionController::writeRecovery(const std::optional<PendingTake>& take) {
    const std::optional<PendingTake> unsaved = unsavedTake();
    const RecoveryState state{.changes = _changes,
                              .take = unsaved ? unsaved->pass.id : QUuid(),
                              .takeEvents = take ? take->eventCount() : -1,
                              .origin = origin()};
    if (_recovered == state) return;
    if (!makeRecoveryFile())
        return noteProblem(_copyProblem, QStringLiteral("The folder for recovery files cannot be made."));
    _recovered = state;
    ++_recoveryWrites;
    _writer.post([this, file = _recovery, copy = document(), take, state,
                  superseded = std::exchange(_superseded, {})]() -> BackgroundWriter::Completion {
        const QString problem = file.write(copy, take, state.origin);
        const bool isFolderGone = !problem.isEmpty() && !file.folder->isThere();
        return [this, problem, state, isFolderGone, superseded] {
            --_recoveryWrites;
            if (problem.isEmpty())
                callEach(superseded);
            else
                _superseded.insert(_superseded.begin(), superseded.begin(), superseded.end());
            if (isFolderGone) return replaceRecoveryFolder();
            noteProblem(_copyProblem, problem);
            if (!problem.isEmpty() && _recovered == state) _recovered.reset(); // the next tick tries again
        };
    });
}

/// Copies must go on being kept even if someone clears the state folder away.
void SessionController::replaceRecoveryFolder() {
    _recoveryFolder.reset();
    _recovery = {};
    _recovered.reset();
    endJournal();
    recoveryTick();
}

/// Nothing is left to recover.
void SessionController::dropRecovery() {
    endJournal();
    callEach(std::exchange(_superseded, {}));
    removeRecovery(std::exchange(_recovery, {}));
    _recovered.reset();
}

void SessionController::removeRecovery(const RecoveryFile& file) {
    if (file.path.isEmpty()) return;
    _writer.post([file]() -> BackgroundWriter::Completion {
        file.remove();
        return {};
    });
}

// MARK: the journal of a take

void SessionController::noteTake() {
    const std::optional<PendingTake> take = unsavedTake();
    if (!take) return; // it was stored or is no longer wanted: the next tick takes care of it
    const bool isGrowing = isTakeGrowing();
    if (!isGrowing) endJournal();
    writeRecovery(isGrowing ? std::nullopt : take);
    _journalTimer.start(journalInterval); // even before the new take has grown
}

void SessionController::journalTick() {
    const std::optional<PendingTake> take = isTakeGrowing() ? unsavedTake() : std::nullopt;
    if (!take || (_journal && _journal->take != take->pass.id)) endJournal();
    if (!take) return _journalTimer.stop();
    if (_isJournalBusy || take->chunks.isEmpty() || !makeRecoveryFile()) return;
    if (!_journal)
        _journal = Journal{take->pass.id, std::make_shared<TakeJournal>(_recovery.journalPath(take->pass.id))};
    _isJournalBusy = true;
    _journalWriter.post(
        [this, take, journal = _journal->file, folder = _recovery.folder]() -> BackgroundWriter::Completion {
            const TakeJournal::Written written = journal->write(*take);
            const bool isFolderGone = !written.error.isEmpty() && !folder->isThere();
            return [this, written, isFolderGone, journal] {
                _isJournalBusy = false;
                if (isFolderGone) return replaceRecoveryFolder();
                if (_journal && _journal->file == journal) noteProblem(_journalProblem, written.error);
                if (written.flush) flushJournal(written.flush);
            };
        });
}

/// On the other thread: a slow disk must not hold up an append.
void SessionController::flushJournal(const std::function<void()>& flush) {
    _writer.post([flush]() -> BackgroundWriter::Completion {
        flush();
        return {};
    });
}

/// The take no longer grows. Its journal is removed once the take is safe elsewhere.
void SessionController::endJournal() {
    if (!_journal) return;
    _superseded.emplace_back([this, journal = _journal->file] {
        _journalWriter.post([journal]() -> BackgroundWriter::Completion {
            journal->remove();
            return {};
        });
    });
    _journal.reset();
    noteProblem(_journalProblem, {});
}

// MARK: the end, and the next start

void SessionController::keepUnsaved() {
    if (_mayEnd) return;
    finishSaving();
    const std::optional<PendingTake> take = unsavedTake();
    if (hasUnsavedChanges.value() || take) {
        _recovered.reset();
        writeRecovery(take); // even a growing one; its journal continues
    } else {
        dropRecovery();
    }
    finishSaving();
}

void SessionController::leave() {
    _isLeaving = true;
    _recoveryTimer.stop();
    _journalTimer.stop();
    keepUnsaved();
}

void SessionController::offerRecovery() {
    for (const RecoveryOffer& offer : findRecoveries(_recoveryRoot)) {
        const QString name = offer.origin.name();
        const QString text =
            QStringLiteral("The program ended without saving “%1”. A copy of %2 is there, with all "
                           "changes and takes up to then.")
                .arg(name, QLocale::c().toString(offer.writtenAt, QStringLiteral("MMM d, h:mm:ss AP")));
        switch (_dialogs.askRecovery(QStringLiteral("Recover “%1”?").arg(name), text)) {
        case SessionDialogs::Recovery::later: continue;
        case SessionDialogs::Recovery::discard: removeRecovery(offer.file); continue;
        case SessionDialogs::Recovery::recover: break;
        }
        SessionReadResult read = offer.file.read(_clock());
        if (!read.document) {
            _dialogs.alertOfFile(QStringLiteral("Couldn't recover “%1”").arg(name),
                                 QStringLiteral("Its recovery copy is damaged: %1 The copy stays where it is, as “%2”.")
                                     .arg(read.error, QFileInfo(offer.file.path).fileName()),
                                 offer.file.path);
            continue;
        }
        if (!replace({.document = std::move(*read.document),
                      .url = offer.origin.url(),
                      .stamp = offer.origin.stamp,
                      .recovery = offer.file}))
            return;
        noteChange();
        for (const QString& journal : offer.file.journals())
            _superseded.emplace_back([this, journal] {
                _writer.post([journal]() -> BackgroundWriter::Completion {
                    QFile::remove(journal);
                    return {};
                });
            });
        recoveryTick();
        return;
    }
}

} // namespace tessik
