#include "TessikAutomation/Views/Transport/TransportPanelView.h"

#include "TessikAutomation/Session/LocateTarget.h"
#include "TessikAutomation/Views/Controls/UndoStep.h"
#include "TessikAutomation/Views/Drawing/Parts.h"
#include "TessikAutomation/Views/Transport/LocatorRow.h"
#include "TessikAutomation/Views/Transport/TimecodeCounter.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QUndoStack>

namespace tessik {
namespace {

constexpr int panelHeight = 64;
constexpr int margin = 4;
constexpr int keyCount = 7;
constexpr int searchKeys = 4; ///< that find a position; the others start a roll
constexpr int keyHeight = 52;
constexpr int keyGap = 8; ///< between the two kinds

constexpr int gap(HeaderFit fit) { return fit == HeaderFit::symbols ? 4 : 8; }
constexpr int keyWidth(HeaderFit fit) { return fit == HeaderFit::symbols ? PanelButton::widthOf(false) : 40; }

} // namespace

TransportPanelView::TransportPanelView(MTCClock& clock, LocatorStore& locators, TransportManager& transport,
                                       QUndoStack& history, PassEnd passEnd, QWidget* parent)
    : HeaderPart(parent),
      _clock(clock),
      _locators(locators),
      _transport(transport),
      _history(history),
      _passEnd(std::move(passEnd)),
      _counter(new TimecodeCounter(clock, _drawing, this)),
      _startRow(new LocatorRow(QStringLiteral("START"), QStringLiteral("C"), _drawing, this)),
      _endRow(new LocatorRow(QStringLiteral("END"), QStringLiteral("Shift+C"), _drawing, this)) {
    _counter->move(margin, margin);

    const auto command = [this](MMCCommand mmc) { return [this, mmc] { _transport.send(mmc); }; };
    const auto add = [this](const char* icon, const char* legend, const char* name, const char* help,
                            std::function<void()> press) {
        return addKey(QLatin1String(icon), QLatin1String(legend), QLatin1String(name), QLatin1String(help),
                      std::move(press));
    };
    _toStart = add("go-to-start", "START", "Go to start", "", [this] { goToStart(); });
    add("rewind", "REW", "Rewind", "Rewind", command(MMCCommand::rewind));
    add("fast-forward", "FWD", "Fast forward", "Fast Forward", command(MMCCommand::fastForward));
    _toEnd = add("go-to-end", "END", "Go to end", "", [this] { goToEnd(); });
    add("stop", "STOP", "Stop", "Stop  (Space)", command(MMCCommand::stop));
    const Tints& tints = _drawing.look.value()->tints;
    add("play", "PLAY", "Play", "Play  (Space)", command(MMCCommand::play))->setTint(tints.ledGreen);
    PanelButton* record = add("record", "REC", "Record", "Record", command(MMCCommand::recordStrobe));
    record->setTint(tints.ledRed);
    setFit(HeaderFit::legends);

    connectRow(
        *_startRow, QStringLiteral("START"), [this] { return _locators.start.value(); },
        [this](const LocatorStore::Locator& position) { _locators.setStart(position); });
    connectRow(
        *_endRow, QStringLiteral("END"), [this] { return _locators.end.value(); },
        [this](const LocatorStore::Locator& position) { _locators.setEnd(position); });

    const auto look = [this] { refresh(); };
    _observers.push_back(locators.start.addNotifier(look));
    _observers.push_back(locators.end.addNotifier(look));
    _observers.push_back(transport.port.availableDestinations.addNotifier(look));
    _observers.push_back(transport.port.connectedDestinationID.addNotifier(look));
    // The first position enables the capture keys; later ones affect only the counter.
    _observers.push_back(clock.currentPosition.addNotifier([this] {
        if (!_startRow->captureKey().isEnabled()) refresh();
    }));
    refresh();
}

void TransportPanelView::connectRow(LocatorRow& row, const QString& name,
                                    const std::function<LocatorStore::Locator()>& read,
                                    const std::function<void(const LocatorStore::Locator&)>& assign) {
    const auto write = [this, name, read, assign](const LocatorStore::Locator& position) {
        if (read() == position) return assign(position); // nothing to undo
        _history.push(new UndoStep((position ? QStringLiteral("setting %1") : QStringLiteral("clearing %1")).arg(name),
                                   [assign, position] { assign(position); },
                                   [assign, before = read()] { assign(before); }));
    };
    connect(&row.field(), &QAbstractButton::clicked, this, [this, read] {
        if (const LocatorStore::Locator target = read()) _transport.locate(*target);
    });
    connect(&row.captureKey(), &QAbstractButton::clicked, this,
            [this, write] { write(_clock.currentPosition.value()); });
    connect(&row.clearKey(), &QAbstractButton::clicked, this, [write] { write(std::nullopt); });
    row.rate = [this, read] {
        return read().value_or(LocateTarget::start(_locators, _clock.currentPosition.value())).frameRate;
    };
    connect(&row, &LocatorRow::typed, this, [write](const TimecodePosition& position) { write(position); });
}

PanelButton* TransportPanelView::addKey(const QString& icon, const QString& legend, const QString& name,
                                        const QString& help, std::function<void()> press) {
    auto* key = new PanelButton(legend, symbolNamed(icon), _drawing, this);
    _keys.push_back(key);
    key->setAccessibleName(name);
    key->setToolTip(help);
    connect(key, &QAbstractButton::clicked, this, std::move(press));
    return key;
}

std::optional<TimecodePosition> TransportPanelView::songEnd() const {
    return LocateTarget::songEnd(_locators, _passEnd());
}

int TransportPanelView::neededWidth(HeaderFit fit) const {
    return margin + _counter->width() + gap(fit) + _startRow->width() + gap(fit) + keyCount * keyWidth(fit) + keyGap +
           margin;
}

void TransportPanelView::setFit(HeaderFit fit) {
    int x = margin + _counter->width() + gap(fit);
    _startRow->move(x, margin);
    _endRow->move(x, margin + _startRow->height());
    x += _startRow->width() + gap(fit);
    for (int i = 0; i < keyCount; ++i) {
        PanelButton& key = *_keys[std::size_t(i)];
        key.setLegendVisible(fit != HeaderFit::symbols);
        if (i == searchKeys) x += keyGap;
        key.setGeometry(x, (panelHeight - keyHeight) / 2, keyWidth(fit), keyHeight);
        x += keyWidth(fit);
    }
    setFixedSize(neededWidth(fit), panelHeight);
}

void TransportPanelView::bindKeys(KeyboardArrowHandler& keys) {
    keys.onPlayStop = [this] { togglePlay(); };
    keys.onReturnToStart = [this] { goToStart(); };
    keys.letters[Qt::Key_C] = [this] { _startRow->captureKey().click(); };
    keys.letters[(Qt::SHIFT | Qt::Key_C).toCombined()] = [this] { _endRow->captureKey().click(); };
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
    _startRow->setState(_locators.start.value(), hasTimecode, hasTransport);
    _endRow->setState(_locators.end.value(), hasTimecode, hasTransport);
    _toStart->setToolTip(_locators.start.value() ? QStringLiteral("Go to start  (Return)")
                                                 : QStringLiteral("Return to zero  (Return)"));
    const bool hasEnd = songEnd().has_value();
    _toEnd->setEnabled(hasEnd);
    _toEnd->setToolTip(
        (_locators.end.value() ? QStringLiteral("Go to end") : QStringLiteral("Go to end of selected pass")) +
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
