// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// The interface between the module and the script that loads it: the functions that each offers the other. Both must
/// have the same version. The version is part of the import name of the script's functions.
extern "C" {

#if defined(__wasm__)
#define EMP_HOST(name) __attribute__((import_module("emp-window 1.3.0"), import_name(#name)))
#define EMP_OFFERED(name) __attribute__((export_name(#name)))
#else  // for tools that parse the sources; the result is never loaded
#define EMP_HOST(name)
#define EMP_OFFERED(name)
#endif

// NOLINTBEGIN(readability-identifier-naming): names fixed by the script

// Functions of the script. None of them may call the module.

/// Sends a message to a connected client.
EMP_HOST(send) void emp_host_send(int client, const char* text, std::size_t size);
/// Sends the reply to a post; empty for no reply.
EMP_HOST(answer) void emp_host_answer(int call, const char* text, std::size_t size);
/// Asks the script to call `emp_elapse` after a time, from its event loop. @param isAwaited  true if a client waits for
/// the outcome.
EMP_HOST(after) void emp_host_after(double milliseconds, int timer, int isAwaited);
/// Reports what the set could not read or persist, in a line for a person.
EMP_HOST(complain) void emp_host_complain(const char* line, std::size_t size);
/// Reports why the current call fails. @param kind  a `Failure`.
EMP_HOST(fail) void emp_host_fail(int kind, const char* line, std::size_t size);

// Functions of the module. Texts are in UTF-8, in the room returned by `emp_place`; sizes are in bytes. A call returns
// -1 when it fails.

/// @return room for a text, valid until the next call of this function; null when there is no memory.
EMP_OFFERED(place) char* emp_place(std::size_t size);
/// Starts the set. Call once. @param size  size of the snapshot to start from; 0 for the built-in set. @param waits  0:
/// replies are not delayed.
EMP_OFFERED(start) int emp_start(std::size_t size, int waits);
/// Connects a client. @param size  size of the id of the session that it takes over; 0 for a new session. @return the
/// client's number.
EMP_OFFERED(connect) int emp_connect(std::size_t size);
/// Handles a message of a client.
EMP_OFFERED(take) int emp_take(int client, std::size_t size);
EMP_OFFERED(disconnect) int emp_disconnect(int client);
/// Handles a request without a connection. @param call  the number to pass to `emp_host_answer`, at once or later.
/// @param sessionSize  size of the session id, which precedes the request; 0 for none. @param size  size of session id
/// and request.
EMP_OFFERED(post) int emp_post(int call, std::size_t sessionSize, std::size_t size);
EMP_OFFERED(elapse) int emp_elapse(int timer);

// NOLINTEND(readability-identifier-naming)
}
