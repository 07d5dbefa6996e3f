#pragma once

#include <QProcess>

#include <memory>

namespace nivora::test {

// A process that is told to end when this program dies, however it dies.
std::unique_ptr<QProcess> makeChildProcess();

// Asks the process to end, insists after a second, and reaps it.
void endProcess(QProcess &process);

} // namespace nivora::test
