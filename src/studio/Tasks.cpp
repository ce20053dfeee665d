#include "studio/Tasks.h"

#include <algorithm>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace studio {
namespace {

/// Of the exception that is being handled.
Failure FailureNow()
{
    try {
        throw;
    } catch (const files::IOException& of) {
        return {.file = of.File, .what = FileFailure{.kind = of.ErrorKind, .error = of.Error}};
    } catch (const std::bad_alloc&) {
        return {.file = {}, .what = Event::NoMemory};
    } catch (const std::exception& other) {
        return {.file = {}, .what = std::string(other.what())};
    }
}

} // namespace

void Mailbox::Post(Letter letter, const void* subject)
{
    const std::lock_guard lock(mutex_);
    if (isClosed_) return;
    const auto same =
        std::ranges::find_if(sent_, [&](const Sent& sent) { return subject != nullptr && sent.subject == subject; });
    if (same != sent_.end())
        same->letter = std::move(letter);
    else
        sent_.push_back({subject, std::move(letter)});
    if (!std::exchange(isAwake_, true)) wake_();
}

bool Mailbox::Deliver()
{
    std::vector<Sent> sent;
    {
        const std::lock_guard lock(mutex_);
        sent.swap(sent_);
        isAwake_ = false;
    }
    for (const auto& each : sent)
        each.letter();
    return !sent.empty();
}

void Mailbox::Close()
{
    std::vector<Sent> unopened; // destroyed without the lock: a letter may hold the last of something
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    unopened.swap(sent_);
}

void Mailbox::Enter()
{
    const std::lock_guard lock(mutex_);
    ++threads_;
}

void Mailbox::Leave()
{
    const std::lock_guard lock(mutex_);
    --threads_;
    left_.notify_all();
}

void Mailbox::WaitForThreads(std::chrono::milliseconds atMost)
{
    std::unique_lock lock(mutex_);
    left_.wait_for(lock, atMost, [&] { return threads_ == 0; });
}

void Task::Post::Tell(Letter letter) const
{
    run_->mailbox->Post([run = run_, letter = std::move(letter)] {
        if (!run->isCancelled) letter();
    });
}

void Task::Post::TellProgress(Letter letter) const
{
    const auto open = [run = run_, letter = std::move(letter)] {
        if (!run->isCancelled) letter();
    };
    run_->mailbox->Post(open, run_.get());
}

core::Progress Task::Post::Progress(std::function<void(double done)> show) const
{
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds kPause{30};
    return core::Progress([post = *this, show = std::move(show), last = Clock::time_point()](double done) mutable {
        if (const auto now = Clock::now(); now - last >= kPause) {
            last = now;
            post.TellProgress([show, done] { show(done); });
        }
        return !post.run_->isCancelled;
    });
}

core::Progress Task::Post::Silent() const
{
    return core::Progress([run = run_](double /*done*/) { return !run->isCancelled; });
}

Task::~Task()
{
    Cancel();
    if (running_) running_->task = nullptr;
}

void Task::Start(Job job, Failed failed)
{
    Cancel();
    auto run = std::make_shared<Run>();
    run->mailbox = mailbox_;
    run->task = this;
    run->job = std::move(job);
    run->failed = std::move(failed);
    if (running_)
        next_ = std::move(run);
    else
        Begin(std::move(run));
}

void Task::Cancel()
{
    if (running_) running_->isCancelled = true;
    next_ = nullptr;
}

bool Task::IsGoing() const
{
    return next_ || (running_ && !running_->isCancelled);
}

void Task::Begin(std::shared_ptr<Run> run)
{
    running_ = run;
    mailbox_->Enter();
    try {
        std::thread([mailbox = mailbox_, run]() mutable {
            Work(run);
            run.reset(); // and what the work held
            mailbox->Leave();
        }).detach();
    } catch (const std::system_error&) { // no thread to be had
        mailbox_->Leave();
        running_ = nullptr;
        mailbox_->Post([run, failure = FailureNow()] {
            if (!run->isCancelled) run->failed(failure);
        });
    }
}

void Task::Work(const std::shared_ptr<Run>& run)
{
    const Post post(run);
    try {
        std::exchange(run->job, {})(post);
    } catch (const std::exception&) {
        post.Tell([run, failure = FailureNow()] { run->failed(failure); });
    }
    run->mailbox->Post([run] {
        if (run->task != nullptr) run->task->HasEnded(run.get());
    });
}

void Task::HasEnded(const Run* run)
{
    if (running_.get() != run) return;
    running_ = nullptr;
    if (next_) Begin(std::exchange(next_, nullptr));
}

} // namespace studio
