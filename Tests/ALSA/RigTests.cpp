// The whole job on the real sequencer: the program's objects here, the rig's desk and recorder in a process of their
// own.
#include "FarClient.h"
#include "TessikAutomation/Automation/PassEngine.h"
#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikAutomation/MIDI/TransportManager.h"

namespace tessik {
namespace {

/// tessik-rig, told what its hands do by lines of text.
class RigProcess : public FarProgram {
public:
    RigProcess() : FarProgram(QStringLiteral("tessik-rig"), {}) {
        EXPECT_TRUE(answer().startsWith(QLatin1String("Rig Console"))) << "tessik-rig did not start";
    }
    int vca(const QString& channel) {
        return tell(QStringLiteral("show ") + channel).split(QLatin1Char(' ')).value(3).toInt();
    }
};

struct RigTest : ALSATest {
    void SetUp() override {
        ALSATest::SetUp();
        output.setupClient();
        const QString desk = QStringLiteral("Rig Console");
        const QString recorder = QStringLiteral("Rig Recorder");
        ASSERT_TRUE(eventually([&] {
            return !sourcesNamed(desk).empty() && !destinationsNamed(desk).empty() && !sourcesNamed(recorder).empty() &&
                   !destinationsNamed(recorder).empty();
        }));
        manager.connection.refreshSources();
        clock.connection.refreshSources();
        output.refreshDestinations();
        transport.refreshDestinations();
        manager.connection.selectSource(sourcesNamed(desk).front().uniqueID);
        clock.connection.selectSource(sourcesNamed(recorder).front().uniqueID);
        output.selectDestination(destinationsNamed(desk).front().uniqueID);
        transport.selectDestination(destinationsNamed(recorder).front().uniqueID);
        ASSERT_EQ(manager.connection.statusText.value(), QStringLiteral("Connected: Rig Console"));
        ASSERT_EQ(transport.port.statusText.value(), QStringLiteral("Transport: Rig Recorder"));
    }
    ChannelState& input(int n) { return *model.channelState(ChannelKind::input(n)); }
    bool rolls() {
        return eventually([this] { return clock.isRunning.value(); });
    }
    bool stands() {
        return eventually([this] { return !clock.isRunning.value(); });
    }

    RigProcess rig;
    DeskLink link{service, QStringLiteral("Tessik Test")};
    ConsoleModel& model = link.model;
    MIDIManager& manager = link.input;
    MIDIOutputManager& output = link.output;
    MTCClock clock{service, QStringLiteral("Tessik Test Timecode")};
    TransportManager transport{service};
};

TEST_F(RigTest, theDeskIsHeardAndObeys) {
    EXPECT_EQ(rig.tell(QStringLiteral("scene 3")), QStringLiteral("ok"));
    EXPECT_TRUE(eventually([this] { return model.messageCount.value() == 2 * channelCount; }));
    EXPECT_EQ(input(7).faderValue.value(), rig.vca(QStringLiteral("7")));
    output.sendFader(ChannelKind::input(7), 33);
    EXPECT_TRUE(eventually([this] { return rig.vca(QStringLiteral("7")) == 33; }));
}

TEST_F(RigTest, aTakeIsWrittenAndPlayedBack) {
    SnapshotStore snapshots;
    PassStore passes;
    PassEngine engine(model, clock, output, snapshots);
    engine.onTakeSuperseded = [&](const AutomationPass& take) { passes.save(take); };
    const TimecodePosition start{MTCFrameRate::fps25, 0, 10, 0, 0};
    const auto rollFrom = [&] {
        transport.locate(start);
        ASSERT_TRUE(eventually([&] { return clock.currentPosition.value() == start; }));
        transport.send(MMCCommand::play);
        ASSERT_TRUE(rolls());
    };
    const auto framesIn = [&](std::int64_t frames) {
        return eventually([&] { return clock.currentPosition.value()->totalFrames() >= start.totalFrames() + frames; });
    };

    engine.mode = AutomationMode::write;
    rollFrom();
    ASSERT_TRUE(framesIn(10));
    for (const int value : {20, 50, 90})
        EXPECT_EQ(rig.tell(QStringLiteral("fader 4 %1").arg(value)), QStringLiteral("ok"));
    EXPECT_EQ(rig.tell(QStringLiteral("mute 5 on")), QStringLiteral("ok"));
    ASSERT_TRUE(eventually([&] { return engine.recordedEventCount.value() >= 2; }));
    ASSERT_TRUE(framesIn(60));
    transport.send(MMCCommand::stop);
    ASSERT_TRUE(stands());
    ASSERT_TRUE(eventually([&] { return engine.mode.value() == AutomationMode::read; }));
    const auto stored = engine.finishRecording(QStringLiteral("Take"), passes);
    ASSERT_TRUE(stored);
    EXPECT_GE(stored->events.size(), 2);

    EXPECT_EQ(rig.tell(QStringLiteral("fader 4 1")), QStringLiteral("ok"));
    EXPECT_EQ(rig.tell(QStringLiteral("mute 5 off")), QStringLiteral("ok"));
    rollFrom();
    EXPECT_TRUE(eventually([&] { return rig.vca(QStringLiteral("4")) == 90; }));
    EXPECT_TRUE(eventually([&] { return rig.tell(QStringLiteral("show 5")).contains(QLatin1String("mute on")); }));
    transport.send(MMCCommand::stop);
    EXPECT_TRUE(stands());
}

} // namespace
} // namespace tessik
