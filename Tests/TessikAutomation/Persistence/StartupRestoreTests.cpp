#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Persistence/StartupRestore.h"
#include "TessikKit/MIDI/MIDIManager.h"
#include "TessikKit/MIDI/MTCClock.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

namespace Key = SavedSettings::Key;

struct StartupRestoreTest : testing::Test {
    StartupRestoreTest() {
        for (const QLatin1String key :
             {Key::consoleSourceID, Key::midiOutDestinationID, Key::midiChannel, Key::modelSize})
            SavedSettings::remove(key);
        MIDIClientRef far = 0;
        MIDIEndpointRef endpoint = 0;
        service.createClient(QStringLiteral("Far"), {}, far);
        service.createSource(far, QStringLiteral("Desk Out"), endpoint);
        service.createDestination(
            far, QStringLiteral("Desk In"), [](const MIDIEventList&) {}, endpoint);
        output.setupClient();
        output.refreshDestinations();
        manager.connection.refreshSources();
    }
    std::int32_t sourceID() { return manager.connection.availableSources.value().front().uniqueID; }
    std::int32_t destinationID() { return output.port.availableDestinations.value().front().uniqueID; }

    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    ConsoleModel model;
    MIDIManager manager{service, model, QStringLiteral("TessikAutomation Console")};
    MIDIOutputManager output{service};
    MTCClock timecode{service, QStringLiteral("TessikAutomation Timecode")};
    TransportManager transport{service};
};

TEST_F(StartupRestoreTest, NothingSavedChangesNothing) {
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    restoreModelSize(model);
    EXPECT_FALSE(manager.connection.connectedSourceID.value());
    EXPECT_FALSE(output.port.connectedDestinationID.value());
    EXPECT_EQ(output.midiChannel.value(), 1);
    EXPECT_EQ(model.modelSize.value(), ConsoleModel::ModelSize::ch32);
}

TEST_F(StartupRestoreTest, ListedPortsAreSelectedAndOthersKeptForTheNextStart) {
    SavedSettings::setUniqueID(Key::consoleSourceID, sourceID());
    SavedSettings::setUniqueID(Key::midiOutDestinationID, 4711);
    SavedSettings::setInteger(Key::midiChannel, 11);
    SavedSettings::setString(Key::modelSize, QStringLiteral("24-Channel"));
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    restoreModelSize(model);
    EXPECT_EQ(manager.connection.connectedSourceID.value(), sourceID());
    EXPECT_EQ(manager.connection.statusText.value(), QStringLiteral("Connected: Desk Out"));
    EXPECT_FALSE(output.port.connectedDestinationID.value());
    EXPECT_EQ(SavedSettings::uniqueID(Key::midiOutDestinationID), 4711);
    EXPECT_EQ(output.midiChannel.value(), 11);
    EXPECT_EQ(model.modelSize.value(), ConsoleModel::ModelSize::ch24);

    SavedSettings::setUniqueID(Key::midiOutDestinationID, destinationID());
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: Desk In"));
}

TEST_F(StartupRestoreTest, ASavedIDOf0IsLookedUpLikeAnyOther) {
    SavedSettings::setUniqueID(Key::consoleSourceID, 0);
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    EXPECT_FALSE(manager.connection.connectedSourceID.value());
    EXPECT_EQ(SavedSettings::uniqueID(Key::consoleSourceID), 0);
}

} // namespace
} // namespace tessik
