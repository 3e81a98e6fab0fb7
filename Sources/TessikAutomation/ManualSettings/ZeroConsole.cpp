#include "TessikAutomation/ManualSettings/ZeroConsole.h"

namespace tessik {

ResetTierTexts texts(ResetTier tier) {
    const QStringList channels{
        QStringLiteral("Manual controls of every channel: trims, EQ, aux, routing, pan, solo, bypass"),
        QStringLiteral("Faders, mutes and EQ switches on screen"),
        QStringLiteral("Scribble strips: names and colours")};
    const QStringList all =
        channels + QStringList{QStringLiteral("Master Section"), QStringLiteral("The 4 Effects Returns")};
    switch (tier) {
    case ResetTier::channelsOnly:
        return {QStringLiteral("Zero Channels"),
                QStringLiteral("Zero all channel settings?"),
                QStringLiteral("Resets every channel's manual controls (trims, EQ, aux, routing, pan, solo, bypass), "
                               "automated fader/mute/EQ display, and scribble strips back to defaults. Local only -- "
                               "nothing is sent over MIDI. Cannot be undone."),
                channels,
                {}};
    case ResetTier::channelsAndMaster:
        return {QStringLiteral("Zero Channels + Master Section"),
                QStringLiteral("Zero all channels and the Master Section?"),
                QStringLiteral("Same as above, plus resets the Master Section (Aux Master, Control Room, Meter Select, "
                               "Studio, Talk Back, Oscillator) and the 4 Effects Returns. Local only -- nothing is "
                               "sent over MIDI. Cannot be undone."),
                all,
                {}};
    case ResetTier::channelsAndMasterSendToConsole: break;
    }
    return {QStringLiteral("Zero Channels + Master Section + Send to Console"),
            QStringLiteral("Zero the console?"),
            QStringLiteral("Same as above, and ALSO sends fader/mute/EQ resets out over MIDI to the connected console "
                           "-- this will audibly change a powered-on console in Snapshot mode (faders to minimum, "
                           "mutes cleared). Cannot be undone."),
            all,
            {QStringLiteral("All faders to minimum"), QStringLiteral("All mutes and EQ switches off")}};
}

void ZeroConsole::run(ResetTier tier) const {
    manualSettings.resetAll();
    channelLabels.resetAll();
    output.resetChannels(consoleModel, tier == ResetTier::channelsAndMasterSendToConsole);
    if (tier == ResetTier::channelsOnly) return;
    masterSection.load({});
    if (masterSection.onChange) masterSection.onChange();
}

} // namespace tessik
