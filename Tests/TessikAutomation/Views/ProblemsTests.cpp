#include "Support/FarDesk.h"
#include "Support/Sessions.h"
#include "TessikAutomation/Application/ApplicationFixture.h"
#include "TessikAutomation/MIDI/PortChoice.h"
#include "TessikAutomation/Views/Window/ActivityLamp.h"
#include "TessikAutomation/Views/Window/ProblemsPopover.h"
#include "TessikKit/MIDI/MIDIWords.h"
#include "TessikRig/TapeTimecode.h"

#include <QPushButton>

namespace tessik {
namespace {

using namespace std::chrono_literals;

/// The application with a desk on cables.
struct ProblemsTest : ApplicationTest {
    ProblemsTest() {
        application.window.show();
        settle();
        in.choose(in.available.value().front().uniqueID);
        out.choose(out.available.value().front().uniqueID);
        settle();
    }
    void unplug() {
        service.unplug(QStringLiteral("Desk In"));
        service.unplug(QStringLiteral("Desk Out"));
    }
    void plug() {
        service.plug(QStringLiteral("Desk In"));
        service.plug(QStringLiteral("Desk Out"));
    }
    QStringList titles() {
        settle();
        QStringList titles;
        for (const Problem& problem : application.problems.problems.value())
            titles << problem.title;
        EXPECT_EQ(application.window.problemsKey().isVisible(), !titles.isEmpty());
        return titles;
    }

    void send(int cc) {
        const std::uint32_t word = MIDIWords::controlChange(1, cc, 5);
        service.transmit(desk.out, {&word, 1});
    }
    void tickRecovery() {
        application.session.recoveryTick();
        application.session.finishSaving();
    }

    FarDesk desk{service};
    PortChoice in = sourceChoice(SavedSettings::Key::consoleSourceID, application.desk.input.connection);
    PortChoice out = destinationChoice(SavedSettings::Key::midiOutDestinationID, application.desk.output.port);
};

TEST_F(ProblemsTest, ComeAndGoWithTheirCauses) {
    ASSERT_EQ(titles(), QStringList());
    unplug();
    EXPECT_EQ(titles(), QStringList({QStringLiteral("MIDI In is gone"), QStringLiteral("MIDI Out is gone")}));
    plug();
    EXPECT_EQ(titles(), QStringList());

    service.inject(desk.out, {.packets = {}, .dataLost = true});
    EXPECT_EQ(titles(), QStringList(QStringLiteral("MIDI In dropped messages")));
    constexpr int flood = MIDIInputConnection::maxWaiting + 100;
    for (int i = 0; i < flood; ++i)
        send(MIDIChannelMapping::switchCCOffset + i % 32); // faders would be a dump
    while (application.desk.model.messageCount.value() < flood)
        QApplication::processEvents();
    EXPECT_EQ(titles(),
              QStringList({QStringLiteral("MIDI In dropped messages"), QStringLiteral("MIDI In comes too fast")}));
    in.choose(std::nullopt);
    in.choose(desk.outID());
    EXPECT_EQ(titles(), QStringList()) << "another desk";
    service.inject(desk.out, {.packets = {}, .dataLost = true});
    for (int cc = 0; cc < 32; ++cc)
        send(cc);
    EXPECT_EQ(titles(), QStringList()) << "the desk has told everything since";

    service.failNext(VirtualMIDIService::Operation::send, -19);
    application.desk.output.sendFader(ChannelKind::input(1), 5);
    EXPECT_EQ(titles(), QStringList(QStringLiteral("MIDI Out does not take messages")));
    application.desk.output.pump();
    EXPECT_EQ(titles(), QStringList()) << "the value went out after all";

    for (const QString& port : {QStringLiteral("Desk Out"), QStringLiteral("Desk In")}) {
        const QString label = port == QLatin1String("Desk In") ? QStringLiteral("MIDI Out") : QStringLiteral("MIDI In");
        for (int i = 0; i < 2; ++i) {
            service.cut(port);
            settle();
        }
        EXPECT_TRUE(titles().contains(label + QStringLiteral(" was disconnected")));
        service.unplug(port);
        service.hold(port, true);
        service.plug(port);
        EXPECT_TRUE(titles().contains(label + QStringLiteral(" is held by another program")));
        service.hold(port, false);
        in.choose(std::nullopt);
        in.choose(desk.outID()); // what MIDI In missed does not matter now
        EXPECT_EQ(titles(), QStringList());
    }

    const QString name = QStringLiteral("Desk Out");
    const DeviceIdentity desks{QStringLiteral("1"), {}}, recorders{QStringLiteral("2"), {}};
    service.setDevice(name, desks);
    settle();
    in.choose(desk.outID());
    EXPECT_EQ(titles(), QStringList());
    service.setDevice(name, recorders); // as at a start with that one alone
    EXPECT_EQ(titles(), QStringList(QStringLiteral("MIDI In may be another device")));
    in.choose(desk.outID());
    EXPECT_EQ(titles(), QStringList()) << "chosen once more";

    const PortChoice timecode = sourceChoice(SavedSettings::Key::timecodeSourceID, application.mtcClock.connection);
    in.choose(std::nullopt); // it would lose the same
    timecode.choose(desk.outID());
    const QStringList lostTimecode(QStringLiteral("MTC Source dropped messages"));
    service.inject(desk.out, {.packets = {}, .dataLost = true});
    EXPECT_EQ(titles(), lostTimecode);
    for (int piece = 0; piece < 16; ++piece)
        application.mtcClock.handleQuarterFrame(
            UptimeClock::system().now(),
            TapeTimecode::quarterFrameByte({MTCFrameRate::fps25, 1, 0, 0, piece / 8 * 2}, piece % 8));
    EXPECT_EQ(titles(), QStringList()) << "the tape started";
    service.inject(desk.out, {.packets = {}, .dataLost = true});
    EXPECT_EQ(titles(), lostTimecode);
    timecode.choose(std::nullopt);
    EXPECT_EQ(titles(), QStringList()) << "another source";
    in.choose(desk.outID());

    SavedSettings::setUniqueID(SavedSettings::Key::timecodeSourceID, 77);
    EXPECT_EQ(titles(), QStringList(QStringLiteral("MTC Source is not connected")));
    timecode.choose(std::nullopt);
    EXPECT_EQ(titles(), QStringList());

    {
        const UnwritableSettings broken;
        SavedSettings::setInteger(SavedSettings::Key::midiChannel, 1);
        ASSERT_TRUE(QDir(folder.path()).removeRecursively());
        ASSERT_TRUE(writeFile(folder.path(), "a file where the folder of recovery files should be"));
        application.channelLabels.update({.name = QStringLiteral("Kick")}, QStringLiteral("input-1"));
        tickRecovery();
        EXPECT_EQ(titles().size(), 2);
    }
    SavedSettings::setInteger(SavedSettings::Key::midiChannel, 1);
    ASSERT_TRUE(QFile::remove(folder.path()));
    tickRecovery();
    EXPECT_EQ(titles(), QStringList());

    const QString path = folder.filePath(QStringLiteral("song.tessik"));
    ASSERT_TRUE(writeFile(path, "{\n\"passes\": [7]}"));
    application.session.open(QUrl::fromLocalFile(path));
    ASSERT_EQ(titles().size(), 1) << "what was left out of the session";
    EXPECT_TRUE(application.problems.problems.value()[0].remedy.contains(QStringLiteral("line 2, passes[0]")));
    application.session.newSession();
    EXPECT_EQ(titles(), QStringList());
}

TEST_F(ProblemsTest, TheListOffersAWayAndClosesWhenNothingIsLeftToSay) {
    auto& popover = *application.window.findChild<ProblemsPopover*>();
    unplug();
    settle();
    application.window.problemsKey().click();
    ASSERT_TRUE(popover.isVisible());
    popover.findChild<QPushButton*>(QStringLiteral("offer"))->click();
    ASSERT_TRUE(application.window.settingsView());
    EXPECT_FALSE(popover.isVisible());
    application.window.settingsView()->close();
    application.window.problemsKey().click();
    application.problems.noMIDI = QStringLiteral("/dev/snd/seq: No such file");
    EXPECT_EQ(titles().size(), 1) << "without MIDI its ports are not spoken of";
    EXPECT_TRUE(popover.isVisible());
    application.problems.noMIDI = QString();
    plug();
    settle();
    EXPECT_FALSE(popover.isVisible());
}

TEST_F(ProblemsTest, TheLampsLightWithWhatPasses) {
    const QList<ActivityLamp*> lamps = application.window.findChildren<ActivityLamp*>();
    ASSERT_EQ(lamps.size(), 2);
    const auto lit = [&] { return std::pair(lamps[0]->isLit(), lamps[1]->isLit()); };
    ASSERT_EQ(lit(), std::pair(false, false));
    const std::uint32_t word = MIDIWords::controlChange(1, 2, 3);
    service.transmit(desk.out, {&word, 1});
    QCoreApplication::sendPostedEvents(); // and no timers: they would put it out
    EXPECT_EQ(lit(), std::pair(true, false));
    application.desk.output.sendFader(ChannelKind::input(1), 5);
    EXPECT_EQ(lit(), std::pair(true, true));
}

TEST(ActivityLampTest, HoldsAfterTheLastMessage) {
    ManualUptimeClock clock;
    DrawingContext drawing;
    ActivityLamp lamp(QStringLiteral("IN"), drawing, nullptr, clock);
    const auto isLit = [&] {
        lamp.checkHold();
        return lamp.isLit();
    };
    for (int i = 0; i < 3; ++i) {
        lamp.flash();
        clock.advance(ActivityLamp::hold - 1ms);
        EXPECT_TRUE(isLit());
    }
    clock.advance(1ms);
    EXPECT_FALSE(isLit());
}

} // namespace
} // namespace tessik
