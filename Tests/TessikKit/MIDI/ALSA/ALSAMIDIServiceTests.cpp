#include "TessikKit/MIDI/ALSA/ALSAMIDIService.h"
#include "TessikKit/MIDI/MIDIInputConnection.h"

#include <gtest/gtest.h>

namespace tessik {

TEST(ALSAMIDIService, withoutASequencerEverythingFailsWithTheReason) {
    const std::optional<QString> problem = ALSAMIDIService::problem();
    if (!problem) GTEST_SKIP() << "this machine has a sequencer";
    ASSERT_EQ(*problem, QStringLiteral("/dev/snd/seq: No such file or directory"));

    ALSAMIDIService service;
    MIDIClientRef client = 0;
    MIDIPortRef port = 0;
    EXPECT_EQ(service.createClient(QStringLiteral("Name"), {}, client), -ENOENT);
    EXPECT_EQ(service.createInputPort(client, QStringLiteral("Name"), {}, port), -ENOENT);
    EXPECT_EQ(service.createOutputPort(client, QStringLiteral("Name"), port), -ENOENT);
    EXPECT_EQ(service.createSource(client, QStringLiteral("Name"), port), -ENOENT);
    EXPECT_EQ(service.createDestination(client, QStringLiteral("Name"), {}, port), -ENOENT);
    EXPECT_TRUE(service.sources().empty());
    EXPECT_TRUE(service.destinations().empty());
    EXPECT_EQ(service.connectSource(0, 0), midiUnknownHandle);
    EXPECT_EQ(service.disconnectSource(0, 0), midiUnknownHandle);
    EXPECT_EQ(service.send(0, 0, {}), midiUnknownHandle);
    EXPECT_EQ(service.transmit(0, {}), midiUnknownHandle);
    service.disposeClient(0);

    const MIDIInputConnection connection(service, QStringLiteral("Test"), [](const MIDIWord&) {});
    EXPECT_EQ(connection.statusText.value(), QStringLiteral("MIDIInputPortCreateWithProtocol failed: OSStatus -2"));
}

} // namespace tessik
