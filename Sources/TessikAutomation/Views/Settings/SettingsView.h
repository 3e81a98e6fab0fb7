#pragma once

#include "TessikAutomation/MIDI/PortChoice.h"
#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QDialog>

class QBoxLayout;
class QComboBox;
class QLabel;

namespace tessik {

/// The sheet in which the rig is set up. Every choice takes effect at once and is remembered on this machine.
class SettingsView final : public QDialog {
    Q_OBJECT

public:
    SettingsView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent = nullptr);

private:
    QBoxLayout* addGroup(const QString& title);
    void addRow(QBoxLayout* group, const QString& label, QWidget* control, const QString& help);
    /// A list of ports, "None" first, that follows what is plugged in; for a remembered port that is missing, no row is
    /// selected.
    void addPortPicker(QBoxLayout* group, const QString& label, const QString& help, const PortChoice& choice);
    void addPicker(QBoxLayout* group, const QString& label, const QString& help, const QStringList& choices,
                   int current, std::function<void(int)> choose);
    void addDeviceID(QBoxLayout* group);
    void addMIDIChannel(QBoxLayout* group);
    void addStatus(QBoxLayout* group);
    void applyLook();

    AppObjects _objects;
    DrawingContext& _drawing;
    QBoxLayout* _groups;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
