#include "Support/CountingBytes.h"
#include "Support/Events.h"
#include "Support/FarDesk.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"
#include "TessikKit/MIDI/MIDIManager.h"
#include "TessikKit/MIDI/MIDIWords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessik {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using Operation = VirtualMIDIService::Operation;

struct ConnectionTest : testing::Test {
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    FarDesk desk{service};
    std::vector<MIDIWord> words;
    std::vector<std::vector<std::uint8_t>> sysEx;

    std::unique_ptr<MIDIInputConnection> makeConnection() {
        auto made = std::make_unique<MIDIInputConnection>(service, QStringLiteral("Test"),
                                                          [this](const MIDIWord& word) { words.push_back(word); });
        made->setSysExHandler(
            [this](Uptime, std::span<const std::uint8_t> bytes) { sysEx.emplace_back(bytes.begin(), bytes.end()); });
        return made;
    }
    std::unique_ptr<MIDIInputConnection> makeConnected() {
        auto made = makeConnection();
        made->selectSource(desk.outID());
        return made;
    }
    void inject(const std::vector<std::uint32_t>& data, bool lost = false) {
        const MIDIEventPacket packet{{}, data};
        service.inject(desk.out, {.packets = {&packet, 1}, .dataLost = lost});
        runPosted();
    }
};

TEST_F(ConnectionTest, FollowsASourceThatVanishesAndComesBack) {
    const auto connection = makeConnection();
    EXPECT_EQ(connection->statusText.value(), QStringLiteral("Not connected"));
    connection->selectSource(desk.outID());
    EXPECT_EQ(connection->statusText.value(), QStringLiteral("Connected: Desk Out"));

    service.unplug(QStringLiteral("Desk Out"));
    runPosted();
    EXPECT_EQ(connection->statusText.value(), QStringLiteral("Source reconnecting…"));
    connection->disconnect(); // the choice stays while the source is missing
    EXPECT_TRUE(connection->connectedSourceID.value());

    service.plug(QStringLiteral("Desk Out"));
    runPosted();
    EXPECT_EQ(connection->statusText.value(), QStringLiteral("Connected: Desk Out"));
    inject({MIDIWords::controlChange(1, 7, 100)});
    EXPECT_EQ(words.size(), 1u);

    service.unplug(QStringLiteral("Desk Out")); // and back before anybody looked: only the endpoint tells
    service.plug(QStringLiteral("Desk Out"));
    runPosted();
    inject({MIDIWords::controlChange(1, 7, 101)});
    EXPECT_EQ(words.size(), 2u);
}

TEST_F(ConnectionTest, ChoosesBetweenSourcesById) {
    MIDIEndpointRef twin = 0;
    service.createSource(desk.client, QStringLiteral("Desk Out"), twin);
    service.hideName(QStringLiteral("Desk Out"));
    const auto connection = makeConnection();
    const auto sources = connection->availableSources.value();
    ASSERT_EQ(sources.size(), 2u);
    EXPECT_EQ(sources[0].name, QStringLiteral("Unknown MIDI Source"));
    EXPECT_NE(sources[0].uniqueID, sources[1].uniqueID);

    connection->selectSource(sources[1].uniqueID);
    inject({MIDIWords::controlChange(1, 1, 1)});
    EXPECT_TRUE(words.empty());
    connection->selectSource(sources[0].uniqueID);
    inject({MIDIWords::controlChange(1, 1, 1)});
    EXPECT_EQ(words.size(), 1u);
    connection->selectSource(12345); // not listed
    EXPECT_EQ(connection->statusText.value(), QStringLiteral("Not connected"));
    inject({MIDIWords::controlChange(1, 1, 1)});
    EXPECT_EQ(words.size(), 1u);
}

TEST_F(ConnectionTest, ShowsWhatThePlatformRefused) {
    CaptureStderr();
    service.failNext(Operation::createClient, -50);
    auto connection = makeConnection();
    EXPECT_EQ(connection->statusText.value(),
              QStringLiteral("MIDIInputPortCreateWithProtocol failed: OSStatus %1").arg(midiUnknownHandle));
    EXPECT_THAT(GetCapturedStderr(), testing::StartsWith("[Test] MIDIClientCreateWithBlock FAILED OSStatus=-50\n"));

    connection = makeConnection();
    service.failNext(Operation::connectSource, -10);
    CaptureStderr();
    connection->selectSource(desk.outID());
    EXPECT_EQ(connection->statusText.value(),
              QStringLiteral("Connected: Desk Out (MIDIPortConnectSource returned OSStatus -10)"));
    EXPECT_EQ(GetCapturedStderr(), "[Test] MIDIPortConnectSource FAILED OSStatus=-10 name=Desk Out uid=" +
                                       std::to_string(desk.outID()) + "\n");
    EXPECT_EQ(connection->connectedSourceID.value(), desk.outID());
}

TEST_F(ConnectionTest, TriesAgainWhatWasRefusedAndPutsBackWhatWasTakenOutOnce) {
    const QString port = QStringLiteral("Desk Out"), status = QStringLiteral("Connected: Desk Out");
    const auto isHeard = [this] {
        const std::size_t before = words.size();
        inject({MIDIWords::controlChange(1, 7, 100)});
        return words.size() > before;
    };
    service.hold(port, true);
    const auto connection = makeConnected();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(connection->statusText.value(),
                  status + QStringLiteral(" (MIDIPortConnectSource returned OSStatus -16)"));
        EXPECT_EQ(connection->cable.refusal.value(), midiPortHeld);
        service.hideName(QStringLiteral("another")); // any notice
        runPosted();
    }
    service.hold(port, false);
    runPosted();
    EXPECT_EQ(connection->statusText.value(), status);
    EXPECT_EQ(connection->cable.refusal.value(), 0);
    EXPECT_TRUE(isHeard());

    for (int i = 0; i < 2; ++i) { // once more after it was chosen again
        service.cut(port);
        runPosted();
        EXPECT_FALSE(connection->cable.isCut.value());
        EXPECT_EQ(connection->dataLostCount.value(), i + 1);
        EXPECT_TRUE(isHeard());
        service.cut(port);
        runPosted();
        EXPECT_TRUE(connection->cable.isCut.value());
        EXPECT_FALSE(isHeard());
        EXPECT_EQ(connection->statusText.value(), status);
        if (i == 0) connection->selectSource(desk.outID());
    }
    service.connectSource(connection->inputPort(), *connection->connectedEndpoint.value()); // by the patch bay
    connection->refreshSources();
    EXPECT_FALSE(connection->cable.isCut.value());
}

TEST_F(ConnectionTest, TakesEventListsApart) {
    const auto connection = makeConnected();
    inject({0x20B00764, 0x10F12300, 0x40000000, 0x30160102, 0x03040506, 0x30010000}); // the last pair is cut short
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[0].status(), 0xB0);
    EXPECT_EQ(words[0].data1(), 7);
    EXPECT_EQ(words[0].data2(), 100);
    EXPECT_EQ(words[1].messageType(), 1);
    EXPECT_EQ(words[1].status(), 0xF1);
    EXPECT_EQ(connection->lastRawHex(), QStringLiteral("20B00764 10F12300 40000000 30160102 03040506 30010000"));
    EXPECT_EQ(connection->rawPacketListCount.value(), 1);
    EXPECT_EQ(connection->rawByteCount.value(), 24);

    words.clear();
    inject(std::vector<std::uint32_t>(65, 0x20B00764));
    EXPECT_EQ(words.size(), 64u);
    EXPECT_EQ(connection->lastRawHex().size(), 64 * 9 - 1);
    EXPECT_EQ(connection->rawByteCount.value(), 24 + 65 * 4);
}

TEST_F(ConnectionTest, AssemblesSystemExclusive) {
    const auto connection = makeConnected();
    using Bytes = std::vector<std::uint8_t>;
    const auto sent = [&](std::vector<std::uint32_t> pairs) {
        sysEx.clear();
        inject(pairs);
        return sysEx;
    };
    EXPECT_EQ(sent({0x30060102, 0x03040506}), (std::vector<Bytes>{{1, 2, 3, 4, 5, 6}}));
    EXPECT_EQ(sent({0x300F0102, 0x03040506}), (std::vector<Bytes>{{1, 2, 3, 4, 5, 6}})) << "a count above 6 is 6";
    EXPECT_EQ(sent({0x30320708, 0}), (std::vector<Bytes>{{7, 8}})) << "an end without a start";
    EXPECT_EQ(sent({0x30160102, 0x03040506, 0x30210700, 0, 0x30300000, 0}),
              (std::vector<Bytes>{{1, 2, 3, 4, 5, 6, 7}}));
    EXPECT_EQ(sent({0x30110100, 0, 0x30110200, 0, 0x30310300, 0}), (std::vector<Bytes>{{2, 3}})) << "a start replaces";
    EXPECT_EQ(sent({0x30410100, 0, 0x30F10100, 0}), std::vector<Bytes>{});

    for (const std::size_t size : {0u, 1u, 6u, 7u, 12u, 1000u}) {
        const Bytes bytes = countingBytes(size);
        std::vector<std::uint32_t> pairs;
        MIDIWords::appendSysEx(pairs, bytes);
        sysEx.clear();
        for (std::size_t at = 0; at < pairs.size(); at += 64)
            inject(
                {pairs.begin() + std::ptrdiff_t(at), pairs.begin() + std::ptrdiff_t(std::min(at + 64, pairs.size()))});
        EXPECT_EQ(sysEx, std::vector<Bytes>{bytes}) << size;
    }
}

TEST_F(ConnectionTest, DropsEndlessSystemExclusiveAndSaysSoOnce) {
    const auto connection = makeConnected();
    CaptureStderr();
    for (int run = 0; run < 2; ++run) {
        inject({0x30160102, 0x03040506});
        for (int i = 0; i < 12'000; ++i)
            inject({0x30260102, 0x03040506});
        inject({0x30310700, 0});
    }
    EXPECT_TRUE(sysEx.empty());
    EXPECT_EQ(GetCapturedStderr(), "[Test] System Exclusive message longer than 65536 bytes dropped\n");
    inject({0x30010900, 0});
    EXPECT_EQ(sysEx.size(), 1u);
}

TEST_F(ConnectionTest, StartsAfreshAfterLostData) {
    const auto connection = makeConnected();
    int lost = 0;
    connection->setDataLostHandler([&] { ++lost; });
    inject({0x30160102, 0x03040506});
    CaptureStderr();
    inject({0x30310700, 0}, true);
    EXPECT_EQ(GetCapturedStderr(), "[Test] MIDI input overrun: messages were lost\n");
    EXPECT_EQ(sysEx, (std::vector<std::vector<std::uint8_t>>{{7}}));
    EXPECT_EQ(lost, 1);
    EXPECT_EQ(connection->dataLostCount.value(), 1);
}

struct MIDIManagerTest : testing::Test {
    VirtualMIDIService service; // words come from a thread, as from the platform's
    FarDesk desk{service};
    ConsoleModel model;

    std::unique_ptr<MIDIManager> makeManager() {
        auto made = std::make_unique<MIDIManager>(service, model, QStringLiteral("Test"));
        made->connection.selectSource(desk.outID());
        return made;
    }
    void send(std::uint32_t word) { service.transmit(desk.out, {&word, 1}); }
    void waitForMessages(int count) {
        service.waitUntilDelivered();
        for (int turn = 0; turn < 10'000 && model.messageCount.value() < count; ++turn)
            runPosted();
    }
};

TEST_F(MIDIManagerTest, PassesControlChangesOfAnyChannelAndNothingElse) {
    const auto manager = makeManager();
    CaptureStderr();
    MIDIManager::logIncomingCC = true;
    for (const std::uint32_t word :
         {MIDIWords::controlChange(1, 4, 1), MIDIWords::controlChange(16, 4, 2), MIDIWords::channelVoice(0x90, 60, 100),
          MIDIWords::channelVoice(0xE0, 0, 64), MIDIWords::system(0xF1, 0x23), MIDIWords::controlChange(3, 4, 99)})
        send(word);
    waitForMessages(3);
    MIDIManager::logIncomingCC = false;
    EXPECT_EQ(GetCapturedStderr(), "[CC IN] cc=4 value=1\n[CC IN] cc=4 value=2\n[CC IN] cc=4 value=99\n");
    EXPECT_EQ(model.messageCount.value(), 3);
    EXPECT_EQ(model.inputs()[4]->faderValue.value(), 99);
}

TEST_F(MIDIManagerTest, AFloodBeyondTheQueueLeavesTheLatestOfEachControllerInOrder) {
    const auto manager = makeManager();
    std::vector<int> seen; // as numbers of 14 bits
    manager->isNews = [&](Uptime, int cc, int value) {
        seen.push_back(cc << 7 | value);
        return true;
    };
    constexpr int most = MIDIInputConnection::maxWaiting, faders = 40, beyond = 3000;
    std::vector<int> sent;
    for (int i = 0; i < most + beyond; ++i) {
        sent.push_back(i % faders << 7 | (i / faders & 0x7F));
        send(MIDIWords::controlChange(1, sent.back() >> 7, sent.back() & 0x7F));
    }
    service.waitUntilDelivered();
    waitForMessages(most + beyond);
    EXPECT_EQ(manager->connection.overtakenCount.value(), beyond - faders);
    EXPECT_EQ(manager->connection.rawPacketListCount.value(), most + beyond);
    EXPECT_EQ(manager->connection.rawByteCount.value(), 4 * (most + beyond));
    EXPECT_EQ(manager->connection.dataLostCount.value(), 0);
    sent.erase(sent.begin() + most, sent.end() - faders);
    EXPECT_EQ(seen, sent);
    send(MIDIWords::controlChange(1, 7, 99));
    waitForMessages(most + beyond + 1);
    EXPECT_EQ(seen.back(), 7 << 7 | 99) << "and goes on";
}

TEST_F(MIDIManagerTest, AFloodThatIsTakenMeanwhileStaysInOrder) {
    const auto manager = makeManager();
    std::array<int, 8> last{};
    int backwards = 0;
    manager->isNews = [&](Uptime, int cc, int value) {
        backwards += value < std::exchange(last[std::size_t(cc)], value);
        return true;
    };
    constexpr int perValue = 1000, count = 128 * perValue;
    for (int i = 0; i < count; ++i) {
        send(MIDIWords::controlChange(1, i % 8, i / perValue));
        if (i % 30'000 == 29'999) runPosted();
    }
    waitForMessages(count);
    EXPECT_GT(manager->connection.overtakenCount.value(), 0);
    EXPECT_EQ(backwards, 0);
    EXPECT_EQ(last, (std::array<int, 8>{127, 127, 127, 127, 127, 127, 127, 127}));
}

TEST_F(MIDIManagerTest, LeavesNothingBehindWhenItGoesMidFlood) {
    for (int round = 0; round < 50; ++round) {
        const auto manager = makeManager();
        for (int i = 0; i < 100; ++i)
            send(MIDIWords::controlChange(1, 0, 5));
    }
    runPosted();
    service.waitUntilDelivered();
}

} // namespace
} // namespace tessik
