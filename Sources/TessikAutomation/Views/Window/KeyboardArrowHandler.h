#pragma once

#include <QObject>

#include <functional>
#include <map>

class QWidget;

namespace tessik {

/// The keys of a whole window: arrows page the desk, Space plays or stops, Return goes to the start, letters do as
/// assigned. They are left alone while text is being edited, a menu is open, or Ctrl, Alt or Meta is held, and in
/// dialogs. A list with the keyboard focus keeps all but the letters.
class KeyboardArrowHandler final : public QObject {
    Q_OBJECT

public:
    explicit KeyboardArrowHandler(QWidget& window);

    std::function<void()> onLeft;
    std::function<void()> onRight;
    std::function<void()> onPlayStop;
    std::function<void()> onReturnToStart;
    /// By key, combined with Shift if held.
    std::map<int, std::function<void()>> letters;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    QWidget& _window;
};

} // namespace tessik
