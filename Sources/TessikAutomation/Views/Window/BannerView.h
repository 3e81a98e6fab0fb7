#pragma once

#include "TessikAutomation/Views/Drawing/Canvas.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace tessik {

/// One line below the header that tells of a problem and offers what can be done about it.
class BannerView final : public QWidget {
    Q_OBJECT

public:
    explicit BannerView(DrawingContext& drawing, QWidget* parent = nullptr);

    /// An empty `actionText` offers nothing but to dismiss the line.
    void setMessage(const QString& text, const QString& actionText, std::function<void()> action);

Q_SIGNALS:
    void dismissed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void applyLook();

    DrawingContext& _drawing;
    QLabel* _text;
    QPushButton* _actionButton;
    QPushButton* _dismiss;
    std::function<void()> _action;
    QPropertyNotifier _lookObserver;
};

} // namespace tessik
