#include "TessikAutomation/Session/JSONDecoder.h"

#include "TessikAutomation/Persistence/WallClock.h"

#include <cmath>

namespace tessik {

using namespace simdjson;

namespace {

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// The number in a run of digits, -1 for anything else.
int digits(std::string_view text) {
    if (!isDigits(text)) return -1;
    int number = 0;
    for (const char c : text)
        number = number * 10 + (c - '0');
    return number;
}

/// -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
bool isJSONNumber(std::string_view text) {
    std::size_t at = 0;
    const auto take = [&](std::string_view any) {
        const bool there = at < text.size() && any.find(text[at]) != std::string_view::npos;
        at += there ? 1 : 0;
        return there;
    };
    const auto takeDigits = [&] {
        const std::size_t start = at;
        while (take("0123456789")) {
        }
        return at > start;
    };
    take("-");
    if (!take("0") && !takeDigits()) return false;
    if (take(".") && !takeDigits()) return false;
    if (take("eE")) {
        take("+-");
        if (!takeDigits()) return false;
    }
    return at == text.size();
}

} // namespace

bool JSONDecoder::fail(const char* what) {
    _what = QString::fromUtf8(what);
    _where.clear();
    return false;
}

bool JSONDecoder::failInside(const QString& step) {
    _where.prepend(step);
    return false;
}

bool JSONDecoder::failJSON() { return fail("something is missing or out of place"); }

bool JSONDecoder::decode(Value value, bool& out) {
    return value.get_bool().get(out) ? fail("not true or false") : true;
}

bool JSONDecoder::decode(Value value, std::int64_t& out) {
    if (!value.get_int64().get(out)) return true;
    double number = 0;
    if (value.get_double().get(number) || std::abs(number) >= 0x1p53 || std::trunc(number) != number)
        return fail("not an integer of 64 bits");
    out = std::int64_t(number);
    return true;
}

bool JSONDecoder::decode(Value value, double& out) {
    return value.get_double().get(out) ? fail("not a number in the range of a double") : true;
}

bool JSONDecoder::decode(Value value, QString& out) {
    std::string_view view;
    if (!text(value, view)) return false;
    out = QString::fromUtf8(view.data(), qsizetype(view.size()));
    return true;
}

bool JSONDecoder::decode(Value value, QUuid& out) {
    std::string_view view;
    if (!text(value, view)) return false;
    bool formed = view.size() == 36;
    for (std::size_t i = 0; formed && i < view.size(); ++i)
        formed = i == 8 || i == 13 || i == 18 || i == 23 ? view[i] == '-' : isHexDigit(view[i]);
    if (!formed) return fail("not a UUID");
    out = QUuid::fromString(QLatin1String(view.data(), 36));
    return true;
}

bool JSONDecoder::decode(Value value, QDateTime& out) {
    std::string_view view;
    if (!text(value, view)) return false;
    // 2026-01-05T14:03:22Z or 2026-01-05T14:03:22+01:00
    const bool formed = (view.size() == 20 || view.size() == 25) && view[4] == '-' && view[7] == '-' &&
                        view[10] == 'T' && view[13] == ':' && view[16] == ':';
    if (!formed) return fail("not a date in ISO 8601 without fractions");
    const auto at = [&](std::size_t position, std::size_t length) { return digits(view.substr(position, length)); };
    int offset = 0;
    if (view.size() == 25) {
        const int hours = at(20, 2);
        const int minutes = at(23, 2);
        if ((view[19] != '+' && view[19] != '-') || view[22] != ':' || hours < 0 || hours > 23 || minutes < 0 ||
            minutes > 59)
            return fail("a date without a time zone");
        offset = (hours * 60 + minutes) * (view[19] == '-' ? -60 : 60);
    } else if (view[19] != 'Z') {
        return fail("a date without a time zone");
    }
    const QDate date(at(0, 4), at(5, 2), at(8, 2));
    const QTime time(at(11, 2), at(14, 2), at(17, 2));
    if (!date.isValid() || !time.isValid()) return fail("not a date of the calendar");
    static const qint64 epochDay = QDate(1970, 1, 1).toJulianDay();
    out = dateOfSecond((date.toJulianDay() - epochDay) * 86'400 + time.msecsSinceStartOfDay() / 1000 - offset);
    return out.date().year() >= 1 && out.date().year() <= 9999 ? true : fail("not a date of the years 1 to 9999");
}

bool JSONDecoder::decode(Value value, MTCFrameRate& out) {
    std::int64_t raw = 0;
    if (!decode(value, raw)) return false;
    const std::optional<MTCFrameRate> rate = mtcFrameRateFromRawValue(raw);
    if (!rate) return fail("not a frame rate (0 to 3)");
    out = *rate;
    return true;
}

bool JSONDecoder::decode(Value value, TimecodePosition& out) {
    if (!decode<TimecodePosition>(value, out)) return false;
    out = out.bounded();
    return true;
}

namespace {
constexpr const char* oneKeyExpected = "Invalid number of keys found, expected one.";
constexpr std::size_t noCase = 99;

/// A payload without a label: {"_0": 5}.
struct Unlabelled {
    std::int64_t number = 0;
};
} // namespace

template <>
inline constexpr auto recordFields<Unlabelled> = std::tuple{RecordField{"_0", &Unlabelled::number}};

bool JSONDecoder::decode(Value value, ChannelKind& out) {
    static constexpr std::array<std::string_view, 3> cases{"input", "group", "stereo"};
    std::size_t found = noCase;
    bool several = false;
    Unlabelled payload;
    const bool decoded = members(value, [&](std::string_view key, Value inner) {
        const auto index = std::size_t(std::find(cases.begin(), cases.end(), key) - cases.begin());
        if (index == cases.size() || index == found) return walk(inner);
        several = several || found != noCase;
        if (several) return walk(inner);
        found = index;
        if (index == 2) return members(inner, [this](std::string_view, Value any) { return walk(any); });
        return decode(inner, payload) ||
               failInside(QLatin1Char('.') + QLatin1String(cases[index].data(), qsizetype(cases[index].size())));
    });
    if (!decoded) return false;
    if (found == noCase || several) return fail(oneKeyExpected);
    out = found == 0   ? ChannelKind::input(payload.number)
          : found == 1 ? ChannelKind::group(payload.number)
                       : ChannelKind::stereo();
    return true;
}

bool JSONDecoder::decode(Value value, PassEventValue& out) {
    static constexpr std::array<std::string_view, 2> cases{"fader", "switches"};
    std::size_t found = noCase;
    const bool decoded = members(value, [&](std::string_view key, Value inner) {
        const auto index = std::size_t(std::find(cases.begin(), cases.end(), key) - cases.begin());
        if (found != noCase && index == found) return walk(inner);
        if (index == cases.size() || found != noCase) return fail(oneKeyExpected);
        found = index;
        if (index == 0) {
            Unlabelled payload;
            if (!decode(inner, payload)) return failInside(QStringLiteral(".fader"));
            out = PassEventValue::fader(payload.number);
        } else {
            ChannelSwitches switches;
            if (!decode(inner, switches)) return failInside(QStringLiteral(".switches"));
            out = PassEventValue::switches(switches);
        }
        return true;
    });
    if (!decoded) return false;
    return found != noCase ? true : fail(oneKeyExpected);
}

bool JSONDecoder::decode(Value value, QList<TimedEvent>& out) {
    _events.clear();
    if (!elements(value, [this](Value inner) { return decode(inner, _events.emplace_back()); })) return false;
    out = QList<TimedEvent>(_events.begin(), _events.end());
    return true;
}

bool JSONDecoder::walk(Value value) {
    const char* const start = value.raw_json_token().data();
    ondemand::json_type type{};
    const bool isTyped = !value.type().get(type);
    if (isTyped && type == ondemand::json_type::array)
        return elements(value, [this](Value inner) { return walk(inner); });
    if (isTyped && type == ondemand::json_type::object)
        return members(value, [this](std::string_view, Value inner) { return walk(inner); });
    if (isTyped && walkLeaf(value, type)) return true;
    _faultyValue = start;
    return isTyped ? false : fail("not a value");
}

bool JSONDecoder::walkLeaf(Value value, ondemand::json_type type) {
    switch (type) {
    case ondemand::json_type::string: {
        std::string_view ignored;
        return text(value, ignored);
    }
    case ondemand::json_type::boolean: {
        bool ignored = false;
        return decode(value, ignored);
    }
    case ondemand::json_type::null: {
        bool isNull = false;
        if (value.is_null().get(isNull)) return failJSON();
        return isNull ? true : fail("not a value");
    }
    default: break;
    }
    std::string_view token = value.raw_json_token(); // up to the next token: white space may follow
    token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
    return isJSONNumber(token) ? true : fail("not a number");
}

bool JSONDecoder::text(Value value, std::string_view& out) {
    ondemand::raw_json_string raw;
    if (value.get_raw_json_string().get(raw)) return fail("not a string");
    return plain(raw, out);
}

// Most strings hold no escapes and are used in place: unescaping them all would touch as much memory again.
bool JSONDecoder::plain(ondemand::raw_json_string raw, std::string_view& out) {
    const char* const start = raw.raw();
    const char* end = start;
    while (*end != '"' && *end != '\\')
        ++end;
    if (*end == '"') {
        out = {start, std::size_t(end - start)};
        return true;
    }
    while (*end != '"')
        end += *end == '\\' ? 2 : 1;
    _unescaped.resize(std::size_t(end - start) + 2 * SIMDJSON_PADDING); // unescaping writes whole blocks
    std::uint8_t* room = _unescaped.data();
    if (_parser.unescape(raw, room).get(out)) return failJSON();
    return true;
}

} // namespace tessik
