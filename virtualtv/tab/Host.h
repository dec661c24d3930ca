#pragma once

#include <cstddef>

/// The module's border: what it offers to the script that loads it, and what it wants of it. Both sides are of the same
/// version, which the name says that the script's functions are looked up under.
extern "C" {

#if defined(__wasm__)
#define EMP_HOST(name) __attribute__((import_module("emp-window 1.3.0"), import_name(#name)))
#define EMP_OFFERED(name) __attribute__((export_name(#name)))
#else  // for tools that look at sources; nobody loads that
#define EMP_HOST(name)
#define EMP_OFFERED(name)
#endif

// NOLINTBEGIN(readability-identifier-naming): the script knows them by these names

// What the script offers. None of these may call the module.

/// A message to a client that is connected.
EMP_HOST(send) void emp_host_send(int client, const char* text, std::size_t size);
/// The reply to a post, empty where there is none.
EMP_HOST(answer) void emp_host_answer(int call, const char* text, std::size_t size);
/// Wants `emp_elapse` called after a time, on its own. @param isAwaited  whether a client waits for what comes then.
EMP_HOST(after) void emp_host_after(double milliseconds, int timer, int isAwaited);
/// What the set could not read or keep, a line for a person.
EMP_HOST(complain) void emp_host_complain(const char* line, std::size_t size);
/// Why the call under way fails. @param kind  a `Failure`.
EMP_HOST(fail) void emp_host_fail(int kind, const char* line, std::size_t size);

// What the script calls. Texts lie where `emp_place` has said, in UTF-8; sizes are bytes of them. Calls answer -1 when
// they fail.

/// @return room for a text, until the next call of this. Null when there is none.
EMP_OFFERED(place) char* emp_place(std::size_t size);
/// Starts the set, once. @param size  of the snapshot that it starts from; 0 for the built-in set.
/// @param waits  0: replies are not held back.
EMP_OFFERED(start) int emp_start(std::size_t size, int waits);
/// Connects a client. @param size  of the session that it takes over; 0 for a new one. @return its number.
EMP_OFFERED(connect) int emp_connect(std::size_t size);
/// Handles a message of a client.
EMP_OFFERED(take) int emp_take(int client, std::size_t size);
EMP_OFFERED(disconnect) int emp_disconnect(int client);
/// Handles a request without a connection. @param call  that `emp_host_answer` is to name, at once or later.
/// @param sessionSize  of the session, which stands in front of the request; 0 for none. @param size  of both.
EMP_OFFERED(post) int emp_post(int call, std::size_t sessionSize, std::size_t size);
EMP_OFFERED(elapse) int emp_elapse(int timer);

// NOLINTEND(readability-identifier-naming)
}
