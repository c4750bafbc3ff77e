#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "Progress.h"
#include "ServerSession.h"

namespace workbench {

/// How many records go in one statement: enough for the time on the way not to count, and few enough for a cancelled
/// import to end soon.
inline constexpr std::size_t batch_size = 500;

/// Runs a statement that takes a batch, which `as_json` writes, for all of these records.
template <class Record, class Convert>
void insert_in_batches(ServerSession& session, const std::wstring& sql, const std::vector<Record>& records,
                       const Convert& as_json, const schedule::Progress& progress = {}) {
  odbc::OdbcStatement insert = session.prepare(sql);
  std::size_t done = 0;
  while (done < records.size()) {
    const std::size_t end = std::min(done + batch_size, records.size());
    const auto batch = std::span(records).subspan(done, end - done);
    for (; done < end; ++done) schedule::advance(progress, done, records.size());
    insert.bind(1, as_json(batch)).execute();
  }
}

}  // namespace workbench
