#include "TessikAutomation/Views/Automation/AutomationPanelView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Automation/ModeKey.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tessik {
namespace {

constexpr int keyWidth = 48;
constexpr int keyHeight = 32;
constexpr int keysTop = 24; ///< below the caption
constexpr int captionTop = 8;
constexpr int keyCount = 4;
constexpr int gap = 8;
constexpr int statusWidth = 136;
constexpr int buttonsWidth = 96;
constexpr int buttonHeight = 28;
constexpr int symbolSide = 12;

void setColor(QLabel* label, const QColor& color) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

} // namespace

AutomationPanelView::AutomationPanelView(PassEngine& engine, ConsoleModel& consoleModel, MTCClock& mtcClock,
                                         DrawingContext& drawing, QWidget* parent)
    : QWidget(parent), _engine(engine), _consoleModel(consoleModel), _mtcClock(mtcClock), _drawing(drawing) {
    setAccessibleName(QStringLiteral("Automation"));
    setFixedHeight(Metrics::headerHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);

    auto* keys = new QHBoxLayout;
    keys->setContentsMargins(0, keysTop, 0, 0);
    keys->setSpacing(0);
    const auto addKey = [&](const char* legend, QColor Tints::*color) {
        auto* key = new ModeKey(QLatin1String(legend), color, drawing, this);
        key->setFixedSize(keyWidth, keyHeight);
        keys->addWidget(key, 0, Qt::AlignTop);
        return key;
    };
    const auto addModeKey = [&](const char* legend, QColor Tints::*color, AutomationMode mode) {
        ModeKey* key = addKey(legend, color);
        connect(key, &QAbstractButton::clicked, this,
                [this, mode] { _engine.mode = _engine.mode.value() == mode ? AutomationMode::off : mode; });
        return key;
    };
    _write = addModeKey("WRITE", &Tints::ledRed, AutomationMode::write);
    _update = addModeKey("UPDATE", &Tints::ledAmber, AutomationMode::update);
    _read = addModeKey("READ", &Tints::ledGreen, AutomationMode::read);
    _null = addKey("NULL", &Tints::ledBlue);
    connect(_null, &QAbstractButton::clicked, this, [this] { _engine.setNullEnabled(!_engine.nullEnabled.value()); });
    setHelpContext(*this, HelpContext::recording);
    setHelpContext(*_read, HelpContext::playback);
    setHelpContext(*_null, HelpContext::nulling);
    layout->addLayout(keys);

    auto* lines = new QWidget(this);
    lines->setMinimumWidth(0);
    lines->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* linesLayout = new QVBoxLayout(lines);
    linesLayout->setContentsMargins(0, 0, 0, 0);
    linesLayout->setSpacing(3);
    const auto addLine = [&](const char* name, int size, QFont::Weight weight, qreal spacing, QWidget* in) {
        auto* line = new QLabel(in);
        line->setObjectName(QLatin1String(name));
        line->setFont(Type::font(size, weight, spacing));
        line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        return line;
    };
    _title = addLine("status", 11, QFont::Bold, 0.4, lines); // 8 point
    _detail = addLine("statusDetail", 11, QFont::Medium, 0, lines);
    _warning = new QWidget(lines);
    _warning->setObjectName(QStringLiteral("unsynced"));
    setHelpContext(*_warning, HelpContext::unsyncedChannels);
    _warningSymbol = new QLabel(_warning);
    _warningText = addLine("unsyncedText", 10, QFont::DemiBold, 0, _warning);
    auto* warningLayout = new QHBoxLayout(_warning);
    warningLayout->setContentsMargins(0, 0, 0, 0);
    warningLayout->setSpacing(4);
    warningLayout->addWidget(_warningSymbol);
    warningLayout->addWidget(_warningText, 1);
    linesLayout->addStretch(1);
    linesLayout->addWidget(_title);
    linesLayout->addWidget(_detail);
    linesLayout->addWidget(_warning);
    linesLayout->addStretch(1);
    layout->addWidget(lines, 1);

    _buttons = new QVBoxLayout;
    _buttons->setContentsMargins(0, 0, 0, 0);
    _buttons->setSpacing(4);
    _buttons->addStretch(1);
    _buttons->addStretch(1);
    layout->addLayout(_buttons);

    const auto keysChanged = [this] { showKeys(); };
    const auto statusChanged = [this] { showStatus(); };
    const auto unsyncedChanged = [this] { countUnsynced(); };
    _observers.push_back(engine.mode.addNotifier([this] {
        showKeys();
        showStatus();
        showWarning();
    }));
    _observers.push_back(engine.selectedPass.addNotifier([this] {
        showKeys();
        showStatus();
    }));
    _observers.push_back(engine.nullEnabled.addNotifier(keysChanged));
    _observers.push_back(engine.isRolling.addNotifier(statusChanged));
    _observers.push_back(engine.hasFrameRateMismatch.addNotifier(statusChanged));
    _observers.push_back(engine.recordedEventCount.addNotifier(statusChanged));
    _observers.push_back(consoleModel.modelSize.addNotifier(unsyncedChanged));
    for (const auto* channels : {&consoleModel.inputs(), &consoleModel.groups()})
        for (ChannelState* channel : *channels)
            _observers.push_back(channel->lastUpdate.addNotifier(unsyncedChanged));
    _observers.push_back(consoleModel.stereo().lastUpdate.addNotifier(unsyncedChanged));
    _observers.push_back(drawing.look.addNotifier([this] {
        showStatus();
        showWarning();
        update();
    }));
    showKeys();
    showStatus();
    countUnsynced();
}

QSize AutomationPanelView::sizeHint() const {
    return {keyCount * keyWidth + gap + statusWidth + gap + _keysWidth + buttonsWidth, Metrics::headerHeight};
}

QSize AutomationPanelView::minimumSizeHint() const { return sizeHint() - QSize(statusWidth + gap, 0); }

PanelButton& AutomationPanelView::addKey(const QString& legend, const QString& symbol) {
    auto* key = new PanelButton(legend, symbolNamed(symbol), _drawing, this);
    key->setFixedSize(key->sizeHint().width() - gap, key->sizeHint().height());
    auto* row = static_cast<QHBoxLayout*>(layout());
    row->insertWidget(row->count() - 1, key);
    _keysWidth += key->width() + gap;
    return *key;
}

SymbolButton& AutomationPanelView::addButton(const QString& symbol, const QString& text) {
    auto* button = new SymbolButton(SymbolButton::Face::plate, symbol, text, _drawing, this);
    button->setFixedSize(buttonsWidth, buttonHeight);
    _buttons->insertWidget(_buttons->count() - 1, button);
    return *button;
}

void AutomationPanelView::showKeys() {
    const AutomationMode mode = _engine.mode.value();
    const bool hasPass = _engine.selectedPass.value().has_value();
    const QString selectFirst = QStringLiteral("Select a pass in the Passes list first");
    _write->setChecked(mode == AutomationMode::write);
    _write->setToolTip(QStringLiteral("Record a new pass -- captures fader/switch moves as absolute positions"));
    const auto showPassKey = [&](ModeKey* key, AutomationMode keyMode, const QString& help) {
        key->setChecked(mode == keyMode);
        key->setEnabled(hasPass || mode == keyMode); // what is armed can be switched off
        key->setToolTip(hasPass ? help : selectFirst);
    };
    showPassKey(_update, AutomationMode::update,
                QStringLiteral("Play the selected pass and record fader moves as offsets from it"));
    showPassKey(_read, AutomationMode::read, QStringLiteral("Play the selected pass back to the console"));
    _null->setEnabled(needsPass(mode));
    _null->setChecked(_engine.nullEnabled.value());
    _null->setToolTip(needsPass(mode)
                          ? QStringLiteral("Hold playback off the app's fader position so the channel arrows show "
                                           "which way to move the physical fader to match the automation")
                          : QStringLiteral("NULL works with READ or UPDATE engaged"));
}

AutomationPanelView::Status AutomationPanelView::status() const {
    if (_engine.mode.value() == AutomationMode::off)
        return {QStringLiteral("AUTOMATION OFF"), {}, {}, &Tints::secondaryText};
    const auto& pass = _engine.selectedPass.value();
    const auto& position = _mtcClock.currentPosition.value();
    if (_engine.hasFrameRateMismatch.value() && pass && position) {
        const QString passRate = description(pass->frameRate);
        const QString tapeRate = description(position->frameRate);
        return {QStringLiteral("WRONG FRAME RATE"), QStringLiteral("pass %1, tape %2").arg(passRate, tapeRate),
                QStringLiteral("The selected pass was recorded at %1, but timecode runs at %2. The pass is not played.")
                    .arg(passRate, tapeRate),
                &Tints::warning};
    }
    if (!_engine.isRolling.value())
        return {QStringLiteral("ARMED"), QStringLiteral("waiting for timecode"), {}, &Tints::warning};
    return {QStringLiteral("ACTIVE"),
            records(_engine.mode.value()) ? QStringLiteral("%1 events").arg(_engine.recordedEventCount.value())
                                          : QString(),
            {},
            &Tints::active};
}

void AutomationPanelView::showStatus() {
    const Tints& tints = _drawing.look.value()->tints;
    const Status now = status();
    _title->setText(now.title);
    setColor(_title, tints.*now.color);
    _detail->setText(now.detail);
    setColor(_detail, tints.secondaryText);
    _detail->setVisible(!now.detail.isEmpty());
    for (QLabel* line : {_title, _detail})
        line->setToolTip(now.help);
    setAccessibleDescription(now.title + QLatin1Char(' ') + now.detail);
}

void AutomationPanelView::countUnsynced() {
    const int count = _engine.unsyncedChannelCount();
    if (count == _unsynced) return;
    _unsynced = count;
    showWarning();
}

void AutomationPanelView::showWarning() {
    static const Symbol triangle = symbolNamed(QStringLiteral("warning"));
    const AutomationMode mode = _engine.mode.value();
    const bool isShown = _unsynced > 0 && (mode == AutomationMode::off || records(mode));
    _warning->setVisible(isShown);
    if (!isShown) return;
    const QColor color = _drawing.look.value()->tints.warning;
    QPixmap symbol(QSize(symbolSide, symbolSide) * devicePixelRatioF());
    symbol.setDevicePixelRatio(devicePixelRatioF());
    symbol.fill(Qt::transparent);
    QPainter painter(&symbol);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    triangle(painter, QRectF(QPointF(), QSizeF(symbol.size())), color);
    painter.end();
    _warningSymbol->setPixmap(symbol);
    _warningText->setText(QStringLiteral("%1 channels not synced").arg(_unsynced));
    setColor(_warningText, color);
    _warning->setToolTip(QStringLiteral("The app has never received data from %1 channel(s), so it doesn't know their "
                                        "real positions. Recording now stamps a wrong baseline and playback won't "
                                        "match. Sync first: recall a scene on the console, or Zero Console → Send to "
                                        "Console.")
                             .arg(_unsynced));
}

void AutomationPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    Type::draw(painter, canvas.px(QRectF(2, captionTop, keyCount * keyWidth, 12)), Qt::AlignLeft,
               QStringLiteral("AUTOMATION"), Type::font(9 * canvas.scale, QFont::DemiBold, 0.9 * canvas.scale),
               canvas.look.tints.secondaryText);
}

} // namespace tessik
