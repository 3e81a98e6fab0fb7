#pragma once

#include "Support/CleanSettings.h"
#include "Support/Events.h"
#include "TessikAutomation/Application/Application.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace tessik {

/// The whole program on virtual cables, on a machine where it never ran.
struct ApplicationTest : testing::Test, CleanSettings {
    static void activate(QWidget& window) {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        runPosted();
    }

    static void settle() { // layouts follow layouts
        for (int i = 0; i < 3; ++i)
            QApplication::processEvents();
    }

    QTemporaryDir folder;
    VirtualMIDIService service{VirtualMIDIService::Delivery::synchronous};
    Application application{service, folder.path()};
};

} // namespace tessik
