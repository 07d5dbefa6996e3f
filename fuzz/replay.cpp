#include "fuzz.h"

#include <QDir>
#include <QFile>

#include <random>
#include <vector>

// Plays the seeds of one target and damaged copies of them. The copies are the
// same in every run, so that a failure comes again.
namespace {

constexpr int copiesOfAll = 4000;

void play(const QByteArray &input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.constData()),
                           size_t(input.size()));
}

QByteArray damaged(QByteArray seed, const std::vector<QByteArray> &seeds, std::mt19937 &random)
{
    const auto below = [&](qsizetype count) { return qsizetype(random() % uint64_t(count)); };
    for (qsizetype wounds = 1 + below(6); wounds > 0; --wounds) {
        const qsizetype at = below(seed.size() + 1);
        switch (below(5)) {
        case 0:
            seed.insert(at, char(random()));
            break;
        case 1:
            seed.remove(at, 1 + below(8));
            break;
        case 2:
            if (at < seed.size())
                seed[at] = char(seed[at] ^ char(1 << below(8)));
            break;
        case 3:
            seed.truncate(at);
            break;
        default:
            const QByteArray &other = seeds[size_t(below(qsizetype(seeds.size())))];
            const qsizetype from = below(other.size() + 1);
            seed.insert(at, other.mid(from, below(64)));
        }
    }
    return seed;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER-OF-SEEDS\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    std::vector<QByteArray> seeds;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            seeds.push_back(file.readAll());
    }
    if (seeds.empty()) {
        std::fprintf(stderr, "no seeds in %s\n", argv[1]);
        return 1;
    }
    play({});
    for (const QByteArray &seed : seeds)
        play(seed);
    std::mt19937 random(20240607); // any number, but always the same
    for (int copy = 0; copy < copiesOfAll; ++copy)
        play(damaged(seeds[size_t(copy) % seeds.size()], seeds, random));
    std::printf("%zu seeds and %d damaged copies\n", seeds.size(), copiesOfAll);
}
