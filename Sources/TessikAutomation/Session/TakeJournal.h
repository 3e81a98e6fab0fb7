#pragma once

#include "TessikAutomation/Automation/PendingTake.h"

#include <functional>
#include <memory>

namespace tessik {

/// The journal of a take being recorded: a file that only grows, so that a kill costs no more than what was not yet
/// appended.
///
/// It is a row of records: a line "take FROM END LENGTH" and a session's text of that length with one pass. The first
/// holds the take as it began, and for rides their baseline as a snapshot; each later one the moves that follow the
/// first FROM of those before, and where rides end by now. Whatever does not decode, such as a
/// truncated record, ends the row.
///
/// Everything blocks on the disk. Call from one thread at a time.
class TakeJournal {
public:
    explicit TakeJournal(QString path) : _path(std::move(path)) {}

    struct Written {
        QString error;               ///< why it failed; empty on success
        std::function<void()> flush; ///< waits until the disk holds it; any thread
    };
    /// Brings the file up to date with the take, always the same one. After a failure the next call tries everything
    /// again.
    Written write(const PendingTake& take);
    /// The take is safe elsewhere.
    void remove();

    /// The take in a journal; none if not even its beginning is whole.
    static std::optional<PendingTake> read(const QString& path);

private:
    struct OpenFile;

    QString begin(const PendingTake& take);
    QString append(const PendingTake& take);

    const QString _path;
    std::shared_ptr<const OpenFile> _file;
    PendingTake _told; // what the file holds
};

} // namespace tessik
