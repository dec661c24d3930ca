#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "broadcast/Scanner.h"

namespace virtualtv::rpc {

/// The recordings that sessions have scanned, one each, so that what was found can be imported later, and those that
/// come piece by piece. Only the last few of all sessions are kept, since each may be large.
class Scans {
 public:
  static constexpr std::size_t most = 8;

  struct Found {
    std::vector<std::string> files;  ///< that were scanned; none where the recording was sent
    broadcast::Scan scan;
  };

  /// Starts a recording that comes piece by piece. It replaces what the session had.
  broadcast::Scanner& begin(const std::string& session);
  /// @return that recording; null where none was started, it has ended, or it is no longer kept.
  broadcast::Scanner* underWay(const std::string& session);
  /// Keeps what was found. It replaces what the session had. @return what is kept.
  const Found& keep(const std::string& session, Found found);
  /// @return what the session found last; null where that is nothing, or no longer kept.
  const Found* found(const std::string& session);
  /// Drops what a session had.
  void forget(const std::string& session);

 private:
  struct Entry {
    std::string session;
    std::unique_ptr<broadcast::Scanner> scanner;  ///< null where the recording has ended
    Found found;
  };

  Entry* entryOf(const std::string& session);
  Entry& replace(Entry entry);

  std::deque<Entry> entries_;  ///< the oldest first
};

}  // namespace virtualtv::rpc
