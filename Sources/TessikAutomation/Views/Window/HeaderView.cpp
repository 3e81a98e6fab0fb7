#include "TessikAutomation/Views/Window/HeaderView.h"

#include "TessikAutomation/Views/Metrics.h"
#include "TessikAutomation/Views/Window/HeaderTitle.h"
#include "TessikAutomation/Views/Window/HeaderTools.h"

#include <QLinearGradient>

namespace tessik {
namespace {

/// At both ends and between the parts.
int gap(HeaderFit fit) { return fit == HeaderFit::symbols ? 8 : 12; }

} // namespace

HeaderView::HeaderView(const AppObjects& objects, DrawingContext& drawing, QWidget* parent)
    : QWidget(parent),
      _drawing(drawing),
      _title(new HeaderTitle(drawing, this)),
      _tools(new HeaderTools(objects, drawing, this)),
      _lookObserver(drawing.look.addNotifier([this] { update(); })) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&static_cast<HeaderTools*>(_tools)->settingsKey(), &QAbstractButton::clicked, this,
            &HeaderView::settingsRequested);
}

void HeaderView::setTransportPanel(HeaderPart* panel) { place(_transport, panel); }
void HeaderView::setAutomationPanel(HeaderPart* panel) { place(_automation, panel); }

void HeaderView::place(HeaderPart*& slot, HeaderPart* panel) {
    delete std::exchange(slot, panel);
    if (panel) {
        panel->setParent(this);
        panel->stackUnder(_title); // for keyboard focus order
        panel->show();
    }
    layOut();
}

void HeaderView::setTitle(const QString& title, const QString& recalled, const QString& state) {
    _title->setTexts(title, recalled, state);
    layOut();
}

PanelButton& HeaderView::deselectKey() { return _title->deselectKey(); }
SymbolButton& HeaderView::problemsKey() { return _title->problemsKey(); }

HeaderFit HeaderView::fitFor(int width) const {
    for (const HeaderFit fit : {HeaderFit::legends, HeaderFit::symbols}) {
        int needed = gap(fit);
        for (const HeaderPart* part : {_transport, _automation, static_cast<HeaderPart*>(_title), _tools})
            if (part) needed += part->neededWidth(fit) + gap(fit);
        if (needed <= width) return fit;
    }
    return HeaderFit::rows;
}

int HeaderView::heightForWidth(int width) const {
    return Metrics::headerHeight + (fitFor(width) == HeaderFit::rows ? Metrics::headerSecondRowHeight : 0);
}

void HeaderView::layOut() {
    const HeaderFit fit = fitFor(width());
    const auto put = [fit](HeaderPart* part, int x, int width) {
        part->setFit(fit);
        part->setGeometry(x, (Metrics::headerHeight - part->height()) / 2, width, part->height());
    };
    int left = gap(fit);
    for (HeaderPart* part : {_transport, fit == HeaderFit::rows ? nullptr : _automation}) {
        if (!part) continue;
        put(part, left, part->neededWidth(fit));
        left += part->width() + gap(fit);
    }
    const int toolsWidth = _tools->neededWidth(fit);
    const int right = Metrics::toGrid(width() - gap(fit) - toolsWidth);
    put(_tools, right, toolsWidth);
    put(_title, left, std::max(0, right - gap(fit) - left));
    if (fit == HeaderFit::rows && _automation) {
        _automation->setFit(fit);
        _automation->setGeometry(gap(fit), Metrics::headerHeight, width() - 2 * gap(fit),
                                 Metrics::headerSecondRowHeight);
    }
    if (std::exchange(_fit, fit) != fit) updateGeometry();
    update();
}

void HeaderView::resizeEvent(QResizeEvent*) { layOut(); }

bool HeaderView::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) layOut(); // a part needs another width
    return handled;
}

void HeaderView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Canvas canvas = _drawing.canvas(painter, devicePixelRatioF());
    const Look& look = canvas.look;
    const QRect whole = canvas.px(QRectF(rect()));
    QLinearGradient face(whole.topLeft(), whole.bottomLeft());
    face.setColorAt(0, look.tints.headerTop);
    face.setColorAt(1, look.tints.headerBottom);
    painter.fillRect(whole, face);
    painter.fillRect(QRect(0, 0, whole.width(), canvas.line()), withAlpha(Qt::white, look.isDark() ? 0.1 : 0.8));
    painter.fillRect(QRect(0, whole.height() - canvas.line(), whole.width(), canvas.line()),
                     withAlpha(Qt::black, 0.75));
}

} // namespace tessik
