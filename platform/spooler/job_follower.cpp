#include "platform/spooler/job_follower.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "platform/spooler/detail/beside.h"
#include "platform/spooler/detail/job_following.h"
#include "platform/spooler/detail/queues.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

JobFollower* g_innermost = nullptr;

/// Asks until the job is done or in trouble, less and less often.
JobState WaitForEnd(const std::function<JobState()>& ask) {
  constexpr int kMostSilences = 30;
  int silences = 0;
  for (auto pause = 250ms;; pause = std::min<std::chrono::milliseconds>(pause * 3 / 2, 10s)) {
    std::this_thread::sleep_for(pause);
    const JobState state = ask();
    if (state == JobState::Unknown && ++silences < kMostSilences) continue;
    if (state != JobState::Waiting) return state;
  }
}

/// The jobs under way. A timer looks after them while there are any.
class FollowedJobs : public QObject {
 public:
  FollowedJobs() {
    m_timer.setInterval(500);
    connect(&m_timer, &QTimer::timeout, this, [this] { Look(); });
  }

  void Add(JobTroubleReport report, const std::string& queue, std::function<JobState()> ask) {
    m_jobs.push_back(
        {std::move(report), queue, Beside<JobState>([ask = std::move(ask)] { return WaitForEnd(ask); })});
    m_timer.start();
  }

 private:
  struct Job {
    JobTroubleReport report;
    std::string queue;
    Beside<JobState> end;
  };

  void Look() {
    // A report may print again, or run a message loop: the list is settled before any is told.
    std::vector<std::pair<Job, JobState>> ended;
    std::erase_if(m_jobs, [&](const Job& job) {
      const auto state = job.end.WaitFor(0ms);
      if (state) ended.emplace_back(job, *state);
      return state.has_value();
    });
    if (m_jobs.empty()) m_timer.stop();
    for (const auto& [job, state] : ended) Tell(job, state);
  }
  static void Tell(const Job& job, JobState state) {
    if (state == JobState::Stopped) job.report(JobTrouble::Stopped, job.queue);
    if (state == JobState::Cancelled) job.report(JobTrouble::Cancelled, job.queue);
    if (state == JobState::Refused) job.report(JobTrouble::Refused, job.queue);
  }

  std::vector<Job> m_jobs;
  QTimer m_timer;
};

}  // namespace

JobFollower::JobFollower(JobTroubleReport report) : m_report(std::move(report)), m_outer(g_innermost) {
  g_innermost = this;
}

JobFollower::~JobFollower() {
  g_innermost = m_outer;
}

void FollowJob(const std::string& queue, int job) {
  // Without a message loop nobody could be told.
  if (g_innermost == nullptr || !g_innermost->m_report || job <= 0 || QCoreApplication::instance() == nullptr)
    return;
  auto ask = CurrentPrintService().StateOf(queue, job);
  if (!ask) return;
  // Ends with the desktop's own objects, so that no timer outlives them.
  static FollowedJobs* const jobs = new FollowedJobs;  // NOLINT: lives as long as the process
  jobs->Add(g_innermost->m_report, queue, std::move(ask));
}

}  // namespace platform
