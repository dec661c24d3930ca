// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "broadcast/Scanner.h"

namespace virtualtv::rpc {

/// The last scan of each session, so that its services can be imported later, and the recordings that are being
/// received in pieces. Only the `most` latest of all sessions are kept, since each may be large.
class Scans {
 public:
  static constexpr std::size_t most = 8;

  struct Found {
    std::vector<std::string> files;  ///< the scanned files; empty when the client sent the recording
    broadcast::Scan scan;
  };

  /// Starts a recording that is received in pieces. It replaces an earlier scan of the session.
  broadcast::Scanner& begin(const std::string& session);
  /// @return the recording being received; null when none was started, it has ended, or it is no longer kept.
  broadcast::Scanner* underWay(const std::string& session);
  /// Stores the result of a scan. It replaces an earlier scan of the session. @return the stored result.
  const Found& keep(const std::string& session, Found found);
  /// @return the session's last result; null when there is none, or it is no longer kept.
  const Found* found(const std::string& session);
  /// Drops the scan of a session.
  void forget(const std::string& session);

 private:
  struct Entry {
    std::string session;
    std::unique_ptr<broadcast::Scanner> scanner;  ///< null once the recording has ended
    Found found;
  };

  Entry* entryOf(const std::string& session);
  Entry& replace(Entry entry);

  std::deque<Entry> entries_;  ///< the oldest first
};

}  // namespace virtualtv::rpc
