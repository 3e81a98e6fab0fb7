#include "TessikAutomation/Views/Automation/AutomationPanelView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Automation/ModeKey.h"
#include "TessikAutomation/Views/Controls/AccessibleRole.h"
#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Window/KeyboardArrowHandler.h"

#include <QHBoxLayout>
#include <QLabel>

#include <cmath>

namespace tessik {
namespace {

constexpr int keyHeight = 32;
constexpr int keysTop = 24; ///< below the caption
constexpr int captionTop = 8;
constexpr int keyCount = 4;
constexpr int gap = 8;
constexpr int buttonGap = 4;
constexpr int minButtonWidth = 96;
constexpr int symbolSide = 12;
constexpr int symbolGap = 4;

constexpr int keyWidth(HeaderFit fit) { return fit == HeaderFit::symbols ? 40 : 48; }
constexpr int heightOf(HeaderFit fit) {
    return fit == HeaderFit::rows ? Metrics::headerSecondRowHeight : Metrics::headerHeight;
}
/// The low row has no room for legends.
constexpr bool hasLegend(HeaderFit fit) { return fit == HeaderFit::legends; }
int addedKeyWidth(HeaderFit fit) { return PanelButton::widthOf(hasLegend(fit)); }
int addedButtonWidth(const SymbolButton& button, HeaderFit fit) {
    return fit == HeaderFit::symbols ? PanelButton::widthOf(false) : std::max(minButtonWidth, button.widthWithText());
}

QString unsyncedText(int count) { return QStringLiteral("%1 channels not synced").arg(count); }
int widthOf(const QLabel* line, const QString& text) {
    return int(std::ceil(QFontMetricsF(line->font()).horizontalAdvance(text)));
}

void setColor(QLabel* label, const QColor& color) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

} // namespace

AutomationPanelView::AutomationPanelView(PassEngine& engine, ConsoleModel& consoleModel, MTCClock& mtcClock,
                                         DrawingContext& drawing, QWidget* parent)
    : HeaderPart(parent), _engine(engine), _consoleModel(consoleModel), _mtcClock(mtcClock), _drawing(drawing) {
    setAccessibleName(QStringLiteral("Automation"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);

    _modeKeys = new QHBoxLayout;
    _modeKeys->setSpacing(0);
    const auto addKey = [&](const char* legend, QColor Tints::*color) {
        auto* key = new ModeKey(QLatin1String(legend), color, drawing, this);
        _modeKeys->addWidget(key, 0, Qt::AlignTop);
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
    layout->addLayout(_modeKeys);

    _status = new QWidget(this);
    auto* statusLines = new QVBoxLayout(_status);
    statusLines->setContentsMargins(0, 0, 0, 0);
    statusLines->setSpacing(2);
    const auto addLine = [&](const char* name, int size, QFont::Weight weight, qreal spacing, QWidget* in) {
        auto* line = new QLabel(in);
        line->setObjectName(QLatin1String(name));
        line->setFont(Type::font(size, weight, spacing));
        line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        return line;
    };
    _title = addLine("status", 11, QFont::Bold, 0.4, _status); // 8 point
    _detail = addLine("statusDetail", 11, QFont::Medium, 0, _status);
    _detail->setWordWrap(true);
    _warning = new QWidget(this);
    _warning->setObjectName(QStringLiteral("unsynced"));
    setAccessibleRole(*_warning, QAccessible::StatusBar);
    setHelpContext(*_warning, HelpContext::unsyncedChannels);
    _warningSymbol = new QLabel(_warning);
    _warningText = addLine("unsyncedText", 10, QFont::DemiBold, 0, _warning);
    auto* warningLayout = new QHBoxLayout(_warning);
    warningLayout->setContentsMargins(0, 0, 0, 0);
    warningLayout->setSpacing(symbolGap);
    warningLayout->addWidget(_warningSymbol);
    warningLayout->addWidget(_warningText, 1);
    statusLines->addWidget(_title);
    statusLines->addWidget(_detail);
    auto* middle = new QVBoxLayout;
    _lines = new QVBoxLayout;
    _lines->setSpacing(3);
    _lines->addWidget(_status);
    _lines->addWidget(_warning);
    middle->addStretch(1);
    middle->addLayout(_lines);
    middle->addStretch(1);
    layout->addLayout(middle);
    layout->addStretch(1);

    auto* right = new QVBoxLayout;
    _buttons = new QVBoxLayout;
    _buttons->setSpacing(buttonGap);
    right->addStretch(1);
    right->addLayout(_buttons);
    right->addStretch(1);
    layout->addLayout(right);

    const auto keysChanged = [this] { showKeys(); };
    const auto statusChanged = [this] { showStatus(); };
    const auto unsyncedChanged = [this] { countUnsynced(); };
    _observers.push_back(engine.mode.addNotifier([this] {
        showKeys();
        showStatus();
        showWarning();
    }));
    _observers.push_back(engine.playedPass.addNotifier([this] {
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
    setFit(HeaderFit::legends);
}

void AutomationPanelView::bindKeys(KeyboardArrowHandler& keys) {
    const std::pair<Qt::Key, ModeKey*> letters[]{
        {Qt::Key_W, _write}, {Qt::Key_U, _update}, {Qt::Key_R, _read}, {Qt::Key_N, _null}};
    for (const auto& [letter, key] : letters)
        keys.letters[letter] = [pressed = key] { pressed->click(); };
}

int AutomationPanelView::neededWidth(HeaderFit fit) const {
    int width = keyCount * keyWidth(fit) + gap + statusWidth(fit) + gap;
    width += int(_addedKeys.size()) * (addedKeyWidth(fit) + gap);
    int widest = 0, all = -buttonGap;
    for (const SymbolButton* button : _addedButtons) {
        widest = std::max(widest, addedButtonWidth(*button, fit));
        all += addedButtonWidth(*button, fit) + buttonGap;
    }
    return Metrics::toGridUp(width + (fit == HeaderFit::rows ? all : widest));
}

/// Room for anything that may appear there, so that the keys beside it stay put; a longer text takes more.
int AutomationPanelView::statusWidth(HeaderFit fit) const {
    const bool isRow = fit == HeaderFit::rows;
    int width = std::max(widthOf(_title, QStringLiteral("WRONG FRAME RATE")), widthOf(_title, _title->text()));
    width = std::max(width, widthOf(_detail, isRow ? QStringLiteral("pass 29.97 fps (drop), tape 30 fps")
                                                   : QStringLiteral("pass 29.97 fps (drop),")));
    return Metrics::toGridUp(isRow ? width + gap + warningWidth() : std::max(width, warningWidth()));
}

int AutomationPanelView::warningWidth() const {
    return symbolSide + symbolGap + widthOf(_warningText, unsyncedText(channelCount));
}

void AutomationPanelView::setFit(HeaderFit fit) {
    _fit = fit;
    const bool isRow = fit == HeaderFit::rows;
    _modeKeys->setContentsMargins(0, isRow ? (heightOf(fit) - keyHeight) / 2 : keysTop, 0, 0);
    for (ModeKey* key : {_write, _update, _read, _null})
        key->setFixedSize(keyWidth(fit), keyHeight);
    _lines->setDirection(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    const int width = statusWidth(fit);
    _status->setFixedWidth(isRow ? width - gap - warningWidth() : width);
    _warning->setFixedWidth(isRow ? warningWidth() : width);
    for (PanelButton* key : _addedKeys) {
        key->setLegendVisible(hasLegend(fit));
        key->setFixedSize(addedKeyWidth(fit), isRow ? keyHeight : key->sizeHint().height());
    }
    for (SymbolButton* button : _addedButtons) {
        button->setLegendVisible(fit != HeaderFit::symbols);
        button->setMinimumWidth(addedButtonWidth(*button, fit));
    }
    _buttons->setDirection(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    setFixedHeight(heightOf(fit));
    update();
}

bool AutomationPanelView::event(QEvent* event) {
    const bool handled = HeaderPart::event(event);
    if (event->type() == QEvent::LayoutRequest) refit(); // a button's text changed
    return handled;
}

void AutomationPanelView::refit() {
    setFit(_fit);
    if (const int width = neededWidth(_fit); std::exchange(_fitWidth, width) != width) updateGeometry();
}

PanelButton& AutomationPanelView::addKey(const QString& legend, const QString& symbol) {
    auto* key = new PanelButton(legend, symbolNamed(symbol), _drawing, this);
    auto* row = static_cast<QHBoxLayout*>(layout());
    row->insertWidget(row->count() - 1, key);
    _addedKeys.push_back(key);
    refit();
    return *key;
}

SymbolButton& AutomationPanelView::addButton(const QString& symbol, const QString& text) {
    auto* button = new SymbolButton(SymbolButton::Face::plate, symbol, text, _drawing, this);
    _buttons->addWidget(button);
    _addedButtons.push_back(button);
    refit();
    return *button;
}

void AutomationPanelView::showKeys() {
    const AutomationMode mode = _engine.mode.value();
    const bool hasPass = _engine.playedPass.value().has_value();
    const QString selectFirst = QStringLiteral("Select a pass in the Passes list first");
    const auto explain = [](ModeKey* key, const QString& help, char letter) {
        key->setToolTip(QStringLiteral("%1  (%2)").arg(help, QString(QLatin1Char(letter))));
    };
    _write->setChecked(mode == AutomationMode::write);
    explain(_write, QStringLiteral("Record a new pass -- captures fader/switch moves as absolute positions"), 'W');
    const auto showPassKey = [&](ModeKey* key, AutomationMode keyMode, const QString& help, char letter) {
        key->setChecked(mode == keyMode);
        key->setEnabled(hasPass || mode == keyMode); // an armed mode can always be switched off
        explain(key, hasPass ? help : selectFirst, letter);
    };
    showPassKey(_update, AutomationMode::update,
                QStringLiteral("Play the selected pass and record fader moves as offsets from it"), 'U');
    showPassKey(_read, AutomationMode::read, QStringLiteral("Play the selected pass back to the console"), 'R');
    _null->setEnabled(needsPass(mode));
    _null->setChecked(_engine.nullEnabled.value());
    explain(_null,
            needsPass(mode) ? QStringLiteral("Hold playback off the app's fader position so the channel arrows show "
                                             "which way to move the physical fader to match the automation")
                            : QStringLiteral("NULL works with READ or UPDATE engaged"),
            'N');
}

AutomationPanelView::Status AutomationPanelView::status() const {
    if (_engine.mode.value() == AutomationMode::off)
        return {QStringLiteral("AUTOMATION OFF"), {}, {}, &Tints::secondaryText};
    const auto& pass = _engine.playedPass.value();
    const auto& position = _mtcClock.currentPosition.value();
    if (_engine.hasFrameRateMismatch.value() && pass && position) {
        const QString passRate = description(pass->frameRate);
        const QString tapeRate = description(position->frameRate);
        return {QStringLiteral("WRONG FRAME RATE"), QStringLiteral("pass %1, tape %2").arg(passRate, tapeRate),
                QStringLiteral("The pass was recorded at %1, but timecode runs at %2. It is not played.")
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
    const bool isAnother = _title->text() != now.title;
    _title->setText(now.title);
    setColor(_title, tints.*now.color);
    _detail->setText(now.detail);
    setColor(_detail, tints.secondaryText);
    _detail->setVisible(!now.detail.isEmpty());
    if (isAnother) refit();
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
    _warningText->setText(unsyncedText(_unsynced));
    _warning->setAccessibleName(_warningText->text());
    setColor(_warningText, color);
    _warning->setToolTip(QStringLiteral("The app has never received data from %1 channel(s), so it doesn't know their "
                                        "real positions. Recording now stamps a wrong baseline and playback won't "
                                        "match. Sync first: recall a scene on the console, or Zero Console → Send to "
                                        "Console.")
                             .arg(_unsynced));
    _warning->setAccessibleDescription(_warning->toolTip());
}

void AutomationPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    if (_fit == HeaderFit::rows) return;
    Type::draw(painter, canvas.px(QRectF(2, captionTop, keyCount * keyWidth(_fit), 12)), Qt::AlignLeft,
               QStringLiteral("AUTOMATION"), Type::font(9 * canvas.scale, QFont::DemiBold, 0.9 * canvas.scale),
               canvas.look.tints.secondaryText);
}

} // namespace tessik
