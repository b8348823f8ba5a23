// What the sessions of the matrix find out, as the page docs/fidelity.md tells it.
#pragma once

#include <set>
#include <string>

namespace varnel {

/// What one session did not carry unchanged.
struct TripFindings {
    std::set<std::string> reported;  ///< the rows that failed, by what they are about
    std::set<std::string> changed;   ///< the prescribed changes that took place
};

/// Notes a session from one kind to another by their names on the page, with long columns or without.
void NoteFindings(const std::string& target, const std::string& source, bool withLongColumns, TripFindings findings);
/// How many sessions were noted.
std::size_t NotedTrips();
/// The whole page.
std::string FidelityPage();

}  // namespace varnel
