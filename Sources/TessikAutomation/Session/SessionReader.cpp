#include "TessikAutomation/Session/SessionReader.h"

#include "TessikAutomation/Session/JSONDecoder.h"

#include <QFile>

#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessik {
namespace {

using Keys = RecordKeys<SessionDocument>;
/// Why a top-level key did not decode.
struct Failure {
    QString reason;
    qsizetype line = 0;
};
using Failures = std::array<std::optional<Failure>, Keys::count>;

enum class Attempt { done, keyFailed, noSession };

SessionReadResult cannotOpen(const QString& error) {
    SessionReadResult result;
    result.error = error;
    return result;
}

qsizetype lineAt(std::string_view json, std::size_t at) {
    return 1 + std::count(json.begin(), json.begin() + std::ptrdiff_t(at), '\n');
}

/// The file is not JSON; gives the place by the line and the last key before it.
QString damagedAt(std::string_view json, std::size_t at, const QString& what) {
    const std::string_view before = json.substr(0, at);
    std::string_view key;
    std::string_view text;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i] == ':') key = text;
        if (before[i] != '"') continue;
        const std::size_t start = ++i;
        while (i < before.size() && before[i] != '"')
            i += before[i] == '\\' ? 2 : 1;
        text = before.substr(start, std::min(i, before.size()) - start);
    }
    const qsizetype line = lineAt(json, at);
    if (key.empty()) return QStringLiteral("The file is damaged in line %1: %2.").arg(line).arg(what);
    return QStringLiteral("The file is damaged in line %1, at “%2”: %3.")
        .arg(line)
        .arg(QString::fromUtf8(key.data(), qsizetype(key.size())), what);
}

/// Where a string begins that has no closing quote before the end of its line or of the file; JSON strings do not span
/// lines.
std::size_t openText(std::string_view json) {
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (json[i] != '"') continue;
        const std::size_t start = i++;
        while (i < json.size() && json[i] != '"' && static_cast<unsigned char>(json[i]) >= 0x20)
            i += json[i] == '\\' ? 2 : 1;
        if (i >= json.size() || json[i] != '"') return start;
    }
    return json.size();
}

/// The first character that is not UTF-8.
std::size_t brokenCharacter(std::string_view json) {
    std::size_t at = 0;
    while (at < json.size()) {
        const auto lead = static_cast<unsigned char>(json[at]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (length > 1 && !simdjson::validate_utf8(json.data() + at, std::min(length, json.size() - at))) break;
        at += length;
    }
    return at;
}

QString describe(simdjson::error_code code, std::string_view json) {
    switch (code) {
    case simdjson::EMPTY: return QStringLiteral("The file is empty.");
    case simdjson::UTF8_ERROR:
        return damagedAt(json, brokenCharacter(json), QStringLiteral("it holds bytes that are not text"));
    case simdjson::UNCLOSED_STRING:
    case simdjson::UNESCAPED_CHARS: return damagedAt(json, openText(json), QStringLiteral("a text is never closed"));
    case simdjson::INCOMPLETE_ARRAY_OR_OBJECT:
        return damagedAt(json, json.size(), QStringLiteral("the file ends too soon"));
    case simdjson::MEMALLOC: return QStringLiteral("There is not enough memory to read the file.");
    case simdjson::INCORRECT_TYPE: return QStringLiteral("The file is not a session: its top level is not an object.");
    default: return QStringLiteral("The file is not a session.");
    }
}

/// One pass over the document in file order. Keys that have already failed are only walked.
class SessionAttempt {
public:
    SessionAttempt(simdjson::padded_string_view json, Failures& failures) : _json(json), _failures(failures) {}

    Attempt run(simdjson::ondemand::parser& parser, SessionReadResult& result) {
        simdjson::ondemand::document document;
        simdjson::ondemand::object top;
        if (const auto code = parser.iterate(_json).get(document)) return noSession(result, describe(code, _text));
        if (const auto code = document.get_object().get(top)) return noSession(result, describe(code, _text));
        JSONDecoder decoder(parser);
        bool keyFailed = false;
        const auto next = [this] { return Keys::name(_expected); };
        const bool walked = decoder.members(top, next, [&](std::string_view key, JSONDecoder::Value value) {
            const std::size_t index = Keys::find(key, _expected);
            if (index == Keys::count) result.unknownKeys += QString::fromUtf8(key.data(), qsizetype(key.size()));
            if (index == Keys::count || (_seen >> index & 1)) return decoder.walk(value);
            _seen |= std::uint64_t(1) << index;
            _expected = index + 1;
            if (_failures[index]) return decoder.walk(value);
            if (decoder.decodeField(index, value, *result.document)) return true;
            const std::string_view name = Keys::names[index];
            _failures[index] = {QString::fromUtf8(name.data(), qsizetype(name.size())) + decoder.error(),
                                lineOf(document)};
            keyFailed = true;
            return false;
        });
        if (keyFailed) return Attempt::keyFailed;
        if (!walked) return noSession(result, notJSON(document, decoder));
        if (const char* rest = nullptr; !document.current_location().get(rest))
            return noSession(result, QStringLiteral("Something follows the end of the session."));
        for (std::size_t i = 0; i < Keys::count; ++i)
            if (!(_seen >> i & 1) && (Keys::required >> i & 1)) _failures[i] = {QStringLiteral("the key is missing")};
        return Attempt::done;
    }

private:
    static Attempt noSession(SessionReadResult& result, const QString& error) {
        result = cannotOpen(error);
        return Attempt::noSession;
    }

    /// The line of the last value read: what follows it may be on a later line.
    qsizetype lineOf(simdjson::ondemand::document& document) const {
        const char* at = nullptr;
        if (document.current_location().get(at)) return 0;
        std::size_t end = std::size_t(at - _json.data());
        while (end > 0 && std::strchr(" \t\r\n,]}", _json.data()[end - 1]))
            --end;
        return lineAt(_text, end);
    }

    QString notJSON(simdjson::ondemand::document& document, const JSONDecoder& decoder) const {
        const char* at = decoder.faultyValue();
        const bool isKnown =
            (at || !document.current_location().get(at)) && at >= _json.data() && at <= _json.data() + _json.size();
        return damagedAt(_text, isKnown ? std::size_t(at - _json.data()) : _json.size(), decoder.what());
    }

    const simdjson::padded_string_view _json;
    const std::string_view _text{_json.data(), _json.size()};
    Failures& _failures;
    std::uint64_t _seen = 0;
    std::size_t _expected = 0;
};

SessionReadResult parsePadded(simdjson::padded_string_view json, const QDateTime& now) {
    if (QByteArrayView(json.data(), qsizetype(json.size())).startsWith("\xEF\xBB\xBF"))
        return cannotOpen(QStringLiteral("The file begins with a byte-order mark, which is not valid JSON."));
    simdjson::ondemand::parser parser;
    if (const auto code = parser.allocate(json.size())) return cannotOpen(describe(code, {json.data(), json.size()}));
    Failures failures;
    SessionReadResult result;
    Attempt attempt = Attempt::keyFailed;
    while (attempt == Attempt::keyFailed) {
        result = {};
        result.document = SessionDocument::empty(now);
        attempt = SessionAttempt(json, failures).run(parser, result);
    }
    if (attempt == Attempt::noSession) return result;
    for (std::size_t i = 0; i < Keys::count; ++i)
        if (failures[i])
            result.fallbacks.push_back({QString::fromUtf8(Keys::names[i].data(), qsizetype(Keys::names[i].size())),
                                        failures[i]->reason, failures[i]->line});
    return result;
}

struct FreeBytes {
    void operator()(char* bytes) const { std::free(bytes); }
};

/// Bytes followed by the padding that the parser reads into.
struct PaddedBytes {
    std::unique_ptr<char, FreeBytes> bytes;
    std::size_t size = 0;

    explicit PaddedBytes(std::size_t wanted) : size(wanted) {
        constexpr std::size_t hugePage = std::size_t(2) << 20; // far fewer page faults for a large file
        const std::size_t room = wanted + simdjson::SIMDJSON_PADDING;
        void* memory = nullptr;
        if (room < hugePage) {
            memory = std::malloc(room);
        } else if (posix_memalign(&memory, hugePage, room) == 0) {
            madvise(memory, room, MADV_HUGEPAGE);
        }
        bytes.reset(static_cast<char*>(memory));
        if (bytes) std::fill_n(bytes.get() + wanted, simdjson::SIMDJSON_PADDING, '\0');
    }
    simdjson::padded_string_view view() const {
        return simdjson::padded_string_view(bytes.get(), size, size + simdjson::SIMDJSON_PADDING);
    }
};

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

} // namespace

QString SessionReadResult::leftOut() const {
    QStringList parts;
    for (const Fallback& fallback : fallbacks)
        if (fallback.line > 0) parts += QStringLiteral("line %1, %2").arg(fallback.line).arg(fallback.reason);
    return parts.join(QStringLiteral("; "));
}

SessionReadResult parseSession(QByteArrayView json, const QDateTime& now) {
    const PaddedBytes padded{std::size_t(json.size())};
    std::copy(json.begin(), json.end(), padded.bytes.get());
    return parsePadded(padded.view(), now);
}

SessionReadResult readSession(const QString& path, const QDateTime& now) {
    // Without O_NONBLOCK, opening a pipe would wait for its writer.
    const int opened = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (opened < 0) return cannotOpen(QStringLiteral("The file cannot be opened: %1.").arg(systemError()));
    QFile file;
    file.open(opened, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    struct stat status {};
    if (fstat(opened, &status) != 0) return cannotOpen(systemError());
    if (S_ISDIR(status.st_mode)) return cannotOpen(QStringLiteral("This is a folder, not a session file."));
    if (!S_ISREG(status.st_mode)) return cannotOpen(QStringLiteral("This is not a regular file."));
    if (status.st_size >= qint64(simdjson::SIMDJSON_MAXSIZE_BYTES))
        return cannotOpen(QStringLiteral("The file is too large: a session is smaller than 4 GiB."));
    if (status.st_size == 0) return cannotOpen(describe(simdjson::EMPTY, {}));
    const PaddedBytes padded{std::size_t(status.st_size)};
    if (!padded.bytes) return cannotOpen(describe(simdjson::MEMALLOC, {}));
    for (qint64 have = 0; have < status.st_size;) {
        const qint64 got = file.read(padded.bytes.get() + have, status.st_size - have);
        if (got < 0) return cannotOpen(QStringLiteral("The file cannot be read: %1.").arg(file.errorString()));
        if (got == 0) return cannotOpen(QStringLiteral("The file became shorter while it was read."));
        have += got;
    }
    SessionReadResult result = parsePadded(padded.view(), now);
    result.stamp = FileStamp::of(status);
    return result;
}

} // namespace tessik
