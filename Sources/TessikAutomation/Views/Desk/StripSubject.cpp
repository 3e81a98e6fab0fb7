#include "TessikAutomation/Views/Desk/StripSubject.h"

namespace tessik {

QString spokenName(ChannelKind kind) {
    switch (kind.kind()) {
    case ChannelKind::Case::input: return QStringLiteral("Channel %1").arg(kind.number());
    case ChannelKind::Case::group: return QStringLiteral("Group %1").arg(kind.number());
    case ChannelKind::Case::stereo: break;
    }
    return QStringLiteral("Stereo");
}

void nameControl(ControlBinding& binding, const QString& owner, const QString& fullName, QUndoStack* history) {
    binding.name = QStringLiteral("%1, %2").arg(owner, fullName);
    binding.undoText = QStringLiteral("%1, %2%3").arg(fullName, owner.left(1).toLower(), owner.mid(1));
    binding.history = history;
}

ControlBinding bindSwitch(const StripSubject& subject, const QString& fullName, ChannelState::Switch which) {
    ChannelState& channel = *subject.channel;
    ControlBinding binding{
        .read =
            [&channel, which] {
                return ControlValue{(channel.*which).value() ? 1.0 : 0.0, {}};
            },
        .write = [subject, which](double on) { subject.editor->setSwitch(*subject.channel, which, on != 0); },
        .watch = watching(channel.*which)};
    nameControl(binding, spokenName(channel.kind), fullName, nullptr);
    return binding;
}

ControlBinding bindManual(const StripSubject& subject, const RecordControl<ManualChannelSettings>& control) {
    ManualChannelSettingsBox& box = *subject.settings;
    ControlBinding binding = std::visit(
        [&box]<typename Value>(Value ManualChannelSettings::*field) {
            return ControlBinding{.read =
                                      [&box, field] {
                                          return ControlValue{double(box.value(field)), {}};
                                      },
                                  .write = [&box, field](double value) { box.edit(field, Value(value)); },
                                  .watch =
                                      [&box, field](std::function<void()> changed) {
                                          std::vector<QPropertyNotifier> observers;
                                          observers.push_back(box.field(field).addNotifier(std::move(changed)));
                                          return observers;
                                      }};
        },
        control.field);
    nameControl(binding, spokenName(subject.channel->kind), control.fullName, subject.history);
    return binding;
}

} // namespace tessik
