#include "TessikAutomation/Views/RigWindow.h"

#include "TessikAutomation/Help/HelpContext.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>

#include <algorithm>

namespace tessik {

namespace {

constexpr int columnWidth = 24;
constexpr int faderTop = 12;
constexpr int faderHeight = 168; // travel of the cap's centre
constexpr int muteTop = faderTop + faderHeight + 16;
constexpr int muteHeight = 16;
constexpr int surfaceHeight = muteTop + muteHeight + 24;

/// All channels in a row.
class RigSurface final : public QWidget {
public:
    explicit RigSurface(SimulatedConsole& desk) : _desk(desk), _kinds(desk.channels()) {
        setFixedSize(int(_kinds.size()) * columnWidth, surfaceHeight);
        setAccessibleName(QStringLiteral("Faders and mutes of the rig's desk"));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0x20, 0x20, 0x22));
        painter.setRenderHint(QPainter::Antialiasing);
        QFont font = painter.font();
        font.setPixelSize(10);
        painter.setFont(font);
        for (std::size_t i = 0; i < _kinds.size(); ++i)
            paintChannel(painter, int(i));
    }

    void mousePressEvent(QMouseEvent* event) override {
        const int column = columnAt(event->position().toPoint());
        if (column < 0) return;
        const ChannelKind kind = _kinds[std::size_t(column)];
        if (event->position().y() >= muteTop - 4) {
            ChannelSwitches switches = _desk.switches(kind);
            switches.chanMuted = !switches.chanMuted;
            _desk.setSwitches(kind, switches);
        } else {
            _held = column;
            mouseMoveEvent(event);
        }
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (_held < 0) return;
        const double travelled = 1 - (event->position().y() - faderTop) / faderHeight;
        _desk.moveFader(_kinds[std::size_t(_held)], std::clamp(int(std::lround(travelled * 127)), 0, 127));
    }
    void mouseReleaseEvent(QMouseEvent*) override { _held = -1; }

private:
    int columnAt(QPoint position) const {
        const int column = position.x() / columnWidth;
        return rect().contains(position) && column < int(_kinds.size()) ? column : -1;
    }

    void paintChannel(QPainter& painter, int column) {
        const ChannelKind kind = _kinds[std::size_t(column)];
        const int x = column * columnWidth;
        const double middle = x + columnWidth / 2.0;
        const auto yOf = [](int value) { return faderTop + faderHeight * (1 - value / 127.0); };

        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x0C, 0x0C, 0x0D));
        painter.drawRoundedRect(QRectF(middle - 1.5, faderTop, 3, faderHeight), 1.5, 1.5);
        painter.setBrush(QColor(0xE8, 0xE6, 0xE0));
        painter.drawRoundedRect(QRectF(x + 5, yOf(_desk.physicalFader(kind)) - 5, columnWidth - 10, 10), 2, 2);
        painter.setBrush(QColor(0xF2, 0xA8, 0x2C));
        painter.drawRect(QRectF(x + 2, yOf(_desk.vca(kind)) - 1, columnWidth - 4, 2));

        const bool muted = _desk.switches(kind).chanMuted;
        painter.setBrush(muted ? QColor(0xE0, 0x3A, 0x30) : QColor(0x3A, 0x3A, 0x3E));
        painter.drawRoundedRect(QRectF(x + 3, muteTop, columnWidth - 6, muteHeight), 3, 3);
        painter.setPen(muted ? Qt::white : QColor(0xB0, 0xB0, 0xB4));
        painter.drawText(QRectF(x, muteTop, columnWidth, muteHeight), Qt::AlignCenter, QStringLiteral("M"));
        painter.setPen(QColor(0xC8, 0xC8, 0xCC));
        painter.drawText(QRectF(x, muteTop + muteHeight, columnWidth, 20), Qt::AlignCenter, kind.displayName());
    }

    SimulatedConsole& _desk;
    const std::vector<ChannelKind> _kinds;
    int _held = -1; // column of the fader under the hand
};

} // namespace

RigWindow::RigWindow(SimulatedConsole& desk, QWidget* parent) : QWidget(parent, Qt::Window), _desk(desk) {
    setHelpContext(*this, HelpContext::rig);
    setWindowTitle(QStringLiteral("Rig Console"));
    auto* surface = new RigSurface(desk);
    auto* scenes = new QHBoxLayout;
    scenes->addWidget(new QLabel(QStringLiteral("Recall scene")));
    for (int scene = 0; scene < SimulatedConsole::sceneCount; ++scene) {
        auto* button = new QPushButton(QString::number(scene + 1));
        button->setMaximumWidth(44);
        button->setAccessibleName(QStringLiteral("Recall scene %1").arg(scene + 1));
        button->setToolTip(
            QStringLiteral("Recall scene %1: the rig's desk takes it and transmits every value").arg(scene + 1));
        connect(button, &QPushButton::clicked, this, [&desk, scene] { desk.recallScene(scene); });
        scenes->addWidget(button);
    }
    scenes->addStretch();
    scenes->addWidget(new QLabel(QStringLiteral("white: the fader under your hand    amber: the VCA")));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(scenes);
    layout->addWidget(surface);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    desk.onChange = [surface] { surface->update(); };
}

void RigWindow::present() {
    adjustSize();
    const QRect room = screen()->availableGeometry().adjusted(0, 0, -16, -48); // with its frame
    if (!std::exchange(_isPlaced, true)) move(room.bottomRight() - rect().bottomRight());
    show();
    raise();
    activateWindow();
}

RigWindow::~RigWindow() { _desk.onChange = nullptr; }

} // namespace tessik
