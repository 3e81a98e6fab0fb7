#include "FarClient.h"
#include "Support/CountingBytes.h"
#include "TessikAutomation/MIDI/MIDIDestinationPort.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <QTimer>

#include <semaphore>

namespace tessik {

namespace {

/// A connection, chosen to hear one far client, that keeps what it heard.
class InputTest : public ALSATest {
protected:
    InputTest() {
        connection.setTaskHandler([this](const MIDIWord& word) { words.push_back(word.word & 0xFFFFFF); });
        connection.setSysExHandler([this](Uptime, std::span<const std::uint8_t> bytes) {
            const std::lock_guard lock(mutex);
            messages.emplace_back(bytes.begin(), bytes.end());
        });
    }

    void choose(const QString& name) {
        ASSERT_TRUE(eventually([&] {
            const auto sources = connection.availableSources.value();
            for (const MIDISourceInfo& source : sources)
                if (source.name == name) connection.selectSource(source.uniqueID);
            return connection.connectedSourceID.value().has_value();
        }));
        ASSERT_EQ(connection.statusText.value(), QStringLiteral("Connected: ") + name);
    }

    std::size_t messageCount() {
        const std::lock_guard lock(mutex);
        return messages.size();
    }

    /// The number that the far client's Control Changes carry.
    static int numberOf(std::uint32_t word) { return int(word >> 8 & 0x7F) << 7 | int(word & 0x7F); }

    const QString desk = QStringLiteral("Tessik Test Desk");
    const QString deskPort = QStringLiteral("Tessik Test Desk MIDI 1");
    std::vector<std::uint32_t> words; // status, data 1, data 2
    std::mutex mutex;
    std::vector<std::vector<std::uint8_t>> messages;
    std::counting_semaphore<> gate{0};
    std::atomic<bool> held = false;
    MIDIInputConnection connection{service, QStringLiteral("Tessik Test"), [this](const MIDIWord& word) {
                                       if (held) gate.acquire();
                                       connection.submit(word);
                                   }};
};

} // namespace

TEST_F(InputTest, tenThousandControlChangesComeInOrderWhileTheWindowLives) {
    FarClient far(desk);
    choose(deskPort);
    int ticks = 0; // stands for painting: gets its turns between the slices of a flood
    int ticksAtFirst = -1;
    QTimer window;
    window.callOnTimeout([&] {
        ++ticks;
        if (ticksAtFirst < 0 && !words.empty()) ticksAtFirst = ticks;
    });
    window.start(0);
    constexpr int count = 10'000;
    constexpr int burst = 1'000; // under what the sequencer lets wait
    for (int first = 0; first < count; first += burst) {
        ASSERT_EQ(far.tell(QStringLiteral("cc %1 %2").arg(first).arg(burst)), QLatin1String("ok"));
        ASSERT_TRUE(eventually([&] { return words.size() >= std::size_t(first + burst); }));
    }
    ASSERT_EQ(words.size(), std::size_t(count));
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(words[std::size_t(i)] >> 16, 0xB0u);
        ASSERT_EQ(numberOf(words[std::size_t(i)]), i);
    }
    EXPECT_EQ(connection.dataLostCount.value(), 0);
    EXPECT_EQ(connection.rawByteCount.value(), 4 * count);
    EXPECT_GT(ticks, ticksAtFirst);
}

TEST_F(InputTest, systemExclusiveWithQuarterFramesBetweenItsPieces) {
    FarClient far(desk);
    choose(deskPort);
    const std::vector<std::uint8_t> sent = countingBytes(1000);
    // A lone F7 is the last piece of 1,000 data bytes in pieces of 143.
    for (const int piece : {2000, 256, 143, 7}) {
        messages.clear();
        words.clear();
        ASSERT_EQ(far.tell(QStringLiteral("sysex 1000 %1 1").arg(piece)), QLatin1String("ok")) << piece;
        const auto quarters = std::size_t((1002 + piece - 1) / piece);
        ASSERT_TRUE(eventually([&] { return messageCount() == 1 && words.size() == quarters; })) << piece;
        EXPECT_EQ(messages[0], sent) << piece;
        for (std::size_t i = 0; i < quarters; ++i)
            EXPECT_EQ(words[i], 0xF10000u | std::uint32_t(i & 7) << 12);
    }
}

TEST_F(InputTest, theLongestMessageThatTheSequencerCarriesArrives) {
    FarClient far(desk);
    choose(deskPort);
    for (const int length : {13'971, 13'973, 30'000}) {
        messages.clear();
        ASSERT_EQ(far.tell(QStringLiteral("sysex %1 %2 0").arg(length).arg(length + 2)), QLatin1String("ok"));
        ASSERT_TRUE(eventually([&] { return messageCount() == 1; })) << length;
        EXPECT_EQ(messages[0].size(), std::size_t(length));
    }
}

TEST_F(InputTest, anOverrunIsSurvivedToldAndLogged) {
    FarClient far(desk);
    choose(deskPort);
    testing::internal::CaptureStderr();
    held = true;
    ASSERT_EQ(far.tell(QStringLiteral("cc 0 1")), QLatin1String("ok"));
    ASSERT_EQ(far.tell(QStringLiteral("flood 1 6000")), QLatin1String("ok"));
    held = false;
    gate.release();
    EXPECT_TRUE(eventually([&] { return connection.dataLostCount.value() == 1; }));
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("[Tessik Test] MIDI input overrun: messages were lost"), std::string::npos) << log;
    EXPECT_LT(words.size(), 6001u);

    words.clear();
    ASSERT_EQ(far.tell(QStringLiteral("cc 7000 100")), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] { return !words.empty() && numberOf(words.back()) == 7099; }));
    EXPECT_EQ(connection.dataLostCount.value(), 1);
}

TEST_F(InputTest, theChosenSourceIsFoundAgain) {
    auto far = std::make_unique<FarClient>(desk);
    const int number = far->number;
    choose(deskPort);
    far.reset();
    ASSERT_TRUE(eventually([&] { return connection.statusText.value() == QStringLiteral("Source reconnecting…"); }));
    EXPECT_TRUE(connection.connectedSourceID.value());

    testing::internal::CaptureStderr();
    const FarClient inItsPlace(QStringLiteral("Tessik Test Other"));
    ASSERT_EQ(inItsPlace.number, number) << "the number was to be taken";
    far = std::make_unique<FarClient>(desk);
    EXPECT_TRUE(eventually([&] { return connection.statusText.value() == QStringLiteral("Connected: ") + deskPort; }));
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("[Tessik Test] Reconnecting to Tessik Test Desk MIDI 1"), std::string::npos) << log;
    EXPECT_NE(log.find("[was missing]"), std::string::npos) << log;
    ASSERT_EQ(far->tell(QStringLiteral("cc 5 1")), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return words.size() == 1; }));
}

TEST_F(InputTest, aPortReopenedBetweenTwoLooksIsConnectedAgain) {
    FarClient far(desk);
    choose(deskPort);
    const std::optional<MIDIEndpointRef> before = connection.connectedEndpoint.value();
    // No events run here in between: the next enumeration finds the port as it was, but for its handle.
    ASSERT_EQ(far.tell(QStringLiteral("close")), QLatin1String("ok"));
    ASSERT_EQ(far.tell(QStringLiteral("open duplex MIDI 1")), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] {
        return connection.connectedEndpoint.value() != before &&
               connection.statusText.value() == QStringLiteral("Connected: ") + deskPort;
    }));
    ASSERT_EQ(far.tell(QStringLiteral("cc 5 1")), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return words.size() == 1; }));
}

TEST_F(InputTest, aPortThatAnotherProgramHoldsIsTakenUpWhenFree) {
    FarClient far(desk);
    FarClient holder(QStringLiteral("Tessik Test Holder"));
    ASSERT_EQ(holder.tell(QStringLiteral("hold ") + desk), QLatin1String("ok"));
    MIDIDestinationPort output{service, QStringLiteral("Tessik Test Output"), QStringLiteral("Output")};
    output.setupClient();
    ASSERT_TRUE(eventually([&] {
        connection.refreshSources();
        output.refreshDestinations();
        return !sourcesNamed(deskPort).empty();
    }));
    connection.selectSource(sourcesNamed(deskPort).at(0).uniqueID);
    output.selectDestination(destinationsNamed(deskPort).at(0).uniqueID);
    EXPECT_EQ(connection.cable.refusal.value(), midiPortHeld);
    EXPECT_EQ(output.cable.refusal.value(), midiPortHeld);
    ASSERT_EQ(holder.tell(QStringLiteral("release ") + desk), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return connection.cable.refusal.value() == 0 && output.cable.refusal.value() == 0; }));

    ASSERT_EQ(holder.tell(QStringLiteral("cut ") + desk), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return connection.dataLostCount.value() == 1; }));
    ASSERT_EQ(far.tell(QStringLiteral("cc 1 1")), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return words.size() == 1; }));
    ASSERT_EQ(holder.tell(QStringLiteral("cut ") + desk), QLatin1String("ok"));
    EXPECT_TRUE(eventually([&] { return connection.cable.isCut.value() && output.cable.isCut.value(); }));
    const std::uint32_t word = MIDIWords::controlChange(1, 7, 100);
    EXPECT_EQ(output.send({&word, 1}), midiNotConnected);
}

TEST_F(InputTest, aSourceIsHeardOnceHoweverOftenConnectedAndNoMoreWhenLeft) {
    FarClient far(desk);
    FarClient other(QStringLiteral("Tessik Test Other"));
    choose(deskPort);
    EXPECT_EQ(service.connectSource(connection.inputPort(), sourcesNamed(deskPort).at(0).endpoint), 0);
    ASSERT_EQ(far.tell(QStringLiteral("cc 1 1")), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] { return words.size() == 1; }));
    connection.refreshSources();
    connection.selectSource(sourcesNamed(QStringLiteral("Tessik Test Other MIDI 1")).at(0).uniqueID);
    ASSERT_EQ(far.tell(QStringLiteral("cc 2 1")), QLatin1String("ok"));
    ASSERT_EQ(other.tell(QStringLiteral("cc 3 1")), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] { return words.size() == 2; }));
    EXPECT_EQ(numberOf(words[1]), 3);
    const MIDIEndpointRef left = sourcesNamed(deskPort).at(0).endpoint;
    EXPECT_NE(service.disconnectSource(connection.inputPort(), left), 0);
}

} // namespace tessik
