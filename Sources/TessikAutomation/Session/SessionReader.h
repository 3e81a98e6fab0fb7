#pragma once

#include "TessikAutomation/Session/FileStamp.h"
#include "TessikAutomation/Session/SessionDocument.h"

#include <QStringList>

#include <vector>

namespace tessik {

/// The outcome of reading a session. The top level is lenient: a key that is missing or does not decode falls back to
/// its default by itself. Everything inside a key is strict. What is not a JSON object does not open.
struct SessionReadResult {
    std::optional<SessionDocument> document; ///< none if the file cannot be opened
    QString error;                           ///< why not, as a sentence; empty if there is a document

    struct Fallback {
        QString key;
        QString reason;     ///< with the path of the faulty value: "passes[1].name: not a string"
        qsizetype line = 0; ///< of the file, at that value; 0 if the key is missing
    };
    std::vector<Fallback> fallbacks; ///< in the order of the keys
    QStringList unknownKeys;         ///< of the top level
    FileStamp stamp;                 ///< of the file that was read

    /// What of the file is not in `document`, in words, with line numbers; empty if nothing was left out.
    QString leftOut() const;
};

/// Deepest nesting of values.
inline constexpr int maxSessionDepth = 512;

/// Reads a regular file of less than 4 GiB. `now` stands in for missing dates.
SessionReadResult readSession(const QString& path, const QDateTime& now);
/// Reads the text of a session file.
SessionReadResult parseSession(QByteArrayView json, const QDateTime& now);

} // namespace tessik
