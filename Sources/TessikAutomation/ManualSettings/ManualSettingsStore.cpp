#include "TessikAutomation/ManualSettings/ManualSettingsStore.h"

namespace tessik {

ManualChannelSettingsBox& ManualSettingsStore::box(const QString& channelID) {
    const auto found = _boxes.find(channelID);
    return found == _boxes.end() ? makeBox(channelID, {}) : *found->second;
}

ManualChannelSettingsBox& ManualSettingsStore::makeBox(const QString& channelID,
                                                       const ManualChannelSettings& settings) {
    auto& box = _boxes[channelID] = std::make_unique<ManualChannelSettingsBox>(settings);
    box->onEdit = [this] {
        if (onChange) onChange();
    };
    return *box;
}

ManualChannelSettings ManualSettingsStore::settings(const QString& channelID) const {
    const auto found = _boxes.find(channelID);
    return found == _boxes.end() ? ManualChannelSettings() : found->second->settings();
}

void ManualSettingsStore::store(const QString& channelID, const ManualChannelSettings& settings) {
    if (this->settings(channelID) == settings) return;
    box(channelID).setSettings(settings);
    if (onChange) onChange();
}

QMap<QString, ManualChannelSettings> ManualSettingsStore::contents() const {
    QMap<QString, ManualChannelSettings> all;
    for (const auto& [channelID, box] : _boxes)
        all.insert(all.cend(), channelID, box->settings());
    return all;
}

void ManualSettingsStore::load(const QMap<QString, ManualChannelSettings>& loaded) {
    for (const auto& [channelID, box] : _boxes)
        box->setSettings(loaded.value(channelID));
    for (auto entry = loaded.begin(); entry != loaded.end(); ++entry)
        if (!_boxes.contains(entry.key())) makeBox(entry.key(), entry.value());
}

void ManualSettingsStore::resetAll() {
    for (const auto& [channelID, box] : _boxes)
        box->setSettings({});
    if (onChange) onChange();
}

} // namespace tessik
