#include "TessikAutomation/Views/Desk/DeskView.h"

#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Theme/AppStyle.h"

#include <QPainter>

namespace tessik {

using namespace Metrics;

DeskView::DeskView(ConsoleModel& consoleModel, DeskEditor& editor, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _consoleModel(consoleModel),
      _editor(editor),
      _drawing(drawing),
      _inputs(new HorizontalOnlyScrollView(this)),
      _blank(new ControlHost(blankStripKind(), {}, drawing, _inputs->content())) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    for (ChannelState* channel : consoleModel.inputs()) {
        ControlHost* host = addStrip(*channel, _inputs->content());
        connect(host, &ControlHost::controlFocused, this,
                [this, host] { _inputs->reveal(host->x(), host->width(), true); });
    }
    // The keyboard goes over the strips as they stand: stereo is the first of those that stay.
    ControlHost* stereo = addStrip(consoleModel.stereo(), this);
    for (ChannelState* channel : consoleModel.groups())
        addStrip(*channel, this);
    std::rotate(_strips.begin() + maxInputs, _strips.begin() + maxInputs + 1, _strips.end());
    Q_ASSERT(_strips.back() == stereo);
    Q_UNUSED(stereo)
    _inputs->scrollBar()->setParent(this);
    _observers.push_back(consoleModel.modelSize.addNotifier([this] { layOut(); }));
    _observers.push_back(drawing.look.addNotifier([this] { applyLook(); }));
    applyLook();
}

ControlHost* DeskView::addStrip(ChannelState& channel, QWidget* parent) {
    const auto& table = channelStripTable(channel.kind.kind());
    auto* host = new ControlHost(table.kind, table.bind({&channel, &_editor}), _drawing, parent);
    host->setAccessibleName(spokenName(channel.kind));
    _strips.push_back(host);
    return host;
}

ControlHost* DeskView::strip(ChannelKind kind) const {
    if (!_consoleModel.channelState(kind)) return nullptr;
    switch (kind.kind()) {
    case ChannelKind::Case::input: return _strips[std::size_t(kind.number() - 1)];
    case ChannelKind::Case::group: return _strips[std::size_t(maxInputs + kind.number() - 1)];
    case ChannelKind::Case::stereo: break;
    }
    return _strips.back();
}

int DeskView::fixedWidth() {
    return deskDivider + stereoStripWidth + groupCount * (groupStripWidth + channelStripSpacing);
}

int DeskView::stripHeight() const { return toGrid(height() - railHeight); }

void DeskView::pageInputs(bool forward) {
    const int step = _inputs->scrollBar()->singleStep();
    _inputs->scrollTo(_inputs->left() + (forward ? step : -step), true);
}

void DeskView::setStatusView(QWidget* view) {
    _status = view;
    _status->setParent(this);
    layOut();
}

void DeskView::applyLook() {
    AppStyle::applySheet(*_inputs->scrollBar(),
                         QStringLiteral("QScrollBar { background: @rail; border: none; }"
                                        "QScrollBar::handle { background: @handle; border-radius: 4px; min-width: 60px;"
                                        "  margin: 6px 4px; }"
                                        "QScrollBar::handle:hover { background: @secondary; }"
                                        "QScrollBar::add-line, QScrollBar::sub-line { width: 0; }"),
                         *_drawing.look.value());
    update();
}

void DeskView::resizeEvent(QResizeEvent*) { layOut(); }

void DeskView::layOut() {
    const int inputCount = ConsoleModel::inputCount(_consoleModel.modelSize);
    const int visible = std::max(0, toGrid(width() - fixedWidth()));
    const int height = stripHeight();
    const int stripWidth = std::clamp(toGrid(visible / inputCount), inputChannelStripWidth, maxInputChannelStripWidth);
    const int pitch = stripWidth + channelStripSpacing;

    _inputs->setGeometry(0, 0, visible, height);
    for (int i = 0; i < maxInputs; ++i) {
        ControlHost& host = *_strips[std::size_t(i)];
        host.setGeometry(i * pitch, 0, stripWidth, height);
        host.setVisible(i < inputCount);
    }
    const int content = inputCount * pitch;
    _blank->setGeometry(content, 0, std::max(0, visible - content), height);
    _blank->setVisible(visible > content);
    _inputs->setContentWidth(content, pitch);
    _inputs->scrollBar()->setGeometry(0, height, visible, railHeight);
    _inputs->scrollBar()->setVisible(content > visible);

    if (_status) _status->setGeometry(toGrid(width() - fixedWidth() + deskDivider), height, fixedWidth(), railHeight);

    // What the grid leaves over is a wider divider, so that the strips end at the window's edge.
    int x = width() - fixedWidth() + deskDivider;
    x = toGrid(x);
    strip(ChannelKind::stereo())->setGeometry(x, 0, stereoStripWidth, height);
    x += stereoStripWidth;
    for (int i = 0; i < groupCount; ++i, x += groupStripWidth + channelStripSpacing)
        _strips[std::size_t(maxInputs + i)]->setGeometry(x, 0, groupStripWidth, height);
    update();
}

void DeskView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Look& look = *_drawing.look.value();
    painter.fillRect(rect(), look.railColor());
    // Between the two blocks the frame of the desk shows.
    const int x = _inputs->width();
    painter.fillRect(QRect(x, 0, strip(ChannelKind::stereo())->x() - x, stripHeight()), QColor(8, 8, 8));
}

} // namespace tessik
