#pragma once

#include <QString>
#include <qcoro/qcorotask.h>

namespace vuro {

// The one thing the away digest asks of an assistant: answer an input under a system
// instruction, in one shot. Failures throw a vuro::Error; the digest then shows no summary.
class AwaySummaryProvider {
public:
    virtual ~AwaySummaryProvider() = default;
    virtual QCoro::Task<QString> respond(QString instruction, QString input) = 0;
};

}  // namespace vuro
