// A USB-MIDI device that the kernel emulates. Its own side is a card of its own: what is sent there comes out of the
// device, through the drivers that a real one has.
#include "FarClient.h"
#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <QStandardPaths>

#include <mutex>

namespace tessik {

namespace {

const QString plugTool = QStringLiteral("alsa-vm-usb-midi");

class USBTest : public ALSATest {
protected:
    void SetUp() override {
        ALSATest::SetUp();
        if (QStandardPaths::findExecutable(plugTool).isEmpty()) GTEST_SKIP() << "no emulated USB-MIDI devices here";
    }
    static void run(const QString& verb) { ASSERT_EQ(QProcess::execute(plugTool, {verb, QStringLiteral("Knobs")}), 0); }
};

} // namespace

TEST_F(USBTest, aDeviceIsPluggedUnpluggedAndReplugged) {
    const QString name = QStringLiteral("Knobs MIDI 1");
    std::vector<int> values;
    std::mutex mutex;
    std::vector<std::size_t> lengths;
    MIDIInputConnection input(service, QStringLiteral("Tessik Test"),
                              [&](const MIDIWord& word) { input.submit(word); });
    input.setTaskHandler([&](const MIDIWord& word) { values.push_back(word.data1() << 7 | word.data2()); });
    input.setSysExHandler([&](Uptime, std::span<const std::uint8_t> bytes) {
        const std::lock_guard lock(mutex);
        lengths.push_back(bytes.size());
    });
    MIDIDestinationPort output(service, QStringLiteral("Tessik Test Output"), QStringLiteral("Output"));
    ASSERT_EQ(output.setupClient(), 0);
    output.refreshDestinations();
    const std::uint32_t word = MIDIWords::controlChange(1, 7, 100);

    std::optional<std::int32_t> chosen;
    for (int round = 0; round < 3; ++round) {
        run(QStringLiteral("plug"));
        ASSERT_TRUE(eventually([&] { return sourcesNamed(name).size() == 1; })) << "round " << round;
        if (round == 0) {
            chosen = sourcesNamed(name)[0].uniqueID;
            input.refreshSources();
            input.selectSource(chosen);
            output.refreshDestinations();
            output.selectDestination(destinationsNamed(name).at(0).uniqueID);
        }
        ASSERT_TRUE(eventually([&] {
            return input.statusText.value() == QStringLiteral("Connected: ") + name && output.isReachable();
        })) << "round "
            << round;
        EXPECT_EQ(input.connectedSourceID.value(), chosen);

        FarClient hand(QStringLiteral("Hand"));
        ASSERT_EQ(hand.tell(QStringLiteral("cable f_midi")), QLatin1String("ok"));
        ASSERT_EQ(hand.tell(QStringLiteral("cc 100 20")), QLatin1String("ok"));
        ASSERT_TRUE(eventually([&] { return values.size() == 20; })) << "round " << round;
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(values[std::size_t(i)], 100 + i);
        values.clear();
        // 1,021 data bytes: the driver's last chunk is a lone F7 or nearly so.
        for (const std::size_t length : {1000u, 254u, 255u, 1021u, 1022u, 1023u}) {
            ASSERT_EQ(hand.tell(QStringLiteral("sysex %1 256 0").arg(length)), QLatin1String("ok"));
            ASSERT_TRUE(eventually([&] {
                const std::lock_guard lock(mutex);
                return lengths == std::vector<std::size_t>{length};
            })) << "round "
                << round << ", " << length << " bytes";
            const std::lock_guard lock(mutex);
            lengths.clear();
        }
        EXPECT_EQ(output.send({&word, 1}), 0) << "round " << round;

        run(QStringLiteral("unplug"));
        ASSERT_TRUE(eventually([&] {
            return input.statusText.value() == QStringLiteral("Source reconnecting…") && !output.isReachable();
        })) << "round "
            << round;
        EXPECT_NE(output.send({&word, 1}), 0);
    }
}

} // namespace tessik
