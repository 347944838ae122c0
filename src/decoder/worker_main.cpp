// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// lumenscribe-decoder: the confined worker that runs every format library. The engine starts
// it with one end of a socket pair as descriptor 3 and its own process ID as the argument;
// it answers requests until that socket closes, one at a time.
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>
#include <thread>

#include "decoder/confinement.h"
#include "decoder/request_handler.h"
#include "platform/decoder_channel.h"

namespace {

using namespace lumenscribe;
using namespace lumenscribe::platform::decoder;

constexpr int kSocket = 3;
// Processor time a single request may use; the engine's wall-clock limit comes first in
// any ordinary case.
constexpr int kProcessorSecondsPerRequest = 30;

#ifdef LUMENSCRIBE_DECODER_TEST_HOOKS
// The misbehaviours that tests of the engine's side need to see; false for any other kind.
bool misbehave(Channel& channel, RequestKind kind) {
  switch (kind) {
    case RequestKind::testCrash: ::raise(SIGSEGV); return true;
    case RequestKind::testHang:
      for (;;) ::pause();
    case RequestKind::testGarbageReply: {
      const char garbage[] = "this is not a frame, nor the start of one";
      return ::write(channel.fd(), garbage, sizeof garbage) >= 0;
    }
    case RequestKind::testOverlongReply:
    case RequestKind::testShortReply: {
      FrameHeader header;
      header.length = kind == RequestKind::testOverlongReply ? kMaxReplyPayload + 1 : 1000;
      const auto bytes = encodeHeader(header);
      if (::write(channel.fd(), bytes.data(), bytes.size()) < 0) return true;
      if (kind == RequestKind::testShortReply) {
        const char some[10] = {};
        if (::write(channel.fd(), some, sizeof some) < 0) return true;
        ::_exit(0);
      }
      return true;
    }
    default: return false;
  }
}
#endif

// The engine that started this worker, when it is still there.
std::optional<pid_t> engineOf(const char* argument) {
  pid_t parent = 0;
  const std::string_view text = argument;
  if (std::from_chars(text.data(), text.data() + text.size(), parent).ec != std::errc{} ||
      ::getppid() != parent) {
    return std::nullopt;
  }
  return parent;
}

// Dies with the engine: a worker whose engine is gone has no one to answer. A parent-death
// signal would follow the engine thread that started the worker, and the engine's threads
// come and go (a request sent from a pool thread starts a worker that must outlive it), so
// a thread waits for the engine's process itself to end. Started after Landlock, which it
// inherits, and before seccomp, which refuses pidfd_open; where the kernel has no pidfds,
// the worker still ends as soon as the engine's end of the socket closes.
void followEngine(pid_t engine) {
  const int process = static_cast<int>(::syscall(SYS_pidfd_open, engine, 0));
  if (process < 0) return;
  if (::getppid() != engine) ::_exit(0);
  std::thread([process] {
    pollfd ended{process, POLLIN, 0};
    while (::poll(&ended, 1, -1) < 0 && errno == EINTR) {
    }
    ::_exit(0);
  }).detach();
}

}  // namespace

int main(int argc, char** argv) {
  const std::optional<pid_t> engine = argc == 2 ? engineOf(argv[1]) : std::nullopt;
  if (!engine) return 2;
  // Only the socket stays; whatever else the engine's process had open is not ours.
  ::close_range(kSocket + 1, ~0U, 0);
  // A write past the file-size limit fails instead of ending the worker (stderr may be a
  // regular file).
  ::signal(SIGXFSZ, SIG_IGN);
  ::signal(SIGPIPE, SIG_IGN);

  Confinement confinement;
  decoder::confineFileSystem(confinement);
  decoder::initialiseDecoders();
  followEngine(*engine);
  decoder::filterSystemCalls(confinement);

  Channel channel{platform::UniqueFd(kSocket)};
  Writer hello;
  write(hello, confinement);
  if (!channel.send(static_cast<std::uint16_t>(RequestKind::hello), hello.data())) ::_exit(1);

  for (;;) {
    auto received = channel.receive(kMaxRequestPayload, std::nullopt, true);
    // The engine closed its end (or broke the protocol): the work is over. _exit skips the
    // libraries' exit handlers, which have nothing left to save.
    if (auto* failure = std::get_if<ReceiveFailure>(&received)) {
      ::_exit(*failure == ReceiveFailure::closed ? 0 : 1);
    }
    Frame& request = std::get<Frame>(received);
#ifdef LUMENSCRIBE_DECODER_TEST_HOOKS
    if (misbehave(channel, static_cast<RequestKind>(request.header.kind))) continue;
#endif
    decoder::limitProcessorTime(kProcessorSecondsPerRequest);
    // Output of its own (a clean copy) goes back as chunks ahead of the reply: the worker
    // never holds a file it could write.
    const auto sendChunk = [&channel](std::span<const std::byte> chunk) {
      return channel.send(static_cast<std::uint16_t>(ReplyStatus::chunk), chunk);
    };
    const decoder::Reply reply = decoder::handleRequest(request.header.kind, request.payload,
                                                        request.descriptor.get(), sendChunk);
    request.descriptor = platform::UniqueFd();
    if (!channel.send(static_cast<std::uint16_t>(reply.status), reply.payload)) ::_exit(1);
  }
}
