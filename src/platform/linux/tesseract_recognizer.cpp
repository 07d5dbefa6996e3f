#include "platform_linux/tesseract_recognizer.h"

#include "program_run.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

constexpr auto longEnough = 20s; // a screen full of small print on a slow machine

} // namespace

platform::Task TesseractRecognizer::recognize(const QByteArray &picture,
                                              const QStringList &languages,
                                              std::function<void(QStringList)> done)
{
    // More threads than one make the engine several times slower, and it reads
    // this before any code of the program runs.
    return runProgram({.name = u"nivora-ocr"_s,
                       .arguments = languages,
                       .input = picture,
                       .variables = {{u"OMP_THREAD_LIMIT"_s, u"1"_s}},
                       .bound = longEnough},
                      [done = std::move(done)](const ProgramEnd &end) {
                          done(QString::fromUtf8(end.output).split(u'\n', Qt::SkipEmptyParts));
                      });
}

} // namespace nivora::linuxdesktop
