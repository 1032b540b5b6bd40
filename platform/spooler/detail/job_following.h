#pragma once

#include <string>

namespace platform {

/// Follows a job that a queue has taken, if a JobFollower asks for it.
void FollowJob(const std::string& queue, int job);

}  // namespace platform
