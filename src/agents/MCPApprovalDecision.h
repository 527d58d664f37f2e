#pragma once

namespace vuro {

// The user's answer to a question about one MCP tool call. noAnswer is what a question gets when
// its time ran out.
enum class MCPApprovalDecision { allowOnce, allowAlways, deny, noAnswer };

}  // namespace vuro
