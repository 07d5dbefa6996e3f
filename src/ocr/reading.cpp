#include "reading.h"

#include "cjk_text.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <memory>

namespace nivora::ocr {

namespace {

// Screens of twice the usual density, as the picture is after its enlargement.
// Told, so that the engine does not guess it from the picture.
constexpr int dotsPerInch = 192;

QString textAt(const tesseract::ResultIterator &place, tesseract::PageIteratorLevel level)
{
    const std::unique_ptr<char[]> text(place.GetUTF8Text(level));
    return QString::fromUtf8(text.get()).trimmed();
}

QRect boxAt(const tesseract::ResultIterator &place, tesseract::PageIteratorLevel level)
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    place.BoundingBox(level, &left, &top, &right, &bottom);
    return {QPoint(left, top), QPoint(right - 1, bottom - 1)};
}

QList<Symbol> symbolsAt(tesseract::ResultIterator place)
{
    QList<Symbol> symbols;
    do {
        symbols.append({textAt(place, tesseract::RIL_SYMBOL),
                        place.Confidence(tesseract::RIL_SYMBOL),
                        boxAt(place, tesseract::RIL_SYMBOL)});
    } while (!place.IsAtFinalElement(tesseract::RIL_TEXTLINE, tesseract::RIL_SYMBOL) &&
             place.Next(tesseract::RIL_SYMBOL));
    return symbols;
}

} // namespace

double Reading::confidence() const
{
    double sum = 0;
    qsizetype length = 0;
    for (const Line &line : lines) {
        sum += line.confidence * double(line.text.size());
        length += line.text.size();
    }
    return length == 0 ? 0 : sum / double(length);
}

Reader::Reader(const Job &job)
    : m_engine(std::make_unique<tesseract::TessBaseAPI>())
    , m_isLoaded(m_engine->Init(nullptr, job.model.constData(), tesseract::OEM_LSTM_ONLY) == 0)
    , m_isVertical(job.vertical)
{
    // Nothing of the picture is light on dark any more; without this, a model that
    // does not fit tries every line a second time.
    m_engine->SetVariable("invert_threshold", "0");
}

Reader::~Reader() = default;

QList<Line> Reader::read(Pix *picture)
{
    m_engine->SetPageSegMode(m_isVertical ? tesseract::PSM_SINGLE_BLOCK_VERT_TEXT
                                          : tesseract::PSM_SINGLE_BLOCK);
    m_engine->SetImage(picture);
    m_engine->SetSourceResolution(dotsPerInch);
    QList<Line> lines;
    if (m_engine->Recognize(nullptr) != 0)
        return lines;
    const std::unique_ptr<tesseract::ResultIterator> place(m_engine->GetIterator());
    if (!place)
        return lines;
    do {
        const QString text = writtenAsCjk(textAt(*place, tesseract::RIL_TEXTLINE));
        if (!text.isEmpty())
            lines.append({text, place->Confidence(tesseract::RIL_TEXTLINE),
                          boxAt(*place, tesseract::RIL_TEXTLINE), symbolsAt(*place)});
    } while (place->Next(tesseract::RIL_TEXTLINE));
    return lines;
}

} // namespace nivora::ocr
