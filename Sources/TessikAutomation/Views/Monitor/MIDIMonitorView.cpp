#include "TessikAutomation/Views/Monitor/MIDIMonitorView.h"

#include "TessikAutomation/Help/HelpContext.h"
#include "TessikAutomation/Views/Drawing/Type.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include <numeric>

namespace tessik {
namespace {

constexpr int looksPerSecond = 15;
constexpr int rowHeight = 20;
constexpr QSize firstSize(880, 520), leastSize(560, 240);

QTableView* makeTable(MonitorModel& model, QWidget* parent) {
    auto* table = new QTableView(parent);
    table->setModel(&model);
    table->setAccessibleName(QStringLiteral("MIDI messages"));
    table->setFont(Type::font(12, QFont::Normal));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    table->verticalHeader()->setMinimumSectionSize(rowHeight);
    QHeaderView* header = table->horizontalHeader();
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    const QFontMetrics metrics(table->font());
    constexpr int air = 24;
    table->setColumnWidth(MonitorModel::time, metrics.horizontalAdvance(QStringLiteral("00:00:00.000")) + air);
    table->setColumnWidth(MonitorModel::port, metrics.horizontalAdvance(QStringLiteral("MTC Source")) + air);
    table->setColumnWidth(MonitorModel::message,
                          metrics.horizontalAdvance(QStringLiteral("MTC full frame 00:00:00:00, 29.97 fps (drop)")) +
                              air);
    return table;
}

} // namespace

MIDIMonitorView::MIDIMonitorView(MIDIMonitor monitor, QWidget* window)
    : QWidget(window, Qt::Window),
      _monitor(std::move(monitor)),
      _model(new MonitorModel(this)),
      _table(makeTable(*_model, this)) {
    setWindowTitle(QStringLiteral("MIDI Monitor"));
    setHelpContext(*this, HelpContext::problems);
    setMinimumSize(leastSize);
    resize(firstSize);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(16);
    const struct {
        const char* text;
        MonitorLine::Kind kind;
    } filters[] = {{"&Faders and switches", MonitorLine::Kind::console},
                   {"&Timecode", MonitorLine::Kind::timecode},
                   {"&Machine control", MonitorLine::Kind::machineControl},
                   {"&Other", MonitorLine::Kind::other}};
    for (const auto& filter : filters) {
        auto* box = new QCheckBox(QLatin1String(filter.text), this);
        box->setChecked(true);
        connect(box, &QCheckBox::toggled, this,
                [this, kind = filter.kind](bool isOn) { _model->setShown(kind, isOn); });
        bar->addWidget(box);
    }
    bar->addStretch(1);
    const auto addKey = [&](const char* text) {
        auto* key = new QPushButton(QLatin1String(text), this);
        key->setAutoDefault(false);
        bar->addWidget(key);
        return key;
    };
    QPushButton* pause = addKey("&Pause");
    pause->setCheckable(true);
    connect(pause, &QPushButton::toggled, this, &MIDIMonitorView::keepTime);
    _pause = pause;
    connect(addKey("C&lear"), &QPushButton::clicked, _model, &MonitorModel::clear);
    QPushButton* copyKey = addKey("&Copy");
    copyKey->setToolTip(QStringLiteral("Copy the selected lines, or all  (Ctrl+C)"));
    connect(copyKey, &QPushButton::clicked, this, &MIDIMonitorView::copy);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);
    layout->addLayout(bar);
    layout->addWidget(_table, 1);
    _table->setFocus();
    _timer.setInterval(1000 / looksPerSecond);
    _timer.callOnTimeout([this] { look(); });
}

void MIDIMonitorView::look() {
    QScrollBar& bar = *_table->verticalScrollBar();
    const bool isAtEnd = bar.value() == bar.maximum();
    _model->add(_monitor.look());
    if (isAtEnd) _table->scrollToBottom();
}

void MIDIMonitorView::copy() const {
    QList<int> rows;
    for (const QModelIndex& index : _table->selectionModel()->selectedRows())
        rows += index.row();
    std::sort(rows.begin(), rows.end());
    if (rows.isEmpty()) {
        rows.resize(_model->rowCount());
        std::iota(rows.begin(), rows.end(), 0);
    }
    QApplication::clipboard()->setText(_model->text(rows));
}

/// What passes during a pause is listed after it, as far as it is kept.
void MIDIMonitorView::keepTime() {
    if (isVisible() && !_pause->isChecked())
        _timer.start();
    else
        _timer.stop();
}

void MIDIMonitorView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!_pause->isChecked()) look();
    keepTime();
}

void MIDIMonitorView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    keepTime();
}

void MIDIMonitorView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copy();
    if (event->key() == Qt::Key_Escape) return void(close());
    QWidget::keyPressEvent(event);
}

} // namespace tessik
