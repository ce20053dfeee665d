// Tasks.h: work in threads, and how what it finds comes back to the one thread that owns the state.
//     Mailbox   letters from any thread, opened by the owner's thread when it calls Deliver
//     Task      one piece of work at a time in a thread of its own; the newest counts, and waits only for the end of
//               the one that it cancels
#pragma once

#include "core/Progress.h"
#include "studio/State.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace studio {

using Letter = std::function<void()>;

/// What work has thrown.
struct Failure {
    std::filesystem::path file; // the one that it is about; empty for none
    std::variant<Event, FileFailure, std::string> what;
};

class Mailbox {
public:
    /// `wake` is called in the thread that posts the first letter since Deliver. It must not call back.
    explicit Mailbox(std::function<void()> wake) : wake_(std::move(wake)) {}

    /// A letter takes the place of an unopened one with the same `subject`; null has none.
    void Post(Letter letter, const void* subject = nullptr);
    /// Opens all that are there. Whether there were any.
    bool Deliver();
    /// From now on nobody is woken, and letters are thrown away.
    void Close();

    /// A thread begins; at its end it says so.
    void Enter();
    void Leave();
    /// Until all threads have ended, or the time is over.
    void WaitForThreads(std::chrono::milliseconds atMost);

private:
    struct Sent {
        const void* subject;
        Letter letter;
    };

    std::mutex mutex_;
    std::condition_variable left_;
    std::function<void()> wake_;
    std::vector<Sent> sent_;
    bool isAwake_ = false;
    bool isClosed_ = false;
    int threads_ = 0;
};

class Task {
    struct Run;

public:
    /// How work in its thread speaks to the owner.
    class Post {
    public:
        /// The letter is opened in the owner's thread, unless the work was cancelled before. One of progress replaces
        /// an unopened one of progress.
        void Tell(Letter letter) const;
        void TellProgress(Letter letter) const;
        /// Tells `done` so, not more often than a window can show it; stops when the work is cancelled.
        [[nodiscard]] core::Progress Progress(std::function<void(double done)> show) const;
        /// The same without telling.
        [[nodiscard]] core::Progress Silent() const;

    private:
        friend class Task;
        explicit Post(std::shared_ptr<Run> run) : run_(std::move(run)) {}
        std::shared_ptr<Run> run_;
    };
    /// Runs in a thread of its own, and holds all that it needs. What it throws goes to `failed`.
    using Job = std::function<void(const Post& post)>;
    /// In the owner's thread; for work that wasn't cancelled.
    using Failed = std::function<void(const Failure& failure)>;

    explicit Task(std::shared_ptr<Mailbox> mailbox) : mailbox_(std::move(mailbox)) {}
    /// Cancels; waits for nothing.
    ~Task();
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    /// Cancels what goes on, and begins the new work as soon as that has ended.
    void Start(Job job, Failed failed);
    /// What goes on ends within 100 ms, unless a file system holds it up; no letter of it is opened any more.
    void Cancel();
    /// Whether work is going on that wasn't cancelled, or is about to begin.
    [[nodiscard]] bool IsGoing() const;

private:
    struct Run {
        std::shared_ptr<Mailbox> mailbox;
        Task* task; // for the owner's thread; null once the task is gone
        Job job;
        Failed failed;
        std::atomic<bool> isCancelled = false;
    };

    void Begin(std::shared_ptr<Run> run);
    static void Work(const std::shared_ptr<Run>& run);
    void HasEnded(const Run* run);

    std::shared_ptr<Mailbox> mailbox_;
    std::shared_ptr<Run> running_;
    std::shared_ptr<Run> next_; // as soon as the running one has ended
};

} // namespace studio
