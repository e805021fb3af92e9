// Runs parsed statements on an open file.
#pragma once

#include "jet/sql/parse/tree.h"
#include "jet/sql/run/result.h"

#include <functional>

namespace vellums::jet::sql {

// What a connection keeps between statements.
struct Session {
    std::int32_t lastIdentity = 0; // the last autonumber that it was given
    std::function<bool()> stop;    // asked while a SELECT runs, which it ends (3059); empty: never
};

// SELECT @@IDENTITY.
Result identityResult(const Session& session);

// Runs the statement, which is used up. Throws Error; then the file holds changes that must be taken
// back, and the session is as before.
Result execute(PageFile& file, Statement& statement, Session& session);

} // namespace vellums::jet::sql
