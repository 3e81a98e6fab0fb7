#pragma once

#include "TessikAutomation/Views/Controls/PanelButton.h"

class QHBoxLayout;

namespace tessik {

/// The strip along the top of the window: transport panel, automation buttons, session title, settings.
class HeaderView final : public QWidget {
    Q_OBJECT

public:
    explicit HeaderView(DrawingContext& drawing, QWidget* parent = nullptr);

    /// Places a panel at the left end.
    void setTransportPanel(QWidget* panel);
    /// Places a panel right of the transport.
    void setAutomationPanel(QWidget* panel);
    /// What is worked on, and one line on its state.
    void setTitle(const QString& title, const QString& detail);

Q_SIGNALS:
    void settingsRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void place(QWidget*& slot, QWidget* panel, int index);

    DrawingContext& _drawing;
    QHBoxLayout* _layout;
    QWidget* _transport = nullptr;
    QWidget* _automation = nullptr;
    PanelButton* _settings;
    QString _title;
    QString _detail;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
