#pragma once

#include "TessikAutomation/Automation/TimedEvent.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QUuid>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <string_view>
#include <vector>

namespace tessik {

/// Strictly decodes values of one on-demand JSON document, walking the records' field tables. After a failure the
/// document cannot be read further; `error` says what failed and where.
///
/// On-demand parsing accepts nonsense in what it skips, so nothing is skipped: `walk` reads a value down to its leaves.
class JSONDecoder {
public:
    using Value = simdjson::ondemand::value;
    explicit JSONDecoder(const simdjson::ondemand::parser& parser) : _parser(parser) {}

    bool decode(Value value, bool& out);
    /// 64-bit, or written as a fraction that is integral and below 2^53.
    bool decode(Value value, std::int64_t& out);
    bool decode(Value value, double& out);
    bool decode(Value value, QString& out);
    /// The hyphenated form of 36 characters, in either case.
    bool decode(Value value, QUuid& out);
    /// ISO 8601 with date, time and zone, without fractions; converted to UTC.
    bool decode(Value value, QDateTime& out);
    bool decode(Value value, MTCFrameRate& out);
    /// Clamped to where frames can be counted.
    bool decode(Value value, TimecodePosition& out);
    /// Exactly one case key; other keys are ignored.
    bool decode(Value value, ChannelKind& out);
    /// Exactly one key, which is a case.
    bool decode(Value value, PassEventValue& out);
    bool decode(Value value, QList<TimedEvent>& out);

    /// null is none.
    template <typename T>
    bool decode(Value value, std::optional<T>& out);
    template <typename T>
    bool decode(Value value, QList<T>& out);
    template <typename T>
    bool decode(Value value, QMap<QString, T>& out);
    /// Requires every key that is not optional; of duplicates, takes the first. Walks unknown keys.
    template <SavedRecord Record>
    bool decode(Value value, Record& out);

    /// One field of a record, by its place in the table.
    template <SavedRecord Record>
    bool decodeField(std::size_t index, Value value, Record& out);

    /// Reads an unwanted value, to check that it is JSON.
    bool walk(Value value);

    /// Calls `visit(key, value)` for each member, and fails if it returns false or the object is not JSON. The key
    /// stays valid until the next text is read. `expected()` names the key that mostly comes next.
    template <typename Expected, typename Visit>
    bool members(simdjson::ondemand::object object, Expected expected, Visit visit);

    /// "passes[1].name: not a string", relative to the value that was asked for: "[1].name: not a string".
    QString error() const { return _where + QStringLiteral(": ") + _what; }
    QString what() const { return _what; }
    /// The position of the value that `walk` could not read; null if the fault lies between values.
    const char* faultyValue() const { return _faultyValue; }

private:
    template <typename Expected, typename Visit>
    bool members(Value value, Expected expected, Visit visit);
    template <typename Visit>
    bool members(Value value, Visit visit);
    template <typename Visit>
    bool elements(Value value, Visit visit);
    bool walkLeaf(Value value, simdjson::ondemand::json_type type);
    bool text(Value value, std::string_view& out);
    bool plain(simdjson::ondemand::raw_json_string raw, std::string_view& out);
    bool fail(const char* what);
    bool failInside(const QString& step);
    bool failJSON();

    const simdjson::ondemand::parser& _parser;
    std::vector<std::uint8_t> _unescaped;
    std::vector<TimedEvent> _events; // grows once for all passes, so that each list is allocated only once
    int _depth = 0;
    QString _what;
    QString _where;
    const char* _faultyValue = nullptr;
};

template <typename Expected, typename Visit>
bool JSONDecoder::members(Value value, Expected expected, Visit visit) {
    simdjson::ondemand::object object;
    return value.get_object().get(object) ? fail("not an object") : members(object, expected, visit);
}

template <typename Visit>
bool JSONDecoder::members(Value value, Visit visit) {
    return members(
        value, [] { return std::string_view(); }, visit);
}

template <typename Expected, typename Visit>
bool JSONDecoder::members(simdjson::ondemand::object object, Expected expected, Visit visit) {
    if (++_depth > maxSessionDepth) return fail("nested too deep");
    for (auto member : object) {
        simdjson::ondemand::field field;
        if (std::move(member).get(field)) return failJSON();
        std::string_view key = expected();
        const bool asExpected = !key.empty() && field.key().unsafe_is_equal(key);
        if (!asExpected && !plain(field.key(), key)) return false;
        if (!visit(key, field.value())) return false;
    }
    --_depth;
    return true;
}

template <typename Visit>
bool JSONDecoder::elements(Value value, Visit visit) {
    simdjson::ondemand::array array;
    if (value.get_array().get(array)) return fail("not an array");
    if (++_depth > maxSessionDepth) return fail("nested too deep");
    qsizetype index = 0;
    for (auto element : array) {
        Value inner;
        if (std::move(element).get(inner)) return failJSON();
        if (!visit(inner)) return failInside(QStringLiteral("[%1]").arg(index));
        ++index;
    }
    --_depth;
    return true;
}

template <typename T>
bool JSONDecoder::decode(Value value, std::optional<T>& out) {
    bool isNull = false;
    if (value.is_null().get(isNull)) return failJSON();
    if (isNull) {
        out.reset();
        return true;
    }
    return decode(value, out.emplace());
}

template <typename T>
bool JSONDecoder::decode(Value value, QList<T>& out) {
    out.clear();
    return elements(value, [&](Value inner) {
        T item{};
        if (!decode(inner, item)) return false;
        out.append(std::move(item));
        return true;
    });
}

template <typename T>
bool JSONDecoder::decode(Value value, QMap<QString, T>& out) {
    out.clear();
    return members(value, [&](std::string_view key, Value inner) {
        const QString name = QString::fromUtf8(key.data(), qsizetype(key.size()));
        if (out.contains(name)) return walk(inner);
        T item{};
        if (!decode(inner, item)) return failInside(QLatin1Char('.') + name);
        out.insert(name, std::move(item));
        return true;
    });
}

template <SavedRecord Record>
bool JSONDecoder::decodeField(std::size_t index, Value value, Record& out) {
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
        bool decoded = false;
        (void)((I == index && ((decoded = decode(value, out.*std::get<I>(recordFields<Record>).member)), true)) || ...);
        return decoded;
    }
    (std::make_index_sequence<std::tuple_size_v<std::remove_const_t<decltype(recordFields<Record>)>>>());
}

template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;

/// A record's keys, and which of them are required.
template <SavedRecord Record>
struct RecordKeys {
    static constexpr std::size_t count = std::tuple_size_v<std::remove_const_t<decltype(recordFields<Record>)>>;
    static_assert(count <= 64);
    static constexpr std::array<std::string_view, count> names = std::apply(
        [](const auto&... field) { return std::array<std::string_view, count>{field.key...}; }, recordFields<Record>);
    static constexpr std::uint64_t required = std::apply(
        [](const auto&... field) {
            std::uint64_t bits = 0;
            std::uint64_t bit = 1;
            ((bits |= isOptional<std::remove_reference_t<decltype(std::declval<Record&>().*field.member)>> ? 0 : bit,
              bit <<= 1),
             ...);
            return bits;
        },
        recordFields<Record>);

    /// Keys usually come in order.
    static std::string_view name(std::size_t index) { return index < count ? names[index] : std::string_view(); }
    /// The field of a key; `count` if there is none.
    static std::size_t find(std::string_view key, std::size_t expected) {
        if (key.data() == name(expected).data()) return expected;
        return std::size_t(std::find(names.begin(), names.end(), key) - names.begin());
    }
};

template <SavedRecord Record>
bool JSONDecoder::decode(Value value, Record& out) {
    using Keys = RecordKeys<Record>;
    std::uint64_t seen = 0;
    std::size_t expected = 0;
    const auto next = [&] { return Keys::name(expected); };
    const bool decoded = members(value, next, [&](std::string_view key, Value inner) {
        const std::size_t index = Keys::find(key, expected);
        if (index == Keys::count || (seen >> index & 1)) return walk(inner);
        seen |= std::uint64_t(1) << index;
        expected = index + 1;
        const std::string_view name = Keys::names[index];
        return decodeField(index, inner, out) ||
               failInside(QLatin1Char('.') + QString::fromUtf8(name.data(), qsizetype(name.size())));
    });
    if (!decoded) return false;
    if (const std::uint64_t missing = Keys::required & ~seen) {
        const std::string_view name = Keys::names[std::size_t(std::countr_zero(missing))];
        return fail(("the key \"" + std::string(name) + "\" is missing").c_str());
    }
    return true;
}

} // namespace tessik
