#pragma once

#include "TessikKit/MIDI/MTCDecoder.h"
#include "TessikKit/MIDI/WordRing.h"

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace tessik {

/// What passed a MIDI port: a message, or eight quarter frames that name a position.
struct MonitorLine {
    enum class Kind : std::uint8_t { console, timecode, machineControl, other };

    Uptime stamp; ///< when its last word came or went
    QString port;
    Kind kind = Kind::other;
    QString text; ///< "Fader 12 → −6.3 dB", "MTC 01:07:42:10, 25 fps", "MMC LOCATE 01:00:00:00"
    QString raw;  ///< the bytes as on the cable, in hex: "B0 0B 58"
};

/// Makes lines of the words of one port.
class MonitorDecoder {
public:
    explicit MonitorDecoder(QString port) : _port(std::move(port)) {}

    /// Adds the lines that a word completes.
    void take(const WordRing::Entry& entry, std::vector<MonitorLine>& lines);
    /// Words were missed: forgets what is half done.
    void reset();

private:
    using Kind = MonitorLine::Kind;
    void takeQuarterFrame(const WordRing::Entry& entry, std::vector<MonitorLine>& lines);
    void takeSysEx(const WordRing::Entry& entry, std::vector<MonitorLine>& lines);
    void add(Uptime stamp, Kind kind, const QString& text, std::span<const std::uint8_t> bytes,
             std::vector<MonitorLine>& lines) const;

    const QString _port;
    MTCDecoder _quarterFrames;
    std::vector<std::uint8_t> _run;      // the quarter frames so far, as bytes
    std::optional<std::uint32_t> _first; // of a pair of System Exclusive words
    std::vector<std::uint8_t> _sysEx;
};

/// Follows the words of several ports, which must outlive it. Costs nothing until `look` is called.
class MIDIMonitor {
public:
    void watch(const QString& port, const WordRing& words);
    /// What has passed since the last look, or of the last `WordRing::kept` words of each port; in order of time.
    std::vector<MonitorLine> look();

private:
    struct Port {
        const WordRing* words;
        MonitorDecoder decoder;
        std::int64_t next = 0;
    };
    std::vector<Port> _ports;
};

} // namespace tessik
