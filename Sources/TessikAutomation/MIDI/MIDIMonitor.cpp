#include "TessikAutomation/MIDI/MIDIMonitor.h"

#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikKit/Models/FaderDBCalibration.h"
#include "TessikKit/Models/MIDIChannelMapping.h"

#include <QStringList>

#include <algorithm>

namespace tessik {
namespace {

QString hex(std::span<const std::uint8_t> bytes) {
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size())).toHex(' ').toUpper());
}

QString described(const TimecodePosition& position) {
    return position.displayString() + QStringLiteral(", ") + description(position.frameRate);
}

QString describedSwitches(ChannelSwitches switches) {
    QStringList on;
    if (switches.monMuted) on += QStringLiteral("monitor MUTE");
    if (switches.auxMuted) on += QStringLiteral("aux MUTE");
    if (switches.eqOn) on += QStringLiteral("EQ");
    if (switches.chanMuted) on += QStringLiteral("MUTE");
    return on.isEmpty() ? QStringLiteral("all off") : on.join(QStringLiteral(", "));
}

/// None for a controller that the console does not explain.
std::optional<QString> describedControl(int cc, int value) {
    if (const auto kind = MIDIChannelMapping::channelKindForFaderCC(cc))
        return QStringLiteral("Fader %1 → %2 dB")
            .arg(kind->displayName(), FaderDBCalibration::displayString(value).replace(u'-', u'−'));
    if (const auto kind = MIDIChannelMapping::channelKindForSwitchCC(cc))
        return QStringLiteral("Switches %1 → %2")
            .arg(kind->displayName(), describedSwitches(MIDIChannelMapping::decodeSwitchByte(std::uint8_t(value))));
    return std::nullopt;
}

/// Channel-voice messages by the upper half of their status, from 0x8 (MIDI 1.0, table II).
QString describedVoice(std::uint8_t status, int data1, int data2) {
    const QString channel = QStringLiteral(", channel %1").arg((status & 0xF) + 1);
    switch (status >> 4) {
    case 0x8: return QStringLiteral("Note off %1%2").arg(data1).arg(channel);
    case 0x9: return QStringLiteral("Note on %1, velocity %2%3").arg(data1).arg(data2).arg(channel);
    case 0xA: return QStringLiteral("Key pressure %1 = %2%3").arg(data1).arg(data2).arg(channel);
    case 0xB: return QStringLiteral("Controller %1 = %2%3").arg(data1).arg(data2).arg(channel);
    case 0xC: return QStringLiteral("Program %1%2").arg(data1 + 1).arg(channel);
    case 0xD: return QStringLiteral("Channel pressure %1%2").arg(data1).arg(channel);
    default: return QStringLiteral("Pitch bend %1%2").arg((data2 << 7 | data1) - 8192).arg(channel);
    }
}

QString describedSystem(std::uint8_t status) {
    switch (status) {
    case 0xF2: return QStringLiteral("Song position");
    case 0xF3: return QStringLiteral("Song select");
    case 0xF6: return QStringLiteral("Tune request");
    case 0xF8: return QStringLiteral("MIDI clock");
    case 0xFA: return QStringLiteral("Start");
    case 0xFB: return QStringLiteral("Continue");
    case 0xFC: return QStringLiteral("Stop");
    case 0xFE: return QStringLiteral("Active sensing");
    case 0xFF: return QStringLiteral("Reset");
    default: return QStringLiteral("System message");
    }
}

/// A machine control command; none for other messages. `sysEx` without F0 and F7.
std::optional<QString> describedCommand(std::span<const std::uint8_t> sysEx) {
    if (sysEx.size() < 4 || sysEx[0] != 0x7F || sysEx[2] != 0x06) return std::nullopt;
    QString text;
    switch (MMCCommand(sysEx[3])) {
    case MMCCommand::stop: text = QStringLiteral("STOP"); break;
    case MMCCommand::play: text = QStringLiteral("PLAY"); break;
    case MMCCommand::fastForward: text = QStringLiteral("FAST FORWARD"); break;
    case MMCCommand::rewind: text = QStringLiteral("REWIND"); break;
    case MMCCommand::recordStrobe: text = QStringLiteral("RECORD STROBE"); break;
    case MMCCommand::recordExit: text = QStringLiteral("RECORD EXIT"); break;
    case MMCCommand::pause: text = QStringLiteral("PAUSE"); break;
    default: text = QStringLiteral("command %1").arg(sysEx[3], 2, 16, QLatin1Char('0')).toUpper();
    }
    if (sysEx.size() >= 11 && sysEx[3] == MMCMessage::locateCode)
        text = QStringLiteral("LOCATE ") + TimecodePosition{.frameRate = MTCFrameRate(sysEx[6] >> 5 & 3),
                                                            .hours = sysEx[6] & 0x1F,
                                                            .minutes = sysEx[7],
                                                            .seconds = sysEx[8],
                                                            .frames = sysEx[9] & 0x1F}
                                               .displayString();
    if (sysEx[1] != TransportManager::allCall) text += QStringLiteral(", device %1").arg(sysEx[1]);
    return QStringLiteral("MMC ") + text;
}

} // namespace

void MonitorDecoder::reset() {
    _quarterFrames = {};
    _run.clear();
    _first.reset();
    _sysEx.clear();
}

void MonitorDecoder::add(Uptime stamp, Kind kind, const QString& text, std::span<const std::uint8_t> bytes,
                         std::vector<MonitorLine>& lines) const {
    lines.push_back({.stamp = stamp, .port = _port, .kind = kind, .text = text, .raw = hex(bytes)});
}

void MonitorDecoder::take(const WordRing::Entry& entry, std::vector<MonitorLine>& lines) {
    const std::uint8_t type = entry.word >> 28;
    if (_first || type == 3) return takeSysEx(entry, lines);
    const std::uint8_t status = std::uint8_t(entry.word >> 16);
    if (type == 1 && status == 0xF1) return takeQuarterFrame(entry, lines);
    if (type != 1 && type != 2) return; // nothing of MIDI 1.0
    std::vector<std::uint8_t> bytes;
    MIDIWords::appendBytes(bytes, entry.word);
    const int data1 = entry.word >> 8 & 0x7F, data2 = entry.word & 0x7F;
    if (type == 1) return add(entry.stamp, Kind::other, describedSystem(status), bytes, lines);
    const auto control = (status & 0xF0) == 0xB0 ? describedControl(data1, data2) : std::nullopt;
    add(entry.stamp, control ? Kind::console : Kind::other, control.value_or(describedVoice(status, data1, data2)),
        bytes, lines);
}

/// A run is one line; so is what there is between two of them.
void MonitorDecoder::takeQuarterFrame(const WordRing::Entry& entry, std::vector<MonitorLine>& lines) {
    const std::uint8_t data = entry.word >> 8 & 0x7F;
    const auto addRun = [&](const QString& text) {
        add(entry.stamp, Kind::timecode, QStringLiteral("MTC ") + text, std::exchange(_run, {}), lines);
    };
    constexpr std::size_t wholeRun = 16;
    if (!_run.empty() && (data >> 4 == 0 || _run.size() == wholeRun)) addRun(QStringLiteral("part of a position"));
    _run.insert(_run.end(), {0xF1, data});
    if (const auto position = _quarterFrames.handleQuarterFrame(data)) addRun(described(*position));
}

void MonitorDecoder::takeSysEx(const WordRing::Entry& entry, std::vector<MonitorLine>& lines) {
    if (!_first) {
        _first = entry.word;
        return;
    }
    const MIDIWords::SysExBytes pair(*_first, entry.word);
    const auto part = MIDIWords::SysExPart(*_first >> 20 & 0xF);
    _first.reset();
    if (part == MIDIWords::SysExPart::complete || part == MIDIWords::SysExPart::start) _sysEx = {0xF0};
    _sysEx.insert(_sysEx.end(), pair.begin(), pair.end());
    if (part != MIDIWords::SysExPart::complete && part != MIDIWords::SysExPart::end) return;
    const std::span<const std::uint8_t> data = std::span(_sysEx).subspan(1);
    Kind kind = Kind::other;
    QString text = QStringLiteral("System Exclusive, %1 bytes").arg(data.size());
    if (const auto full = MTCDecoder::fullFrameBytes(data)) {
        kind = Kind::timecode;
        text = QStringLiteral("MTC full frame ") + described(MTCDecoder::fullFramePosition(*full));
    } else if (const auto command = describedCommand(data)) {
        kind = Kind::machineControl;
        text = *command;
    }
    std::vector<std::uint8_t> whole = std::exchange(_sysEx, {});
    whole.push_back(0xF7);
    add(entry.stamp, kind, text, whole, lines);
}

void MIDIMonitor::watch(const QString& port, const WordRing& words) {
    _ports.push_back({.words = &words, .decoder = MonitorDecoder(port)});
}

std::vector<MonitorLine> MIDIMonitor::look() {
    std::vector<MonitorLine> lines;
    for (Port& port : _ports) {
        const std::int64_t before = port.next;
        const std::vector<WordRing::Entry> entries = port.words->since(port.next);
        if (std::int64_t(entries.size()) < port.next - before) port.decoder.reset();
        for (const WordRing::Entry& entry : entries)
            port.decoder.take(entry, lines);
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const MonitorLine& a, const MonitorLine& b) { return a.stamp < b.stamp; });
    return lines;
}

} // namespace tessik
