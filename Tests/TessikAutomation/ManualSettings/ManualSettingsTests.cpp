#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessik {
namespace {

using M = ManualChannelSettings;
const QString five = QStringLiteral("input-5");

TEST(ManualSettingsStore, AChannelNeverTouchedIsZeroed) {
    ManualSettingsStore store;
    const M settings = store.settings(five);
    EXPECT_EQ(settings.micTrim, -67.0);
    EXPECT_EQ(settings.lineTrim, -20.0);
    EXPECT_EQ(settings.eqHiMidFreq, 2200.0);
    EXPECT_EQ(settings.eqLoMidFreq, 220.0);
    EXPECT_TRUE(store.contents().isEmpty()); // asking makes no box
    EXPECT_EQ(store.box(five).settings(), settings);
    EXPECT_EQ(&store.box(five), &store.box(five));
    EXPECT_EQ(store.contents().keys(), QStringList(five));
}

TEST(ManualSettingsStore, AnEditNotifiesItsFieldAlone) {
    ManualSettingsStore store;
    int changes = 0;
    int trims = 0;
    int gains = 0;
    store.onChange = [&] { ++changes; };
    ManualChannelSettingsBox& box = store.box(five);
    const auto trim = box.field(&M::micTrim).addNotifier([&] { ++trims; });
    const auto gain = box.field(&M::eq10kGain).addNotifier([&] { ++gains; });
    box.edit(&M::micTrim, -30.0);
    box.edit(&M::micTrim, -30.0);
    box.edit(&M::micTrim, std::numeric_limits<double>::quiet_NaN());
    box.edit(&M::bypass, true);
    EXPECT_EQ(trims, 1);
    EXPECT_EQ(gains, 0);
    EXPECT_EQ(changes, 2);
    M expected;
    expected.micTrim = -30.0;
    expected.bypass = true;
    EXPECT_EQ(store.settings(five), expected);

    store.store(five, expected);
    EXPECT_EQ(changes, 2);
    store.store(five, {});
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(trims, 2);
}

TEST(ManualSettingsStore, LoadingAndResettingWriteOnlyWhatDiffers) {
    ManualSettingsStore store;
    int changes = 0;
    int notices = 0;
    store.onChange = [&] { ++changes; };
    M loud;
    loud.monitorFaderLevel = 1.0;
    M muted;
    muted.manualMute = true;
    store.load({{five, loud}, {QStringLiteral("stereo"), muted}});
    const auto notifier = store.box(five).field(&M::monitorFaderLevel).addNotifier([&] { ++notices; });
    store.load({{five, loud}});
    EXPECT_EQ(notices, 0);
    EXPECT_EQ(store.settings(QStringLiteral("stereo")), M());
    store.load({});
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(store.settings(five), M());
    EXPECT_EQ(changes, 0);

    store.box(five).edit(&M::pad, true);
    store.resetAll();
    EXPECT_EQ(store.settings(five), M());
    EXPECT_EQ(changes, 2);
    ManualSettingsStore empty;
    empty.onChange = [&] { ++changes; };
    empty.resetAll();
    EXPECT_EQ(changes, 3);
}

TEST(MasterSectionStore, TakesEveryChangeButAnEqualOne) {
    MasterSectionStore store;
    int changes = 0;
    int notices = 0;
    store.onChange = [&] { ++changes; };
    const auto notifier = store.settings.addNotifier([&] { ++notices; });
    MasterSectionSettings settings = store.settings.value();
    EXPECT_EQ(settings.effectsReturns, QList<EffectsReturnSettings>(4));
    store.setSettings(settings);
    EXPECT_EQ(changes + notices, 0);
    settings.crSourceAux1 = settings.crSourceStereo = true;
    settings.effectsReturns[3].mute = true;
    store.setSettings(settings);
    EXPECT_EQ(store.settings.value(), settings);
    EXPECT_EQ(changes, 1);
    for (double MasterSectionSettings::*level :
         {&MasterSectionSettings::aux1Level, &MasterSectionSettings::studioLevel}) {
        MasterSectionSettings broken = settings;
        broken.*level = std::numeric_limits<double>::infinity();
        store.setSettings(broken);
    }
    EXPECT_EQ(store.settings.value(), settings);
    store.load({});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(notices, 2);
}

} // namespace
} // namespace tessik
