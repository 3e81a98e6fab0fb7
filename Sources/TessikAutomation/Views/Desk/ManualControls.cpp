#include "TessikAutomation/Views/Desk/ManualControls.h"

#include "TessikAutomation/Views/Theme/SectionTints.h"

namespace tessik::ManualControls {
namespace {

using namespace Travels;

RecordControls<ManualChannelSettings> makeChannel() {
    using M = ManualChannelSettings;
    RecordControls<M> c;
    c.addSwitch(&M::phantomPower, "PWR", "phantom power", &Tints::ledRed);
    c.addSwitch(&M::pad, "PAD", "PAD", &Tints::ledAmber);
    c.addKnob(&M::micTrim, "MIC", "MIC trim", SectionTints::input, trim(-67, -7));
    c.addKnob(&M::lineTrim, "LINE", "LINE trim", SectionTints::input, trim(-20, 20));
    c.addSwitch(&M::lineSource, "LINE", "LINE source", &Tints::ledAmber);
    c.addSwitch(&M::flip, "FLIP", "FLIP", &Tints::ledAmber);
    c.addSwitch(&M::hpfOn, "HPF", "HPF", &Tints::ledAmber);

    c.addKnob(&M::eq10kGain, "10 k", "10 k gain", SectionTints::eqHigh, gain());
    c.addKnob(&M::eqHiMidGain, "HI MID", "HI MID gain", SectionTints::eqHighMid, gain());
    c.addKnob(&M::eqHiMidFreq, "FREQ", "HI MID frequency", SectionTints::eqHighMid, sweep(500, 10'000));
    c.addKnob(&M::eqLoMidGain, "LO MID", "LO MID gain", SectionTints::eqLowMid, gain());
    c.addKnob(&M::eqLoMidFreq, "FREQ", "LO MID frequency", SectionTints::eqLowMid, sweep(50, 1000));
    c.addKnob(&M::eq100Gain, "100", "100 gain", SectionTints::eqLow, gain());

    c.addKnob(&M::aux1_3Level, "AUX 1/3", "Aux 1/3 level", SectionTints::aux, level());
    c.addKnob(&M::aux2_4Level, "AUX 2/4", "Aux 2/4 level", SectionTints::aux, level());
    c.addSwitch(&M::aux3_4Select, "3-4", "Aux 3-4 select", &Tints::ledBlue);
    c.addSwitch(&M::auxMonSource, "MON", "Aux monitor source", &Tints::ledBlue);
    c.addSwitch(&M::auxPostFader, "POST", "Aux post-fader", &Tints::ledBlue);
    c.addKnob(&M::aux5Level, "AUX 5", "Aux 5 level", SectionTints::aux, level());
    c.addKnob(&M::aux6Level, "AUX 6", "Aux 6 level", SectionTints::aux, level());

    c.addSwitch(&M::monitorSourceInput, "INP", "monitor source input", &Tints::ledGreen);
    c.addSwitch(&M::monitorSourcePre, "PRE", "monitor source pre", &Tints::ledGreen);
    c.addSwitch(&M::monitorSourceGroup, "GRP", "monitor source group", &Tints::ledGreen);
    c.addKnob(&M::monitorFaderLevel, "MONITOR", "monitor fader", SectionTints::monitor, level());
    c.addKnob(&M::monitorPan, "PAN", "monitor pan", SectionTints::monitor, pan());

    c.addSwitch(&M::assignGroup1_2, "1-2", "assign to groups 1-2", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup3_4, "3-4", "assign to groups 3-4", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup5_6, "5-6", "assign to groups 5-6", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup7_8, "7-8", "assign to groups 7-8", &Tints::ledAmber);
    c.addSwitch(&M::assignStereo, "STEREO", "assign to stereo", &Tints::ledAmber);
    c.addKnob(&M::mainPan, "PAN", "pan", SectionTints::output, pan());
    c.addSwitch(&M::solo, "SOLO", "SOLO", &Tints::ledYellow);
    c.addSwitch(&M::manualMute, "MUTE", "local MUTE", &Tints::ledRed);
    c.addSwitch(&M::bypass, "BYPASS", "BYPASS", &Tints::ledGreen);
    return c;
}

RecordControls<MasterSectionSettings> makeMasterSection() {
    using M = MasterSectionSettings;
    RecordControls<M> c;
    c.addKnob(&M::aux1Level, "AUX 1", "Aux 1 master", SectionTints::aux, level());
    c.addKnob(&M::aux2Level, "AUX 2", "Aux 2 master", SectionTints::aux, level());
    c.addKnob(&M::aux3Level, "AUX 3", "Aux 3 master", SectionTints::aux, level());
    c.addKnob(&M::aux4Level, "AUX 4", "Aux 4 master", SectionTints::aux, level());
    c.addKnob(&M::aux5Level, "AUX 5", "Aux 5 master", SectionTints::aux, level());
    c.addKnob(&M::aux6Level, "AUX 6", "Aux 6 master", SectionTints::aux, level());

    c.addSwitch(&M::crSourceAux1, "AUX 1", "control room source Aux 1", &Tints::ledGreen);
    c.addSwitch(&M::crSourceAux2, "AUX 2", "control room source Aux 2", &Tints::ledGreen);
    c.addSwitch(&M::crSourceAux3, "AUX 3", "control room source Aux 3", &Tints::ledGreen);
    c.addSwitch(&M::crSourceAux4, "AUX 4", "control room source Aux 4", &Tints::ledGreen);
    c.addSwitch(&M::crSourceAux5, "AUX 5", "control room source Aux 5", &Tints::ledGreen);
    c.addSwitch(&M::crSourceAux6, "AUX 6", "control room source Aux 6", &Tints::ledGreen);
    c.addSwitch(&M::crSourceExt7, "EXT", "control room source EXT", &Tints::ledGreen);
    c.addSwitch(&M::crSource2TB, "2 TR", "control room source 2 TR", &Tints::ledGreen);
    c.addSwitch(&M::crSourceStereo, "STEREO", "control room source STEREO", &Tints::ledGreen);
    c.addKnob(&M::controlRoomLevel, "LEVEL", "control room level", SectionTints::input, level());
    c.addSwitch(&M::crMono, "MONO", "control room mono", &Tints::ledAmber);
    c.addSwitch(&M::crDim, "DIM", "control room dim", &Tints::ledAmber);
    c.addSwitch(&M::crSpeakerA, "SPKR A", "speakers A", &Tints::ledGreen);
    c.addSwitch(&M::crSpeakerB, "SPKR B", "speakers B", &Tints::ledGreen);
    c.addKnob(&M::controlRoomSoloLevel, "SOLO", "control room solo level", SectionTints::eqLowMid, level());
    c.addKnob(&M::controlRoomPflLevel, "PFL", "control room PFL level", SectionTints::eqLowMid, level());
    c.addSwitch(&M::pflEngaged, "PFL", "PFL", &Tints::ledYellow);
    c.addKnob(&M::phonesLevel, "PHONES", "headphone level", SectionTints::master, level());

    c.addSwitch(&M::meterStudio, "STUDIO", "meter select Studio", &Tints::ledGreen);
    c.addSwitch(&M::meterCR, "CR", "meter select CR", &Tints::ledGreen);
    c.addSwitch(&M::meterStereo, "STEREO", "meter select Stereo", &Tints::ledGreen);

    c.addSwitch(&M::studioCR, "CR", "studio CR", &Tints::ledGreen);
    c.addSwitch(&M::studioMono, "MONO", "studio mono", &Tints::ledAmber);
    c.addSwitch(&M::studioOn, "ON", "studio on", &Tints::ledGreen);
    c.addKnob(&M::studioLevel, "STUDIO", "studio level", SectionTints::monitor, level());

    c.addSwitch(&M::talkbackAux1_4, "AUX 1-4", "talkback to Aux 1-4", &Tints::ledRed);
    c.addSwitch(&M::talkbackSlate, "SLATE", "talkback SLATE", &Tints::ledRed);
    c.addSwitch(&M::talkbackTB, "TB", "talkback TB", &Tints::ledRed);
    c.addKnob(&M::talkbackMicLevel, "MIC", "talkback microphone level", SectionTints::output, level());

    QStringList frequencies;
    for (const char* label : oscFrequencyLabels)
        frequencies.append(QLatin1String(label));
    c.addKnob(&M::oscFrequencyPosition, "HZ", "oscillator frequency", SectionTints::master,
              selector(std::move(frequencies)));
    c.addSwitch(&M::oscTone, "TONE", "oscillator tone", &Tints::ledAmber);
    return c;
}

RecordControls<EffectsReturnSettings> makeEffectsReturn() {
    using M = EffectsReturnSettings;
    RecordControls<M> c;
    c.addKnob(&M::level, "LEVEL", "level", SectionTints::effects, level());
    c.addKnob(&M::pan, "PAN", "pan", SectionTints::output, pan());
    c.addSwitch(&M::assignGroup1_2, "1-2", "assign to groups 1-2", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup3_4, "3-4", "assign to groups 3-4", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup5_6, "5-6", "assign to groups 5-6", &Tints::ledAmber);
    c.addSwitch(&M::assignGroup7_8, "7-8", "assign to groups 7-8", &Tints::ledAmber);
    c.addSwitch(&M::assignStereo, "STEREO", "assign to stereo", &Tints::ledAmber);
    c.addSwitch(&M::solo, "SOLO", "SOLO", &Tints::ledYellow);
    c.addSwitch(&M::mute, "MUTE", "MUTE", &Tints::ledRed);
    return c;
}

} // namespace

const RecordControls<ManualChannelSettings>& channel() {
    static const auto controls = makeChannel();
    return controls;
}

const RecordControls<MasterSectionSettings>& masterSection() {
    static const auto controls = makeMasterSection();
    return controls;
}

const RecordControls<EffectsReturnSettings>& effectsReturn() {
    static const auto controls = makeEffectsReturn();
    return controls;
}

} // namespace tessik::ManualControls
