#include "FarClient.h"
#include "TessikKit/MIDI/StableUniqueID.h"

#include <atomic>

namespace tessik {

TEST_F(ALSATest, listsPortsOfOthersByNameIdAndDirection) {
    FarClient far(QStringLiteral("Tessik Test Desk"), QStringLiteral("MIDI 1"));
    ASSERT_EQ(far.tell(QStringLiteral("open source Out Only")), QLatin1String("ok"));
    ASSERT_EQ(far.tell(QStringLiteral("open destination Tessik Test Desk In")), QLatin1String("ok"));
    ASSERT_EQ(far.tell(QStringLiteral("open hidden Private")), QLatin1String("ok"));

    const auto sources = sourcesNamed(QStringLiteral("Tessik Test Desk MIDI 1"));
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].uniqueID,
              stableUniqueID(PortDirection::source, QStringLiteral("Tessik Test Desk"), QStringLiteral("MIDI 1"), 0));
    const auto destinations = destinationsNamed(QStringLiteral("Tessik Test Desk MIDI 1"));
    ASSERT_EQ(destinations.size(), 1u);
    EXPECT_NE(destinations[0].uniqueID, sources[0].uniqueID);

    EXPECT_EQ(sourcesNamed(QStringLiteral("Tessik Test Desk Out Only")).size(), 1u);
    EXPECT_TRUE(destinationsNamed(QStringLiteral("Tessik Test Desk Out Only")).empty());
    EXPECT_TRUE(sourcesNamed(QStringLiteral("Tessik Test Desk In")).empty());
    EXPECT_EQ(destinationsNamed(QStringLiteral("Tessik Test Desk In")).size(), 1u);
    EXPECT_TRUE(sourcesNamed(QStringLiteral("Tessik Test Desk Private")).empty());

    MIDIClientRef client = 0;
    MIDIEndpointRef own = 0;
    ASSERT_EQ(service.createClient(QStringLiteral("Tessik Test Own"), {}, client), 0);
    ASSERT_EQ(service.createSource(client, QStringLiteral("Port"), own), 0);
    EXPECT_TRUE(sourcesNamed(QStringLiteral("Tessik Test Own Port")).empty());
    for (const MIDIEndpoint& source : service.sources())
        EXPECT_FALSE(source.displayName->startsWith(QLatin1String("System")));
}

TEST_F(ALSATest, idSurvivesARestartUnderAnotherNumber) {
    const QString name = QStringLiteral("Tessik Test Desk MIDI 1");
    auto far = std::make_unique<FarClient>(QStringLiteral("Tessik Test Desk"));
    const int firstNumber = far->number;
    const auto before = sourcesNamed(name);
    ASSERT_EQ(before.size(), 1u);
    far.reset();
    ASSERT_TRUE(eventually([&] { return sourcesNamed(name).empty(); }));

    const FarClient other(QStringLiteral("Tessik Test Other"));
    ASSERT_EQ(other.number, firstNumber) << "the number was to be taken";
    far = std::make_unique<FarClient>(QStringLiteral("Tessik Test Desk"));
    ASSERT_NE(far->number, firstNumber);
    const auto after = sourcesNamed(name);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after[0].uniqueID, before[0].uniqueID);
    EXPECT_NE(after[0].endpoint, before[0].endpoint);
}

TEST_F(ALSATest, twinsAreToldApartAndKeepTheirIds) {
    const QString name = QStringLiteral("Tessik Test Twin MIDI 1");
    auto first = std::make_unique<FarClient>(QStringLiteral("Tessik Test Twin"));
    const FarClient second(QStringLiteral("Tessik Test Twin"));
    const auto both = sourcesNamed(name);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_NE(both[0].uniqueID, both[1].uniqueID);

    first.reset();
    ASSERT_TRUE(eventually([&] { return sourcesNamed(name).size() == 1; }));
    EXPECT_EQ(sourcesNamed(name)[0].uniqueID, both[1].uniqueID);

    first = std::make_unique<FarClient>(QStringLiteral("Tessik Test Twin"));
    ASSERT_TRUE(eventually([&] { return sourcesNamed(name).size() == 2; }));
    EXPECT_NE(findPort(sourcesNamed(name), both[0].uniqueID), nullptr);
    EXPECT_NE(findPort(sourcesNamed(name), both[1].uniqueID), nullptr);
}

TEST_F(ALSATest, aPortReopenedAtItsAddressLooksNew) {
    const QString name = QStringLiteral("Tessik Test Desk MIDI 1");
    FarClient far(QStringLiteral("Tessik Test Desk"));
    ASSERT_TRUE(eventually([&] { return sourcesNamed(name).size() == 1; }));
    const auto before = sourcesNamed(name);
    ASSERT_EQ(far.tell(QStringLiteral("close")), QLatin1String("ok"));
    ASSERT_EQ(far.tell(QStringLiteral("open duplex MIDI 1")), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] {
        const auto now = sourcesNamed(name);
        return now.size() == 1 && now[0].endpoint != before[0].endpoint;
    }));
    EXPECT_EQ(sourcesNamed(name)[0].uniqueID, before[0].uniqueID);
    EXPECT_EQ(service.connectSource(0, before[0].endpoint), midiUnknownHandle);
}

TEST_F(ALSATest, disposingEndsEveryBlock) {
    struct Seen {
        std::atomic<bool> disposed = false;
        std::atomic<int> events = 0;
        std::atomic<int> tooLate = 0;
    } seen;
    FarClient far(QStringLiteral("Tessik Test Desk"));
    MIDIClientRef client = 0;
    MIDIPortRef port = 0;
    ASSERT_EQ(service.createClient(
                  QStringLiteral("Tessik Test Own"), [&] { seen.tooLate += seen.disposed; }, client),
              0);
    ASSERT_EQ(service.createInputPort(
                  client, QStringLiteral("In"),
                  [&](const MIDIEventList&) {
                      ++seen.events;
                      seen.tooLate += seen.disposed;
                  },
                  port),
              0);
    ASSERT_EQ(service.connectSource(port, sourcesNamed(QStringLiteral("Tessik Test Desk MIDI 1")).at(0).endpoint), 0);
    far.begin(QStringLiteral("stream"));
    ASSERT_TRUE(eventually([&] { return seen.events > 100; }));
    service.disposeClient(client);
    seen.disposed = true;
    far.begin(QStringLiteral("close")); // ends the stream, too
    EXPECT_EQ(far.answer(), QLatin1String("ok"));
    EXPECT_EQ(far.answer(), QLatin1String("ok"));
    ASSERT_TRUE(eventually([&] { return sourcesNamed(QStringLiteral("Tessik Test Desk MIDI 1")).empty(); }));
    EXPECT_EQ(seen.tooLate, 0);
    EXPECT_EQ(service.createInputPort(client, QStringLiteral("In"), {}, port), midiUnknownHandle);
}

} // namespace tessik
