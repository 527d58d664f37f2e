#pragma once

#include <QString>
#include <functional>

namespace vuro {

// The one diagnostic channel: every line starts with "Vuro: ". Thread-safe.
void log(const QString& message);

// Tests capture log lines; pass an empty function to restore standard error.
void setLogSink(std::function<void(const QString& line)> sink);

}  // namespace vuro
