#pragma once

#include "reading.h"

#include <functional>
#include <vector>

namespace nivora::ocr {

// Processes with one model each, so that cores are used and a model that crashes or
// runs out of memory costs its own readings alone. They load their models at once,
// whatever this process does meanwhile, and end with it.
class Workers
{
public:
    Workers() = default;
    ~Workers();
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;

    void start(const Job &job);

    // What those models make of the picture, all at once. Of one that fails there is
    // no reading then and later; a line on standard error says so, except of models
    // for vertical text.
    std::vector<Reading> read(Pix *picture,
                              const std::function<bool(const QByteArray &model)> &isAsked);

private:
    struct Worker
    {
        Job job;
        int process = -1;
        int pictures = -1; // descriptors
        int readings = -1;
        bool isAsked = false;
    };

    void giveUp(Worker &worker);

    std::vector<Worker> m_workers;
};

} // namespace nivora::ocr
