#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"
#include "TessikAutomation/ManualSettings/MasterSectionStore.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessik {
namespace {

using M = ManualChannelSettings;
const QString five = QStringLiteral("input-5");

TEST(ManualSettingsStore, TellsOfWhatDiffersAndOfNothingElse) {
    ManualSettingsStore store;
    EXPECT_EQ(store.settings(five), M());
    EXPECT_TRUE(store.contents().isEmpty()) << "asking makes no box";
    int changes = 0, trims = 0, gains = 0;
    store.onChange = [&] { ++changes; };
    ManualChannelSettingsBox& box = store.box(five);
    const auto trim = box.field(&M::micTrim).addNotifier([&] { ++trims; });
    const auto gain = box.field(&M::eq10kGain).addNotifier([&] { ++gains; });
    const M quiet{.micTrim = -30.0}, padded{.pad = true, .micTrim = -30.0};
    const QMap<QString, M> session{{five, quiet}}, another{{QStringLiteral("stereo"), quiet}};
    const struct {
        const char* what;
        std::function<void()> step;
        int changes, trims; // told of it
        M after;
    } steps[] = {
        {"an edit", [&] { box.edit(&M::micTrim, -30.0); }, 1, 1, quiet},
        {"the same", [&] { box.edit(&M::micTrim, -30.0); }, 0, 0, quiet},
        {"no number", [&] { box.edit(&M::micTrim, std::numeric_limits<double>::quiet_NaN()); }, 0, 0, quiet},
        {"another field", [&] { box.edit(&M::pad, true); }, 1, 0, padded},
        {"stored as it is", [&] { store.store(five, padded); }, 0, 0, padded},
        {"stored anew", [&] { store.store(five, quiet); }, 1, 0, quiet},
        {"loaded as it is", [&] { store.load(session); }, 0, 0, quiet},
        {"a session without it", [&] { store.load(another); }, 0, 1, M()},
        {"loaded", [&] { store.load(session); }, 0, 1, quiet},
        {"reset", [&] { store.resetAll(); }, 1, 1, M()},
    };
    for (const auto& [what, step, told, toldOfTrim, after] : steps) {
        changes = trims = 0;
        step();
        EXPECT_EQ(changes, told) << what;
        EXPECT_EQ(trims, toldOfTrim) << what;
        EXPECT_EQ(store.settings(five), after) << what;
    }
    EXPECT_EQ(gains, 0);
}

TEST(MasterSectionStore, TakesEveryChangeButAnEqualOneAndWhatIsNoNumber) {
    MasterSectionStore store;
    int changes = 0;
    store.onChange = [&] { ++changes; };
    MasterSectionSettings settings = store.settings.value();
    store.setSettings(settings);
    EXPECT_EQ(changes, 0);
    settings.effectsReturns[3].mute = true;
    store.setSettings(settings);
    for (double MasterSectionSettings::*level :
         {&MasterSectionSettings::aux1Level, &MasterSectionSettings::studioLevel}) {
        MasterSectionSettings broken = settings;
        broken.*level = std::numeric_limits<double>::infinity();
        store.setSettings(broken);
    }
    EXPECT_EQ(store.settings.value(), settings);
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace tessik
