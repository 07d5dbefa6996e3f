#include "fuzz.h"

#include "core/event_stream.h"

#include <vector>

using namespace nivora;

// However a stream is cut, it has the same lines.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const int cut = 1 + input.number(64);
    const QByteArray stream = input.rest();
    const auto linesOf = [&](qsizetype piece) {
        std::vector<QByteArray> lines;
        LineSplitter splitter;
        const auto keep = [&](QByteArrayView line) {
            lines.push_back(line.toByteArray());
            return true;
        };
        for (qsizetype at = 0; at < stream.size(); at += piece)
            splitter.feed(stream.mid(at, piece), keep);
        splitter.finish(keep);
        return lines;
    };
    const auto lines = linesOf(std::max<qsizetype>(1, stream.size()));
    fuzz::check(lines == linesOf(cut), "pieces have the lines of the whole");
    for (const QByteArray &line : lines) {
        fuzz::check(!line.contains('\n') && !line.contains('\r'), "a line holds no line end");
        if (const auto event = parseEventLine(line))
            fuzz::check(!event->done || !event->content, "the end brings no content");
        static_cast<void>(parseDelta(line));
    }
    return 0;
}
