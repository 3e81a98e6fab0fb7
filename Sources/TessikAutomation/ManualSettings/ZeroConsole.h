#pragma once

#include "TessikAutomation/Desk/MIDIOutputManager.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"

#include <QStringList>

namespace tessik {

/// How far Zero Console goes; each tier does all that the one before does.
enum class ResetTier : std::uint8_t { channelsOnly, channelsAndMaster, channelsAndMasterSendToConsole };
inline constexpr std::array allResetTiers{ResetTier::channelsOnly, ResetTier::channelsAndMaster,
                                          ResetTier::channelsAndMasterSendToConsole};

/// A tier's texts.
struct ResetTierTexts {
    QString menuTitle, dialogTitle, dialogMessage;
    QStringList resets;   ///< what returns to its defaults here
    QStringList sendsNow; ///< what is sent to the desk; empty if nothing is
};
ResetTierTexts texts(ResetTier tier);

/// Puts the console's record and, with the last tier, the console itself back to zero.
class ZeroConsole {
public:
    ConsoleModel& consoleModel;
    MIDIOutputManager& output;
    ManualSettingsStore& manualSettings;
    ChannelLabelStore& channelLabels;
    MasterSectionStore& masterSection;

    void run(ResetTier tier) const;
};

} // namespace tessik
