#pragma once

#include "TessikAutomation/Desk/DeskLink.h"
#include "TessikAutomation/MIDI/TransportManager.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"
#include "TessikAutomation/Views/Theme/ThemeStore.h"
#include "TessikKit/MIDI/MTCClock.h"

namespace tessik {

/// The shared objects that the main window works on. All must outlive it.
struct AppObjects {
    ThemeStore& theme;
    DeskLink& desk;
    MTCClock& mtcClock;
    TransportManager& transport;
    ManualSettingsStore& manualSettings;
    ChannelLabelStore& channelLabels;
    MasterSectionStore& masterSection;
};

} // namespace tessik
