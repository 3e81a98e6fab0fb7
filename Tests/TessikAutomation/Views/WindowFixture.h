#pragma once

#include "TessikAutomation/Views/Window/MainWindow.h"
#include "TessikKit/MIDI/Virtual/VirtualMIDIService.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

namespace tessik {

/// The main window on virtual cables, with a console that can be heard and that writes down what it receives.
struct WindowTest : testing::Test {
    WindowTest() {
        using namespace SavedSettings;
        for (const QLatin1String key :
             {Key::appTheme, Key::consoleSourceID, Key::midiOutDestinationID, Key::midiChannel, Key::modelSize,
              Key::timecodeSourceID, Key::transportDestinationID, Key::mmcDeviceID, Key::deskZoom})
            SavedSettings::remove(key);
        service.createClient(QStringLiteral("Far"), {}, far);
        service.createSource(far, QStringLiteral("Desk Out"), deskOut);
        service.createDestination(
            far, QStringLiteral("Desk In"),
            [this](const MIDIEventList& list) {
                for (const MIDIEventPacket& packet : list.packets)
                    for (const std::uint32_t word : packet.words)
                        received.push_back({int(word >> 8 & 0x7F), int(word & 0x7F)});
            },
            deskIn);
        output.setupClient();
        output.refreshDestinations();
        manager.connection.refreshSources();
    }

    void show(QSize size = {1366, 768}) {
        window = std::make_unique<MainWindow>(
            AppObjects{theme, model, manager, output, editor, mtcClock, transport, manualSettings, labels, master});
        window->resize(size);
        window->show();
        QApplication::processEvents();
    }
    ControlHost& strip(ChannelKind kind) { return *window->desk().strip(kind); }
    static int control(ControlHost& host, const char* id) { return host.controlIndex(QLatin1String(id)); }
    static QPoint centre(ControlHost& host, const char* id) { return host.controlRect(control(host, id)).center(); }

    std::int32_t sourceID() const { return manager.connection.availableSources.value().front().uniqueID; }
    std::int32_t destinationID() const { return output.port.availableDestinations.value().front().uniqueID; }

    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    MIDIClientRef far = 0;
    MIDIEndpointRef deskOut = 0, deskIn = 0;
    std::vector<std::pair<int, int>> received; ///< controller, value
    ThemeStore theme;
    ConsoleModel model;
    MIDIManager manager{service, model, QStringLiteral("TessikAutomation Console")};
    MIDIOutputManager output{service, clock};
    DeskEditor editor{model, output};
    MTCClock mtcClock{service, QStringLiteral("TessikAutomation Timecode"), clock};
    TransportManager transport{service};
    ManualSettingsStore manualSettings;
    ChannelLabelStore labels;
    MasterSectionStore master;
    std::unique_ptr<MainWindow> window;
};

} // namespace tessik
