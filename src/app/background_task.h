// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrent/QtConcurrentRun>
#include <optional>
#include <type_traits>
#include <utility>

namespace lumenscribe::app {

/// Runs `work` on Qt's thread pool and hands its value to `done` on `owner`'s thread, or
/// nothing when `work` threw. `work` must own everything it reads (copies, shared pointers):
/// it may outlive `owner`, and `done` is never called once `owner` is gone.
template <class Work, class Done>
void runInBackground(QObject* owner, Work work, Done done) {
  using Value = std::invoke_result_t<Work>;
  auto* watcher = new QFutureWatcher<Value>(owner);
  QObject::connect(watcher, &QFutureWatcherBase::finished, owner,
                   [watcher, done = std::move(done)]() mutable {
                     const QFuture<Value> future = watcher->future();
                     watcher->deleteLater();
                     std::optional<Value> value;
                     try {
                       if (future.resultCount() > 0) value = future.result();
                     } catch (...) {
                       // The work threw: there is no value to hand on.
                     }
                     done(std::move(value));
                   });
  watcher->setFuture(QtConcurrent::run(std::move(work)));
}

}  // namespace lumenscribe::app
