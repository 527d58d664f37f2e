#pragma once

#include <QString>

namespace vuro {

// A sentence of the user turned into one action on the notes, as a model returns it.
struct GeneratedCommand {
    QString action;  // addTask, createNote, appendToNote, completeTask or unknown
    QString noteHint;
    QString text;
    QString title;

    bool operator==(const GeneratedCommand&) const = default;
};

}  // namespace vuro
