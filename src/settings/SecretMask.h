#pragma once

#include <QString>

namespace vuro {

// How a stored secret is shown back: enough of its ends to recognise which key it is, never
// enough to copy it. A long key keeps its first three and last four characters ("sk-…3f9a"); a
// shorter one only its last two, and a very short one nothing at all.
QString maskedSecret(const QString& secret);

}  // namespace vuro
