#include <TarvikDataProcessingCore/core/GraphUpdate.h>
#include <TarvikDataProcessingCore/core/RecordingJobQueue.h>

#include <utility>

namespace Tarvik::DataProcessing::Core
{

RecordingJobQueue::RecordingJobQueue() = default;
RecordingJobQueue::~RecordingJobQueue() = default;

std::shared_ptr<IGraphUpdate>
RecordingJobQueue::createUpdate(INode*, const std::vector<std::shared_ptr<IGraphUpdate>>& parents,
                                const std::shared_ptr<void>&)
{
    {
        std::lock_guard guard(m_mutex);
        if (m_refuseUpdates)
            return nullptr;
    }
    return std::make_shared<GraphUpdate>(parents);
}

bool RecordingJobQueue::createJob(INode& node, const std::shared_ptr<IGraphUpdate>& update,
                                  const ValueMap& values, const std::function<void()>& function)
{
    std::function<void()> failure;
    {
        std::lock_guard guard(m_mutex);
        failure = std::exchange(m_nextJobFailure, nullptr);
    }
    if (failure)
        failure();
    if (function)
        function();
    {
        std::lock_guard guard(m_mutex);
        m_jobs.push_back({&node, update, values, std::this_thread::get_id()});
    }
    m_jobAdded.notify_all();
    return true;
}

bool RecordingJobQueue::waitUntilSpaceAvailable(INode&)
{
    std::lock_guard guard(m_mutex);
    ++m_spaceWaits;
    return !m_noSpace;
}

void RecordingJobQueue::refuseUpdates(bool refuse)
{
    std::lock_guard guard(m_mutex);
    m_refuseUpdates = refuse;
}

void RecordingJobQueue::reportNoSpace(bool noSpace)
{
    std::lock_guard guard(m_mutex);
    m_noSpace = noSpace;
}

void RecordingJobQueue::failNextJob(std::function<void()> thrower)
{
    std::lock_guard guard(m_mutex);
    m_nextJobFailure = std::move(thrower);
}

std::vector<RecordingJobQueue::Job> RecordingJobQueue::jobs() const
{
    std::lock_guard guard(m_mutex);
    return m_jobs;
}

size_t RecordingJobQueue::jobCount() const
{
    std::lock_guard guard(m_mutex);
    return m_jobs.size();
}

size_t RecordingJobQueue::spaceWaitCount() const
{
    std::lock_guard guard(m_mutex);
    return m_spaceWaits;
}

bool RecordingJobQueue::waitForJobs(size_t count, std::chrono::milliseconds timeout) const
{
    std::unique_lock guard(m_mutex);
    return m_jobAdded.wait_for(guard, timeout, [&] { return m_jobs.size() >= count; });
}

} // namespace Tarvik::DataProcessing::Core
