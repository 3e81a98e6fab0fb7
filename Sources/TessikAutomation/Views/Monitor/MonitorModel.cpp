#include "TessikAutomation/Views/Monitor/MonitorModel.h"

#include "TessikAutomation/Views/Drawing/Type.h"
#include "TessikKit/Models/UptimeClock.h"

namespace tessik {

void MonitorModel::add(std::vector<MonitorLine> lines) {
    const QDateTime wallNow = QDateTime::currentDateTime();
    const Uptime now = UptimeClock::system().now();
    std::vector<Line> fresh;
    for (MonitorLine& line : lines) {
        const qint64 age = (now - line.stamp) / std::chrono::milliseconds(1);
        _all.push_back({std::move(line), wallNow.addMSecs(-age).time()});
        if (isShown(_all.back())) fresh.push_back(_all.back());
        if (_all.size() > maxLines) _all.pop_front();
    }
    if (fresh.empty()) return;
    if (fresh.size() > maxLines) fresh.erase(fresh.begin(), fresh.end() - maxLines);
    if (const int excess = int(_shown.size() + fresh.size()) - int(maxLines); excess > 0) {
        beginRemoveRows({}, 0, excess - 1);
        _shown.erase(_shown.begin(), _shown.begin() + excess);
        endRemoveRows();
    }
    beginInsertRows({}, int(_shown.size()), int(_shown.size() + fresh.size()) - 1);
    _shown.insert(_shown.end(), fresh.begin(), fresh.end());
    endInsertRows();
}

void MonitorModel::clear() {
    beginResetModel();
    _all.clear();
    _shown.clear();
    endResetModel();
}

void MonitorModel::setShown(MonitorLine::Kind kind, bool isKindShown) {
    beginResetModel();
    if (isKindShown)
        _hidden.erase(kind);
    else
        _hidden.insert(kind);
    _shown.clear();
    for (const Line& line : _all)
        if (isShown(line)) _shown.push_back(line);
    endResetModel();
}

QString MonitorModel::text(const QList<int>& rows) const {
    QString text;
    for (const int row : rows) {
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column)
            cells += cell(_shown[std::size_t(row)], column);
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return text;
}

int MonitorModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(_shown.size()); }
int MonitorModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 4; }

QString MonitorModel::cell(const Line& line, int column) const {
    switch (column) {
    case time: return line.at.toString(QStringLiteral("hh:mm:ss.zzz"));
    case port: return line.line.port;
    case message: return line.line.text;
    default: return line.line.raw;
    }
}

QVariant MonitorModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole) return cell(_shown[std::size_t(index.row())], index.column());
    if (role == Qt::ToolTipRole && index.column() == bytes) return cell(_shown[std::size_t(index.row())], bytes);
    return {};
}

QVariant MonitorModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    constexpr const char* titles[] = {"Time", "Port", "Message", "Bytes"};
    return QLatin1String(titles[section]);
}

} // namespace tessik
