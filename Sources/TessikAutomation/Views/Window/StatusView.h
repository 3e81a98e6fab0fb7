#pragma once

#include "TessikAutomation/Views/AppObjects.h"
#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QWidget>

namespace tessik {

/// The state of the two MIDI paths to the console, in small print with a lamp each: green when connected, amber while a
/// chosen port is missing, dark without a choice, and a warning sign if the list of problems says more. A click opens
/// the settings.
class StatusView final : public QWidget {
    Q_OBJECT

public:
    StatusView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent = nullptr);
    /// Wide enough for both texts.
    QSize sizeHint() const override;

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Path {
        QString text;
        bool chosen;
        bool connected;
        bool isSound; ///< no other program holds it, and no other port could be meant
    };
    std::array<Path, 2> paths() const;
    void showStatus();

    AppObjects _objects;
    DrawingContext& _drawing;
    std::vector<QPropertyNotifier> _observers;
};

} // namespace tessik
