#pragma once

#include "TessikAutomation/Persistence/RecordFields.h"

namespace tessik {

/// One channel's controls that have no MIDI: a written record of their positions, in the units of their knobs. The
/// defaults are a zeroed channel. Nothing is clamped here.
struct ManualChannelSettings {
    bool phantomPower = false;
    bool pad = false;
    double micTrim = -67.0;
    double lineTrim = -20.0;
    bool lineSource = false;
    bool flip = false;
    bool hpfOn = false;
    double eq10kGain = 0.0;
    double eqHiMidGain = 0.0;
    double eqHiMidFreq = 2200.0;
    double eqLoMidGain = 0.0;
    double eqLoMidFreq = 220.0;
    double eq100Gain = 0.0;
    double aux1_3Level = 0.0;
    double aux2_4Level = 0.0;
    bool aux3_4Select = false;
    bool auxMonSource = false;
    bool auxPostFader = false;
    double aux5Level = 0.0;
    double aux6Level = 0.0;
    bool monitorSourceInput = false;
    bool monitorSourcePre = false;
    bool monitorSourceGroup = false;
    double monitorFaderLevel = 0.0;
    double monitorPan = 0.0;
    bool assignGroup1_2 = false;
    bool assignGroup3_4 = false;
    bool assignGroup5_6 = false;
    bool assignGroup7_8 = false;
    bool assignStereo = false;
    double mainPan = 0.0;
    bool solo = false;
    bool manualMute = false;
    bool bypass = false;

    friend bool operator==(const ManualChannelSettings&, const ManualChannelSettings&) = default;
};

template <>
inline constexpr auto recordFields<ManualChannelSettings> = std::tuple{
    RecordField{"phantomPower", &ManualChannelSettings::phantomPower},
    RecordField{"pad", &ManualChannelSettings::pad},
    RecordField{"micTrim", &ManualChannelSettings::micTrim},
    RecordField{"lineTrim", &ManualChannelSettings::lineTrim},
    RecordField{"lineSource", &ManualChannelSettings::lineSource},
    RecordField{"flip", &ManualChannelSettings::flip},
    RecordField{"hpfOn", &ManualChannelSettings::hpfOn},
    RecordField{"eq10kGain", &ManualChannelSettings::eq10kGain},
    RecordField{"eqHiMidGain", &ManualChannelSettings::eqHiMidGain},
    RecordField{"eqHiMidFreq", &ManualChannelSettings::eqHiMidFreq},
    RecordField{"eqLoMidGain", &ManualChannelSettings::eqLoMidGain},
    RecordField{"eqLoMidFreq", &ManualChannelSettings::eqLoMidFreq},
    RecordField{"eq100Gain", &ManualChannelSettings::eq100Gain},
    RecordField{"aux1_3Level", &ManualChannelSettings::aux1_3Level},
    RecordField{"aux2_4Level", &ManualChannelSettings::aux2_4Level},
    RecordField{"aux3_4Select", &ManualChannelSettings::aux3_4Select},
    RecordField{"auxMonSource", &ManualChannelSettings::auxMonSource},
    RecordField{"auxPostFader", &ManualChannelSettings::auxPostFader},
    RecordField{"aux5Level", &ManualChannelSettings::aux5Level},
    RecordField{"aux6Level", &ManualChannelSettings::aux6Level},
    RecordField{"monitorSourceInput", &ManualChannelSettings::monitorSourceInput},
    RecordField{"monitorSourcePre", &ManualChannelSettings::monitorSourcePre},
    RecordField{"monitorSourceGroup", &ManualChannelSettings::monitorSourceGroup},
    RecordField{"monitorFaderLevel", &ManualChannelSettings::monitorFaderLevel},
    RecordField{"monitorPan", &ManualChannelSettings::monitorPan},
    RecordField{"assignGroup1_2", &ManualChannelSettings::assignGroup1_2},
    RecordField{"assignGroup3_4", &ManualChannelSettings::assignGroup3_4},
    RecordField{"assignGroup5_6", &ManualChannelSettings::assignGroup5_6},
    RecordField{"assignGroup7_8", &ManualChannelSettings::assignGroup7_8},
    RecordField{"assignStereo", &ManualChannelSettings::assignStereo},
    RecordField{"mainPan", &ManualChannelSettings::mainPan},
    RecordField{"solo", &ManualChannelSettings::solo},
    RecordField{"manualMute", &ManualChannelSettings::manualMute},
    RecordField{"bypass", &ManualChannelSettings::bypass},
};

} // namespace tessik
