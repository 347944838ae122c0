// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// What the decoder worker can no longer do once it is shut in, asked from inside a real
// worker through a request that only test builds serve.
#include <gtest/gtest.h>

#include <cerrno>

#include "platform/decoder_client.h"
#include "platform/decoder_protocol.h"
#include "test_files.h"

namespace lumenscribe::platform::decoder {
namespace {

ConfinementProbe probe(DecoderClient& client, const std::string& readablePath) {
  Writer arguments;
  arguments.text(readablePath);
  const auto reply = client.call(RequestKind::testProbeConfinement, nullptr, arguments.data());
  if (!reply) ADD_FAILURE() << reply.error().message();
  Reader in(reply ? std::span(*reply) : std::span<const std::byte>());
  const auto found = readConfinementProbe(in);
  if (!found) ADD_FAILURE() << "the probe's reply did not parse";
  return found.value_or(ConfinementProbe{});
}

TEST(Confinement, aConfinedWorkerCannotWriteConnectExecuteOrSignalOthers) {
  test::TempDir dir;
  // Readable by its mode, but outside what the worker may read.
  const auto outside = dir.write("letter.txt", "private");
  DecoderClient client({LUMENSCRIBE_DECODER_PATH, std::chrono::seconds(20), 1});
  const ConfinementProbe found = probe(client, outside.string());
  const auto confinement = client.workerConfinement().value();

  EXPECT_EQ(found.openForWriting, EPERM);
  EXPECT_EQ(found.createSocket, EPERM);
  EXPECT_EQ(found.execute, EPERM);
  EXPECT_EQ(found.killParent, EPERM);
  if (confinement.landlock) {
    EXPECT_EQ(found.readOutsideAllowed, EACCES);
  } else {
    GTEST_LOG_(INFO) << "this kernel offers no Landlock: reading outside /usr is not refused";
  }
  // The worker survived the probe and still decodes.
  const auto jpeg =
      test::openedItem(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "intact.jpg");
  EXPECT_EQ(client.imageStatus(jpeg).value(), ImageDecodeStatus::complete);
}

TEST(Confinement, aDecodeThatWantsTooMuchMemoryFailsAndTheWorkerGoesOn) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "AddressSanitizer's shadow memory rules out an address-space limit";
#endif
  DecoderClient client({LUMENSCRIBE_DECODER_PATH, std::chrono::seconds(20), 1});
  Writer arguments;
  arguments.i64(16 * 1024);  // 16 GiB, beyond the worker's 4 GiB address space
  EXPECT_EQ(client.call(RequestKind::testAllocate, nullptr, arguments.data()).error(),
            DecoderError::stopped);
  const auto pids = client.workerPids();
  ASSERT_EQ(pids.size(), 1u);
  Writer modest;
  modest.i64(64);
  const auto reply = client.call(RequestKind::testAllocate, nullptr, modest.data());
  ASSERT_TRUE(reply);
  EXPECT_EQ(client.workerPids(), pids);  // the same worker
}

}  // namespace
}  // namespace lumenscribe::platform::decoder
