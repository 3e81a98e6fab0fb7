#pragma once

#include "TessikAutomation/Persistence/RecordFields.h"

#include <QList>

namespace tessik {

/// The controls of one effects return.
struct EffectsReturnSettings {
    double level = 0.0;
    double pan = 0.0;
    bool assignGroup1_2 = false;
    bool assignGroup3_4 = false;
    bool assignGroup5_6 = false;
    bool assignGroup7_8 = false;
    bool assignStereo = false;
    bool solo = false;
    bool mute = false;

    friend bool operator==(const EffectsReturnSettings&, const EffectsReturnSettings&) = default;
};

inline constexpr int effectsReturnCount = 4;

/// The positions of the oscillator's frequency selector, in order.
inline constexpr std::array<const char*, 6> oscFrequencyLabels{"OFF", "40", "100", "1k", "10k", "16k"};

/// The written record of the master section, which has no MIDI. Source, meter and speaker switches are independent:
/// several may be on at once. Nothing is clamped here.
struct MasterSectionSettings {
    double aux1Level = 0.0;
    double aux2Level = 0.0;
    double aux3Level = 0.0;
    double aux4Level = 0.0;
    double aux5Level = 0.0;
    double aux6Level = 0.0;
    double controlRoomSoloLevel = 0.0;
    double controlRoomPflLevel = 0.0;
    bool pflEngaged = false;
    bool crSourceAux1 = false;
    bool crSourceAux2 = false;
    bool crSourceAux3 = false;
    bool crSourceAux4 = false;
    bool crSourceAux5 = false;
    bool crSourceAux6 = false;
    bool crSourceExt7 = false;
    bool crSource2TB = false;
    bool crSourceStereo = false;
    double controlRoomLevel = 0.0;
    bool crMono = false;
    bool crDim = false;
    bool crSpeakerA = false;
    bool crSpeakerB = false;
    bool meterStudio = false;
    bool meterCR = false;
    bool meterStereo = false;
    bool studioCR = false;
    bool studioMono = false;
    double phonesLevel = 0.0;
    double studioLevel = 0.0;
    bool studioOn = false;
    bool talkbackAux1_4 = false;
    bool talkbackSlate = false;
    bool talkbackTB = false;
    double talkbackMicLevel = 0.0;
    double oscFrequencyPosition = 0.0; ///< index into `oscFrequencyLabels`
    bool oscTone = false;
    /// Returns 1 to 4; a file may hold a different number of them, which is kept.
    QList<EffectsReturnSettings> effectsReturns = QList<EffectsReturnSettings>(effectsReturnCount);

    friend bool operator==(const MasterSectionSettings&, const MasterSectionSettings&) = default;
};

template <>
inline constexpr auto recordFields<EffectsReturnSettings> = std::tuple{
    RecordField{"level", &EffectsReturnSettings::level},
    RecordField{"pan", &EffectsReturnSettings::pan},
    RecordField{"assignGroup1_2", &EffectsReturnSettings::assignGroup1_2},
    RecordField{"assignGroup3_4", &EffectsReturnSettings::assignGroup3_4},
    RecordField{"assignGroup5_6", &EffectsReturnSettings::assignGroup5_6},
    RecordField{"assignGroup7_8", &EffectsReturnSettings::assignGroup7_8},
    RecordField{"assignStereo", &EffectsReturnSettings::assignStereo},
    RecordField{"solo", &EffectsReturnSettings::solo},
    RecordField{"mute", &EffectsReturnSettings::mute},
};

template <>
inline constexpr auto recordFields<MasterSectionSettings> = std::tuple{
    RecordField{"aux1Level", &MasterSectionSettings::aux1Level},
    RecordField{"aux2Level", &MasterSectionSettings::aux2Level},
    RecordField{"aux3Level", &MasterSectionSettings::aux3Level},
    RecordField{"aux4Level", &MasterSectionSettings::aux4Level},
    RecordField{"aux5Level", &MasterSectionSettings::aux5Level},
    RecordField{"aux6Level", &MasterSectionSettings::aux6Level},
    RecordField{"controlRoomSoloLevel", &MasterSectionSettings::controlRoomSoloLevel},
    RecordField{"controlRoomPflLevel", &MasterSectionSettings::controlRoomPflLevel},
    RecordField{"pflEngaged", &MasterSectionSettings::pflEngaged},
    RecordField{"crSourceAux1", &MasterSectionSettings::crSourceAux1},
    RecordField{"crSourceAux2", &MasterSectionSettings::crSourceAux2},
    RecordField{"crSourceAux3", &MasterSectionSettings::crSourceAux3},
    RecordField{"crSourceAux4", &MasterSectionSettings::crSourceAux4},
    RecordField{"crSourceAux5", &MasterSectionSettings::crSourceAux5},
    RecordField{"crSourceAux6", &MasterSectionSettings::crSourceAux6},
    RecordField{"crSourceExt7", &MasterSectionSettings::crSourceExt7},
    RecordField{"crSource2TB", &MasterSectionSettings::crSource2TB},
    RecordField{"crSourceStereo", &MasterSectionSettings::crSourceStereo},
    RecordField{"controlRoomLevel", &MasterSectionSettings::controlRoomLevel},
    RecordField{"crMono", &MasterSectionSettings::crMono},
    RecordField{"crDim", &MasterSectionSettings::crDim},
    RecordField{"crSpeakerA", &MasterSectionSettings::crSpeakerA},
    RecordField{"crSpeakerB", &MasterSectionSettings::crSpeakerB},
    RecordField{"meterStudio", &MasterSectionSettings::meterStudio},
    RecordField{"meterCR", &MasterSectionSettings::meterCR},
    RecordField{"meterStereo", &MasterSectionSettings::meterStereo},
    RecordField{"studioCR", &MasterSectionSettings::studioCR},
    RecordField{"studioMono", &MasterSectionSettings::studioMono},
    RecordField{"phonesLevel", &MasterSectionSettings::phonesLevel},
    RecordField{"studioLevel", &MasterSectionSettings::studioLevel},
    RecordField{"studioOn", &MasterSectionSettings::studioOn},
    RecordField{"talkbackAux1_4", &MasterSectionSettings::talkbackAux1_4},
    RecordField{"talkbackSlate", &MasterSectionSettings::talkbackSlate},
    RecordField{"talkbackTB", &MasterSectionSettings::talkbackTB},
    RecordField{"talkbackMicLevel", &MasterSectionSettings::talkbackMicLevel},
    RecordField{"oscFrequencyPosition", &MasterSectionSettings::oscFrequencyPosition},
    RecordField{"oscTone", &MasterSectionSettings::oscTone},
    RecordField{"effectsReturns", &MasterSectionSettings::effectsReturns},
};

} // namespace tessik
