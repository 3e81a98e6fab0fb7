#pragma once

#include "Support/CleanSettings.h"
#include "Support/FarDesk.h"
#include "TessikAutomation/Views/Window/MainWindow.h"

#include <QApplication>
#include <QSpontaneKeyEvent>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace tessik {

/// The main window on virtual cables, with a console that can be heard and that writes down what it receives.
struct WindowTest : testing::Test, CleanSettings {
    WindowTest() {
        output.setupClient();
        output.refreshDestinations();
        manager.connection.refreshSources();
    }

    static void settle() { // layouts follow layouts
        for (int i = 0; i < 3; ++i)
            QApplication::processEvents();
    }
    void show(QSize size = {1366, 768}) {
        window =
            std::make_unique<MainWindow>(AppObjects{theme, link, mtcClock, transport, manualSettings, labels, master});
        window->resize(size);
        window->show();
        QApplication::processEvents();
    }
    ControlHost& strip(ChannelKind kind) { return *window->desk().strip(kind); }
    static int control(ControlHost& host, const char* id) { return host.controlIndex(QLatin1String(id)); }
    static QPoint centre(ControlHost& host, const char* id) { return host.controlRect(control(host, id)).center(); }

    /// Turns the wheel over a point of a widget; only a real event goes on to the parents.
    static void wheel(QWidget& over, QPoint at, QPoint angle, QPoint pixels = {}, quint64 timestamp = 0) {
        QWheelEvent event(at, over.mapToGlobal(at), pixels, angle, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        event.setTimestamp(timestamp);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(&over, &event);
    }
    /// Nothing is cut off at a host's edges or overlaps, but for a border's width, and everything can be reached.
    static void expectLaidOut(ControlHost& host, int border = 0) {
        EXPECT_EQ(host.x() % 4 + host.width() % 4, 0);
        for (int i = 0; i < host.controlCount(); ++i) {
            if (!host.isShown(i)) continue;
            const QRect rect = host.controlRect(i);
            EXPECT_TRUE(host.rect().adjusted(0, 0, border, border).contains(rect)) << qPrintable(host.name(i));
            for (int j = 0; j < i; ++j)
                EXPECT_FALSE(rect.adjusted(border, border, -border, -border).intersects(host.controlRect(j)))
                    << qPrintable(host.name(i));
            EXPECT_EQ(host.controlAt(rect.center()), i) << qPrintable(host.name(i));
        }
    }
    std::int32_t sourceID() const { return far.outID(); }
    std::int32_t destinationID() const { return far.inID(); }

    ManualUptimeClock clock;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous, clock};
    FarDesk far{service};
    std::vector<std::pair<int, int>>& received = far.received;
    ThemeStore theme;
    DeskLink link{service, QStringLiteral("TessikAutomation Console"), clock};
    ConsoleModel& model = link.model;
    MIDIManager& manager = link.input;
    MIDIOutputManager& output = link.output;
    DeskEditor& editor = link.editor;
    MTCClock mtcClock{service, QStringLiteral("TessikAutomation Timecode"), clock};
    TransportManager transport{service};
    ManualSettingsStore manualSettings;
    ChannelLabelStore labels;
    MasterSectionStore master;
    std::unique_ptr<MainWindow> window;
};

} // namespace tessik
