#include "platform_linux/tesseract_recognizer.h"

#include "program_run.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

constexpr auto longEnough = 20s; // a screen full of small print on a slow machine

Program reader(const QStringList &languages)
{
    // More threads than one make the engine several times slower, and it reads
    // this before any code of the program runs.
    return {.name = u"nivora-ocr"_s,
            .arguments = languages,
            .input = {},
            .variables = {{u"OMP_THREAD_LIMIT"_s, u"1"_s}},
            .bound = longEnough};
}

} // namespace

// Holds a reader that has its models in memory, until one takes it.
class TesseractRecognizer::Preparation final : public platform::Operation
{
public:
    explicit Preparation(const QStringList &languages)
        : m_languages(languages)
        , m_ready(std::make_unique<ReadyProgram>(reader(languages)))
    {
    }

    std::unique_ptr<ReadyProgram> take(const QStringList &languages)
    {
        return languages == m_languages ? std::move(m_ready) : nullptr;
    }

private:
    void stop() override { m_ready.reset(); }

    QStringList m_languages;
    std::unique_ptr<ReadyProgram> m_ready;
};

TesseractRecognizer::TesseractRecognizer() = default;
TesseractRecognizer::~TesseractRecognizer() = default;

platform::Task TesseractRecognizer::prepare(const QStringList &languages)
{
    m_preparation = new Preparation(languages);
    return platform::Task(m_preparation);
}

platform::Task TesseractRecognizer::recognize(const QByteArray &picture,
                                              const QStringList &languages,
                                              std::function<void(QStringList)> done)
{
    Program program = reader(languages);
    program.input = picture;
    return runProgram(m_preparation ? m_preparation->take(languages) : nullptr, program,
                      [done = std::move(done)](const ProgramEnd &end) {
                          done(QString::fromUtf8(end.output).split(u'\n', Qt::SkipEmptyParts));
                      });
}

} // namespace nivora::linuxdesktop
