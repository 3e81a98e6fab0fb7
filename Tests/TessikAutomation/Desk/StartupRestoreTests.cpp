#include "Support/CleanSettings.h"
#include "Support/FarDesk.h"
#include "TessikAutomation/Desk/StartupRestore.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikKit/MIDI/MIDIManager.h"
#include "TessikKit/MIDI/MTCClock.h"

#include <gtest/gtest.h>

namespace tessik {
namespace {

namespace Key = SavedSettings::Key;

struct StartupRestoreTest : testing::Test, CleanSettings {
    StartupRestoreTest() {
        output.setupClient();
        output.refreshDestinations();
        manager.connection.refreshSources();
    }
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    FarDesk desk{service};
    ConsoleModel model;
    MIDIManager manager{service, model, QStringLiteral("TessikAutomation Console")};
    MIDIOutputManager output{service};
    MTCClock timecode{service, QStringLiteral("TessikAutomation Timecode")};
    TransportManager transport{service};
};

TEST_F(StartupRestoreTest, ListedPortsAreSelectedAndOthersKeptForTheNextStart) {
    SavedSettings::setUniqueID(Key::consoleSourceID, desk.outID());
    SavedSettings::setUniqueID(Key::midiOutDestinationID, 4711);
    SavedSettings::setInteger(Key::midiChannel, 11);
    SavedSettings::setString(Key::modelSize, QStringLiteral("24-Channel"));
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    restoreModelSize(model);
    EXPECT_EQ(manager.connection.connectedSourceID.value(), desk.outID());
    EXPECT_EQ(manager.connection.statusText.value(), QStringLiteral("Connected: Desk Out"));
    EXPECT_FALSE(output.port.connectedDestinationID.value());
    EXPECT_EQ(SavedSettings::uniqueID(Key::midiOutDestinationID), 4711);
    EXPECT_EQ(output.midiChannel.value(), 11);
    EXPECT_EQ(model.modelSize.value(), ConsoleModel::ModelSize::ch24);

    SavedSettings::setUniqueID(Key::midiOutDestinationID, desk.inID());
    restoreMIDIConnections(manager.connection, output, timecode.connection, transport);
    EXPECT_EQ(output.port.statusText.value(), QStringLiteral("Output: Desk In"));
}

} // namespace
} // namespace tessik
