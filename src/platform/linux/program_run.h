#pragma once

#include "platform/task.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

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

} // namespace nivora::linuxdesktop
