#pragma once

#include "agents/Agent.h"

namespace vuro {

// How much of each kind of text a run may hand to the model, in characters, by where the
// conversation goes: a command-line tool, a cloud vendor, a server on this machine, or the
// on-device model. Small models get less, and answer some requests without the model at all.
struct AgentRouteBudget {
    enum class Route { commandLine, cloud, localServer, onDevice };

    Route route = Route::cloud;
    int history = 24000;
    int persona = 4000;  // each of persona, directions and memory in the system text
    int outputLimit = 8000;  // one tool result
    int attachments = 120000;  // text of attachments in a turn

    bool asksMarkdown() const { return route != Route::onDevice; }
    bool smallModel() const { return route == Route::localServer || route == Route::onDevice; }

    static AgentRouteBudget of(const Agent& agent);
};

}  // namespace vuro
