#pragma once

#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"
#include "TessikKit/MIDI/MIDIPortInfo.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace tessik {

/// Waits, with the main thread's events running, until the condition holds; false after two minutes.
template <typename Condition>
bool eventually(Condition condition) {
    return QTest::qWaitFor(condition, 120'000);
}

/// A program beside the test's own that answers every line told to it with a line.
class FarProgram {
public:
    FarProgram(const QString& program, const QStringList& arguments) {
        _process.start(QCoreApplication::applicationDirPath() + QLatin1Char('/') + program, arguments);
    }
    ~FarProgram() { stop(); }

    /// Ends it; its ports are gone when this returns.
    void stop() {
        _process.terminate();
        _process.waitForFinished(120'000);
    }

    /// Has it do what the line says, and waits until it is done: "ok", or what went wrong.
    QString tell(const QString& line) {
        begin(line);
        return answer();
    }
    /// The same without waiting.
    void begin(const QString& line) {
        _process.write(line.toUtf8() + '\n');
        _process.waitForBytesWritten();
    }
    QString answer() {
        while (!_process.canReadLine())
            if (!_process.waitForReadyRead(120'000)) return QStringLiteral("no answer");
        return QString::fromUtf8(_process.readLine()).trimmed();
    }

private:
    QProcess _process;
};

/// A client of the sequencer, with one port to begin with.
class FarClient : public FarProgram {
public:
    explicit FarClient(const QString& client, const QString& port = QStringLiteral("MIDI 1"))
        : FarProgram(QStringLiteral("tessik-alsa-far"), {client, port}), number(answer().toInt()) {
        EXPECT_GT(number, 0) << "the far client did not start";
    }

    const int number; ///< of the client, in the sequencer
};

/// A service on the machine's sequencer.
class ALSATest : public testing::Test {
protected:
    void SetUp() override {
        const std::optional<QString> problem = ALSAMIDIService::problem();
        ASSERT_FALSE(problem) << problem->toStdString();
    }

    static std::vector<MIDIPortInfo> named(const std::vector<MIDIEndpoint>& endpoints, const QString& name) {
        std::vector<MIDIPortInfo> ports = describePorts(endpoints, {});
        std::erase_if(ports, [&](const MIDIPortInfo& port) { return port.name != name; });
        return ports;
    }
    std::vector<MIDIPortInfo> sourcesNamed(const QString& name) const { return named(service.sources(), name); }
    std::vector<MIDIPortInfo> destinationsNamed(const QString& name) const {
        return named(service.destinations(), name);
    }

    ALSAMIDIService service;
};

} // namespace tessik
