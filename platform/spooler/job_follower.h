#pragma once

#include <functional>
#include <string>

#include "platform/base/export.h"

namespace platform {

/// What can befall a job after its queue has taken it: a queue takes jobs for printers that are switched off.
enum class JobTrouble { Stopped, Cancelled, Refused };

/// Told on the thread that printed, out of its message loop, at most once for a job.
using JobTroubleReport = std::function<void(JobTrouble trouble, const std::string& printer)>;

/// While it lives, the jobs that EndDoc hands to a queue are followed until the service calls them done,
/// without holding anything up. The innermost one counts; one without a report follows nothing.
class PLATFORM_API JobFollower {
 public:
  explicit JobFollower(JobTroubleReport report);
  JobFollower(const JobFollower&) = delete;
  JobFollower& operator=(const JobFollower&) = delete;
  ~JobFollower();

 private:
  JobTroubleReport m_report;
  JobFollower* m_outer;

  friend void FollowJob(const std::string& queue, int job);
};

}  // namespace platform
