#pragma once

#include "platform/task.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QProcess;

namespace nivora::linuxdesktop {

// One of the product's own small programs, its helpers, run once.
struct Program
{
    QString name;
    QStringList arguments;
    QByteArray input;
    // Added to the environment.
    std::vector<std::pair<QString, QString>> variables = {};
    // It is ended after this; absent where the user decides how long it takes.
    std::optional<std::chrono::milliseconds> bound = {};
};

struct ProgramEnd
{
    bool succeeded = false; // it ran and ended with status 0
    QByteArray output;      // of its standard output, at most 1 MiB
};

// What it says on standard error goes to the log. Dropping the task ends it.
platform::Task runProgram(const Program &program, std::function<void(ProgramEnd)> done);

// One that is started before its input is known, to be ready by then. It ends with
// this object, unless runProgram() takes it over.
class ReadyProgram
{
public:
    // Of `program` the input and the bound come later.
    explicit ReadyProgram(const Program &program);
    ~ReadyProgram();
    ReadyProgram(const ReadyProgram &) = delete;
    ReadyProgram &operator=(const ReadyProgram &) = delete;

private:
    friend platform::Task runProgram(std::unique_ptr<ReadyProgram>, const Program &,
                                     std::function<void(ProgramEnd)>);

    std::unique_ptr<QProcess> m_process;
};

// Where the ready one is none, or has ended by itself, another is started. It was
// started with the same program.
platform::Task runProgram(std::unique_ptr<ReadyProgram> ready, const Program &program,
                          std::function<void(ProgramEnd)> done);

} // namespace nivora::linuxdesktop
