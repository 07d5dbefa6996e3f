// The functions of libvosk, over a recogniser that counts samples. What it "hears"
// is a word for every tenth of a second, with a pause after each second.

#include <cstring>
#include <string>

#include <sys/stat.h>

struct VoskModel
{
    int recognizers = 0;
};

struct VoskRecognizer
{
    VoskModel *model;
    float rate;
    long samples = 0;
    std::string answer;

    const char *tell(const char *member)
    {
        std::string text;
        for (long heard = 0; heard + long(rate / 10) <= samples; heard += long(rate / 10))
            text += heard ? " 你好" : "你好";
        answer = std::string("{\"") + member + "\" : \"" + text + "\"}";
        return answer.c_str();
    }
};

extern "C" {

VoskModel *vosk_model_new(const char *folder)
{
    struct stat status;
    return stat((std::string(folder) + "/am").c_str(), &status) == 0 ? new VoskModel : nullptr;
}

void vosk_model_free(VoskModel *model)
{
    delete model;
}

VoskRecognizer *vosk_recognizer_new(VoskModel *model, float sampleRate)
{
    return new VoskRecognizer{model, sampleRate, 0, {}};
}

void vosk_recognizer_free(VoskRecognizer *recognizer)
{
    delete recognizer;
}

// A first sample of 0x7fff stands for sound that the recogniser chokes on.
int vosk_recognizer_accept_waveform(VoskRecognizer *recognizer, const char *data, int bytes)
{
    if (bytes >= 2 && std::memcmp(data, "\xff\x7f", 2) == 0)
        return -1;
    recognizer->samples += bytes / 2;
    return recognizer->samples >= long(recognizer->rate);
}

const char *vosk_recognizer_result(VoskRecognizer *recognizer)
{
    recognizer->tell("text");
    recognizer->samples = 0;
    return recognizer->answer.c_str();
}

const char *vosk_recognizer_partial_result(VoskRecognizer *recognizer)
{
    return recognizer->tell("partial");
}

const char *vosk_recognizer_final_result(VoskRecognizer *recognizer)
{
    return recognizer->tell("text");
}

#ifndef FAKE_VOSK_LACKS_A_FUNCTION
void vosk_set_log_level(int)
{
}
#endif
}
