// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The engine's side of the decoder worker, against the real worker of a test build: what it
// answers, and that a worker which crashes, hangs or talks nonsense costs one request and
// nothing else (no process, no descriptor, no later request).
#include "platform/decoder_client.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <fstream>
#include <future>
#include <thread>

#include "platform/opened_item.h"
#include "test_files.h"

namespace lumenscribe::platform {
namespace {

using namespace std::chrono_literals;
using decoder::ImageDecodeStatus;
using decoder::RequestKind;

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

DecoderClient::Options quickOptions(std::chrono::milliseconds timeout = 20s, int workers = 1) {
  return {LUMENSCRIBE_DECODER_PATH, timeout, workers};
}

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(
      std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator()));
}

// Our children, alive or zombie, as the kernel lists them for every thread of ours.
std::size_t childProcesses() {
  std::size_t count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(task.path() / "children");
    for (std::string pid; children >> pid;) ++count;
  }
  return count;
}

bool processExists(pid_t pid) { return ::kill(pid, 0) == 0; }

// Waits until the client has a busy worker and returns its process ID.
pid_t busyWorker(const DecoderClient& client, std::size_t workers = 1) {
  for (int tries = 0; tries < 500; ++tries) {
    const auto pids = client.workerPids();
    if (pids.size() >= workers) return pids.front();
    std::this_thread::sleep_for(10ms);
  }
  return -1;
}

TEST(DecoderClient, answersEveryRequestFromAWorkerThatShutItselfIn) {
  DecoderClient client(quickOptions());
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  const OpenedItem pdf = test::openedItem(kFixtures / "three_pages.pdf");

  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
  const auto facts = client.pdfFacts(pdf);
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->pageCount, 3);
  const auto picture = client.picturePreview(jpeg, {40, 30}).value();
  ASSERT_TRUE(picture);
  EXPECT_TRUE(picture->width <= 40 && picture->height <= 30);
  const auto page = client.pdfFirstPage(pdf, {40, 30}).value();
  ASSERT_TRUE(page);
  EXPECT_TRUE(page->width <= 40 && page->height <= 30);
  // A text file is not a picture: no preview, and no error either.
  EXPECT_EQ(client.picturePreview(test::openedItem(kFixtures / "not_a_pdf.pdf"), {40, 30}).value(),
            std::nullopt);

  const auto confinement = client.workerConfinement();
  ASSERT_TRUE(confinement);
  EXPECT_TRUE(confinement->noNewPrivileges);
  EXPECT_TRUE(confinement->seccomp);
  EXPECT_TRUE(confinement->limits);
  // One worker served all of it.
  EXPECT_EQ(client.workerPids().size(), 1u);
}

TEST(DecoderClient, aWorkerKilledMidRequestStopsOnlyThatRequest) {
  DecoderClient client(quickOptions());
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  client.warmUp();

  auto hung =
      std::async(std::launch::async, [&] { return client.call(RequestKind::testHang, &jpeg); });
  const pid_t worker = busyWorker(client);
  ASSERT_GT(worker, 0);
  ASSERT_EQ(::kill(worker, SIGSEGV), 0);
  const auto reply = hung.get();
  ASSERT_FALSE(reply);
  EXPECT_EQ(reply.error(), DecoderError::stopped);
  EXPECT_FALSE(processExists(worker));  // reaped, not a zombie

  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
  EXPECT_NE(client.workerPids().front(), worker);
}

TEST(DecoderClient, aWorkerPastTheTimeLimitIsKilledAndReplaced) {
  DecoderClient client(quickOptions(300ms));
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  client.warmUp();
  const pid_t worker = client.workerPids().at(0);
  const auto started = std::chrono::steady_clock::now();
  const auto reply = client.call(RequestKind::testHang, &jpeg);
  EXPECT_EQ(reply.error(), DecoderError::stopped);
  EXPECT_LT(std::chrono::steady_clock::now() - started, 10s);
  EXPECT_FALSE(processExists(worker));
  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
}

TEST(DecoderClient, repliesThatAreNotFramesOrLieAboutTheirLengthStopTheRequest) {
  DecoderClient client(quickOptions(2s));
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  for (const RequestKind kind : {RequestKind::testGarbageReply, RequestKind::testOverlongReply,
                                 RequestKind::testShortReply, RequestKind::testCrash}) {
    SCOPED_TRACE(static_cast<int>(kind));
    const auto reply = client.call(kind, &jpeg);
    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.error(), DecoderError::stopped);
    EXPECT_TRUE(client.workerPids().empty());
    // The next request gets a fresh worker and a true answer.
    EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
  }
  // A kind the worker does not serve is refused, and the worker stays.
  const pid_t worker = client.workerPids().at(0);
  EXPECT_EQ(client.call(static_cast<RequestKind>(999), &jpeg).error(), DecoderError::refused);
  EXPECT_EQ(client.workerPids(), std::vector<pid_t>{worker});
}

TEST(DecoderClient, aWorkerThatDiedWhileIdleIsReplacedWithoutLosingTheNextRequest) {
  DecoderClient client(quickOptions());
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  client.warmUp();
  const pid_t worker = client.workerPids().at(0);
  ASSERT_EQ(::kill(worker, SIGKILL), 0);
  // Let the kernel tell us: the socket closes as the process goes.
  for (int tries = 0; tries < 200; ++tries) {
    int status = 0;
    if (::waitpid(worker, &status, WNOHANG) == worker) break;
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
}

TEST(DecoderClient, aWorkerOutlivesTheThreadThatStartedIt) {
  DecoderClient client(quickOptions());
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  std::thread([&] { client.warmUp(); }).join();
  const pid_t worker = client.workerPids().at(0);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
  EXPECT_EQ(client.workerPids(), std::vector<pid_t>{worker});
}

TEST(DecoderClient, twoRequestsRunAtOnceOnTwoWorkers) {
  DecoderClient client(quickOptions(20s, 2));
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  auto hung =
      std::async(std::launch::async, [&] { return client.call(RequestKind::testHang, &jpeg); });
  const pid_t hanging = busyWorker(client);
  ASSERT_GT(hanging, 0);
  // The first worker is busy for good; the second answers meanwhile.
  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
  EXPECT_EQ(client.workerPids().size(), 2u);
  ::kill(hanging, SIGKILL);
  EXPECT_EQ(hung.get().error(), DecoderError::stopped);

  // Warming up fills the pool, and starts no more than it holds.
  client.warmUp();
  EXPECT_EQ(client.workerPids().size(), 2u);
  client.warmUp();
  EXPECT_EQ(client.workerPids().size(), 2u);
}

TEST(DecoderClient, noDescriptorOrProcessOutlivesTenCrashes) {
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  const std::size_t descriptors = openDescriptors();
  const std::size_t children = childProcesses();
  {
    DecoderClient client(quickOptions());
    for (int round = 0; round < 10; ++round) {
      EXPECT_EQ(client.call(RequestKind::testCrash, &jpeg).error(), DecoderError::stopped);
      EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
    }
    EXPECT_EQ(openDescriptors(), descriptors + 1);  // the one idle worker's socket
    EXPECT_EQ(childProcesses(), children + 1);
  }
  EXPECT_EQ(openDescriptors(), descriptors);
  EXPECT_EQ(childProcesses(), children);
}

TEST(DecoderClient, aMissingWorkerProgramMakesEveryRequestUnavailable) {
  DecoderClient client({"/nonexistent/lumenscribe-decoder", 1s, 2});
  const OpenedItem jpeg = test::openedItem(kFixtures / "intact.jpg");
  EXPECT_EQ(client.imageStatus(jpeg).error(), DecoderError::unavailable);
  EXPECT_EQ(client.pdfFacts(jpeg).error(), DecoderError::unavailable);
  EXPECT_TRUE(client.workerPids().empty());
}

}  // namespace
}  // namespace lumenscribe::platform
