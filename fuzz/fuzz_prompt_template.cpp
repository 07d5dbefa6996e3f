#include "fuzz.h"

#include "core/prompts.h"

using namespace nivora;

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const Language target = allLanguages[size_t(input.number(int(allLanguages.size())))];
    const TranslationOptions options{
        {{QUuid(), input.text(), input.text()}}, input.text(), input.text()};
    const QString text = input.text();
    const auto variables = PromptTemplate::translateVariables(text, target, options);
    static_cast<void>(PromptTemplate::render(QString::fromUtf8(input.rest()), variables));
    const QString prompt = PromptTemplate::render(PromptTemplate::defaultTranslate(), variables);
    fuzz::check(text.contains(u'{') || prompt.endsWith(text), "the text is in the prompt, whole");
    return 0;
}
