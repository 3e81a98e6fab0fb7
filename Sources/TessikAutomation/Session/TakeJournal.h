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
/// All of it blocks on the disk. Calls come from one thread at a time.
class TakeJournal {
public:
    explicit TakeJournal(QString path) : _path(std::move(path)) {}

    struct Written {
        QString error;               ///< why it failed, empty where it did not
        std::function<void()> flush; ///< waits until the disk holds it; on any thread
    };
    /// Brings the file up to the take, which is always the same one. After a failure the next call tries all again.
    Written write(const PendingTake& take);
    /// The take is safe elsewhere.
    void remove();

    /// The take that a journal holds; none where not even its beginning is whole.
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
