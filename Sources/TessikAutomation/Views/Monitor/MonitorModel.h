#pragma once

#include "TessikAutomation/MIDI/MIDIMonitor.h"

#include <QAbstractTableModel>
#include <QDateTime>

#include <deque>
#include <set>

namespace tessik {

/// The lines of the monitor as a table, oldest first, at most `maxLines`. Lines of hidden kinds are kept and come back.
class MonitorModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { time, port, message, bytes };
    static constexpr std::size_t maxLines = 4000;

    using QAbstractTableModel::QAbstractTableModel;

    void add(std::vector<MonitorLine> lines);
    void clear();
    void setShown(MonitorLine::Kind kind, bool isKindShown);

    /// The rows as text, columns apart by tabs.
    QString text(const QList<int>& rows) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Line {
        MonitorLine line;
        QTime at;
    };
    QString cell(const Line& line, int column) const;
    bool isShown(const Line& line) const { return !_hidden.contains(line.line.kind); }

    std::deque<Line> _all;
    std::deque<Line> _shown;
    std::set<MonitorLine::Kind> _hidden;
};

} // namespace tessik
