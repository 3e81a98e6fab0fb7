#include "TessikAutomation/Views/Desk/DeskView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Persistence/SavedSettings.h"
#include "TessikAutomation/Views/Controls/PanelButton.h"
#include "TessikAutomation/Views/Desk/InputModule.h"
#include "TessikAutomation/Views/Desk/MasterPanel.h"
#include "TessikAutomation/Views/Desk/ScribbleEditor.h"
#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QContextMenuEvent>
#include <QPainter>
#include <QWheelEvent>

namespace tessik {
namespace {

constexpr quint64 scrollGesture = 400; // milliseconds for which a wheel that scrolls keeps scrolling

} // namespace

using namespace Metrics;

DeskView::DeskView(const AppObjects& objects, QUndoStack& history, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _objects(objects),
      _history(history),
      _windowDrawing(drawing),
      _scribbles(objects.desk.model),
      _clipboard(objects.manualSettings, history),
      _inputs(new HorizontalOnlyScrollView(this)),
      _moduleView(new VerticalOnlyScrollView(_inputs->content())),
      _blank{new ControlHost(blankModuleKind(), {}, _drawing, _moduleView->content()),
             new ControlHost(blankStripKind(), {}, _drawing, _inputs->content())},
      _folded(new ControlHost(foldedMasterKind(), {}, _drawing, this)),
      _foldKey(new PanelButton(
          {},
          [this, open = symbolNamed(QStringLiteral("chevron-left")),
           fold = symbolNamed(QStringLiteral("chevron-right"))](QPainter& painter, const QRectF& rect,
                                                                const QColor& color) {
              (isFolded.value() ? open : fold)(painter, rect, color); // points the way the edge will go
          },
          drawing, this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    // Made in the order in which the keyboard goes over them.
    for (ChannelState* channel : objects.desk.model.inputs())
        addChannel(*channel);
    _masterView = new VerticalOnlyScrollView(this);
    _masterView->setWheelScrolls(true);
    _master = new ControlHost(masterPanelTable().kind, masterPanelTable().bind({&objects.masterSection, &history}),
                              _drawing, _masterView->content());
    setHelpContext(*_master, HelpContext::masterSection);
    _master->setAccessibleName(QStringLiteral("Master section"));
    connect(_master, &ControlHost::controlFocused, this, [this] {
        const QRect control = _master->controlRect(_master->focusedControl());
        _masterView->reveal(control.y(), control.height());
    });
    addChannel(objects.desk.model.stereo());
    for (ChannelState* channel : objects.desk.model.groups())
        addChannel(*channel);
    std::rotate(_strips.begin() + maxInputs, _strips.begin() + maxInputs + 1, _strips.end());

    _scribbleEditor = new ScribbleEditor(_scribbles, objects.channelLabels, history, _windowDrawing, this);
    setHelpContext(*_scribbleEditor, HelpContext::scribbleStrip);
    _scribbleEditor->stripRect = [this](const QString& id) {
        for (const ControlHost* host : _strips) {
            if (host->objectName() != id) continue;
            const QRect strip = host->controlRect(host->controlIndex(QStringLiteral("scribble")));
            return QRect(host->mapTo(this, strip.topLeft()), strip.size());
        }
        return QRect();
    };
    _scribbleEditor->spokenName = [this](const QString& id) {
        for (const ControlHost* host : _strips)
            if (host->objectName() == id)
                return host->accessibleName().left(1).toLower() + host->accessibleName().mid(1);
        return QString();
    };
    _scribbles.onMove = [this](int place) {
        const QString id = _scribbles.order()[place];
        for (int i = 0; i < maxInputs; ++i)
            if (_strips[std::size_t(i)]->objectName() == id) revealInput(*_strips[std::size_t(i)]);
    };
    connect(_inputs->scrollBar(), &QScrollBar::valueChanged, _scribbleEditor, &ScribbleEditor::follow);

    _inputs->scrollBar()->setParent(this);
    _moduleView->scrollBar()->setParent(this);
    _masterView->scrollBar()->setParent(this);
    _inputs->installEventFilter(this);
    isFolded = SavedSettings::isMasterFolded();
    connect(_foldKey, &QAbstractButton::clicked, this, [this] { isFolded = !isFolded.value(); });
    setHelpContext(*_foldKey, HelpContext::masterSection);
    _observers.push_back(isFolded.addNotifier([this] {
        SavedSettings::setInteger(SavedSettings::Key::masterFolded, isFolded.value());
        showFold();
    }));
    showFold();
    if (const auto saved = SavedSettings::deskZoom()) _zoom = *saved;
    setZoom(_zoom);
    _observers.push_back(objects.desk.model.modelSize.addNotifier([this] { layOut(); }));
    _observers.push_back(drawing.look.addNotifier([this] { applyLook(); }));
    applyLook();
}

void DeskView::addChannel(ChannelState& channel) {
    const StripSubject subject{&channel,
                               &_objects.desk.editor,
                               &_objects.manualSettings.box(channel.id),
                               &_objects.channelLabels,
                               &_scribbles,
                               &_selection,
                               &_history};
    const ChannelKind::Case kind = channel.kind.kind();
    const bool isInput = kind == ChannelKind::Case::input;
    if (isInput) _modules.push_back(addHost(inputModuleTable(), subject, _moduleView->content()));
    _strips.push_back(addHost(channelStripTable(kind), subject, isInput ? _inputs->content() : this));
    _strips.back()->setObjectName(channel.id);
}

ControlHost* DeskView::addHost(const ControlTable<StripSubject>& table, const StripSubject& subject, QWidget* parent) {
    auto* host = new ControlHost(table.kind, table.bind(subject), _drawing, parent);
    setHelpContext(*host, HelpContext::channelStrip);
    host->setAccessibleName(spokenName(subject.channel->kind));
    host->installEventFilter(this);
    if (subject.channel->kind.kind() == ChannelKind::Case::input)
        connect(host, &ControlHost::controlFocused, this, [this, host] { revealInput(*host); });
    return host;
}

void DeskView::revealInput(const ControlHost& host) {
    _inputs->reveal(host.x(), host.width(), true);
    if (host.parentWidget() != _moduleView->content() || host.focusedControl() < 0) return;
    const QRect control = host.controlRect(host.focusedControl());
    _moduleView->reveal(control.y() - moduleTop, control.height() + 2 * moduleTop);
}

ControlHost* DeskView::strip(ChannelKind kind) const {
    if (!_objects.desk.model.channelState(kind)) return nullptr;
    switch (kind.kind()) {
    case ChannelKind::Case::input: return _strips[std::size_t(kind.number() - 1)];
    case ChannelKind::Case::group: return _strips[std::size_t(maxInputs + kind.number() - 1)];
    case ChannelKind::Case::stereo: break;
    }
    return _strips.back();
}

int DeskView::fixedWidth() const { return stereoWidth() + groupCount * (groupWidth() + scaled(channelStripSpacing)); }

int DeskView::stereoWidth() const { return isFolded.value() ? groupWidth() : scaled(stereoStripWidth); }
int DeskView::groupWidth() const {
    return isFolded.value() ? toGrid(scaled(foldedStripWidth)) : scaled(groupStripWidth);
}

void DeskView::showFold() {
    const QString name =
        isFolded.value() ? QStringLiteral("Unfold the master section") : QStringLiteral("Fold the master section away");
    _foldKey->setAccessibleName(name);
    _foldKey->setToolTip(name);
    layOut();
}

int DeskView::stripHeight() const { return toGrid(height() - railHeight); }

void DeskView::pageInputs(bool forward) {
    const int step = _inputs->scrollBar()->singleStep();
    _inputs->scrollTo(_inputs->destination() + (forward ? step : -step), true);
}

void DeskView::setStatusView(QWidget* view) {
    _status = view;
    _status->setParent(this);
    layOut();
}

void DeskView::setZoom(int percent) {
    const auto nearest = std::min_element(zoomSteps.begin(), zoomSteps.end(), [percent](int a, int b) {
        return std::abs(a - percent) < std::abs(b - percent);
    });
    if (*nearest != _zoom) SavedSettings::setInteger(SavedSettings::Key::deskZoom, *nearest);
    _zoom = *nearest;
    // Whole eighths keep the widths of strips on the grid.
    _drawing.zoom = std::round(_zoom / 12.5) / 8;
    layOut();
    for (ControlHost* host : findChildren<ControlHost*>())
        host->update();
}

void DeskView::changeZoom(bool larger) {
    auto step = std::find(zoomSteps.begin(), zoomSteps.end(), _zoom);
    if (larger ? step + 1 != zoomSteps.end() : step != zoomSteps.begin()) setZoom(larger ? *(step + 1) : *(step - 1));
}

void DeskView::applyLook() {
    _drawing.look = _windowDrawing.look.value();
    for (QScrollBar* bar : {_inputs->scrollBar(), _moduleView->scrollBar(), _masterView->scrollBar()})
        AppStyle::applySheet(*bar,
                             QStringLiteral("QScrollBar { background: @rail; border: none; }"
                                            "QScrollBar::handle { background: @handle; border-radius: 4px; }"
                                            "QScrollBar::handle:horizontal { min-width: 60px; margin: 6px 4px; }"
                                            "QScrollBar::handle:vertical { min-height: 40px; margin: 4px 2px; }"
                                            "QScrollBar::handle:hover { background: @secondary; }"
                                            "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"),
                             *_drawing.look.value());
    update();
}

void DeskView::resizeEvent(QResizeEvent*) { layOut(); }

bool DeskView::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) layOut(); // the status changed its width
    return QWidget::event(event);
}

void DeskView::layOut() {
    const int inputCount = ConsoleModel::inputCount(_objects.desk.model.modelSize);
    const int height = stripHeight();
    // The module comes first; once it is complete, the fader grows.
    const int whole = toGridUp(scaled(inputModuleHeight()));
    const int upper = std::clamp(toGrid(height - scaled(minStripHeight)), 0, whole);
    const int lower = height - upper;
    const bool scrolls = upper < whole;
    const int fixed = toGrid(width() - fixedWidth()); // the grid's remainder goes to the window's edge
    const int visible = std::max(0, toGrid(fixed - deskDivider));
    // Wider strips if there is room, except on a zoomed desk, whose strips are on the grid only at their own width.
    const int stripWidth =
        _zoom != 100 ? scaled(inputChannelStripWidth)
                     : std::clamp(toGrid(visible / inputCount), inputChannelStripWidth, maxInputChannelStripWidth);
    const int pitch = stripWidth + channelStripSpacing;
    const int content = inputCount * pitch;

    _inputs->setGeometry(0, 0, visible, height);
    _inputs->setContentLength(content, pitch);
    _moduleView->setGeometry(0, 0, std::max(content, visible), upper);
    _moduleView->setContentLength(whole, scaled(knobPitch));
    for (int i = 0; i < maxInputs; ++i) {
        ControlHost& module = *_modules[std::size_t(i)];
        ControlHost& strip = *_strips[std::size_t(i)];
        module.setGeometry(i * pitch, 0, stripWidth, whole);
        strip.setGeometry(i * pitch, upper, stripWidth, lower);
        module.setVisible(i < inputCount);
        strip.setVisible(i < inputCount);
    }
    _blank[0]->setGeometry(content, 0, std::max(0, visible - content), whole);
    _blank[1]->setGeometry(content, upper, std::max(0, visible - content), lower);
    for (ControlHost* blank : _blank)
        blank->setVisible(visible > content);
    _inputs->scrollBar()->setVisible(content > visible);
    _moduleView->scrollBar()->setGeometry(fixed - deskDivider, 0, deskDivider, upper);
    _moduleView->scrollBar()->setVisible(scrolls);

    _foldKey->setGeometry(fixed - deskDivider, upper + toGrid(scaled(barTop)), deskDivider, toGrid(scaled(barHeight)));
    _folded->setGeometry(fixed, 0, fixedWidth(), upper);
    _folded->setVisible(isFolded.value());
    _masterView->setVisible(!isFolded.value());
    const int masterHeight = std::max(upper, toGridUp(scaled(masterPanelMinHeight)));
    _masterView->setGeometry(fixed, 0, fixedWidth(), upper);
    _masterView->setContentLength(masterHeight, scaled(knobPitch));
    _master->setGeometry(0, 0, fixedWidth(), masterHeight);
    _masterView->scrollBar()->setGeometry(fixed + fixedWidth() - masterBarWidth, 0, masterBarWidth, upper);
    _masterView->scrollBar()->setVisible(!isFolded.value() && masterHeight > upper);
    _masterView->scrollBar()->raise();

    // Below the right block, extending left if its texts need it and a scroll bar for the inputs remains.
    const int statusWidth = _status ? std::max(width() - fixed, std::min(toGridUp(_status->sizeHint().width()),
                                                                         toGrid(width() - minInputsBarWidth)))
                                    : 0;
    if (_status) _status->setGeometry(width() - statusWidth, height, statusWidth, railHeight);
    _inputs->scrollBar()->setGeometry(0, height, std::min(visible, width() - statusWidth - deskDivider), railHeight);

    int x = fixed;
    strip(ChannelKind::stereo())->setGeometry(x, upper, stereoWidth(), lower);
    x += stereoWidth();
    for (int i = 0; i < groupCount; ++i, x += groupWidth() + scaled(channelStripSpacing))
        _strips[std::size_t(maxInputs + i)]->setGeometry(x, upper, groupWidth(), lower);
    _scribbleEditor->follow();
    update();
}

void DeskView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), _drawing.look.value()->railColor());
    // The desk's frame shows between the two blocks.
    const int x = _inputs->width();
    painter.fillRect(QRect(x, 0, strip(ChannelKind::stereo())->x() - x, stripHeight()),
                     _drawing.look.value()->gapColor());
}

void DeskView::contextMenuEvent(QContextMenuEvent* event) {
    for (QWidget* under = childAt(event->pos()); under && under != this; under = under->parentWidget())
        for (int i = 0; i < maxInputs; ++i)
            if (under == _modules[std::size_t(i)] || under == _strips[std::size_t(i)]) {
                QMenu* menu = stripMenu(ChannelKind::input(i + 1).id(), this);
                menu->setAttribute(Qt::WA_DeleteOnClose);
                menu->popup(event->globalPos());
                return;
            }
}

QMenu* DeskView::stripMenu(const QString& channelID, QWidget* parent) {
    auto* menu = new QMenu(parent);
    setHelpContext(*menu, HelpContext::channelStrip);
    menu->addAction(QStringLiteral("Copy Settings"), this, [this, channelID] { _clipboard.copy(channelID); });
    // A strip outside the selection is meant on its own.
    QStringList targets;
    if (_selection.contains(channelID))
        for (const ChannelState* channel : _objects.desk.model.visibleInputs())
            if (_selection.contains(channel->id)) targets.append(channel->id);
    if (targets.isEmpty()) targets.append(channelID);
    const QString what =
        targets.size() > 1 ? QStringLiteral("%1 channels").arg(targets.size()) : _scribbleEditor->spokenName(channelID);
    QAction* paste = menu->addAction(QStringLiteral("Paste Settings"), this,
                                     [this, targets, what] { _clipboard.paste(targets, what); });
    paste->setEnabled(!_clipboard.isEmpty());
    return menu;
}

bool DeskView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::Wheel) return false;
    const quint64 now = static_cast<QWheelEvent*>(event)->timestamp();
    if (object == _inputs) {
        _scrolledAt = now;
        return false;
    }
    // A wheel that began scrolling keeps scrolling, whatever passes under the pointer.
    auto* host = static_cast<ControlHost*>(object);
    if (!_scrolledAt || now - *_scrolledAt > scrollGesture || !_inputs->isAncestorOf(host)) return false;
    QCoreApplication::sendEvent(_inputs, event);
    return true;
}

} // namespace tessik
