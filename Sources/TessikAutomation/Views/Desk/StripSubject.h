#pragma once

#include "TessikAutomation/Desk/DeskEditor.h"
#include "TessikAutomation/ManualSettings/ChannelLabelStore.h"
#include "TessikAutomation/ManualSettings/ManualChannelSettingsBox.h"
#include "TessikAutomation/Views/Controls/ControlTable.h"
#include "TessikAutomation/Views/Desk/RecordControl.h"

namespace tessik {

class ScribbleFocusCoordinator;
class StripSelection;

/// What the parts of one channel's strip show and operate.
struct StripSubject {
    ChannelState* channel;
    DeskEditor* editor;
    ManualChannelSettingsBox* settings;
    ChannelLabelStore* labels;
    ScribbleFocusCoordinator* scribbles;
    StripSelection* selection;
    QUndoStack* history;
};

/// The channel's spoken name: "Channel 5", "Group 3", "Stereo".
QString spokenName(ChannelKind kind);

/// One of the channel's switches that the console sends.
ControlBinding bindSwitch(const StripSubject& subject, const QString& fullName, ChannelState::Switch which);
/// One of its controls that are only written down.
ControlBinding bindManual(const StripSubject& subject, const RecordControl<ManualChannelSettings>& control);

/// Sets the names of a control of `owner`.
void nameControl(ControlBinding& binding, const QString& owner, const QString& fullName, QUndoStack* history);

} // namespace tessik
