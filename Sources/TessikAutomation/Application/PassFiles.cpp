#include "TessikAutomation/Application/PassFiles.h"

#include "TessikAutomation/Automation/PassMIDIFile.h"
#include "TessikAutomation/Automation/StandardMIDIFile.h"
#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Views/Controls/UndoStep.h"

#include <QFile>
#include <QFileInfo>
#include <QUndoStack>

namespace tessik {
namespace {

WidgetSessionDialogs::FileType midiType() {
    return {QStringLiteral("MIDI files (*.mid *.midi)"), QStringLiteral("mid")};
}

QString exportTo(const QString& path, const AutomationPass& pass, int midiChannel) {
    QString error;
    const QByteArray bytes = PassMIDIFile::write(pass, midiChannel, error);
    if (!error.isEmpty()) return error + QLatin1Char('.');
    return writeFileSafely(path, PreviousFile::drop,
                           [&bytes](QIODevice& device) {
                               return device.write(bytes) == bytes.size() ? QString() : device.errorString();
                           })
        .error;
}

PassMIDIFile::Imported importFrom(const QString& path, int midiChannel, MTCFrameRate rateForBeats) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {.pass = {}, .error = file.errorString(), .notes = {}};
    const QByteArray bytes = file.read(StandardMIDIFile::maxBytes + 1); // one more means too large
    if (file.error() != QFileDevice::NoError) return {.pass = {}, .error = file.errorString(), .notes = {}};
    PassMIDIFile::Imported imported = PassMIDIFile::read(bytes, midiChannel, rateForBeats, currentSecond());
    if (imported.pass && imported.pass->name.isEmpty()) imported.pass->name = QFileInfo(path).completeBaseName();
    return imported;
}

/// Turns a pass's name into a file name: without anything that leads to another folder or hides the file.
QString fileName(QString name) {
    name.replace(QLatin1Char('/'), QLatin1Char('-'));
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    return name.isEmpty() ? QStringLiteral("Pass") : name;
}

} // namespace

BackgroundWriter& PassFiles::writer() {
    if (!_writer) _writer.emplace();
    return *_writer;
}

void PassFiles::exportPass(const AutomationPass& pass) {
    const auto path = _dialogs.chooseToSave(QStringLiteral("Export as MIDI File"), midiType(),
                                            fileName(pass.name) + QStringLiteral(".mid"));
    if (!path) return;
    writer().post([this, path = *path, pass, channel = midiChannel()]() -> BackgroundWriter::Completion {
        const QString error = exportTo(path, pass, channel);
        if (error.isEmpty()) return {};
        return [this, error, name = pass.name] {
            _dialogs.alert(QStringLiteral("Couldn't export “%1”").arg(name), error);
        };
    });
}

void PassFiles::add(const AutomationPass& pass) {
    _history.push(new UndoStep(
        QStringLiteral("importing %1").arg(pass.name), [this, pass] { _passes.save(pass); },
        [this, id = pass.id] {
            const std::optional<AutomationPass>& selected = _engine.selectedPass.value();
            if (selected && selected->id == id) _engine.select(std::nullopt);
            _passes.remove(id);
        }));
}

void PassFiles::importPass() {
    const auto path = _dialogs.chooseToOpen(QStringLiteral("Import a MIDI file"), midiType());
    if (!path) return;
    const std::optional<TimecodePosition>& position = _mtcClock.currentPosition.value();
    const MTCFrameRate rate = position ? position->frameRate : MTCFrameRate::fps30;
    writer().post([this, path = *path, rate, channel = midiChannel()]() -> BackgroundWriter::Completion {
        return [this, path, imported = importFrom(path, channel, rate)] {
            if (!imported.pass) {
                _dialogs.alert(QStringLiteral("Couldn't import “%1”").arg(QFileInfo(path).fileName()),
                               imported.error + QLatin1Char('.'));
                return;
            }
            add(*imported.pass);
            if (!imported.notes.isEmpty())
                _dialogs.alert(QStringLiteral("“%1” was imported, with exceptions").arg(imported.pass->name),
                               imported.notes.join(QLatin1Char('\n')));
        };
    });
}

} // namespace tessik
