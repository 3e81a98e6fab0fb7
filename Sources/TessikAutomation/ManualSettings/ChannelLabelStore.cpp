#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"

namespace tessik {

void ChannelLabelStore::update(const ChannelLabel& label, const QString& channelID) {
    QMap<QString, ChannelLabel> labels = labelsByChannelID.value();
    labels.insert(channelID, label);
    labelsByChannelID = labels;
    if (onChange) onChange();
}

void ChannelLabelStore::remove(const QString& channelID) {
    QMap<QString, ChannelLabel> labels = labelsByChannelID.value();
    labels.remove(channelID);
    labelsByChannelID = labels;
    if (onChange) onChange();
}

void ChannelLabelStore::resetAll() {
    labelsByChannelID = QMap<QString, ChannelLabel>();
    if (onChange) onChange();
}

} // namespace tessik
