#pragma once
// Which program holds a serial device, so that the operator is told what to close: the lock
// file that programs leave in the lock folder, else a process with the device open.

#include <QString>

// "minicom (process 4711)"; empty when no holder can be seen (another user's process).
QString deviceHolder(const QString &device);
