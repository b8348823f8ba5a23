// One run of one stored session, from the repository to its recorded outcome.
#pragma once

#include <cstdint>
#include <string>

namespace varnel {

extern std::string RepoConnStr;  ///< the repository's connection string; the runner writes it

/// Reads the session, hands it to its worker, records the outcome. Lets no error escape: what nobody handled ends the
/// run and is appended to Varnel.log in the application folder (on standard error when that cannot be written).
void RunSession(std::int16_t SessionID);

}  // namespace varnel
