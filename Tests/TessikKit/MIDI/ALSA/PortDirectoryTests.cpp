#include "TessikKit/MIDI/ALSA/PortDirectory.h"
#include "TessikKit/MIDI/MIDIPortInfo.h"

#include <QSet>
#include <alsa/asoundlib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessik {

namespace {

constexpr unsigned readable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned writable = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

SequencerPort port(std::uint8_t client, std::uint8_t number = 0, const QString& clientName = QStringLiteral("Desk"),
                   const QString& portName = QStringLiteral("MIDI 1")) {
    return {
        .address = {client, number}, .clientName = clientName, .portName = portName, .capability = readable | writable};
}

class PortDirectoryTest : public testing::Test {
protected:
    MIDIEndpoint source(const std::vector<SequencerPort>& present, std::size_t index = 0) {
        return directory.list(PortDirection::source, present).at(index);
    }
    PortDirectory directory{1000};
};

} // namespace

TEST_F(PortDirectoryTest, listsWhatOthersMaySubscribeTo) {
    const struct {
        const char* what;
        std::uint8_t client;
        unsigned capability;
        int processID;
        bool isSource;
        bool isDestination;
    } cases[] = {
        {"both ways", 20, readable | writable, -1, true, true},
        {"another program's", 128, readable | writable, 2000, true, true},
        {"source", 20, readable, -1, true, false},
        {"destination", 20, writable, -1, false, true},
        {"read, but not by subscription", 20, SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE, -1, false, false},
        {"not exported", 20, readable | writable | SND_SEQ_PORT_CAP_NO_EXPORT, -1, false, false},
        {"own", 128, readable | writable, 1000, false, false},
        {"the system's", 0, readable | writable, -1, false, false},
    };
    for (const auto& c : cases) {
        SequencerPort tried = port(c.client);
        tried.capability = c.capability;
        tried.processID = c.processID;
        EXPECT_EQ(directory.list(PortDirection::source, {tried}).size(), c.isSource) << c.what;
        EXPECT_EQ(directory.list(PortDirection::destination, {tried}).size(), c.isDestination) << c.what;
    }
}

TEST_F(PortDirectoryTest, displayNames) {
    EXPECT_EQ(PortDirectory::displayName(QStringLiteral("Desk"), QStringLiteral("MIDI 1")),
              QStringLiteral("Desk MIDI 1"));
    EXPECT_EQ(PortDirectory::displayName(QStringLiteral("Midi Through"), QStringLiteral("Midi Through Port-0")),
              QStringLiteral("Midi Through Port-0"));
    EXPECT_EQ(PortDirectory::displayName(QStringLiteral("Desk"), QString()), QStringLiteral("Desk"));
}

TEST_F(PortDirectoryTest, anIdIsOfTheNamesAndNotOfTheAddress) {
    const auto first = source({port(20)}).uniqueID;
    EXPECT_EQ(first, stableUniqueID(PortDirection::source, QStringLiteral("Desk"), QStringLiteral("MIDI 1"), 0));
    EXPECT_NE(directory.list(PortDirection::destination, {port(20)}).at(0).uniqueID, first);
    directory.clientExited(20);
    EXPECT_EQ(source({port(33, 2)}).uniqueID, first);
    EXPECT_NE(source({port(33, 2, QStringLiteral("Desk 2"))}).uniqueID, first); // renamed: another port
}

TEST_F(PortDirectoryTest, aTwinKeepsItsIdWhileItLives) {
    const auto a = source({port(20), port(24)}, 0).uniqueID;
    const auto b = source({port(20), port(24)}, 1).uniqueID;
    ASSERT_NE(a, b);
    directory.portExited({20, 0});
    EXPECT_EQ(source({port(24)}).uniqueID, b);
    EXPECT_EQ(source({port(24), port(28)}, 1).uniqueID, a); // the id set free goes to who comes next
    EXPECT_EQ(source({port(24), port(28)}, 0).uniqueID, b);

    // Out and in again before anyone looked, while the other stays.
    directory.portExited({28, 0});
    EXPECT_EQ(source({port(24), port(28)}, 1).uniqueID, a);
    // Lost announcements tell nothing, so who is still there is taken for the same.
    directory.announcementsLost();
    EXPECT_EQ(source({port(24), port(28)}, 0).uniqueID, b);
}

TEST_F(PortDirectoryTest, equalDevicesAreTakenForEachOtherOnlyWhereNothingTellsThemApart) {
    struct Device {
        const char *socket, *serial;
    };
    const struct {
        const char* what;
        Device a, b;         // plugged in at first
        Device backB, backA; // both were away and come back, B first
        bool isFound;        // each gets its id back
        bool isAmbiguousAtFirst, isAmbiguousAlone;
    } cases[] = {
        {"by their sockets", {"2", ""}, {"1", ""}, {"1", ""}, {"2", ""}, true, false, false},
        {"by their serial numbers", {"1", "X"}, {"2", "Y"}, {"3", "Y"}, {"4", "X"}, true, false, false},
        {"one number for all", {"1", "0"}, {"2", "0"}, {"2", "0"}, {"1", "0"}, true, false, false},
        {"in other sockets", {"1", ""}, {"2", ""}, {"3", ""}, {"4", ""}, false, false, true},
        {"nothing", {"", ""}, {"", ""}, {"", ""}, {"", ""}, false, true, true},
    };
    const auto at = [](std::uint8_t client, const Device& device) {
        SequencerPort made = port(client);
        made.device = {QString::fromLatin1(device.socket), QString::fromLatin1(device.serial)};
        return made;
    };
    const auto list = [](PortDirectory& tried, const std::vector<SequencerPort>& present) {
        return tried.list(PortDirection::source, present);
    };
    for (const auto& c : cases) {
        PortDirectory tried(1000);
        const auto first = list(tried, {at(20, c.a), at(24, c.b)});
        EXPECT_EQ(first[0].isAmbiguous, c.isAmbiguousAtFirst) << c.what;
        EXPECT_EQ(first[1].isAmbiguous, c.isAmbiguousAtFirst) << c.what;
        EXPECT_EQ(first[0].ordinal + first[1].ordinal, 1) << c.what;
        EXPECT_EQ(first[1].device, at(24, c.b).device) << c.what;
        list(tried, {});
        EXPECT_EQ(list(tried, {at(20, c.backB)})[0].isAmbiguous, c.isAmbiguousAlone) << c.what;
        const auto back = list(tried, {at(20, c.backB), at(24, c.backA)});
        EXPECT_EQ(back[0].uniqueID == first[1].uniqueID && back[1].uniqueID == first[0].uniqueID, c.isFound) << c.what;
        EXPECT_NE(back[0].uniqueID, back[1].uniqueID) << c.what;
    }
    const Device one{"1", ""}, two{"2", ""};
    PortDirectory before(1000), after(1000); // over a restart, whichever comes first
    EXPECT_EQ(list(before, {at(20, one), at(24, two)})[0].uniqueID,
              list(after, {at(20, two), at(24, one)})[1].uniqueID);
    const auto single = source({at(20, one)}).uniqueID; // alone it is itself in any socket
    EXPECT_EQ(single, stableUniqueID(PortDirection::source, QStringLiteral("Desk"), QStringLiteral("MIDI 1"), 0));
    list(directory, {});
    EXPECT_EQ(source({at(24, two)}).uniqueID, single);
}

TEST_F(PortDirectoryTest, pickersNeverShowTwoEqualNames) {
    std::vector<MIDIPortInfo> ports = describePorts(
        directory.list(PortDirection::source,
                       {port(20), port(24), port(28), port(32, 0, QStringLiteral("Desk MIDI"), QStringLiteral("1"))}),
        {});
    ports.push_back({.uniqueID = 5, .name = QStringLiteral("Desk MIDI 1 (2)")});
    const QStringList names = distinctNames(ports);
    EXPECT_EQ(names.mid(0, 3), QStringList({QStringLiteral("Desk MIDI 1"), QStringLiteral("Desk MIDI 1 (2)"),
                                            QStringLiteral("Desk MIDI 1 (3)")}));
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
}

TEST_F(PortDirectoryTest, aHandleReachesOnlyThePortItWasGivenFor) {
    const std::vector<SequencerPort> present{port(20), port(20, 1), port(24)};
    const struct {
        const char* what;
        std::function<void()> happens;
        std::vector<bool> renewed;
    } cases[] = {
        {"nothing", [] {}, {false, false, false}},
        {"exit",
         [this] {
             directory.portExited({20, 1});
         },
         {false, true, false}},
        {"client exit", [this] { directory.clientExited(20); }, {true, true, false}},
        {"loss", [this] { directory.announcementsLost(); }, {true, true, true}},
    };
    for (const auto& c : cases) {
        const auto before = directory.list(PortDirection::source, present);
        c.happens();
        const auto after = directory.list(PortDirection::source, present);
        for (std::size_t i = 0; i < present.size(); ++i) {
            EXPECT_EQ(before[i].ref != after[i].ref, c.renewed[i]) << c.what << " " << i;
            EXPECT_EQ(directory.resolve(before[i].ref).has_value(), !c.renewed[i]) << c.what << " " << i;
            EXPECT_EQ(directory.resolve(after[i].ref), present[i].address) << c.what << " " << i;
        }
    }
    EXPECT_FALSE(directory.resolve(0));
}

} // namespace tessik
