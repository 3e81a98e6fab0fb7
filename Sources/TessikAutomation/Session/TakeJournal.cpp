#include "TessikAutomation/Session/TakeJournal.h"

#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Session/SessionWriter.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessik {
namespace {

const QByteArray recordName = QByteArrayLiteral("take");
constexpr qsizetype maxLineLength = 80;

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// How many moves two states of a take have in common, from the first on.
qsizetype commonMoves(const PendingTake& now, const PendingTake& before) {
    qsizetype common = 0;
    for (qsizetype i = 0; i < std::min(now.chunks.size(), before.chunks.size()); ++i) {
        const QList<TimedEvent>&a = now.chunks[i], &b = before.chunks[i];
        if (!a.isSharedWith(b)) {
            const auto differs = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
            common += differs - a.begin();
            if (differs != a.end() || a.size() != b.size()) break;
        } else {
            common += a.size();
        }
    }
    return common;
}

qsizetype moveCount(const PendingTake& take) { return take.eventCount() - take.pass.events.size(); }
std::int64_t endOf(const PendingTake& take) { return take.rides ? take.rides->end : 0; }

QList<TimedEvent> movesFrom(const PendingTake& take, qsizetype first) {
    QList<TimedEvent> moves;
    for (const QList<TimedEvent>& chunk : take.chunks) {
        moves += chunk.sliced(std::min(first, chunk.size()));
        first -= std::min(first, chunk.size());
    }
    return moves;
}

/// Appends a record to `bytes`. Returns why it cannot be expressed.
QString addRecord(QByteArray& bytes, const PendingTake& take, qsizetype from, const SessionDocument& document) {
    QBuffer text;
    text.open(QIODevice::WriteOnly);
    const QString error = writeSession(document, text);
    bytes += recordName;
    for (const std::int64_t number : {std::int64_t(from), endOf(take), std::int64_t(text.size())})
        bytes += ' ' + QByteArray::number(number);
    bytes += '\n' + text.data();
    return error;
}

/// The records of a journal, in order.
class Records {
public:
    explicit Records(QByteArray bytes) : _bytes(std::move(bytes)) {}

    struct Record {
        qsizetype from;
        std::int64_t end;
        SessionDocument document; ///< with one pass
    };
    std::optional<Record> next() {
        const QByteArrayView rest = QByteArrayView(_bytes).sliced(_at);
        const qsizetype lineEnd = rest.first(std::min(rest.size(), maxLineLength)).indexOf('\n');
        if (lineEnd < 0) return std::nullopt;
        const QList<QByteArray> words = rest.first(lineEnd).toByteArray().split(' ');
        if (words.size() != 4 || words[0] != recordName) return std::nullopt;
        std::array<std::int64_t, 3> numbers{};
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            bool ok = false;
            numbers[i] = words[qsizetype(i) + 1].toLongLong(&ok);
            if (!ok || numbers[i] < 0) return std::nullopt;
        }
        const auto [from, end, length] = numbers;
        if (rest.size() - lineEnd - 1 < length) return std::nullopt;
        SessionReadResult read = parseSession(rest.sliced(lineEnd + 1, length), QDateTime());
        if (!read.document || read.document->passes.size() != 1) return std::nullopt;
        _at += lineEnd + 1 + length;
        return Record{from, end, *std::move(read.document)};
    }

private:
    const QByteArray _bytes;
    qsizetype _at = 0;
};

} // namespace

struct TakeJournal::OpenFile {
    const int descriptor;

    explicit OpenFile(int opened) : descriptor(opened) {}
    ~OpenFile() { close(descriptor); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// False once somebody has cleared the file away.
    bool hasName() const {
        struct stat status {};
        return fstat(descriptor, &status) == 0 && status.st_nlink > 0;
    }
    /// Returns why it failed; empty on success.
    QString write(const QByteArray& bytes) const {
        for (qsizetype done = 0; done < bytes.size();) {
            const ssize_t written = ::write(descriptor, bytes.constData() + done, std::size_t(bytes.size() - done));
            if (written < 0 && errno != EINTR) return systemError();
            done += std::max<ssize_t>(written, 0);
        }
        return {};
    }
};

TakeJournal::Written TakeJournal::write(const PendingTake& take) {
    QString error = _file && _file->hasName() ? append(take) : begin(take);
    if (!error.isEmpty()) {
        _file.reset(); // a truncated record would hide those after it
        return {writeError(_path, error), {}};
    }
    _told = take;
    return {{}, [file = _file] { fdatasync(file->descriptor); }};
}

/// The new file replaces an old one only once it holds as much.
QString TakeJournal::begin(const PendingTake& take) {
    SessionDocument document = SessionDocument::empty(take.pass.createdAt);
    document.passes = {take.pass};
    if (take.rides)
        document.snapshots = {{.id = take.pass.id,
                               .name = take.pass.name,
                               .createdAt = take.pass.createdAt,
                               .channels = take.rides->baseline}};
    QByteArray bytes;
    if (const QString error = addRecord(bytes, take, 0, document); !error.isEmpty()) return error;
    const QByteArray path = QFile::encodeName(_path), fresh = path + ".new";
    const int opened = open(fresh.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    if (opened < 0) return systemError();
    _file = std::make_shared<const OpenFile>(opened);
    _told = {.pass = take.pass, .chunks = {}, .rides = {}};
    QString error = _file->write(bytes);
    if (error.isEmpty()) error = append(take);
    if (error.isEmpty() && std::rename(fresh.constData(), path.constData()) != 0) error = systemError();
    return error;
}

QString TakeJournal::append(const PendingTake& take) {
    const qsizetype from = commonMoves(take, _told);
    SessionDocument document = SessionDocument::empty(take.pass.createdAt);
    AutomationPass moves = take.pass;
    moves.initialState.reset();
    moves.events = movesFrom(take, from);
    const bool isTold = moves.events.isEmpty() && from == moveCount(_told) && endOf(take) == endOf(_told);
    if (isTold) return {};
    document.passes = {moves};
    QByteArray bytes;
    const QString error = addRecord(bytes, take, from, document);
    return error.isEmpty() ? _file->write(bytes) : error;
}

void TakeJournal::remove() {
    _file.reset();
    QFile::remove(_path);
}

std::optional<PendingTake> TakeJournal::read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    Records records(file.readAll());
    std::optional<Records::Record> record = records.next();
    if (!record) return std::nullopt;
    PendingTake take{.pass = record->document.passes[0], .chunks = {{}}, .rides = {}};
    if (!record->document.snapshots.isEmpty())
        take.rides = {.end = 0, .baseline = record->document.snapshots[0].channels};
    while ((record = records.next())) {
        QList<TimedEvent>& moves = take.chunks.last();
        if (record->document.passes[0].id != take.pass.id || record->from > moves.size()) break;
        moves.resize(record->from);
        moves += record->document.passes[0].events;
        if (take.rides) take.rides->end = record->end;
    }
    return take;
}

} // namespace tessik
