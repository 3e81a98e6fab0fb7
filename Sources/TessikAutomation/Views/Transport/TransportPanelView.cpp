#include "TessikAutomation/Views/Transport/TransportPanelView.h"

#include "TessikAutomation/Session/LocateTarget.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Transport/LocatorRow.h"
#include "TessikAutomation/Views/Transport/TimecodeCounter.h"
#include "TessikAutomation/Views/Transport/TransportIcon.h"

namespace tessik {
namespace {

constexpr int panelHeight = 64;
constexpr int margin = 4;
constexpr int rowsLeft = 208;
constexpr int keysLeft = 416;
constexpr int keyWidth = 40;
constexpr int keyHeight = 52;
constexpr int keyGap = 8; ///< between finding a place and rolling from it

} // namespace

TransportPanelView::TransportPanelView(MTCClock& clock, LocatorStore& locators, TransportManager& transport,
                                       PassEnd passEnd, QWidget* parent)
    : QWidget(parent),
      _clock(clock),
      _locators(locators),
      _transport(transport),
      _passEnd(std::move(passEnd)),
      _startRow(new LocatorRow(QStringLiteral("START"), _drawing, this)),
      _endRow(new LocatorRow(QStringLiteral("END"), _drawing, this)) {
    auto* counter = new TimecodeCounter(clock, _drawing, this);
    counter->move(margin, margin);
    _startRow->move(rowsLeft, margin);
    _endRow->move(rowsLeft, margin + _startRow->height());

    const auto command = [this](MMCCommand mmc) { return [this, mmc] { _transport.send(mmc); }; };
    auto add = [this, x = keysLeft](const char* icon, const char* legend, const char* name, const char* help,
                                    std::function<void()> press, int gap = 0) mutable {
        PanelButton* key = addKey(x += gap, QLatin1String(icon), QLatin1String(legend), QLatin1String(name),
                                  QLatin1String(help), std::move(press));
        x += keyWidth;
        return key;
    };
    _toStart = add("go-to-start", "START", "Go to start", "", [this] { goToStart(); });
    add("rewind", "REW", "Rewind", "Rewind", command(MMCCommand::rewind));
    add("fast-forward", "FWD", "Fast forward", "Fast Forward", command(MMCCommand::fastForward));
    _toEnd = add("go-to-end", "END", "Go to end", "", [this] { goToEnd(); });
    add("stop", "STOP", "Stop", "Stop  (Space)", command(MMCCommand::stop), keyGap);
    const Tints& tints = _drawing.look.value()->tints;
    add("play", "PLAY", "Play", "Play  (Space)", command(MMCCommand::play))->setTint(tints.ledGreen);
    PanelButton* record = add("record", "REC", "Record", "Record", command(MMCCommand::recordStrobe));
    record->setTint(tints.ledRed);
    setFixedSize(record->geometry().right() + 1 + margin, panelHeight);

    connectRow(
        *_startRow, [this] { return _locators.start(); },
        [this](const LocatorStore::Locator& position) { _locators.setStart(position); });
    connectRow(
        *_endRow, [this] { return _locators.end(); },
        [this](const LocatorStore::Locator& position) { _locators.setEnd(position); });

    const auto look = [this] { refresh(); };
    _observers.push_back(locators.bindableStart().addNotifier(look));
    _observers.push_back(locators.bindableEnd().addNotifier(look));
    _observers.push_back(transport.port.availableDestinations.addNotifier(look));
    _observers.push_back(transport.port.connectedDestinationID.addNotifier(look));
    // The first position opens the capture keys; all later ones concern the counter alone.
    _observers.push_back(clock.currentPosition.addNotifier([this] {
        if (!_startRow->captureKey().isEnabled()) refresh();
    }));
    refresh();
}

void TransportPanelView::connectRow(LocatorRow& row, std::function<LocatorStore::Locator()> read,
                                    std::function<void(const LocatorStore::Locator&)> write) {
    connect(&row.field(), &QAbstractButton::clicked, this, [this, read] {
        if (const LocatorStore::Locator target = read()) _transport.locate(*target);
    });
    connect(&row.captureKey(), &QAbstractButton::clicked, this,
            [this, write] { write(_clock.currentPosition.value()); });
    connect(&row.clearKey(), &QAbstractButton::clicked, this, [write] { write(std::nullopt); });
}

PanelButton* TransportPanelView::addKey(int x, const QString& icon, const QString& legend, const QString& name,
                                        const QString& help, std::function<void()> press) {
    auto* key = new PanelButton(legend, transportIcon(icon), _drawing, this);
    key->setGeometry(x, (panelHeight - keyHeight) / 2, keyWidth, keyHeight);
    key->setAccessibleName(name);
    key->setToolTip(help);
    connect(key, &QAbstractButton::clicked, this, std::move(press));
    return key;
}

std::optional<TimecodePosition> TransportPanelView::songEnd() const {
    return LocateTarget::songEnd(_locators, _passEnd());
}

void TransportPanelView::togglePlay() {
    _transport.send(_clock.isRunning.value() ? MMCCommand::stop : MMCCommand::play);
}

void TransportPanelView::goToStart() {
    _transport.locate(LocateTarget::start(_locators, _clock.currentPosition.value()));
}

void TransportPanelView::goToEnd() {
    if (const auto target = songEnd()) _transport.locate(*target);
}

void TransportPanelView::refresh() {
    const bool hasTimecode = _clock.currentPosition.value().has_value();
    const bool hasTransport = _transport.port.isReachable();
    _startRow->setState(_locators.start(), hasTimecode, hasTransport);
    _endRow->setState(_locators.end(), hasTimecode, hasTransport);
    _toStart->setToolTip(_locators.start() ? QStringLiteral("Go to start  (Return)")
                                           : QStringLiteral("Return to zero  (Return)"));
    const bool hasEnd = songEnd().has_value();
    _toEnd->setEnabled(hasEnd);
    _toEnd->setToolTip((_locators.end() ? QStringLiteral("Go to end") : QStringLiteral("Go to end of selected pass")) +
                       (hasEnd ? QString() : QStringLiteral(" -- not set yet")));
}

void TransportPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = canvas.look;
    Parts::raisedPlate(painter, canvas.px(QRectF(rect())), canvas.scale, look.tints.headerBottom, look.tints);
}

} // namespace tessik
