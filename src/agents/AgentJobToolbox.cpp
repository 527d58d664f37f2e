#include "agents/AgentJobToolbox.h"

namespace vuro {

bool AgentJobToolbox::isJobTool(const QString& name) {
    return name == QLatin1String("schedule_job") || name == QLatin1String("update_job") ||
           name == QLatin1String("cancel_job");
}

}  // namespace vuro
