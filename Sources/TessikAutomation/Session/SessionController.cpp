#include "TessikAutomation/Session/SessionController.h"

#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikKit/MIDI/Log.h"

#include <QFileInfo>

#include <utility>

namespace tessik {

SessionController::SessionController(const SessionStores& stores, SessionDialogs& dialogs, QString recoveryRoot,
                                     WallClock clock)
    : _stores(stores),
      _dialogs(dialogs),
      _recoveryRoot(std::move(recoveryRoot)),
      _clock(std::move(clock)),
      _createdAt(_clock()),
      _replaced(_recoveryRoot + QStringLiteral("/replaced")) {
    const auto changed = [this] { noteChange(); };
    _stores.snapshots.onChange = changed;
    _stores.passes.onChange = changed;
    _stores.manualSettings.onChange = changed;
    _stores.channelLabels.onChange = changed;
    _stores.masterSection.onChange = changed;
    _stores.locators.onChange = changed;
    _recoveryTimer.callOnTimeout([this] { recoveryTick(); });
    _recoveryTimer.start(recoveryInterval);
    _journalTimer.callOnTimeout([this] { journalTick(); });
    _writer.post([this, now = _createdAt]() -> BackgroundWriter::Completion {
        _replaced.removeOld(now);
        return {};
    });
}

SessionController::~SessionController() {
    for (std::function<void()>* onChange :
         {&_stores.snapshots.onChange, &_stores.passes.onChange, &_stores.manualSettings.onChange,
          &_stores.channelLabels.onChange, &_stores.masterSection.onChange, &_stores.locators.onChange})
        *onChange = nullptr;
}

void SessionController::noteChange() {
    ++_changes;
    _mayEnd = false;
    hasUnsavedChanges = true;
}

QString SessionController::displayName() const { return origin().name(); }

// MARK: the document and the stores

SessionDocument SessionController::document() const {
    SessionDocument document = SessionDocument::empty(_clock());
    document.createdAt = _createdAt;
    document.snapshots = _stores.snapshots.snapshots.value();
    document.passes = _stores.passes.passes.value();
    document.channelLabels = _stores.channelLabels.labelsByChannelID.value();
    document.manualSettings = _stores.manualSettings.contents();
    document.masterSection = _stores.masterSection.settings.value();
    document.defaultSnapshotID = _stores.snapshots.defaultSnapshotID.value();
    document.startLocator = _stores.locators.start.value();
    document.endLocator = _stores.locators.end.value();
    return document;
}

void SessionController::apply(const SessionDocument& document) {
    _stores.snapshots.load(document.snapshots, document.defaultSnapshotID);
    _stores.passes.load(document.passes);
    _stores.channelLabels.load(document.channelLabels);
    _stores.manualSettings.load(document.manualSettings);
    _stores.masterSection.load(document.masterSection);
    std::function<void()> onChange = std::exchange(_stores.locators.onChange, nullptr);
    _stores.locators.setStart(document.startLocator);
    _stores.locators.setEnd(document.endLocator);
    _stores.locators.onChange = std::move(onChange);
    if (onSessionLoaded) onSessionLoaded();
}

/// Makes `next` the current session, which counts as clean. Unsaved work that it replaces is kept; false if that fails
/// and the user stays with it.
bool SessionController::replace(const NextSession& next) {
    const std::optional<PendingTake> take = unsavedTake();
    if (!keepReplaced(take)) return false;
    if (take) storePendingTake(take->pass.name);
    dropRecovery();
    _recovery = next.recovery;
    apply(next.document);
    fileURL = next.url;
    _stamp = next.stamp;
    leftOut = next.leftOut;
    _createdAt = next.document.createdAt;
    hasUnsavedChanges = false;
    return true;
}

/// On this thread: nothing is replaced before its copy is on the disk.
bool SessionController::keepReplaced(const std::optional<PendingTake>& take) {
    if (!hasUnsavedChanges.value() && !take) return true;
    const QString problem = _replaced.keep(document(), take, origin(), _clock());
    return problem.isEmpty() ||
           _dialogs.confirmOverwrite(
               QStringLiteral("“%1” cannot be kept").arg(displayName()),
               QStringLiteral("%1 Replacing the session loses what has changed since it was last saved.").arg(problem));
}

void SessionController::fail(const QString& title, const QString& why) {
    if (_isLeaving)
        logLine(title, why); // nobody is there to answer
    else
        _dialogs.alert(title, why);
}

void SessionController::finishSaving() {
    _journalWriter.finish();
    _writer.finish();
    _journalWriter.finish(); // a copy of the session may have ended a journal
}

// MARK: New and Open

void SessionController::newSession() {
    finishSaving();
    replace({.document = SessionDocument::empty(_clock()), .url = {}, .stamp = {}, .recovery = {}});
}

void SessionController::open() {
    if (const std::optional<QString> path = _dialogs.chooseSessionToOpen(QStringLiteral("Open a Tessik session")))
        open(QUrl::fromLocalFile(*path));
}

void SessionController::open(const QUrl& url) {
    finishSaving(); // the file may be the one being written
    const QString title = QStringLiteral("Couldn't open session");
    if (!url.isLocalFile())
        return fail(title, QStringLiteral("“%1” is not a file of this computer.").arg(url.toDisplayString()));
    const QString path = url.toLocalFile();
    SessionReadResult read = readSession(path, _clock());
    if (!read.document) {
        QString why = QStringLiteral("“%1”: %2").arg(path, read.error);
        if (QFileInfo(path + QLatin1Char('~')).isFile())
            why += QStringLiteral("\n\nThe version before its last save stands beside it: open “%1~”.").arg(path);
        return fail(title, why);
    }
    if (!replace({.document = std::move(*read.document),
                  .url = url,
                  .stamp = read.stamp,
                  .leftOut = read.leftOut(),
                  .recovery = {}}))
        return;
    _writer.post([path]() -> BackgroundWriter::Completion {
        SavedSettings::setString(SavedSettings::Key::lastSessionPath, path);
        SavedSettings::addRecentSession(path);
        return {};
    });
}

void SessionController::reopen(const ReplacedSession& session) {
    finishSaving();
    SessionReadResult read = session.file.read(_clock());
    if (!read.document)
        return _dialogs.alertOfFile(QStringLiteral("Couldn't open session"), read.error, session.file.path);
    if (!replace({.document = std::move(*read.document),
                  .url = session.origin.url(),
                  .stamp = session.origin.stamp,
                  .leftOut = read.leftOut(),
                  .recovery = {}}))
        return;
    noteChange();
    _superseded.emplace_back([this, file = session.file] { removeRecovery(file); });
    recoveryTick();
}

// MARK: saving

void SessionController::save() {
    const std::optional<QUrl> url = fileURL.value();
    if (!url) return saveAs();
    const QString path = url->toLocalFile();
    const std::optional<FileStamp> now = FileStamp::of(path);
    const bool isOurs = isSaving.value() || !now || now == _stamp;
    if (isOurs || _dialogs.confirmOverwrite(
                      QStringLiteral("“%1” was changed by another program").arg(displayName()),
                      QStringLiteral("The file is not as it was when this session was last opened or saved. Saving "
                                     "replaces it; what is there now is kept as “%1~”.")
                          .arg(QFileInfo(path).fileName())))
        saveTo(path);
}

void SessionController::saveAs() {
    const std::optional<QUrl> url = fileURL.value();
    const QLatin1String extension(".tessik");
    const std::optional<QString> chosen =
        _dialogs.chooseWhereToSave(url ? url->toLocalFile() : displayName() + extension);
    if (!chosen) return;
    if (chosen->endsWith(extension)) return saveTo(*chosen);
    const QString path = *chosen + extension;
    // The panel has asked only about the name as typed.
    if (!QFileInfo::exists(path) ||
        _dialogs.confirmOverwrite(QStringLiteral("“%1” already exists").arg(QFileInfo(path).fileName()),
                                  QStringLiteral("Saving replaces it.")))
        saveTo(path);
}

void SessionController::saveTo(const QString& path) {
    if (isSaving.value()) {
        _nextSave = path;
        return;
    }
    isSaving = true;
    _writer.post([this, path, changes = _changes, copy = document()]() -> BackgroundWriter::Completion {
        const SafeFileResult result = writeSessionFile(path, PreviousFile::keep, copy);
        if (result.error.isEmpty()) SavedSettings::addRecentSession(path);
        return [this, path, changes, result] { finishSave(path, changes, result); };
    });
}

void SessionController::finishSave(const QString& path, std::int64_t changes, const SafeFileResult& result) {
    isSaving = false;
    if (result.error.isEmpty()) {
        fileURL = QUrl::fromLocalFile(path);
        _stamp = result.stamp;
        if (changes == _changes) hasUnsavedChanges = false;
        recoveryTick();
    }
    if (const std::optional<QString> next = std::exchange(_nextSave, std::nullopt)) saveTo(*next);
    if (!result.error.isEmpty()) fail(QStringLiteral("Couldn't save session"), result.error);
}

bool SessionController::prepareToQuit() {
    finishSaving();
    const std::optional<PendingTake> take = unsavedTake();
    using Choice = SessionDialogs::Unsaved;
    Choice choice = Choice::discard;
    if (take) {
        const SessionDialogs::TakeAnswer answer = _dialogs.askTake(
            QStringLiteral("Save the take?"),
            QStringLiteral("It is not in “%1” yet. Saving puts it there under this name, and saves the "
                           "session.")
                .arg(displayName()),
            take->pass.name);
        choice = answer.choice;
        if (choice == Choice::save) storePendingTake(answer.name);
    }
    // A user who keeps the take has said that the session is to be saved.
    if (choice == Choice::discard && hasUnsavedChanges.value())
        choice = _dialogs.askUnsaved(QStringLiteral("Save the changes of “%1”?").arg(displayName()),
                                     QStringLiteral("Your changes are lost if you don't save them."));
    if (choice == Choice::cancel) return false;
    if (choice == Choice::save) {
        save();
        finishSaving();
        if (hasUnsavedChanges.value()) return false;
    }
    _recoveryTimer.stop();
    _journalTimer.stop();
    dropRecovery();
    finishSaving();
    _mayEnd = true;
    return true;
}

} // namespace tessik
