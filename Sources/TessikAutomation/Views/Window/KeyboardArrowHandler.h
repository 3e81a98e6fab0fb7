#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace tessik {

/// The keys of a whole window, whatever in it has the keyboard: arrows page the desk, Space plays or stops, Return goes
/// to the start. They pass while a text is edited, while Ctrl, Alt or Meta is held, and in dialogs and menus.
class KeyboardArrowHandler final : public QObject {
    Q_OBJECT

public:
    explicit KeyboardArrowHandler(QWidget& window);

    std::function<void()> onLeft;
    std::function<void()> onRight;
    std::function<void()> onPlayStop;
    std::function<void()> onReturnToStart;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    const std::function<void()>* action(int key) const;

    QWidget& _window;
};

} // namespace tessik
