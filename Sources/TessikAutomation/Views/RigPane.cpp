#include "TessikAutomation/Views/RigPane.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Controls/ConsoleToggle.h"
#include "TessikAutomation/Views/Controls/ControlHost.h"
#include "TessikAutomation/Views/Controls/FaderTrackView.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"
#include "TessikAutomation/Views/Controls/TextButton.h"
#include "TessikAutomation/Views/Desk/StripSubject.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"
#include "TessikAutomation/Views/Window/MainWindow.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tessik {
namespace {

using namespace std::chrono_literals;
using Subject = RigPane::Subject;

constexpr std::chrono::milliseconds refreshTime = 33ms;
constexpr QSize minSurface(980, 92);
constexpr int surfaceHeight = 132;
constexpr int titleHeight = 28;
constexpr int nameHeight = 14;
constexpr int muteHeight = 16;
constexpr int muteMargin = 3;
constexpr int top = 4;
constexpr int gap = 3;
constexpr QSize capSize(16, 10);
constexpr int lineHeight = 3;
constexpr char capSprite = 0; // its address identifies the caps, which all faders share

// ---- a column for each channel

QRect columnRect(QSize panel, int column) {
    const int width = panel.width() / channelCount;
    return {(panel.width() - width * channelCount) / 2 + column * width, 0, width, panel.height()};
}
QRect nameRect(QSize panel, int column) {
    const QRect whole = columnRect(panel, column);
    return {whole.x(), whole.bottom() + 1 - nameHeight, whole.width(), nameHeight};
}
QRect muteRect(QSize panel, int column) {
    const QRect name = nameRect(panel, column);
    return QRect(name.x(), name.y() - muteHeight, name.width(), muteHeight).adjusted(muteMargin, 0, -muteMargin, 0);
}
QRect faderRect(QSize panel, int column) {
    const QRect whole = columnRect(panel, column);
    return {whole.x(), top, whole.width(), muteRect(panel, column).y() - gap - top};
}

/// Geometry and keys of the desk's faders, but with a small cap and no scale.
FaderTrackView travel() {
    FaderTrackView fader;
    fader.capHeight = capSize.height();
    fader.tickFractions = {};
    return fader;
}

/// The physical fader.
class RigFader final : public ControlView {
public:
    void paintStatic(Canvas& canvas, const QRect& rect) const override {
        const int half = capSize.height() / 2;
        const QRect groove(rect.x() + rect.width() / 2 - 2, rect.y() + half, 4, rect.height() - 2 * half);
        Parts::recess(canvas.painter, canvas.px(QRectF(groove)), canvas.scale, canvas.look.tints.slotFloor,
                      2 * canvas.scale, canvas.look);
    }
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override {
        const QRect cap = canvas.px(QRectF(capRect(rect, state.value)));
        canvas.sprite(&capSprite, 0, cap.topLeft(), cap.size(), [&](QPainter& painter) {
            const QRect own(QPoint(), cap.size());
            Parts::raisedPlate(painter, own, canvas.scale, canvas.look.tints.capLine, canvas.look.tints);
            painter.fillRect(QRect(own.x(), own.center().y(), own.width(), canvas.line()), Qt::black);
        });
    }
    QRect movingRect(const QRect& rect, const ControlValue& value) const override { return capRect(rect, value); }
    QRect focusRect(const QRect& rect, const ControlValue& value) const override {
        return capRect(rect, value).adjusted(-2, -2, 2, 2);
    }
    Operation operation() const override { return Operation::drag; }
    double dragged(const QRect& rect, const Drag& drag) const override { return _travel.dragged(rect, drag); }
    std::optional<double> keyed(int key, bool fine, double number) const override {
        return _travel.keyed(key, fine, number);
    }
    QAccessible::Role role() const override { return QAccessible::Slider; }
    QString valueText(const ControlValue& value) const override { return _travel.valueText(value); }
    Range range() const override { return _travel.range(); }

private:
    QRect capRect(const QRect& rect, const ControlValue& value) const {
        QRect cap(QPoint(), capSize);
        cap.moveCenter({rect.x() + rect.width() / 2, qRound(_travel.centreY(rect, value.number / 127))});
        return cap;
    }

    const FaderTrackView _travel = travel();
};

/// Where the VCA stands.
class RigVCA final : public ControlView {
public:
    void paintMoving(Canvas& canvas, const QRect& rect, const ControlState& state) const override {
        const QRect line = canvas.px(QRectF(lineRect(rect, state.value)));
        const int edge = canvas.line();
        canvas.painter.fillRect(line, withAlpha(Qt::black, 0.6));
        canvas.painter.fillRect(line.adjusted(0, edge, 0, -edge), canvas.look.tints.ledAmber);
    }
    QRect movingRect(const QRect& rect, const ControlValue& value) const override { return lineRect(rect, value); }
    QAccessible::Role role() const override { return QAccessible::StatusBar; }
    QString valueText(const ControlValue& value) const override { return _travel.valueText(value); }

private:
    QRect lineRect(const QRect& rect, const ControlValue& value) const {
        const int y = qRound(_travel.centreY(rect, value.number / 127));
        return {rect.x() + 2, y - lineHeight / 2 - 1, rect.width() - 4, lineHeight + 2};
    }

    const FaderTrackView _travel = travel();
};

template <typename Read>
ControlBinding bind(const Subject& subject, ChannelKind kind, const char* what, const Read& read,
                    const std::function<void(double)>& write = {}) {
    return {.name = QStringLiteral("Rig, ") + spokenName(kind) + QLatin1String(what),
            .read =
                [desk = subject.desk, read] {
                    return ControlValue{double(read(*desk)), {}};
                },
            .write = write,
            .watch = watching(*subject.changes)};
}

ControlTable<Subject> makeTable(const std::vector<ChannelKind>& kinds) {
    ControlTable<Subject> table;
    for (int column = 0; column < int(kinds.size()); ++column) {
        const ChannelKind kind = kinds[std::size_t(column)];
        const auto fader = [column](QSize panel) { return faderRect(panel, column); };
        table.add(QStringLiteral("fader.") + kind.id(), RigFader(), fader, [kind](const Subject& subject) {
            return bind(
                subject, kind, ", fader", [kind](SimulatedConsole& desk) { return desk.physicalFader(kind); },
                [kind, desk = subject.desk](double value) { desk->moveFader(kind, int(std::lround(value))); });
        });
        table.add(QStringLiteral("vca.") + kind.id(), RigVCA(), fader, [kind](const Subject& subject) {
            return bind(subject, kind, ", VCA", [kind](SimulatedConsole& desk) { return desk.vca(kind); });
        });
        table.add(
            QStringLiteral("mute.") + kind.id(), ConsoleToggle(QStringLiteral("M"), &Tints::ledRed, false),
            [column](QSize panel) { return muteRect(panel, column); },
            [kind](const Subject& subject) {
                return bind(
                    subject, kind, ", MUTE", [kind](SimulatedConsole& desk) { return desk.switches(kind).chanMuted; },
                    [kind, desk = subject.desk](double on) {
                        ChannelSwitches switches = desk->switches(kind);
                        switches.chanMuted = on != 0;
                        desk->setSwitches(kind, switches);
                    });
            });
    }
    table.kind.paintFace = [kinds](Canvas& canvas, QSize panel) {
        const Look& look = canvas.look;
        canvas.painter.fillRect(canvas.px(QRectF(QPointF(), panel)), look.railColor());
        for (int column = 0; column < int(kinds.size()); ++column) {
            Parts::modulePanel(canvas.painter, canvas.px(QRectF(columnRect(panel, column))), canvas.scale,
                               look.palette.faderBankBackground, look);
            Type::draw(canvas.painter, canvas.px(QRectF(nameRect(panel, column))), Qt::AlignHCenter,
                       kinds[std::size_t(column)].displayName(), Type::font(9 * canvas.scale, QFont::DemiBold),
                       look.tints.legend);
        }
    };
    return table;
}

} // namespace

RigPane::RigPane(SimulatedConsole& desk, MainWindow& window)
    : QDockWidget(QStringLiteral("Rig Console"), &window),
      _table(makeTable(desk.channels())),
      _surface(new ControlHost(_table.kind, _table.bind({&desk, &_changes}), window.drawing(), this)) {
    setObjectName(QStringLiteral("rig")); // under which the window remembers its place
    setHelpContext(*this, HelpContext::rig);
    setAllowedAreas(Qt::TopDockWidgetArea | Qt::BottomDockWidgetArea);
    _surface->setAccessibleName(QStringLiteral("Faders and mutes of the rig's desk"));
    _surface->setMinimumSize(minSurface);
    setWidget(_surface);
    setTitleBarWidget(makeTitleBar(desk, window));
    window.addDockWidget(Qt::BottomDockWidgetArea, this);
    window.resizeDocks({this}, {surfaceHeight + titleHeight}, Qt::Vertical);

    _showChanges.setSingleShot(true);
    _showChanges.callOnTimeout([this] { _changes = _changes.value() + 1; });
    _deskListener = desk.changed.connect([this] {
        if (!_showChanges.isActive()) _showChanges.start(refreshTime);
    });
}

QWidget* RigPane::makeTitleBar(SimulatedConsole& desk, MainWindow& window) {
    auto* bar = new QWidget(this);
    bar->setFixedHeight(titleHeight);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(8, 0, 4, 0);
    layout->setSpacing(4);
    const auto print = [&](const QString& text, QFont::Weight weight) {
        auto* label = new QLabel(text, bar);
        label->setFont(Type::font(11, weight));
        layout->addWidget(label);
    };
    print(windowTitle(), QFont::DemiBold);
    layout->addSpacing(12);
    print(QStringLiteral("Recall scene"), QFont::Medium);
    for (int scene = 0; scene < SimulatedConsole::sceneCount; ++scene) {
        auto* button = new TextButton(QString::number(scene + 1), "scene", bar);
        button->setAccessibleName(QStringLiteral("Recall scene %1").arg(scene + 1));
        button->setToolTip(
            QStringLiteral("Recall scene %1: the rig's desk takes it and transmits every value").arg(scene + 1));
        connect(button, &QPushButton::clicked, this, [&desk, scene] { desk.recallScene(scene); });
        layout->addWidget(button);
    }
    layout->addStretch(1);
    print(QStringLiteral("white: the fader under your hand    amber: the VCA"), QFont::Medium);
    const auto addKey = [&](Symbol symbol, const QString& name) {
        auto* key = new PanelButton({}, std::move(symbol), window.drawing(), bar);
        key->setFixedSize(titleHeight, titleHeight - 4);
        key->setAccessibleName(name);
        key->setToolTip(name);
        layout->addWidget(key);
        return key;
    };
    connect(addKey(symbolNamed(QStringLiteral("float")), QStringLiteral("Float or dock the rig's console")),
            &QAbstractButton::clicked, this, [this] { setFloating(!isFloating()); });
    connect(addKey(symbolNamed(QStringLiteral("clear")), QStringLiteral("Close the rig's console")),
            &QAbstractButton::clicked, this, &QWidget::close);
    const auto dress = [bar, &drawing = window.drawing()] {
        AppStyle::applySheet(*bar,
                             QStringLiteral("QLabel { color: @secondary; }"
                                            "QPushButton { background: @field; color: @text; border: 1px solid"
                                            " @fieldEdge; border-radius: 3px; min-width: 22px; padding: 1px 0; }"
                                            "QPushButton:hover { background: @hover; }"
                                            "QPushButton:focus { border-color: @accent; }"),
                             *drawing.look.value());
    };
    dress();
    _observers.push_back(window.drawing().look.addNotifier(dress));
    return bar;
}

} // namespace tessik
