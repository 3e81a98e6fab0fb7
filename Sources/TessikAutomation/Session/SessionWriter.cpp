#include "TessikAutomation/Session/SessionWriter.h"

#include <rapidjson/writer.h>

#include <cmath>
#include <memory>

namespace tessik {
namespace {

/// RapidJSON's output stream over a device: buffered, checked, and with line breaks between records.
class Sink {
public:
    using Ch = char;

    explicit Sink(QIODevice& device) : _device(device) {}

    void Put(char c) {
        if (_breakBefore) {
            _breakBefore = false;
            if (c == ',')
                append(std::exchange(c, '\n'));
            else
                append('\n');
        }
        append(c);
    }
    void Flush() {
        const char* next = _buffer.get();
        // A short write explains nothing yet: trying the rest tells why.
        for (auto left = qint64(_used); left > 0 && _failure.isEmpty();) {
            const qint64 written = _device.write(next, left);
            if (written <= 0) fail(_device.errorString());
            next += written;
            left -= written;
        }
        _used = 0;
    }

    /// Puts what comes next on its own line: the break goes right before it, or after the comma before it.
    void breakLine() { _breakBefore = true; }
    void fail(const QString& why) {
        if (_failure.isEmpty()) _failure = why;
    }
    const QString& failure() const { return _failure; }

private:
    static constexpr std::size_t capacity = 256 * 1024;

    void append(char c) {
        if (_used == capacity) Flush();
        _buffer[_used++] = c;
    }

    QIODevice& _device;
    const std::unique_ptr<char[]> _buffer = std::make_unique_for_overwrite<char[]>(capacity);
    std::size_t _used = 0;
    bool _breakBefore = false;
    QString _failure;
};

/// Writes values in the form that the decoder reads.
class Encoder {
public:
    explicit Encoder(Sink& sink) : _sink(sink), _json(sink) {}

    void write(bool value) { _json.Bool(value); }
    void write(std::int64_t value) { _json.Int64(value); }
    void write(double value) {
        if (!std::isfinite(value)) _sink.fail(QStringLiteral("A value of the session is not a number."));
        _json.Double(std::isfinite(value) ? value : 0.0);
    }
    void write(const QString& value) {
        const QByteArray text = value.toUtf8();
        _json.String(text.constData(), rapidjson::SizeType(text.size()));
    }
    void write(const QUuid& value) { write(value.toString(QUuid::WithoutBraces).toUpper()); }
    void write(const QDateTime& value) { write(value.toUTC().toString(Qt::ISODate)); }
    void write(MTCFrameRate value) { _json.Int(int(value)); }
    void write(ChannelKind value) {
        _json.StartObject();
        switch (value.kind()) {
        case ChannelKind::Case::input: writeUnlabelled("input", value.number()); break;
        case ChannelKind::Case::group: writeUnlabelled("group", value.number()); break;
        case ChannelKind::Case::stereo:
            key("stereo");
            _json.StartObject();
            _json.EndObject();
            break;
        }
        _json.EndObject();
    }
    void write(const PassEventValue& value) {
        _json.StartObject();
        switch (value.kind()) {
        case PassEventValue::Case::fader: writeUnlabelled("fader", value.fader()); break;
        case PassEventValue::Case::switches:
            key("switches");
            write(value.switches());
            break;
        }
        _json.EndObject();
    }

    template <typename T>
    void write(const QList<T>& list) {
        _json.StartArray();
        for (const T& item : list) {
            _sink.breakLine();
            write(item);
        }
        if (!list.isEmpty()) _sink.breakLine();
        _json.EndArray();
    }
    template <typename T>
    void write(const QMap<QString, T>& map) {
        _json.StartObject();
        for (auto entry = map.begin(); entry != map.end(); ++entry) {
            _sink.breakLine();
            const QByteArray name = entry.key().toUtf8();
            _json.Key(name.constData(), rapidjson::SizeType(name.size()));
            write(entry.value());
        }
        if (!map.isEmpty()) _sink.breakLine();
        _json.EndObject();
    }
    template <SavedRecord Record>
    void write(const Record& record) {
        _json.StartObject();
        std::apply([&](const auto&... field) { (writeField(field.key, record.*field.member), ...); },
                   recordFields<Record>);
        _json.EndObject();
    }
    /// The whole file: each of its keys starts a line.
    void writeTop(const SessionDocument& document) {
        _json.StartObject();
        const auto each = [&](const auto& field) {
            _sink.breakLine();
            writeField(field.key, document.*field.member);
        };
        std::apply([&](const auto&... field) { (each(field), ...); }, recordFields<SessionDocument>);
        _sink.breakLine();
        _json.EndObject();
        _sink.Put('\n');
        _sink.Flush();
    }

private:
    template <typename T>
    void writeField(std::string_view name, const T& value) {
        key(name);
        write(value);
    }
    template <typename T>
    void writeField(std::string_view name, const std::optional<T>& value) {
        if (value) writeField(name, *value);
    }
    void writeUnlabelled(std::string_view name, std::int64_t payload) {
        key(name);
        _json.StartObject();
        key("_0");
        _json.Int64(payload);
        _json.EndObject();
    }
    void key(std::string_view name) { _json.Key(name.data(), rapidjson::SizeType(name.size())); }

    Sink& _sink;
    rapidjson::Writer<Sink, rapidjson::UTF8<>, rapidjson::UTF8<>, rapidjson::CrtAllocator,
                      rapidjson::kWriteValidateEncodingFlag>
        _json;
};

} // namespace

QString writeSession(const SessionDocument& document, QIODevice& device) {
    Sink sink(device);
    Encoder(sink).writeTop(document);
    return sink.failure();
}

} // namespace tessik
