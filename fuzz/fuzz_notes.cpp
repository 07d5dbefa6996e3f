#include "fuzz.h"

#include "updates/notes_html.h"

using namespace nivora;

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const QByteArray type = input.line();
    const Notes notes = readNotes(input.rest(), type);
    for (const char *forbidden : {"<script", "<style", "<iframe", "<form", "<object", " onclick="})
        fuzz::check(!notes.html.contains(QLatin1StringView(forbidden)), forbidden);
    // Letters may become escapes of five.
    fuzz::check(notes.html.size() < 4'000'000, "a page of notes has its bound");
    return 0;
}
