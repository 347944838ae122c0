// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

/// The first half of shutting the worker in, for good, before its libraries start any thread:
/// resource limits (address space, no file writing, few descriptors), no new privileges, and
/// read-only access beneath the system's library and font folders where the kernel offers
/// Landlock. Landlock binds only the calling thread and the threads it starts later, so it
/// must come while the worker still has one thread. Fills in what took.
void confineFileSystem(platform::decoder::Confinement& confinement);

/// The second half, once the libraries are loaded: a seccomp filter on every thread that
/// refuses exec, new sockets, ptrace, signals to other processes, new processes and any open
/// for writing. Fills in whether it took.
void filterSystemCalls(platform::decoder::Confinement& confinement);

/// Gives the coming request `seconds` of processor time before the kernel stops the worker.
void limitProcessorTime(int seconds);

}  // namespace lumenscribe::decoder
