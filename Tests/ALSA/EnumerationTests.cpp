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
