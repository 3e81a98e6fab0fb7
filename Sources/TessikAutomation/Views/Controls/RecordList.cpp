#include "TessikAutomation/Views/Controls/RecordList.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>

namespace tessik {
namespace {

constexpr int pitch = RecordRow::rowHeight + 2;
constexpr int emptyHeight = 56;
constexpr int mostHeight = 322; ///< a row cut off shows that there are more

bool hasKeyboard(const RecordRow& row) {
    const QWidget* focus = QApplication::focusWidget();
    return focus && (focus == &row || row.isAncestorOf(focus));
}

} // namespace

RecordList::RecordList(const QString& emptyText, Records records, DrawingContext& drawing, QWidget* parent)
    : QScrollArea(parent),
      _records(std::move(records)),
      _drawing(drawing),
      _empty(new QLabel(emptyText, this)),
      _content(new QWidget) {
    setFocusPolicy(Qt::ClickFocus); // Tab skips it to reach its rows, which come after it in the order
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(pitch);
    _content->setObjectName(QStringLiteral("list"));
    setWidget(_content);
    _empty->setObjectName(QStringLiteral("secondary"));
    _empty->setAlignment(Qt::AlignCenter);
}

QSize RecordList::sizeHint() const {
    const qsizetype count = _records.count();
    return {0, count == 0 ? emptyHeight : int(std::min<qsizetype>(count * pitch, mostHeight))};
}

RecordRow* RecordList::rowWithKeyboard() const {
    for (const auto& [index, row] : _placed)
        if (hasKeyboard(*row)) return row;
    return nullptr;
}

void RecordList::refresh() {
    const qsizetype count = _records.count();
    _empty->setVisible(count == 0);
    RecordRow* const held = rowWithKeyboard();
    bool isGone = false;
    if (held) {
        for (const auto& [index, row] : _placed)
            if (row != held) _spare.push_back(row);
        _placed.clear();
        qsizetype index = 0;
        while (index < count && _records.idAt(index) != held->id())
            ++index;
        isGone = index == count;
        _current = isGone ? std::max<qsizetype>(0, std::min(_current, count - 1)) : index;
        if (count == 0) setFocus();
        if (count == 0)
            _spare.push_back(held);
        else
            _placed[_current] = held;
    }
    for (auto gone = _placed.lower_bound(count); gone != _placed.end(); gone = _placed.erase(gone))
        _spare.push_back(gone->second);
    _content->resize(viewport()->width(), int(count) * pitch);
    updateGeometry();
    for (const auto& [index, row] : _placed)
        bind(*row, index);
    place();
    if (isGone && count > 0) held->setFocus(); // not the next one's trash
}

void RecordList::setCurrent(qsizetype index) {
    const qsizetype count = _records.count();
    if (count == 0) return setFocus();
    _current = std::clamp<qsizetype>(index, 0, count - 1);
    const int top = int(_current) * pitch;
    const int value = verticalScrollBar()->value();
    verticalScrollBar()->setValue(std::clamp(value, top + pitch - viewport()->height(), top));
    place();
    _placed.at(_current)->setFocus();
    place();
}

void RecordList::place() {
    const int top = verticalScrollBar()->value();
    const qsizetype first = top / pitch;
    const qsizetype end = std::min<qsizetype>(_records.count(), (top + viewport()->height() + pitch - 1) / pitch);
    if (!rowWithKeyboard() && end > first) _current = std::clamp(_current, first, end - 1);
    for (auto each = _placed.begin(); each != _placed.end();) {
        const bool isWanted = (each->first >= first && each->first < end) || hasKeyboard(*each->second);
        if (!isWanted) _spare.push_back(each->second);
        each = isWanted ? std::next(each) : _placed.erase(each);
    }
    for (qsizetype index = first; index < end; ++index) {
        if (_placed.contains(index)) continue;
        RecordRow* row = _spare.empty() ? makeRow() : _spare.back();
        if (!_spare.empty()) _spare.pop_back();
        _placed[index] = row;
        bind(*row, index);
    }
    for (RecordRow* row : _spare)
        row->hide();
    for (const auto& [index, row] : _placed)
        row->setInTabOrder(index == _current);
}

void RecordList::bind(RecordRow& row, qsizetype index) {
    row.setGeometry(0, int(index) * pitch, _content->width(), RecordRow::rowHeight);
    _records.show(row, index);
    row.setAccessibleDescription(QStringLiteral("%1, %2 of %3").arg(row.detail()).arg(index + 1).arg(_records.count()));
    row.show();
}

RecordRow* RecordList::makeRow() {
    auto* row = new RecordRow(_drawing, _content);
    _records.prepare(*row);
    QWidget* before = this;
    for (QWidget* part : row->parts()) {
        setTabOrder(before, part);
        before = part;
    }
    connect(row, &RecordRow::focused, this, [this, row] {
        for (const auto& [index, each] : _placed)
            if (each == row) _current = index;
        place();
    });
    return row;
}

void RecordList::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    _empty->setGeometry(rect());
    refresh();
}

void RecordList::scrollContentsBy(int dx, int dy) {
    QScrollArea::scrollContentsBy(dx, dy);
    place();
}

void RecordList::keyPressEvent(QKeyEvent* event) {
    const qsizetype count = _records.count();
    const qsizetype page = std::max(1, viewport()->height() / pitch);
    qsizetype wanted = _current;
    switch (event->key()) {
    case Qt::Key_Up: wanted -= 1; break;
    case Qt::Key_Down: wanted += 1; break;
    case Qt::Key_PageUp: wanted -= page; break;
    case Qt::Key_PageDown: wanted += page; break;
    case Qt::Key_Home: wanted = 0; break;
    case Qt::Key_End: wanted = count - 1; break;
    default: event->ignore(); return;
    }
    wanted = std::clamp<qsizetype>(wanted, 0, std::max<qsizetype>(0, count - 1));
    if (wanted == _current)
        event->ignore(); // past the end, the surroundings take over
    else
        setCurrent(wanted);
}

} // namespace tessik
