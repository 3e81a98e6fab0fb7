#include "FarClient.h"
#include "Support/CountingBytes.h"
#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikKit/MIDI/MIDIWords.h"

namespace tessik {

namespace {

class OutputTest : public ALSATest {
protected:
    void SetUp() override {
        ALSATest::SetUp();
        ASSERT_EQ(output.setupClient(), 0);
        output.refreshDestinations();
    }

    void choose(const QString& name) {
        ASSERT_TRUE(eventually([&] {
            const auto destinations = output.availableDestinations.value();
            for (const MIDIDestinationInfo& destination : destinations)
                if (destination.name == name) output.selectDestination(destination.uniqueID);
            return output.isReachable();
        })) << name.toStdString();
    }

    MIDIDestinationPort output{service, QStringLiteral("Tessik Test Output"), QStringLiteral("Output")};
};

/// The text that a dump of a port prints, as it grows.
class Dump {
public:
    Dump() { _process.start(QStringLiteral("aseqdump"), QStringList()); }
    ~Dump() {
        _process.terminate();
        _process.waitForFinished(120'000);
    }
    /// The lines that hold `kind`, without what stands before it, once there are so many; else what there is.
    QStringList lines(const QString& kind, qsizetype count) {
        QStringList found;
        eventually([&] {
            _text += QString::fromUtf8(_process.readAllStandardOutput());
            found.clear();
            const QStringList all = _text.left(_text.lastIndexOf(QLatin1Char('\n'))).split(QLatin1Char('\n'));
            for (const QString& line : all)
                if (const auto at = line.indexOf(kind); at >= 0) found << line.mid(at + kind.size()).trimmed();
            return found.size() >= count;
        });
        return found;
    }

private:
    QProcess _process;
    QString _text;
};

} // namespace

TEST_F(OutputTest, whatIsSentIsWhatADumpShows) {
    Dump dump;
    choose(QStringLiteral("aseqdump"));
    EXPECT_EQ(output.statusText.value(), QStringLiteral("Output: aseqdump"));
    std::vector<std::uint32_t> words;
    QStringList expected;
    for (int i = 0; i < 64; ++i) {
        words.push_back(MIDIWords::controlChange(1 + i % 16, (i * 3) % 128, 127 - i));
        expected << QStringLiteral("%1, controller %2, value %3").arg(i % 16).arg((i * 3) % 128).arg(127 - i);
    }
    ASSERT_EQ(output.send(words), 0);
    EXPECT_EQ(dump.lines(QStringLiteral("Control change"), expected.size()), expected);

    const std::vector<std::uint8_t> locate{0x7F, 0x7F, 0x06, 0x44, 0x06, 0x01, 0x21, 0x02, 0x03, 0x04, 0x00};
    const std::vector<std::uint8_t> bulk = countingBytes(1000);
    words.clear();
    MIDIWords::appendSysEx(words, locate);
    MIDIWords::appendSysEx(words, bulk);
    ASSERT_EQ(output.send(words), 0);
    const QStringList chunks = dump.lines(QStringLiteral("System exclusive"), 5); // 1 and 1,002 bytes in chunks of 256
    const auto hex = [](const std::vector<std::uint8_t>& data) {
        return QByteArray(reinterpret_cast<const char*>(data.data()), qsizetype(data.size())).toHex(' ').toUpper();
    };
    EXPECT_EQ(chunks.join(QLatin1Char(' ')).toLatin1(), "F0 " + hex(locate) + " F7 F0 " + hex(bulk) + " F7");
    EXPECT_EQ(chunks.size(), 5);
}

TEST_F(OutputTest, aFullReceiverKeepsNobodyWaiting) {
    FarClient far(QStringLiteral("Tessik Test Desk"));
    choose(QStringLiteral("Tessik Test Desk MIDI 1"));
    const std::uint32_t word = MIDIWords::controlChange(1, 7, 100);
    MIDIStatus status = 0;
    for (int i = 0; i < 5000 && status == 0; ++i)
        status = output.send({&word, 1});
    EXPECT_EQ(status, midiWouldBlock);
    EXPECT_TRUE(far.tell(QStringLiteral("drain")).endsWith(QLatin1String("ok")));
    EXPECT_EQ(output.send({&word, 1}), 0);
}

} // namespace tessik
