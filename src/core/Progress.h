// Progress.h: how long work tells how far it is, and asks whether it is to stop.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace core {

/// The whole work, or a stage of it. Work asks at least every 100 ms. Once it is to stop it hurries to its end, and
/// what it gives back means nothing.
class Progress {
public:
    /// Told which part of the whole is done, from 0 to 1, never less than before. False: stop.
    using Tell = std::function<bool(double done)>;

    explicit Progress(Tell tell) : work_(std::make_shared<Work>(std::move(tell))) {}

    /// Tells that so much of this stage is done, 0 to 1. Whether to go on.
    [[nodiscard]] bool GoesOn(double done) const;
    [[nodiscard]] bool GoesOn(std::size_t done, std::size_t all) const
    {
        return GoesOn(static_cast<double>(done) / static_cast<double>(all));
    }
    /// Tells nothing new.
    [[nodiscard]] bool GoesOn() const { return GoesOn(0); }
    [[nodiscard]] bool IsStopped() const { return work_->isStopped; }

    /// The part of this stage from one to another place in it.
    [[nodiscard]] Progress Stage(double from, double to) const;

private:
    struct Work {
        Tell tell;
        double done = 0;
        bool isStopped = false;

        explicit Work(Tell told) : tell(std::move(told)) {}
    };

    std::shared_ptr<Work> work_;
    double from_ = 0; // of the whole
    double to_ = 1;
};

/// Stages of one length whose number becomes known on the way.
class Steps {
public:
    explicit Steps(Progress whole) : whole_(std::move(whole)) {}

    /// The next one, which leaves room for so many others.
    [[nodiscard]] Progress Next(int others);

private:
    Progress whole_;
    double done_ = 0;
};

} // namespace core
