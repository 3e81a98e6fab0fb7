// A whole session file of any bytes: it opens exactly where it is JSON with an object on top, and what was opened is
// written and reads back equal. Its labels can be counted with.
#include "TessikAutomation/Automation/PassIndex.h"
#include "TessikAutomation/Persistence/WallClock.h"
#include "TessikAutomation/Session/LocateTarget.h"
#include "TessikAutomation/Session/SessionReader.h"
#include "TessikAutomation/Session/SessionWriter.h"

#include <QBuffer>
#include <simdjson.h>

using namespace tessik;

namespace {

void require(bool holds) {
    if (!holds) __builtin_trap();
}

enum class Validity { valid, invalid, numbersTooLarge };

/// What a parser that reads everything says. It refuses some numbers that are valid JSON but fit no type.
Validity validity(QByteArrayView bytes) {
    simdjson::dom::parser parser;
    if (bytes.startsWith("\xEF\xBB\xBF") || parser.allocate(std::size_t(bytes.size()), maxSessionDepth + 1))
        return Validity::invalid;
    simdjson::dom::element top;
    switch (parser.parse(bytes.data(), std::size_t(bytes.size())).get(top)) {
    case simdjson::SUCCESS: return top.is_object() ? Validity::valid : Validity::invalid;
    case simdjson::NUMBER_ERROR: return Validity::numbersTooLarge; // or no number at all
    default: return Validity::invalid;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArrayView text(bytes, qsizetype(size));
    const QDateTime now = dateOfSecond(0);
    const SessionReadResult result = parseSession(text, now);
    require(result.document.has_value() == result.error.isEmpty());
    const Validity valid = validity(text);
    if (valid != Validity::numbersTooLarge) require(result.document.has_value() == (valid == Validity::valid));
    if (!result.document) return 0;

    for (const AutomationPass& pass : result.document->passes)
        pass.offsetOf(0, PassIndex(pass.events).lastOffset());
    for (const AutomationPass& pass : result.document->passes)
        for (const TimedEvent& event : pass.events)
            LocateTarget::passEnd(pass.startTimecode, event.frameOffset);
    for (const auto& locator : {result.document->startLocator, result.document->endLocator})
        if (locator) locator->totalFrames();

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    require(writeSession(*result.document, buffer).isEmpty());
    const SessionReadResult again = parseSession(buffer.data(), now);
    require(again.document && again.fallbacks.empty() && again.unknownKeys.isEmpty());
    require(*again.document == *result.document);
    return 0;
}
