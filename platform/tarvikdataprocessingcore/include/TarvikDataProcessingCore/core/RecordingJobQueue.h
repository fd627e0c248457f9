// The graph's side of deliveries outside run(), for tests and hosts that want to
// see them: it makes updates, takes jobs and keeps every job it was given, with
// its update (whose parents say what it follows), its values and the thread it
// came from. It can also play a graph under pressure: refuse updates, report no
// space, or fail a job with a chosen exception.
//
//     auto jobs = std::make_shared<RecordingJobQueue>();
//     auto pool = std::make_shared<ResourcePool>(nullptr, jobs, jobs);
//     ... create the node with pool, run it ...
//     jobs->waitForJobs(1, std::chrono::seconds(10));
//
// It records whatever it is given, whatever the state of the node: telling a late
// delivery apart is the observer's business. Thread-safe.
#pragma once

#include <TarvikDataProcessingCore/core/IJobQueue.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API RecordingJobQueue final : public IUpdateFactory, public IJobQueue
{
public:
    struct Job
    {
        const INode* node;
        std::shared_ptr<IGraphUpdate> update;
        ValueMap values;
        std::thread::id thread;
    };

    RecordingJobQueue();
    ~RecordingJobQueue() override;

    // A new GraphUpdate after `parents`; null while updates are refused.
    std::shared_ptr<IGraphUpdate> createUpdate(INode* node,
                                               const std::vector<std::shared_ptr<IGraphUpdate>>& parents,
                                               const std::shared_ptr<void>& handle) override;
    // Runs `function`, then records the job; raises instead if a failure was armed.
    bool createJob(INode& node, const std::shared_ptr<IGraphUpdate>& update, const ValueMap& values,
                   const std::function<void()>& function) override;
    // Counts the call and returns at once: false while no space is reported.
    bool waitUntilSpaceAvailable(INode& node) override;

    void refuseUpdates(bool refuse);
    void reportNoSpace(bool noSpace);
    // The next createJob calls `thrower`, which raises, instead of recording the job.
    void failNextJob(std::function<void()> thrower);

    std::vector<Job> jobs() const;
    size_t jobCount() const;
    size_t spaceWaitCount() const;
    // Blocks until `count` jobs are recorded or `timeout` passed; true if they are.
    bool waitForJobs(size_t count, std::chrono::milliseconds timeout) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_jobAdded;
    std::vector<Job> m_jobs;
    size_t m_spaceWaits = 0;
    bool m_refuseUpdates = false;
    bool m_noSpace = false;
    std::function<void()> m_nextJobFailure;
};

} // namespace Tarvik::DataProcessing::Core
